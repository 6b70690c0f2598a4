#include "host/commandline/RunSession.h"

#include "host/channel/WatchedChannel.h"
#include "host/commandline/Deadline.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/QuestionEvent.h"
#include "host/report/Verdict.h"
#include "host/support/StreamSetup.h"

#include <new>

namespace host {
namespace {

using Clock = OutputWatch::Clock;

Microseconds Since(Clock::time_point begun, Clock::time_point now) {
  return std::chrono::duration_cast<Microseconds>(now - begun);
}

NamedValue ValueOf(const std::string& name, const TONXSCRIPTVARIABLE& record) {
  switch (record.type) {
  case ONX_TYPE_STRING:
    return {name, std::string(reinterpret_cast<const char*>(static_cast<std::uintptr_t>(record.value)),
                              static_cast<std::size_t>(record.length))};
  case ONX_TYPE_INT32:
    return {name, std::int64_t{static_cast<std::int32_t>(record.value)}};
  case ONX_TYPE_INT64:
    return {name, static_cast<std::int64_t>(record.value)};
  case ONX_TYPE_UINT64:
    return {name, std::uint64_t{record.value}};
  default:
    return {name, std::uint64_t{static_cast<std::uint32_t>(record.value)}};
  }
}

} // namespace

struct RunSession::OutputContext {
  StandardOutput& output;
  TransferLine& line;
  OutputWatch& watch;
  ScriptProcessor& processor;
  bool aborted = false; // the last piece is the diagnostic of a script that was stopped
};

RunSession::RunSession(std::string_view program, const RunArguments& arguments, const std::optional<std::string>& input,
                       ScriptProcessor& processor, std::unique_ptr<Channel> channel, TraceFork& records,
                       RunReports& reports)
    : m_program(program), m_arguments(arguments), m_input(input), m_processor(processor), m_records(records),
      m_reports(reports), m_line(m_output, IsOutputTerminal()),
      m_desk(arguments.answers ? AnswerDesk(*arguments.answers) : AnswerDesk()),
      m_channel(std::make_unique<WatchedChannel>(std::make_unique<TransferWatch>(std::move(channel), m_line),
                                                 [this](WatchedChannel::Left left) {
                                                   m_channelEnded = true;
                                                   if (!m_arguments.keepGoing && left == WatchedChannel::Left::kNothing)
                                                     m_processor.Stop();
                                                 })) {
  m_processor.Connect(&m_channel);
  m_processor.UseDesk(&m_desk);
  m_processor.ShowBeforeWaiting([this] { m_output.Show(); });
}

RunSession::~RunSession() {
  m_processor.ShowBeforeWaiting([] {});
  m_processor.UseDesk(nullptr);
  m_processor.Connect(nullptr);
}

void RunSession::RunInto(std::vector<ScriptRecord>& scripts) {
  for (ScriptRecord& record : scripts) {
    m_isLast = &record == &scripts.back();
    Run(record);
    if (m_over)
      return;
  }
  const bool allAnswered = m_desk.Failed() == AnswerDesk::Failure::kNone;
  if (const std::string unused = m_desk.FirstUnused(); allAnswered && !unused.empty())
    PrintMessage(m_program, unused + ": no script asked for this answer");
}

void RunSession::Run(ScriptRecord& record) {
  const auto begun = Clock::now();
  record.begun = std::chrono::system_clock::now();
  m_reports.BeginScript(m_records.Clock().Now());
  auto variables = RecordsToSet(m_arguments.variables);
  if (const EONX_ERR_ERRCODE_ result = m_processor.SetVariables(variables); result != EONX_ERR_NONE) {
    record.code = result;
    Tell(record, ResultText(result));
  } else {
    OutputWatch watch(m_arguments.failTexts, m_reports, begun);
    m_channel.Rejoin();
    m_desk.BeginRun(
        [this] {
          m_channel.CutOff();
          m_processor.Stop();
        },
        [&](const AnsweredQuestion& answered) { Note(answered, begun); });
    const End end = Execute(record.script, watch);
    record.took = Since(begun, Clock::now());
    record.code = Conclude(record, end);
    if (record.code == 0 && (!watch.Failure().empty() || HasBadResult())) {
      record.code = kExitPartFailed;
      Tell(record,
           "the part failed: " + (watch.Failure().empty() ? m_arguments.result + " is not 0" : watch.Failure()));
    }
  }
  record.verdict = VerdictOf(record.code);
  m_reports.EndScript();
}

void RunSession::Note(const AnsweredQuestion& answered, Clock::time_point begun) {
  const Microseconds took = Since(answered.asked, answered.answered);
  m_reports.Add(TimedAnswer{Since(begun, answered.asked), took, answered});
  m_records.Write(QuestionEvent(answered, m_records.Clock()));
}

void RunSession::PrintOutput(void* context, const char* text) {
  auto& target = *static_cast<OutputContext*>(context);
  const std::string_view piece = text;
  target.aborted = piece.starts_with("Processing aborted");
  try {
    target.line.Write(piece);
    target.watch.Add(piece);
  } catch (const std::bad_alloc&) {
    target.output.GiveUp();
  }
  if (target.output.Failed())
    target.processor.Stop(); // nobody could see what the script does
}

RunSession::End RunSession::Execute(const std::string& script, OutputWatch& watch) {
  OutputContext context{m_output, m_line, watch, m_processor};
  const Deadline deadline(m_arguments.timeout, [this] {
    m_processor.Stop();
    m_processor.DismissQuestion();
  });
  m_processor.Prepare();
  const Interrupt interrupt([this](const InterruptCause& cause) { m_processor.StopFor(cause); });
  const bool isFile = !m_arguments.text && script != "-";
  const EONX_ERR_ERRCODE_ result = !isFile ? m_processor.Execute(*m_input, PrintOutput, &context)
                                           : m_processor.ExecuteFile(ScriptPath(script), PrintOutput, &context);
  m_line.Flush();
  m_output.Show(); // may wait for its reader
  watch.Finish();
  return {result, interrupt.Interrupted(), deadline.HasPassed(), result == EONX_ERR_SCRIPT && context.aborted};
}

// Prints and tells what there is behind a script's own output. Returns what a call with this script alone exits with,
// the verdict about the part aside.
int RunSession::Conclude(ScriptRecord& record, const End& end) {
  const bool stoppedForOutput = m_output.Failed();
  ReadValues(record);
  if (!stoppedForOutput)
    TellEnd(record, end);
  m_over = end.interrupted != nullptr;
  if (const int code = ExitCodeOf(m_program, m_output); code != 0) {
    m_over = true;
    record.reason = "standard output cannot be written";
    return code;
  }
  if (m_desk.Failed() == AnswerDesk::Failure::kAnswersDoNotFit)
    return kExitAnswers;
  if (m_desk.Failed() == AnswerDesk::Failure::kNobodyThere)
    return EONX_ERR_SCRIPT;
  if (end.timedOut && !end.interrupted)
    return kExitTimeout;
  return ConcludeChannel(record, end);
}

void RunSession::ReadValues(ScriptRecord& record) {
  const bool prints = m_arguments.getFile.empty();
  if (prints && !m_arguments.gets.empty() && !m_output.AtLineStart())
    m_output.Write("\n"); // so that every value has a line of its own
  for (const std::string& name : m_arguments.gets) {
    std::vector<TONXSCRIPTVARIABLE> records{RecordToGet(name)};
    if (m_processor.GetVariables(records) == 0)
      continue;
    record.values.push_back(ValueOf(name, records.front()));
    if (prints)
      m_output.Write(name + "=" + FormatValue(records.front()) + "\n");
  }
}

bool RunSession::HasBadResult() {
  if (m_arguments.result.empty())
    return false;
  std::vector<TONXSCRIPTVARIABLE> records{RecordToGet(m_arguments.result)};
  return m_processor.GetVariables(records) == 0 || FormatValue(records.front()) != "0";
}

void RunSession::TellEnd(ScriptRecord& record, const End& end) {
  std::string text = ResultText(end.result);
  const std::string failure = m_processor.TakeFailure();
  const bool failedByItself = m_desk.Failed() == AnswerDesk::Failure::kNone && !end.interrupted && !end.timedOut;
  if (end.result == EONX_ERR_SCRIPT && failedByItself && !end.stopped)
    PrintLines(failure);
  if (m_desk.Failed() != AnswerDesk::Failure::kNone)
    text = "stopped: " + m_desk.FailureText();
  else if (end.interrupted && end.result == EONX_ERR_SCRIPT)
    text = std::string("stopped by ") + end.interrupted;
  else if (end.timedOut)
    text = "stopped, because it took longer than --timeout allows";
  else if (end.stopped)
    text = "stopped, because the channel has ended";
  else if (end.interrupted && end.result == EONX_ERR_NONE)
    text = std::string("not stopped by ") + end.interrupted + ": the script went on to its end";
  if (!text.empty())
    Tell(record, text);
}

// Tells what is wrong with the channel after a run.
int RunSession::ConcludeChannel(ScriptRecord& record, const End& end) {
  // A script that its user stopped does not wait for its device.
  if (end.interrupted && end.result != EONX_ERR_NONE)
    return end.result;
  const std::string& name = m_arguments.channel.text;
  const auto reasonOf = [this](std::int32_t code) { return m_channel.GetInfoString(OND_INFO_ERROR, code); };
  const std::int32_t unsent = m_channel.WaitUntilSent();
  std::string text;
  if (unsent != 0)
    text = name + ": not everything was sent: " + reasonOf(unsent);
  else if (m_channelEnded)
    text = name + ": " + reasonOf(kNotOpen);
  else if (const std::int32_t undone = m_isLast ? m_channel.Finish() : 0; undone != 0)
    text = name + ": " + reasonOf(undone);
  if (text.empty())
    return end.result;
  PrintMessage(m_program, text);
  record.reason += (record.reason.empty() ? "" : "; ") + text;
  m_over = true;
  const bool failedByItself = end.result != EONX_ERR_NONE && !end.stopped;
  return failedByItself ? static_cast<int>(end.result) : static_cast<int>(kExitNoChannel);
}

void RunSession::Tell(ScriptRecord& record, const std::string& text) {
  PrintMessage(m_program, record.script.empty() ? text : record.script + ": " + text);
  record.reason = text;
}

} // namespace host
