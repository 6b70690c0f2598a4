#include "window/CFileDialog.h"

#include "window/MessageBoxes.h"
#include "window/SystemBox.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t kOnePath = 1024;
constexpr DWORD kCommonFlags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_ENABLESIZING;

// The system takes the bare extension.
std::string BareExtension(const std::string& pattern) {
  const std::string extension = pattern.substr(pattern.rfind('.') + 1);
  return extension.find('*') == std::string::npos ? extension : std::string();
}

// The system separates by zero bytes.
std::string SystemFilter(std::string filter) {
  std::replace(filter.begin(), filter.end(), '|', '\0');
  return filter;
}

} // namespace

std::size_t CFileDialog::Ask(SystemDialog dialog, HWND parent, DWORD flags, std::vector<char>& buffer) const {
  const std::string extension = BareExtension(defaultExtension);
  const std::string systemFilter = SystemFilter(filter);
  buffer[0] = '\0';
  if (initialName.size() < buffer.size())
    std::memcpy(buffer.data(), initialName.c_str(), initialName.size() + 1);
  OPENFILENAMEA request{};
  request.lStructSize = sizeof(request);
  request.hwndOwner = parent;
  request.lpstrFilter = systemFilter.c_str();
  request.lpstrFile = buffer.data();
  request.nMaxFile = static_cast<DWORD>(buffer.size());
  request.lpstrTitle = title.c_str();
  request.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
  request.Flags = kCommonFlags | flags;
  const CSystemBox box(parent);
  return dialog(&request) ? request.nFileOffset : 0;
}

std::string CFileDialog::Open(HWND parent) const {
  std::vector<char> buffer(kOnePath);
  return Ask(GetOpenFileNameA, parent, 0, buffer) ? buffer.data() : std::string();
}

// The system's own prompt is a box inside the dialog, and when the dialog is ended behind it some systems go on with
// what is gone. So the prompt comes behind the dialog, which is shown again on "No".
std::string CFileDialog::Save(HWND parent) const {
  std::vector<char> buffer(kOnePath);
  CFileDialog dialog = *this;
  while (dialog.Ask(GetSaveFileNameA, parent, 0, buffer)) {
    const std::string path = buffer.data();
    if (!overwritePrompt || GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES)
      return path;
    if (!IsWindow(parent))
      break;
    const std::string question = path + " already exists.\nDo you want to replace it?";
    if (ShowMessageBox(parent, question, title, MB_YESNO | MB_DEFBUTTON2 | MB_ICONEXCLAMATION) == IDYES)
      return path;
    if (!IsWindow(parent))
      break;
    dialog.initialName = path;
  }
  return {};
}

std::vector<std::string> CFileDialog::OpenMany(HWND parent, std::vector<char>& buffer) const {
  std::vector<std::string> paths;
  const std::size_t first = Ask(GetOpenFileNameA, parent, OFN_ALLOWMULTISELECT, buffer);
  if (first == 0)
    return paths;
  if (buffer[first - 1] != '\0') { // one file: its path as a whole
    paths.emplace_back(buffer.data());
    return paths;
  }
  std::string folder = buffer.data(); // several: the folder, then the names
  const char* const start = folder.c_str();
  if (*CharPrevA(start, start + folder.size()) != '\\') // the last byte may be half a character
    folder += '\\';
  for (const char* name = &buffer[first]; *name != '\0'; name += std::strlen(name) + 1)
    paths.push_back(folder + name);
  return paths;
}
