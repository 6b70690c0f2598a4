// Base of the module's three objects. Exported, so that further clients can be derived from it.
#pragma once

#include "frame/contract/OndDeviceClient.h"
#include "util/JobFile.h"
#include "window/Presence.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class CONXDialog;

class OND_API CONXDeviceClient : public CONXDeviceClient_0 {
public:
  CONXDeviceClient();
  // Copies are shallow: both objects refer to the same channel and the same window.
  CONXDeviceClient(const CONXDeviceClient&) = default;
  CONXDeviceClient& operator=(const CONXDeviceClient&) = default;

  std::int32_t GetParam(std::uint32_t id, std::uint64_t* value1, std::uint64_t* value2, std::uint64_t* value3,
                        std::uint64_t* value4) override;
  std::int32_t SetParam(std::uint32_t id, std::uint64_t value1, std::uint64_t value2, std::uint64_t value3,
                        std::uint64_t value4) override;
  std::int32_t GetParamLimits(std::uint32_t id, std::uint64_t* min1, std::uint64_t* max1, std::uint64_t* min2,
                              std::uint64_t* max2, std::uint64_t* min3, std::uint64_t* max3, std::uint64_t* min4,
                              std::uint64_t* max4) override;
  EONX_ERR_ERRCODE_ Connect(COndDeviceComm_0* channel) override;
  EONX_ERR_ERRCODE_ Call(std::uint32_t function, std::uint64_t a, std::uint64_t b, std::uint64_t c,
                         std::uint64_t d) override;
  EONX_ERR_ERRCODE_ ShowDialogNonModal(OndWindow parent) override;
  EONX_ERR_ERRCODE_ CloseDialogNonModal() override;
  std::int32_t IsNonModalDialogOpen() override;
  void SetDlgEventData(_TONX_DLGEVENTDATA* data) override;

protected:
  friend class CONXDialog; // its OK, close and cancel ask SignalDlgEvent

  // A new window object of the client's own class, not yet created on the screen, or null. The client owns it.
  virtual CONXDialog* CreateNewDialog(OndWindow parent);
  // Deletes what CreateNewDialog made.
  virtual void DeleteDialog(CONXDialog* dialog);
  // Tells the host of an event (ONX_DLGEVENT_…) by every route it configured. 1: the window may hide.
  virtual std::uint32_t SignalDlgEvent(std::uint32_t event);
  // Destroys the window and its object. For destructors of derived clients whose window uses what they own.
  void CloseDialog();
  // For operations that use this object after control was away: the host may have deleted it.
  CPresence::CWatch WatchPresence() { return CPresence::CWatch(m_presence); }

public:
  virtual ~CONXDeviceClient();

  // --- what every client shares: the functions of these names in util/EscapedString.h, util/Path.h and util/JobFile.h

  static std::string ParseString(const char* input, std::size_t length, char terminator, std::size_t* endPos,
                                 std::string* errorText, int* ok);
  static void SplitFileName(const std::string& path, std::string* folder, std::string* file);
  static int ConcatenatePathAndFile(const std::string& folder, const std::string& file, std::string* result);
  static int IsAbsolutePath(const std::string& path);
  static void MakeRelativePath(const std::string& baseFolder, const std::string& path, std::string* result);
  static char toUpperGer(char c);
  static void FillEntry(std::size_t column, std::string* text, TFILEENTRY* entry, std::string& baseFolder);
  static int LoadJobFile(const char* jobPath, std::vector<TFILEENTRY>* list);
  static int SaveJobFile(const char* jobPath, std::vector<TFILEENTRY>* list);

protected:
  COndDeviceComm_0* GetChannel() const { return m_channel; }
  CONXDialog* GetDialog() const { return m_dialog; } // null until first shown

private:
  bool HasWindow() const;

  COndDeviceComm_0* m_channel = nullptr; // the host's
  CONXDialog* m_dialog = nullptr;        // owned; null until first shown
  _TONX_DLGEVENTDATA m_dlgEventData{};
  CPresence m_presence;
};
