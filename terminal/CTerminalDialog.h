// The Terminal's window: a line to type and send, and what the device answers, line by line.
#pragma once

#include "frame/CONXDialog.h"
#include "terminal/AnswerSplitter.h"
#include "terminal/CTerminalEdit.h"
#include "terminal/TerminalHistory.h"
#include "window/CFont.h"
#include "window/CLogListBox.h"
#include "window/CStatusGroup.h"

class CTerminalDialog : public CONXDialog {
public:
  CTerminalDialog();

  void UpdateDialogState() override;
  void FocusInputLine() { m_input.SetFocus(); }

protected:
  bool OnInitDialog() override;
  void OnOK() override;
  void OnCancel() override;
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  enum class Received { kNothing, kAll, kNotAll };

  // --- messages
  bool OnTimer(const Message& message);
  LRESULT OnInputKey(const Message& message);
  void OnGetMinMaxInfo(const Message& message);
  void OnAppendCr();
  void OnClear();
  void OnCopy();

  // What becomes of the typed line, in words for the status line. A line that went out is gone from the input line.
  std::string SendLine();
  std::string SendLine(const CChannelLock& lock);
  void Poll();
  Received Receive(const CChannelLock& lock);
  void ShowAnswers();
  void MakeRoomForAppendCr();

  CFont m_font; // of answers and input line
  CStatusGroup m_configuration;
  CLogListBox m_answers;
  CTerminalEdit m_input;
  AnswerSplitter m_splitter;
  TerminalHistory m_history;
  bool m_appendCr = true;
};
