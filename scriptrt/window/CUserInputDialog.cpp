#include "scriptrt/window/CUserInputDialog.h"

#include "res/resource.h"
#include "scriptrt/question/NumberAnswer.h"
#include "window/WholeText.h"

CUserInputDialog::CUserInputDialog(const Prompter::NumberQuestion& question)
    : CDialog(IDD_USER_INPUT), m_question(&question), m_caption(question.caption), m_prompt(question.prompt),
      m_text(NumberForPrompt(question, question.initial)) {}

CUserInputDialog::CUserInputDialog(const std::string& caption, const std::string& prompt, const std::string& initial)
    : CDialog(IDD_USER_INPUT), m_question(nullptr), m_caption(caption), m_prompt(prompt), m_text(initial) {}

bool CUserInputDialog::OnInitDialog() {
  SetWindowText(m_caption);
  SetDlgItemText(IDC_INPUT_PROMPT, m_prompt.empty() ? "Enter information" : m_prompt);
  ShowWholeText(*this, IDC_INPUT_PROMPT);
  SetDlgItemText(IDC_INPUT_VALUE, m_text);
  return CDialog::OnInitDialog();
}

void CUserInputDialog::OnOK() {
  if (m_question) {
    OnNumberOK();
  } else {
    m_text = GetDlgItemText(IDC_INPUT_VALUE);
    EndDialog(IDOK);
  }
}

void CUserInputDialog::OnNumberOK() {
  const NumberAnswer answer = ReadNumberAnswer(*m_question, GetDlgItemText(IDC_INPUT_VALUE));
  if (answer.value) {
    m_number = *answer.value;
    EndDialog(IDOK);
  } else if (answer.complaint.empty()) {
    SetDlgItemText(IDC_INPUT_VALUE, m_text);
  } else {
    ShowError(answer.complaint);
  }
}
