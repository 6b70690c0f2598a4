// The Script Processor: runs scripts for the host (through `Call`) and for its own window.
#pragma once

#include "frame/CONXDeviceClient.h"
#include "scriptrt/window/SharedSession.h"

#include <memory>

// The operations that run scripts may be called on any one thread at a time; the rest belongs to the host's thread.
class CONXScriptProcessor : public CONXDeviceClient {
public:
  CONXScriptProcessor();
  // Ends the window and every run. Those on other threads are waited for; one below on this thread ends later, without
  // the object.
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

  // For the window, which runs scripts on a worker and ends runs when it goes.
  std::shared_ptr<CSharedSession> SharedSession() const { return m_session; }

protected:
  CONXDialog* CreateNewDialog(OndWindow parent) override;
  void DeleteDialog(CONXDialog* dialog) override;

private:
  std::shared_ptr<CSharedSession> m_session; // shared with runs, which may outlive the object
};
