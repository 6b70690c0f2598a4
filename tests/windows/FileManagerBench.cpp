#include "tests/windows/FileManagerBench.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstring>

// --- the device

void FileDevice::Fail(const std::string& operation, int nth, std::int32_t code) {
  const std::lock_guard guard(m_mutex);
  m_failures[operation] = {nth, code};
}

std::vector<std::string> FileDevice::Log() const {
  const std::lock_guard guard(m_mutex);
  return m_log;
}

void FileDevice::ForgetLog() {
  const std::lock_guard guard(m_mutex);
  m_log.clear();
}

std::int32_t FileDevice::Act(const std::string& operation, const std::string& arguments) {
  const std::lock_guard guard(m_mutex);
  m_log.push_back(operation + (arguments.empty() ? "" : " ") + arguments);
  const auto failure = m_failures.find(operation);
  if (failure == m_failures.end() || failure->second.callsUntil-- > 0)
    return 0;
  const std::int32_t code = failure->second.code;
  m_failures.erase(failure);
  return code;
}

const char* FileDevice::GetInfoString(std::uint32_t what, std::int64_t code) {
  GuardedChannel::GetInfoString(what, code);
  if (what != OND_INFO_ERROR)
    return "channel";
  Act("GetInfoString", std::to_string(code));
  const std::lock_guard guard(m_mutex);
  m_text = "error " + std::to_string(code);
  return m_text.c_str();
}

// Polls of the status do not wait for the lock.
std::int32_t FileDevice::Lock(void* owner, std::uint32_t timeoutMs) {
  const std::int32_t failure = timeoutMs == 0 ? 0 : Act("Lock", std::to_string(timeoutMs));
  const std::int32_t answer = failure != 0 ? failure : GuardedChannel::Lock(owner, timeoutMs);
  if (answer == 0) {
    const std::lock_guard guard(m_mutex);
    m_locks.push_back(timeoutMs);
  }
  return answer;
}

std::int32_t FileDevice::Unlock(void* owner) {
  std::uint32_t timeoutMs = 1;
  {
    const std::lock_guard guard(m_mutex);
    if (!m_locks.empty()) {
      timeoutMs = m_locks.back();
      m_locks.pop_back();
    }
  }
  if (timeoutMs != 0)
    Act("Unlock");
  return GuardedChannel::Unlock(owner);
}

std::uint32_t FileDevice::GetState() {
  GuardedChannel::GetState();
  return state;
}

std::int32_t FileDevice::TransmitFile(const char* localPath, std::uint8_t fileId, std::uint8_t fileType,
                                      std::uint32_t fileMode, TransferProgressCallback callback, void* context,
                                      std::uint32_t flag, std::uint32_t stepCount) {
  GuardedChannel::TransmitFile(localPath, fileId, fileType, fileMode, callback, context, flag, stepCount);
  const std::int32_t code =
      Act("TransmitFile", std::string(localPath) + " " + std::to_string(fileId) + " " + std::to_string(fileType) + " " +
                              std::to_string(fileMode) + " " + std::to_string(flag) + " " + std::to_string(stepCount));
  callback(context, 0);
  callback(context, steps);
  ++transfers;
  if (duringTransfer)
    duringTransfer();
  while (hold) {
    if (callback(context, steps) != 0 && !deaf)
      return kAborted;
    Sleep(1);
  }
  return callback(context, stepCount) != 0 && !deaf ? kAborted : code;
}

std::int32_t FileDevice::ReadDirectory() {
  GuardedChannel::ReadDirectory();
  return Act("ReadDirectory");
}

std::uint64_t FileDevice::GetDirectoryEntryCount() {
  GuardedChannel::GetDirectoryEntryCount();
  Act("Count");
  return directory.size();
}

std::int32_t FileDevice::GetDirectoryEntry(std::uint32_t index, TDEVDIRENTRY* entry) {
  GuardedChannel::GetDirectoryEntry(index, entry);
  const std::int32_t code = Act("Entry", std::to_string(index));
  if (code == 0)
    *entry = directory.at(index);
  return code;
}

std::int32_t FileDevice::GetDirectoryInfo(TDEVDIRINFO* out) {
  GuardedChannel::GetDirectoryInfo(out);
  const std::int32_t code = Act("Info");
  if (code == 0)
    *out = info;
  return code;
}

std::int32_t FileDevice::DeleteDeviceFile(std::uint8_t fileId) {
  GuardedChannel::DeleteDeviceFile(fileId);
  const std::int32_t code = Act("Delete", std::to_string(fileId));
  if (code == 0)
    std::erase_if(directory, [&](const TDEVDIRENTRY& entry) { return entry.fileId == fileId; });
  return code;
}

std::int32_t FileDevice::FormatDevice(std::uint32_t usedBlocksOnly) {
  GuardedChannel::FormatDevice(usedBlocksOnly);
  const std::int32_t code = Act("Format", std::to_string(usedBlocksOnly));
  if (code == 0)
    directory.clear();
  return code;
}

// --- the lists

std::string ListView::Text(int row, int column) const {
  std::string text(2000, '\0');
  LVITEMA item{};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  m_window.Send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  text.resize(std::strlen(text.c_str()));
  return text;
}

void ListView::SetText(int row, int column, const std::string& text) const {
  LVITEMA item{};
  item.iSubItem = column;
  item.pszText = const_cast<char*>(text.c_str());
  m_window.Send(LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

std::vector<std::string> ListView::Rows() const {
  const auto columns =
      static_cast<int>(Window(reinterpret_cast<HWND>(m_window.Send(LVM_GETHEADER))).Send(HDM_GETITEMCOUNT));
  std::vector<std::string> rows(static_cast<std::size_t>(Count()));
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (int column = 0; column < columns; ++column)
      rows[row] += (column == 0 ? "" : "|") + Text(static_cast<int>(row), column);
  }
  return rows;
}

std::vector<std::string> ListView::Columns() const {
  std::vector<std::string> columns;
  char text[100] = "";
  LVCOLUMNA column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
  column.pszText = text;
  column.cchTextMax = sizeof(text);
  while (m_window.Send(LVM_GETCOLUMNA, columns.size(), reinterpret_cast<LPARAM>(&column)) != 0) {
    const bool right = (column.fmt & LVCFMT_JUSTIFYMASK) == LVCFMT_RIGHT;
    columns.push_back(std::string(column.pszText) + " " + std::to_string(column.cx) + (right ? " right" : " left"));
  }
  return columns;
}

void ListView::Select(const std::vector<int>& rows) const {
  LVITEMA item{};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
  item.state = LVIS_SELECTED;
  for (const int row : rows)
    m_window.Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

// --- the bench

FileManagerBench::FileManagerBench(bool connected) {
  device.directory = {{3, 1, 100}, {7, 2, 400}, {200, 0, 500}};
  if (connected)
    client.Connect(&device);
  window = client.Show(kFileManagerCaption);
}

void FileManagerBench::Drop(const std::vector<std::string>& paths) const {
  std::string names;
  for (const std::string& path : paths)
    names += path + '\0';
  names += '\0';
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + names.size());
  auto* const drop = static_cast<DROPFILES*>(GlobalLock(memory));
  drop->pFiles = sizeof(DROPFILES);
  std::memcpy(drop + 1, names.data(), names.size());
  GlobalUnlock(memory);
  const int count = Local().Count() + static_cast<int>(paths.size());
  PostMessageA(window.Handle(), WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
  WaitFor("the dropped files", [&] { return Local().Count() == count; });
}

void FileManagerBench::Press(int id) const {
  WaitFor("control " + std::to_string(id) + " to be enabled", [&] { return window.Control(id).Enabled(); });
  window.PressControl(id);
  host.Settle();
  host.Settle(); // the press is a chain of posted messages
}

void FileManagerBench::WaitUntilIdle(const std::string& what) const {
  host.Settle(); // the answer to a box has been given, what follows may just begin
  WaitFor(what + " to end", [&] { return window.Enabled() && device.LockDepth() == 0; });
}

void FileManagerBench::Choose(int button, const std::string& title, const std::string& path) const {
  Press(button);
  const Window chooser = Window::WaitForTop(title);
  chooser.TypeFileName(path);
  chooser.WaitUntilGone("the dialog \"" + title + "\"");
}

void FileManagerBench::TypeInList(WORD virtualKey) const {
  window.Activate();
  host.Do([&] { SetFocus(Local().Handle().Handle()); });
  TypeKey(virtualKey);
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string joined;
  for (const std::string& line : lines)
    joined += (joined.empty() ? "" : ", ") + line;
  return joined;
}
