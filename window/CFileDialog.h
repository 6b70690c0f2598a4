// The system's dialogs for choosing files.
#pragma once

#include <windows.h>

#include <commdlg.h>

#include <string>
#include <vector>

// Set the members, then ask. The host program's current folder stays as it is. A dialog pumps messages: afterwards
// `parent` may be gone.
class CFileDialog {
public:
  // What a typed name without an extension gets, written as a pattern ("*.dcs"); "*.*" adds nothing.
  std::string defaultExtension;
  std::string initialName;
  std::string title;
  // Pairs of description and pattern, each ended by '|', and one more '|' at the end.
  std::string filter;
  bool overwritePrompt = false; // of Save: ask before an existing name is taken

  // A full path; empty when the user cancels or the system fails.
  std::string Open(HWND parent) const;
  std::string Save(HWND parent) const;
  // Full paths in the order in which the system names them, as many as fit into the caller's buffer.
  std::vector<std::string> OpenMany(HWND parent, std::vector<char>& buffer) const;

private:
  using SystemDialog = BOOL(WINAPI*)(OPENFILENAMEA*);
  // Puts the system's answer into `buffer`; where the first file's name begins in it, or 0.
  std::size_t Ask(SystemDialog dialog, HWND parent, DWORD flags, std::vector<char>& buffer) const;
};
