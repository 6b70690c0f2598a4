// The scripts of one call of `run`, on one channel.
#pragma once

#include "host/channel/ClosableChannel.h"
#include "host/commandline/RunCommand.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TransferLine.h"
#include "host/report/OutputWatch.h"
#include "host/trace/TraceFork.h"

#include <optional>

namespace host {

class RunSession {
public:
  // All must outlive this. `input` is the script that is no file; `records` are the channel's, the questions go to
  // their sinks too.
  RunSession(std::string_view program, const RunArguments& arguments, const std::optional<std::string>& input,
             ScriptProcessor& processor, std::unique_ptr<Channel> channel, TraceFork& records, RunReports& reports);
  ~RunSession();
  RunSession(const RunSession&) = delete;
  RunSession& operator=(const RunSession&) = delete;

  // Runs one script after the other, until something concerns those behind it too.
  void RunInto(std::vector<ScriptRecord>& scripts);

private:
  // How a script ended.
  struct End {
    EONX_ERR_ERRCODE_ result = EONX_ERR_NONE;
    const char* interrupted = nullptr; // by what; null: by nothing
    bool timedOut = false;
    bool stopped = false; // by whatever asked for it; otherwise a script that failed did so by itself
  };
  struct OutputContext;

  static void PrintOutput(void* context, const char* text);
  void Run(ScriptRecord& record);
  End Execute(const std::string& script, OutputWatch& watch);
  void Note(const AnsweredQuestion& answered, OutputWatch::Clock::time_point begun);
  int Conclude(ScriptRecord& record, const End& end);
  int ConcludeChannel(ScriptRecord& record, const End& end);
  void ReadValues(ScriptRecord& record);
  bool HasBadResult();
  void TellEnd(ScriptRecord& record, const End& end);
  // On standard error, and as a reason in the record.
  void Tell(ScriptRecord& record, const std::string& text);

  const std::string_view m_program;
  const RunArguments& m_arguments;
  const std::optional<std::string>& m_input;
  ScriptProcessor& m_processor;
  TraceFork& m_records;
  RunReports& m_reports;
  StandardOutput m_output;
  TransferLine m_line;
  AnswerDesk m_desk;
  bool m_channelEnded = false; // and a script went on using it
  bool m_over = false;         // no further script
  bool m_isLast = false;       // the script that runs
  ClosableChannel m_channel;
};

} // namespace host
