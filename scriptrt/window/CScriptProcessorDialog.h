// The Script Processor's window: choose, make, edit, run and stop a script, watch and copy its output.
#pragma once

#include "frame/CONXDialog.h"
#include "scriptrt/window/CScriptLogList.h"
#include "scriptrt/window/ScriptWorker.h"
#include "window/CFont.h"

class CONXScriptProcessor;

class CScriptProcessorDialog : public CONXDialog {
public:
  CScriptProcessorDialog();

  void UpdateDialogState() override;

protected:
  bool OnInitDialog() override;
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  // --- buttons
  void OnBrowse();
  void OnNewScript();
  void OnEditScript();
  void OnCopy();
  void OnExecuteOrStop();

  // --- messages
  void OnScriptOutput(const Message& message);
  void OnScriptEnded(const Message& message);
  bool OnTimer(const Message& message);
  void OnGetMinMaxInfo(const Message& message);
  bool OnDestroy();

  CONXScriptProcessor* GetProcessor() const;
  void SetPath(const std::string& path);
  const char* StartScript();
  void ReportEnd();
  void AppendToLog(const char* text);

  CFont m_font; // of the log
  CScriptLogList m_log;
  std::string m_path;
  CScriptWorker m_worker;
  bool m_running = false;    // from the start of a script until its end has been shown
  std::int32_t m_result = 0; // of the last script
  int m_initialWidth = 0;    // pixels
};
