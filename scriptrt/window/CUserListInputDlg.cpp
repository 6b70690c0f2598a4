#include "scriptrt/window/CUserListInputDlg.h"

#include "res/resource.h"
#include "window/WholeText.h"

CUserListInputDlg::CUserListInputDlg(const std::string& caption, const std::string& prompt,
                                     const std::vector<std::string>& items, std::uint64_t initial)
    : CDialog(IDD_USER_LIST_INPUT), m_caption(caption), m_prompt(prompt), m_items(items), m_initial(initial) {}

bool CUserListInputDlg::OnInitDialog() {
  SetWindowText(m_caption);
  SetDlgItemText(IDC_LIST_PROMPT, m_prompt.empty() ? "Select an item" : m_prompt);
  ShowWholeText(*this, IDC_LIST_PROMPT);
  m_list.SubclassDlgItem(IDC_LIST_ITEMS, *this);
  for (const std::string& item : m_items)
    m_list.AddString(item);
  m_list.SetHorizontalExtent(m_list.WidestItem());
  if (m_initial < m_items.size())
    m_list.SetCurSel(static_cast<int>(m_initial));
  return CDialog::OnInitDialog();
}

bool CUserListInputDlg::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {OnCommand<&CUserListInputDlg::OnOK>(IDC_LIST_ITEMS, LBN_DBLCLK)};
  return Dispatch(kMap, message, result) || CDialog::OnWndMsg(message, result);
}

// Without a selection there is no answer yet.
void CUserListInputDlg::OnOK() {
  const int selected = m_list.GetCurSel();
  if (selected >= 0) {
    m_selected = static_cast<std::size_t>(selected);
    EndDialog(IDOK);
  }
}
