#include "scriptrt/window/CONXScriptProcessor.h"

#include "scriptrt/window/CScriptProcessorDialog.h"
#include "util/NoThrow.h"

namespace {

// Arguments of `Call` are 64-bit values that hold what the command says.
template <typename Pointer>
Pointer ArgumentAs(std::uint64_t argument) {
  return reinterpret_cast<Pointer>(static_cast<std::uintptr_t>(argument));
}

const char* OrEmpty(const char* text) {
  return text ? text : "";
}

} // namespace

CONXScriptProcessor::CONXScriptProcessor() : m_session(std::make_shared<CSharedSession>(this)) {}

CONXScriptProcessor::~CONXScriptProcessor() {
  m_session->Sever();
  CloseDialog();
  m_session->WaitForOthers();
}

EONX_ERR_ERRCODE_ CONXScriptProcessor::Connect(COndDeviceComm_0* channel) {
  m_session->Session().SetChannel(channel);
  return CONXDeviceClient::Connect(channel);
}

EONX_ERR_ERRCODE_ CONXScriptProcessor::Call(std::uint32_t function, std::uint64_t a, std::uint64_t b, std::uint64_t c,
                                            std::uint64_t d) {
  switch (function) {
  case ONX_CALL_EXECUTE_SCRIPT:
    return ExecuteScript(ArgumentAs<const char*>(a), nullptr, ArgumentAs<OndScriptOutput>(b), ArgumentAs<void*>(c));
  case ONX_CALL_EXECUTE_SCRIPT_FILE:
    return ExecuteScriptFile(ArgumentAs<const char*>(a), ArgumentAs<OndScriptOutput>(b), ArgumentAs<void*>(c));
  case ONX_CALL_SET_VARIABLES:
    return SetVariables(ArgumentAs<const TONXSCRIPTVARIABLE*>(a), b, c != 0);
  case ONX_CALL_GET_VARIABLES:
    return GetVariables(ArgumentAs<TONXSCRIPTVARIABLE*>(a), b, ArgumentAs<std::uint64_t*>(c));
  case ONX_CALL_STOP_SCRIPT:
    StopScript();
    return EONX_ERR_NONE;
  default:
    return CONXDeviceClient::Call(function, a, b, c, d);
  }
}

// From here on the object may be deleted before an operation has ended: each one uses its visit instead.

EONX_ERR_ERRCODE_ CONXScriptProcessor::ExecuteScript(const char* text, const char* baseDirectory,
                                                     OndScriptOutput output, void* outputContext) {
  const CSharedSession::CVisit visit(m_session);
  visit->Prepare();
  return NoThrow(EONX_ERR_OUT_OF_MEMORY,
                 [&] { return visit->Session().ExecuteScript(OrEmpty(text), baseDirectory, output, outputContext); });
}

EONX_ERR_ERRCODE_ CONXScriptProcessor::ExecuteScriptFile(const char* path, OndScriptOutput output,
                                                         void* outputContext) {
  const CSharedSession::CVisit visit(m_session);
  visit->Prepare();
  return NoThrow(EONX_ERR_OUT_OF_MEMORY,
                 [&] { return visit->Session().ExecuteScriptFile(OrEmpty(path), output, outputContext); });
}

EONX_ERR_ERRCODE_ CONXScriptProcessor::SetVariables(const TONXSCRIPTVARIABLE* records, std::size_t count,
                                                    std::int32_t keepExisting) {
  const CSharedSession::CVisit visit(m_session);
  return NoThrow(EONX_ERR_OUT_OF_MEMORY, [&] {
    return visit->Session().SetVariables(records, count,
                                         keepExisting != 0 ? ExistingVariables::kKeep : ExistingVariables::kForget);
  });
}

EONX_ERR_ERRCODE_ CONXScriptProcessor::GetVariables(TONXSCRIPTVARIABLE* records, std::size_t count,
                                                    std::uint64_t* foundCount) {
  const CSharedSession::CVisit visit(m_session);
  return NoThrow(EONX_ERR_OUT_OF_MEMORY, [&] { return visit->Session().GetVariables(records, count, foundCount); });
}

void CONXScriptProcessor::StopScript() {
  const CSharedSession::CVisit visit(m_session);
  visit->Session().StopScript();
}

CONXDialog* CONXScriptProcessor::CreateNewDialog(OndWindow) {
  return new CScriptProcessorDialog;
}

void CONXScriptProcessor::DeleteDialog(CONXDialog* dialog) {
  CONXDialog::Delete(dialog);
}
