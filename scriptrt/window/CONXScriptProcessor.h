// The Script Processor: runs scripts for the host (through `Call`) and for its own window.
#pragma once

#include "frame/CONXDeviceClient.h"
#include "scriptrt/run/ScriptRunner.h"
#include "scriptrt/window/WindowsOperator.h"

// The operations that run scripts may be called on any one thread at a time; the rest belongs to the host's thread.
class CONXScriptProcessor : public CONXDeviceClient {
public:
  CONXScriptProcessor();
  // Ends the window, and with it a script that it runs.
  ~CONXScriptProcessor() override;

  std::uint32_t GetObjType() override { return ONX_OBJ_SCRIPT_PROCESSOR; }
  EONX_ERR_ERRCODE_ Connect(COndDeviceComm_0* channel) override;
  EONX_ERR_ERRCODE_ Call(std::uint32_t function, std::uint64_t a, std::uint64_t b, std::uint64_t c,
                         std::uint64_t d) override;

  // Results and meaning as ONX_CALL_… of the contract. Texts that are null count as empty.
  virtual EONX_ERR_ERRCODE_ ExecuteScript(const char* text, const char* baseDirectory, OndScriptOutput output,
                                          void* outputContext);
  virtual EONX_ERR_ERRCODE_ ExecuteScriptFile(const char* path, OndScriptOutput output, void* outputContext);
  virtual EONX_ERR_ERRCODE_ SetVariables(const TONXSCRIPTVARIABLE* records, std::size_t count,
                                         std::int32_t keepExisting);
  virtual EONX_ERR_ERRCODE_ GetVariables(TONXSCRIPTVARIABLE* records, std::size_t count, std::uint64_t* foundCount);
  // Asks the running script to end. [any thread]
  virtual void StopScript();

  // The two halves of ExecuteScriptFile, for whoever hands a run to another thread: the first forgets earlier stop
  // requests and belongs to the thread that asks for the run, so that a stop from then on counts.
  void PrepareRun();
  EONX_ERR_ERRCODE_ RunPreparedFile(const char* path, OndScriptOutput output, void* outputContext);
  // For whoever waits for the end of a run on that thread. The run ends at its next statement block, loop round or
  // wait; its questions are answered with Cancel (see CWindowsOperator::Dismiss).
  void AbandonScript() { m_runner.AbandonScript(); }
  void DismissQuestions(DWORD scriptThread) { m_operator.Dismiss(scriptThread); }

protected:
  CONXDialog* CreateNewDialog(OndWindow parent) override;
  void DeleteDialog(CONXDialog* dialog) override;

private:
  CWindowsOperator m_operator;
  CScriptRunner m_runner;
};
