#include "host/commandline/CommandTable.h"

#include "host/channel/factory/ChannelFactory.h"
#include "host/commandline/Variables.h"
#include "host/report/Reports.h"

#include <vector>

namespace host {
namespace {

constexpr std::string_view kShowDescription = "Prints a trace of a run as text, and what it amounts to";
constexpr std::string_view kExportDescription = "Writes a trace as a capture file (pcapng), for network analysers";
constexpr std::string_view kPortsDescription = "Prints the serial ports of this machine, as --channel takes them";
constexpr std::string_view kPortsCodes = "Exits with 0, or with 4 when there is none.";
constexpr std::string_view kTraceCodes =
    "Exits with 0, or with 5 when the trace cannot be read or is none, or the result cannot be written.";

constexpr std::string_view kRunCodes =
    "A run exits with its result: 0 success, 10 the part failed, 11 stopped by --timeout, 12 --answers does not fit,\n"
    "21 the script failed or was stopped; 2 is a wrong call. Of several scripts, the first code counts that says that\n"
    "something was not tested, then 10.";

constexpr std::string_view kSendNotes =
    "A TEXT has the escapes of the script language (\\r, \\n, \\(x1B)); -- stands in front of one that begins with -.\n"
    "Exits with 0, or with 11 when the text of --wait did not come in time, 4 when the channel cannot be opened or "
    "ends,\n"
    "5 when standard output fails, 20 when another client holds the channel, 21 when it was stopped; 2 is a wrong "
    "call.";

constexpr std::string_view kTermNotes =
    "A typed line has the escapes of the script language and ends with CR. ~help lists commands; Ctrl+D ends.\n"
    "Exits with 0; from a file or a pipe with 4 when the channel ends first. 2 is a wrong call.";

constexpr CommandRow kCommands[] = {
    {"ondscript", Command::kHelp, "", "Runs and checks device scripts.",
     "  ondscript sweep.dcs\n"
     "  ondscript run sweep.dcs --channel tcp:192.168.1.20:4000\n"
     "  ondscript check *.dcs\n",
     "`ondscript FILE` is `ondscript run FILE`, so that a script may begin with #!/usr/bin/env ondscript.\n"
     "`ondscript COMMAND --help` tells about a command."},
    {"ondscript", Command::kRun, "run", "Runs scripts and prints their output",
     "  ondscript run sweep.dcs\n"
     "  ondscript -e 'print(1 + 1, \"\\n\");'\n"
     "  echo 'print(\"hello\\n\");' | ondscript run -\n"
     "  ondscript run flash.dcs --device-dir /tmp/device --set unit:string=A17\n"
     "  ondscript run count.dcs --set rounds:dword=5 --set total:int64=0 --get total\n"
     "  ondscript run sweep.dcs --channel tcp:192.168.1.20:4000\n"
     "  ondscript run sweep.dcs --channel serial:/dev/ttyUSB0:115200:8N1\n"
     "  ondscript run flash.dcs --fault TransmitFile:2=6\n"
     "  ondscript run power.dcs radio.dcs --answers bench.txt --timeout 60 --report html=A17.html\n",
     kRunCodes},
    {"ondscript", Command::kPrompt, "prompt", "Runs lines as they are typed, to try things on a device",
     "  ondscript\n"
     "  ondscript --channel serial:/dev/ttyUSB0:115200:8N1\n"
     "  echo 'receivestring()' | ondscript prompt --channel tcp:192.168.1.20:4000\n",
     "`ondscript` without a script or command does the same at a terminal."},
    {"ondscript", Command::kCheck, "check",
     "Prints the problems of scripts as FILE:LINE:COLUMN: error: TEXT, with the line",
     "  ondscript check *.dcs\n"
     "  ondscript check test.dcs --set unit:string= --set limit:dword=0\n"
     "  generate | ondscript check -\n",
     "A check exits with 0 when it finds nothing, with 1 when it finds a problem, with 5 when a file cannot be read."},
    {"ondscript", Command::kSend, "send", "Sends a text to the device and prints its answer",
     "  ondscript send \"ver\\r\"\n"
     "  ondscript send \"adc 1\\r\" --channel serial:/dev/ttyUSB0:115200 --wait \"\\r\\n\" --timeout 2\n"
     "  ondscript send \"\\(x1B)[c\" --hex\n",
     kSendNotes},
    {"ondscript", Command::kTerm, "term", "A terminal: sends the lines that are typed, shows what the device says",
     "  ondscript term --channel serial:/dev/ttyUSB0:115200\n"
     "  ondscript term --channel tcp:192.168.1.20:4000 --end lf --stamps --log bench.log\n"
     "  ondscript term <commands.txt\n",
     kTermNotes},
    {"ondscript", Command::kPorts, "ports", kPortsDescription, "  ondscript ports\n", kPortsCodes},
    {"ondscript", Command::kTraceShow, "trace show", kShowDescription,
     "  ondscript trace show bench.jsonl\n"
     "  ondscript trace show bench.jsonl --only sent --only received --times last\n",
     kTraceCodes},
    {"ondscript", Command::kTraceExport, "trace export", kExportDescription,
     "  ondscript trace export bench.jsonl bench.pcapng\n", kTraceCodes},
    {"ondscript", Command::kCompletion, "completion", "Prints what completes this program's command line in a shell",
     "  . <(ondscript completion bash)\n"
     "  ondscript completion fish > ~/.config/fish/completions/ondscript.fish\n",
     ""},
    {"ondscript", Command::kManual, "manual", "Prints the manual page", "  ondscript manual | man -l -\n", ""},
    {"ondhost", Command::kWindows, "",
     "Works with a device through OndDeviceClient.dll: with windows, or from a script.",
     "  ondhost\n"
     "  ondhost --device-dir C:\\bench\\device\n"
     "  ondhost --channel serial:COM3:115200:8N1\n"
     "  ondhost sweep.dcs --log C:\\bench\\log.txt\n"
     "  ondhost run sweep.dcs\n",
     "Without a command, the windows open, on the channel that the options describe.\n"
     "`ondhost COMMAND --help` tells about a command."},
    {"ondhost", Command::kRun, "run", "Runs scripts and prints their output",
     "  ondhost run sweep.dcs\n"
     "  ondhost run flash.dcs --device-dir C:\\bench\\device --set unit:string=A17\n"
     "  ondhost run count.dcs --set rounds:dword=5 --set total:int64=0 --get total\n"
     "  ondhost run sweep.dcs --channel tcp:192.168.1.20:4000\n"
     "  ondhost run sweep.dcs --channel serial:COM3:115200:8N1\n"
     "  ondhost run flash.dcs --fault TransmitFile:2=6\n"
     "  ondhost run power.dcs radio.dcs --answers bench.txt --timeout 60 --report html=A17.html\n",
     kRunCodes},
    {"ondhost", Command::kPorts, "ports", kPortsDescription, "  ondhost ports\n", kPortsCodes},
    {"ondhost", Command::kTraceShow, "trace show", kShowDescription,
     "  ondhost trace show bench.jsonl\n"
     "  ondhost trace show bench.jsonl --only sent --only received --times last\n",
     kTraceCodes},
    {"ondhost", Command::kTraceExport, "trace export", kExportDescription,
     "  ondhost trace export bench.jsonl bench.pcapng\n", kTraceCodes},
    {"ondhost", Command::kList, "list", "Prints the kinds of object that the module makes", "  ondhost list\n", ""},
};

constexpr unsigned operator|(Command a, Command b) {
  return static_cast<unsigned>(a) | static_cast<unsigned>(b);
}

constexpr unsigned operator|(unsigned a, Command b) {
  return a | static_cast<unsigned>(b);
}

std::vector<OptionRow> MakeOptions() {
  constexpr unsigned kRun = static_cast<unsigned>(Command::kRun);
  constexpr unsigned kCheck = static_cast<unsigned>(Command::kCheck);
  constexpr unsigned kWindows = static_cast<unsigned>(Command::kWindows);
  constexpr unsigned kShow = static_cast<unsigned>(Command::kTraceShow);
  constexpr unsigned kSend = static_cast<unsigned>(Command::kSend);
  constexpr unsigned kTerm = static_cast<unsigned>(Command::kTerm);
  constexpr unsigned kTalk = kSend | kTerm;
  constexpr unsigned kWithChannel =
      Command::kWindows | Command::kRun | Command::kPrompt | Command::kSend | Command::kTerm;
  return {
      {kRun, "FILE", "", "the scripts, run one after the other; - reads one from standard input",
       Occurrence::kRepeated},
      {kRun, "-e", "TEXT", "run this text instead of a file; several are its lines", Occurrence::kRepeated},
      {kSend, "TEXT", "", "what is sent, one text behind the other", Occurrence::kNeededRepeated},
      {kCheck, "FILE", "", "the scripts; - reads standard input", Occurrence::kNeededRepeated},
      {kWindows, "FILE", "", "a script to run in the windows"},
      {kWithChannel, "--channel", "CHANNEL", "the device (otherwise sim): " + ChannelFormsWithOptions()},
      {kWithChannel, "--device-dir", "FOLDER", "where the simulated device keeps its files"},
      {kWithChannel, "--block-time", "MS",
       "milliseconds that the simulated device takes for each block of 512 bytes of a transfer"},
      {kWithChannel, "--fault", "OPERATION[:N]=CODE",
       "the N-th call (without N: every call) of a channel operation answers CODE", Occurrence::kRepeated},
      {kWithChannel, "--trace", "FILE", "write each call of the channel to this file; an older trace is replaced"},
      {kWindows, "--log", "FILE", "write what happens at the windows behind what is in this file"},
      {kWindows, "--settings", "FILE",
       "remember windows, channels and scripts in this file; none: nowhere (otherwise in %APPDATA%\\OndHost)"},
      {Command::kRun | Command::kCheck | Command::kPrompt, "--set", "NAME:TYPE=VALUE",
       "a variable for the script (" + VariableTypes() + ")", Occurrence::kRepeated},
      {Command::kTraceShow | Command::kTraceExport, "FILE", "", "the trace, as --trace of run has written it",
       Occurrence::kNeeded},
      {static_cast<unsigned>(Command::kTraceExport), "OUT", "", "the capture; an older one is replaced",
       Occurrence::kNeeded},
      {kShow, "--only", "WHAT", "print only sent, received, events, or an operation as Transmit",
       Occurrence::kRepeated},
      {kShow, "--times", "WHICH",
       "time stamps: absolute (UTC), start (since the start, the default) or last (since the "
       "line before)",
       Occurrence::kOnce, "absolute start last"},
      {static_cast<unsigned>(Command::kCompletion), "SHELL", "", "bash, zsh or fish", Occurrence::kNeeded,
       "bash zsh fish"},
      {kShow, "--gap", "MS", "milliseconds of silence that end a block of bytes (otherwise 20)"},
      {kSend, "--wait", "TEXT", "print the answer until this text, with escapes too, has come"},
      {kSend, "--timeout", "SECONDS", "wait no longer than this (with --wait otherwise 5)"},
      {kSend, "--silence", "SECONDS",
       "without --wait, the answer is over when nothing came for so long (otherwise 0.5)"},
      {kTerm, "--end", "END", "what follows a typed line: cr (otherwise), lf, crlf or none", Occurrence::kOnce,
       "cr lf crlf none"},
      {kTerm, "--stamps", "", "show the time in front of each line"},
      {kTalk, "--hex", "", "show bytes"},
      {kTalk, "--raw", "", "on a terminal, do not replace control characters"},
      {kTerm, "--log", "FILE", "write what is sent and received to this file too, behind what is there"},
      {kTerm, "--no-history", "", "forget the typed lines at the end"},
      {kTerm, "--silence", "SECONDS",
       "when the input has ended, wait for answers until nothing came for so long "
       "(otherwise 0.5)"},
      {kRun, "--keep-going", "", "do not stop the script when it uses a channel that is closed for good"},
      {kRun, "--get", "NAME", "print this variable of --set after the run", Occurrence::kRepeated},
      {kRun, "--get-file", "FILE", "write the variables of --get (without one: all of --set) there as JSON instead"},
      {kRun, "--fail-on", "TEXT", "the part has failed when a printed line contains TEXT", Occurrence::kRepeated},
      {kRun, "--result", "NAME", "the part has failed when this variable of --set is not 0 after the run"},
      {kRun, "--timeout", "SECONDS", "stop a script that takes longer"},
      {kRun, "--answers", "FILE", "answer the script's questions from FILE, whose lines are CAPTION = ANSWER"},
      {kRun, "--report", "FORMAT=FILE", "write a report (" + ReportFormatNames() + ")", Occurrence::kRepeated},
  };
}

} // namespace

std::span<const CommandRow> Commands() {
  return kCommands;
}

std::span<const OptionRow> Options() {
  static const std::vector<OptionRow> options = MakeOptions();
  return options;
}

} // namespace host
