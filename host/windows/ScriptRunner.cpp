#include "host/windows/ScriptRunner.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/QuestionEvent.h"
#include "host/notes/OutputLines.h"
#include "host/support/Files.h"

#include <cstdio>
#include <exception>

namespace host {
namespace {

constexpr DWORD kAskAgainMs = 50;

std::string Quote(const std::string& text) {
  return '"' + text + '"';
}

} // namespace

void ScriptRunner::Attach(const Module& module, HWND window, UINT ended) {
  m_window = window;
  m_endedMessage = ended;
  if (auto object = module.Create(ONX_OBJ_SCRIPT_PROCESSOR))
    m_processor = std::make_unique<ModuleProcessor>(std::move(object));
}

void ScriptRunner::Connect(bool connected) {
  if (m_processor)
    m_processor->Connect(connected ? &m_port : nullptr);
}

void ScriptRunner::Run(const std::string& path) {
  m_path = path;
  m_stopping = false;
  m_over = false;
  m_result = EONX_ERR_NONE;
  m_notes.log.Add(LogTopic::kScript, m_path + " begins");
  m_begun = std::chrono::steady_clock::now();
  m_thread = std::thread([this] { RunOnThread(); });
}

// The thread's.
void ScriptRunner::RunOnThread() {
  try {
    AnswerDesk desk;
    desk.BeginRun([this] { m_processor->Stop(); },
                  [this](const AnsweredQuestion& answered) { NoteQuestion(answered); });
    m_processor->UseDesk(&desk);
    OutputLines lines([this](std::string_view line) { m_notes.log.Add(LogTopic::kOutput, line); });
    m_result = m_processor->ExecuteFile(ScriptPath(m_path), TakeOutput, &lines);
    m_processor->UseDesk(nullptr);
    lines.Finish();
  } catch (const std::exception&) {
    m_result = EONX_ERR_OUT_OF_MEMORY;
  }
  m_over = true;
  PostMessageA(m_window, m_endedMessage, 0, 0);
}

void ScriptRunner::TakeOutput(void* context, const char* text) noexcept {
  try {
    static_cast<OutputLines*>(context)->Add(text);
  } catch (const std::exception&) { // memory ran out: the script matters more
  }
}

void ScriptRunner::NoteQuestion(const AnsweredQuestion& answered) {
  m_notes.records.Write(QuestionEvent(answered, m_notes.records.Clock()));
  m_notes.log.Add(LogTopic::kQuestion, answered.question.caption + ": " + answered.question.prompt + " -> " +
                                           (answered.answer ? Quote(*answered.answer) : "Cancel"));
}

// A request that comes just before a run begins is forgotten by it, so one is not enough.
void ScriptRunner::Refresh() {
  if (!m_stopping || m_over)
    return;
  m_processor->Stop();
  m_processor->DismissQuestion();
}

void ScriptRunner::Finish() {
  if (!IsRunning() || !m_over)
    return;
  m_thread.join();
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - m_begun;
  char seconds[32];
  std::snprintf(seconds, sizeof seconds, "%.2f s", took.count());
  const bool stopped = m_stopping && m_result != EONX_ERR_NONE;
  const std::string result = m_result == EONX_ERR_NONE ? "success" : stopped ? "stopped" : ResultText(m_result);
  m_notes.log.Add(m_result == EONX_ERR_NONE || stopped ? LogTopic::kScript : LogTopic::kError,
                  m_path + ": " + result + ", after " + seconds);
  m_stopping = false;
}

void ScriptRunner::End() {
  for (Stop(); IsRunning() && !m_over;) {
    Refresh();
    MsgWaitForMultipleObjects(0, nullptr, FALSE, kAskAgainMs, QS_SENDMESSAGE);
    MSG message;
    PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | (QS_SENDMESSAGE << 16));
  }
  Finish();
  m_processor.reset();
}

} // namespace host
