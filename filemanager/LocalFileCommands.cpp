// The File Manager's buttons that fill, empty and keep the list of local files.
#include "filemanager/CFileManagerDialog.h"
#include "window/CFileDialog.h"

#include <shellapi.h>

#include <new>

namespace {

constexpr std::size_t kNamesBuffer = 32767; // characters for the names that the user chooses at once
constexpr UINT kLongestName = 260;          // characters of a dropped file's

// The names of dropped files. Released with their handle.
class CDroppedFiles {
public:
  explicit CDroppedFiles(HDROP drop) : m_drop(drop) {}
  CDroppedFiles(const CDroppedFiles&) = delete;
  CDroppedFiles& operator=(const CDroppedFiles&) = delete;
  ~CDroppedFiles() { DragFinish(m_drop); }

  std::vector<std::string> Names() const {
    constexpr UINT kCount = 0xFFFFFFFF;
    std::vector<std::string> names(DragQueryFileA(m_drop, kCount, nullptr, 0));
    for (UINT i = 0; i < names.size(); ++i) {
      char name[kLongestName + 1] = "";
      DragQueryFileA(m_drop, i, name, sizeof(name));
      names[i] = name;
    }
    return names;
  }

private:
  HDROP m_drop;
};

CFileDialog JobFileDialog(const char* title, const char* filter) {
  CFileDialog dialog;
  dialog.defaultExtension = "*.dcj";
  dialog.filter = filter;
  dialog.title = title;
  return dialog;
}

} // namespace

// Without a channel no timer refreshes the buttons, so every change of the rows does. A row that the user removes is
// still there when this is told, and more may follow.
bool CFileManagerDialog::OnLocalRowLeaves() {
  if (!m_rowsLeave)
    m_rowsLeave = PostMessageA(GetSafeHwnd(), kRowsLeftMessage, 0, 0) != FALSE;
  return false;
}

void CFileManagerDialog::OnRowsLeft() {
  m_rowsLeave = false;
  EnableButtons();
}

void CFileManagerDialog::AddFiles(const std::vector<std::string>& paths) {
  {
    const CListCtrl::Batch batch(m_localList);
    for (const std::string& path : paths)
      m_localList.AddFile(path);
  }
  EnableButtons();
}

void CFileManagerDialog::OnAddFiles() {
  std::vector<char> buffer;
  try {
    buffer.resize(kNamesBuffer);
  } catch (const std::bad_alloc&) {
    ShowError("Could not allocate temporary memory for file select box!");
    return;
  }
  CFileDialog dialog;
  dialog.defaultExtension = "*.*";
  dialog.filter = "All files (*.*)|*.*||";
  dialog.title = "Open source file(s)";
  AddFiles(dialog.OpenMany(GetSafeHwnd(), buffer));
}

void CFileManagerDialog::OnDropFiles(const Message& message) {
  const CDroppedFiles files(reinterpret_cast<HDROP>(message.wParam));
  AddFiles(files.Names());
}

void CFileManagerDialog::OnClear() {
  m_localList.DeleteAllItems();
  EnableButtons();
}

void CFileManagerDialog::OnLoadJob() {
  const std::string path =
      JobFileDialog("Open job file", "Job files (*.dcj)|*.dcj|All files (*.*)|*.*||").Open(GetSafeHwnd());
  if (path.empty())
    return;
  std::vector<TFILEENTRY> entries;
  if (!LoadJobFile(path.c_str(), &entries)) {
    ShowError("Could not open list file");
    return;
  }
  {
    const CListCtrl::Batch batch(m_localList);
    m_localList.DeleteAllItems();
    for (const TFILEENTRY& entry : entries)
      m_localList.AddEntry(entry);
  }
  EnableButtons();
}

void CFileManagerDialog::OnSaveJob() {
  if (m_localList.GetItemCount() == 0) {
    ShowError("No files in list that could be saved");
    return;
  }
  const std::string path =
      JobFileDialog("Save list file", "List files (*.dcj)|*.dcj|All files (*.*)|*.*||").Save(GetSafeHwnd());
  if (path.empty() || !GetSafeHwnd())
    return;
  std::vector<TFILEENTRY> entries = AllEntries();
  if (!SaveJobFile(path.c_str(), &entries))
    ShowError("Could not create list file");
}

// --- rows as records

std::vector<TFILEENTRY> CFileManagerDialog::AllEntries() const {
  std::vector<TFILEENTRY> entries(static_cast<std::size_t>(m_localList.GetItemCount()));
  for (std::size_t i = 0; i < entries.size(); ++i)
    m_localList.GetEntry(static_cast<int>(i), entries[i]);
  return entries;
}

std::vector<TFILEENTRY> CFileManagerDialog::SelectedEntries() const {
  std::vector<TFILEENTRY> entries;
  for (int row = m_localList.GetNextSelected(-1); row >= 0; row = m_localList.GetNextSelected(row))
    m_localList.GetEntry(row, entries.emplace_back());
  return entries;
}
