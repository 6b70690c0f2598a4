// The File Manager's window: the local files that are to be copied on the left, the device's directory on the right.
//
// Everything that uses the channel, asks the user something or copies may serve messages. Behind that, the host may
// disconnect the channel, hide or destroy the window or delete the object. Locks end with the window, and with the
// channel unless a copy runs on it; a copy ends before its window is hidden or gone.
#pragma once

#include "filemanager/CFMDeviceListCtrl.h"
#include "filemanager/COndFMLocalListCtrl.h"
#include "frame/CONXDialog.h"
#include "window/CStatusGroup.h"

#include <string>
#include <vector>

class CProgressDialog;

class CFileManagerDialog : public CONXDialog {
public:
  CFileManagerDialog();

  void UpdateDialogState() override;

protected:
  // Copies files in the order of the list and tells the user what failed. Called with the channel locked; returns when
  // the copy has ended.
  virtual void CopyFilesToDevice(std::vector<TFILEENTRY> files);

  bool OnInitDialog() override;
  bool OnWndMsg(const Message& message, LRESULT& result) override;
  bool KeepsChannel() const override { return m_progress != nullptr; }

private:
  static constexpr UINT kRowsLeftMessage = WM_APP + 1;

  // --- the local list (LocalFileCommands.cpp)
  void OnAddFiles();
  void OnDropFiles(const Message& message);
  bool OnLocalRowLeaves();
  void OnRowsLeft();
  void OnClear();
  void OnLoadJob();
  void OnSaveJob();
  void AddFiles(const std::vector<std::string>& paths);
  std::vector<TFILEENTRY> AllEntries() const;
  std::vector<TFILEENTRY> SelectedEntries() const;

  // --- the device
  void OnCopySelected();
  void OnCopyAll();
  void OnRefresh() { RefreshDeviceDirectory(); }
  void OnDeleteFiles();
  void OnFormat();
  void Copy(std::vector<TFILEENTRY> (CFileManagerDialog::*gather)() const);
  void RefreshDeviceDirectory();
  std::string DirectorySummary(const CChannelLock& lock);
  void DeleteDeviceFiles(const CChannelLock& lock, const std::vector<std::uint8_t>& ids);
  std::int32_t AskAndFormat(const CChannelLock& lock);
  bool IsReserved(const CChannelLock& lock);
  std::string CopyAndReport(COndDeviceComm_0* channel, std::vector<TFILEENTRY> files);

  // --- the window
  void OnContinueOnError();
  bool OnShowWindow(const Message& message);
  void EnableButtons();

  CStatusGroup m_status;
  COndFMLocalListCtrl m_localList;
  CFMDeviceListCtrl m_deviceList;
  bool m_continueOnError = true;
  bool m_rowsLeave = false;              // kRowsLeftMessage is on its way
  CProgressDialog* m_progress = nullptr; // while a copy runs
};
