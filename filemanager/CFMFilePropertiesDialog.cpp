#include "filemanager/CFMFilePropertiesDialog.h"

#include "res/resource.h"
#include "util/FileMode.h"
#include "util/ScanNumber.h"

namespace {

constexpr const char* kProgramNote =
    "NOTE: \"File ID\" and \"File type\" have no effect on files with mode \"program\"!";

} // namespace

CFMFilePropertiesDialog::CFMFilePropertiesDialog() : CDialog(IDD_FILE_PROPERTIES) {}

bool CFMFilePropertiesDialog::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {
      OnCommand<&CFMFilePropertiesDialog::OnModeChanged>(IDC_PROPERTIES_FILE_MODE, CBN_SELCHANGE),
  };
  return Dispatch(kMap, message, result) || CDialog::OnWndMsg(message, result);
}

bool CFMFilePropertiesDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  SetDlgItemText(IDC_PROPERTIES_FILENAME, entry.path);
  SetDlgItemText(IDC_PROPERTIES_FILE_ID, std::to_string(entry.fileId));
  SetDlgItemText(IDC_PROPERTIES_FILE_TYPE, std::to_string(entry.fileType));
  m_mode.SubclassDlgItem(IDC_PROPERTIES_FILE_MODE, *this);
  for (const std::uint32_t mode : {OND_FILE_NORMAL, OND_FILE_BIT_REVERSE, OND_FILE_PROGRAM})
    m_mode.AddString(FileModeWord(mode), mode);
  m_mode.SetCurData(entry.fileMode);
  OnModeChanged();
  return true;
}

void CFMFilePropertiesDialog::OnModeChanged() {
  const bool program = m_mode.GetCurData() == std::uint32_t{OND_FILE_PROGRAM};
  EnableDlgItem(IDC_PROPERTIES_FILE_ID, !program);
  EnableDlgItem(IDC_PROPERTIES_FILE_TYPE, !program);
  SetDlgItemText(IDC_PROPERTIES_NOTE, program ? kProgramNote : "");
}

// Only the button itself: Enter in a field must not take over a number that is half typed.
void CFMFilePropertiesDialog::OnOK() {
  if (!HasFocus(IDOK))
    return;
  const auto id = ReadNumber(IDC_PROPERTIES_FILE_ID, entry.fileId, "Invalid file ID!");
  if (!id)
    return;
  const auto type = ReadNumber(IDC_PROPERTIES_FILE_TYPE, entry.fileType, "Invalid file type!");
  if (!type)
    return;
  entry.fileId = *id;
  entry.fileType = *type;
  entry.fileMode = m_mode.GetCurData().value_or(entry.fileMode);
  EndDialog(IDOK);
}

std::optional<std::uint8_t> CFMFilePropertiesDialog::ReadNumber(int id, std::uint8_t stored, const char* problem) {
  const std::optional<std::uint64_t> number = ScanNumber(GetDlgItemText(id), NumberFormat::kUnsigned);
  if (!number) {
    MessageBox(problem, "Error", MB_OK);
    SetDlgItemText(id, std::to_string(stored));
    return std::nullopt;
  }
  return static_cast<std::uint8_t>(*number); // larger numbers wrap around
}
