// The question for a number or a text.
#pragma once

#include "scriptrt/question/Prompter.h"
#include "window/CDialog.h"

// Modal, on any thread. IDOK: the answer is there.
class CUserInputDialog : public CDialog {
public:
  // The question outlives the dialog.
  explicit CUserInputDialog(const Prompter::NumberQuestion& question);
  CUserInputDialog(const std::string& caption, const std::string& prompt, const std::string& initial);

  std::uint64_t GetNumber() const { return m_number; }
  const std::string& GetText() const { return m_text; }

protected:
  bool OnInitDialog() override;
  void OnOK() override;

private:
  void OnNumberOK();

  const Prompter::NumberQuestion* m_question; // null: any text will do
  std::string m_caption, m_prompt;
  std::string m_text; // at first the field's initial text, then what was entered
  std::uint64_t m_number = 0;
};
