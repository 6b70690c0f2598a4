#include "scriptrt/run/ScriptSession.h"

#include "platform/Platform.h"
#include "scriptrt/builtin/RunWithBuiltIns.h"
#include "util/ScriptFile.h"

#include <atomic>

namespace {

constexpr std::uint32_t kLockTimeoutMs = 500;

// A successful lock of a channel, given back on every path to the channel that gave it.
class ChannelLock {
public:
  ChannelLock(COndDeviceComm_0& channel, void* owner)
      : m_channel(channel), m_owner(owner), m_locked(channel.Lock(owner, kLockTimeoutMs) == 0) {}
  ~ChannelLock() {
    if (m_locked)
      m_channel.Unlock(m_owner);
  }
  ChannelLock(const ChannelLock&) = delete;
  ChannelLock& operator=(const ChannelLock&) = delete;
  explicit operator bool() const { return m_locked; }

private:
  COndDeviceComm_0& m_channel;
  void* m_owner;
  bool m_locked;
};

// Marks the runner as running, unless it is already.
class RunningMark {
public:
  explicit RunningMark(std::atomic<bool>& running) : m_running(running), m_taken(!running.exchange(true)) {}
  ~RunningMark() {
    if (m_taken)
      m_running = false;
  }
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;
  explicit operator bool() const { return m_taken; }

private:
  std::atomic<bool>& m_running;
  bool m_taken;
};

// A run's output until it is severed.
struct OutputGate {
  const std::atomic<bool>& severed;
  const std::function<void()>& show;
  const ScriptOutput output;

  static void Write(void* gate, const char* text) {
    const auto& self = *static_cast<const OutputGate*>(gate);
    if (!self.severed)
      self.output.Write(text);
  }
  static void Show(void* gate) { static_cast<const OutputGate*>(gate)->show(); }
  ScriptOutput Output() { return output ? ScriptOutput{Write, this, show ? Show : nullptr} : ScriptOutput{}; }
};

} // namespace

struct ScriptSession::Body {
  explicit Body(void* owner) : lockOwner(owner) {}

  EONX_ERR_ERRCODE_ Run(COndDeviceComm_0& channel, std::string_view text, const char* baseDirectory,
                        ScriptOutput output, SessionRun* run = nullptr, std::string_view file = {});
  EONX_ERR_ERRCODE_ RunFile(COndDeviceComm_0& channel, const char* path, ScriptOutput output);

  void* lockOwner;
  std::atomic<COndDeviceComm_0*> channel{nullptr};
  std::atomic<bool> running{false};
  std::atomic<bool> severed{false};
  Prompter* prompter = nullptr;
  FailureObserver* failures = nullptr;
  std::function<void()> showBeforeWaiting;
  ExternalVariables variables;
  RunContext context;
};

EONX_ERR_ERRCODE_ ScriptSession::Body::Run(COndDeviceComm_0& usedChannel, std::string_view text,
                                           const char* baseDirectory, ScriptOutput anyOutput, SessionRun* run,
                                           std::string_view file) {
  if (severed)
    return EONX_ERR_SCRIPT;
  const ChannelLock lock(usedChannel, lockOwner);
  if (!lock)
    return EONX_ERR_LOCKED;
  OutputGate gate{severed, showBeforeWaiting, anyOutput};
  FunctionStart start{run && run->function ? run->function : "", {}};
  const RunRequest request{context,
                           text,
                           baseDirectory ? baseDirectory : "",
                           &variables,
                           start.name.empty() ? nullptr : &start,
                           run ? run->result : nullptr,
                           run ? &run->failure : nullptr,
                           file};
  const ScriptError error = RunWithBuiltIns({gate.Output(), &usedChannel, prompter, failures}, request);
  return CodeWithinClass(error) == 0 ? EONX_ERR_NONE : EONX_ERR_SCRIPT;
}

EONX_ERR_ERRCODE_ ScriptSession::Body::RunFile(COndDeviceComm_0& usedChannel, const char* path, ScriptOutput output) {
  const ChannelLock lock(usedChannel, lockOwner);
  if (!lock)
    return EONX_ERR_LOCKED;
  const std::optional<std::string> fullPath = platform::FullPath(path);
  if (!fullPath)
    return EONX_ERR_FILE_OPEN;
  std::string text;
  switch (ReadScriptFile(*fullPath, &text)) {
  case ScriptFileResult::kCannotOpen:
    return EONX_ERR_FILE_OPEN;
  case ScriptFileResult::kCannotRead:
    return EONX_ERR_FILE_READ;
  case ScriptFileResult::kTooLong:
    return EONX_ERR_OUT_OF_MEMORY;
  case ScriptFileResult::kRead:
    break;
  }
  return Run(usedChannel, text, FolderOfScript(*fullPath).c_str(), output, nullptr, *fullPath);
}

namespace {

template <typename Operation>
EONX_ERR_ERRCODE_ WithoutExceptions(Operation operation) {
  try {
    return operation();
  } catch (...) { // memory ran out, in one way or another
    return EONX_ERR_OUT_OF_MEMORY;
  }
}

} // namespace

ScriptSession::ScriptSession(void* lockOwner) : m_body(std::make_unique<Body>(lockOwner)) {}
ScriptSession::~ScriptSession() = default;

void ScriptSession::SetChannel(COndDeviceComm_0* channel) {
  m_body->channel = channel;
}
void ScriptSession::SetPrompter(Prompter* prompter) {
  m_body->prompter = prompter;
}
void ScriptSession::SetFailureObserver(FailureObserver* failures) {
  m_body->failures = failures;
}
void ScriptSession::ShowBeforeWaiting(std::function<void()> show) {
  m_body->showBeforeWaiting = std::move(show);
}

EONX_ERR_ERRCODE_ ScriptSession::ExecuteScript(std::string_view text, const char* baseDirectory, OndScriptOutput output,
                                               void* outputContext) {
  COndDeviceComm_0* channel = m_body->channel;
  if (!channel)
    return EONX_ERR_NO_CHANNEL;
  const RunningMark mark(m_body->running);
  if (!mark)
    return EONX_ERR_LOCKED;
  return WithoutExceptions([&] { return m_body->Run(*channel, text, baseDirectory, {output, outputContext}); });
}

EONX_ERR_ERRCODE_ ScriptSession::Execute(SessionRun& run, OndScriptOutput output, void* outputContext) {
  COndDeviceComm_0* channel = m_body->channel;
  if (!channel)
    return EONX_ERR_NO_CHANNEL;
  const RunningMark mark(m_body->running);
  if (!mark)
    return EONX_ERR_LOCKED;
  return WithoutExceptions([&] { return m_body->Run(*channel, run.text, nullptr, {output, outputContext}, &run); });
}

EONX_ERR_ERRCODE_ ScriptSession::ExecuteScriptFile(const char* path, OndScriptOutput output, void* outputContext) {
  if (!path || *path == '\0')
    return EONX_ERR_EMPTY_PATH;
  COndDeviceComm_0* channel = m_body->channel;
  if (!channel)
    return EONX_ERR_NO_CHANNEL;
  const RunningMark mark(m_body->running);
  if (!mark)
    return EONX_ERR_LOCKED;
  return WithoutExceptions([&] { return m_body->RunFile(*channel, path, {output, outputContext}); });
}

EONX_ERR_ERRCODE_ ScriptSession::SetVariables(const TONXSCRIPTVARIABLE* records, std::size_t count,
                                              ExistingVariables existing) {
  const RunningMark mark(m_body->running); // a script that runs uses them
  if (!mark)
    return EONX_ERR_LOCKED;
  return WithoutExceptions([&] {
    m_body->variables.Set(records, count, existing);
    return EONX_ERR_NONE;
  });
}

EONX_ERR_ERRCODE_ ScriptSession::GetVariables(TONXSCRIPTVARIABLE* records, std::size_t count,
                                              std::uint64_t* foundCount) {
  return WithoutExceptions([&] {
    const std::uint64_t found = m_body->variables.Get(records, count);
    if (foundCount)
      *foundCount = found;
    return EONX_ERR_NONE;
  });
}

ExternalVariables& ScriptSession::Variables() {
  return m_body->variables;
}

void ScriptSession::PrepareRun() {
  if (!m_body->running)
    m_body->context.StopEvent().Reset();
}

void ScriptSession::StopScript() {
  m_body->context.StopEvent().Set();
}

void ScriptSession::AbandonScript() {
  m_body->context.StopEvent().Abandon();
}

void ScriptSession::Sever() {
  m_body->severed = true;
  AbandonScript();
}
