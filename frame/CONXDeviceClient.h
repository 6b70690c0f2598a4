// Base of the module's three objects. Exported, so that further clients can be derived from it.
//
// The class is portable as a declaration; its window side (CONXDeviceClient.cpp) is Windows only, the bodies of its
// static members (util/) build everywhere.
#pragma once

#include "frame/OndDeviceClient.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class CONXDialog;

// One local file to copy to the device. Lists of them are what job files hold.
struct TFILEENTRY {
  std::string path;            // full path once loaded
  std::uintptr_t reserved = 0; // neither written nor read by job files
  std::uint8_t fileId = 0;
  std::uint8_t fileType = 0;
  std::uint32_t fileMode = OND_FILE_NORMAL; // OND_FILE_…
};

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

public:
  virtual ~CONXDeviceClient();

  // --- escaped text (util/EscapedString.cpp)

  // Decodes text with escapes (\n \t \r \" \\, one hexadecimal digit, \(65) \(x41) \(b1000001)) up to `terminator`, or
  // all of it when that is 0. `length` bytes may be read and must be followed by a zero byte; zero bytes among them are
  // ordinary unless 0 is the terminator. `endPos`, `errorText`, `ok` may be null: bytes consumed, message (empty on
  // success), 1 or 0.
  static std::string ParseString(const char* input, std::size_t length, char terminator, std::size_t* endPos,
                                 std::string* errorText, int* ok);

  // --- paths (util/Path.cpp); the backslash is the only separator

  static void SplitFileName(const std::string& path, std::string* folder, std::string* file);
  // 1 = joined; 0 = `file` climbs above the start, *result is then `file` as it was. May throw std::out_of_range.
  static int ConcatenatePathAndFile(const std::string& folder, const std::string& file, std::string* result);
  static int IsAbsolutePath(const std::string& path);
  static void MakeRelativePath(const std::string& baseFolder, const std::string& path, std::string* result);
  static char toUpperGer(char c);

  // --- job files (util/JobFile.cpp)

  // Stores the text of one column into an entry. Never throws.
  static void FillEntry(std::size_t column, std::string* text, TFILEENTRY* entry, std::string& baseFolder);
  // 1 = loaded; 0 = cannot be opened or read, the list is untouched.
  static int LoadJobFile(const char* jobPath, std::vector<TFILEENTRY>* list);
  // 1 = saved; 0 = not, and a file that was there before is unharmed.
  static int SaveJobFile(const char* jobPath, std::vector<TFILEENTRY>* list);

protected:
  COndDeviceComm_0* GetChannel() const { return m_channel; }
  CONXDialog* GetDialog() const { return m_dialog; } // null until first shown

private:
  COndDeviceComm_0* m_channel = nullptr; // the host's
  CONXDialog* m_dialog = nullptr;        // owned; null until first shown
  _TONX_DLGEVENTDATA m_dlgEventData{};
};
