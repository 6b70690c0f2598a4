// Everything that a host may end, at every moment at which control leaves the module.
//
// A course is something that a user or a host does from beginning to end. It is run again and again: the first time the
// deed is done where control leaves the module first (an operation of the channel, an output function, a box), then
// where it leaves second, until a run comes to its end before that. Whatever is done there, nothing may crash, hang,
// use the channel behind the end, or keep it locked.
#include "res/resource.h"
#include "tests/windows/EndingRun.h"
#include "tests/windows/support/PoisonedHeap.h"

namespace {

struct Course {
  std::string name;
  std::uint32_t type;
  unsigned deeds;
  std::function<void(EndingRun&)> prepare, act;
  bool below = false; // see EndingRun::DoWith
};

void Open(EndingRun& run) {
  run.Connect();
  run.Show();
}

// Presses a button of the object's window.
std::function<void(EndingRun&)> Press(int id) {
  return [id](EndingRun& run) { run.SendToWindow(WM_COMMAND, static_cast<WPARAM>(id)); };
}

void Tick(EndingRun& run) {
  run.SendToWindow(WM_TIMER, 1);
}

// Everything at which a script leaves the module.
const char* const kScript = R"(
  print("begin\n");
  var string s; var dword d; var int32 i;
  transmitstring("x"); s = receivestring();
  d = transmitfile("a.bin", 1, 2, 0, 1); d = transmitfilefromstring("x", 1, 2, 0);
  d = executejobfile("test.dcj");
  messagebox("Question", "m"); transmitstring("y");
  d = userinputdword("Question", "P", 1); i = userlistinput("Question", "P", "a", 0);
  s = userinputstring("Question", "P", "a"); transmitstring("z");
  print("end\n"); exit(1);)"; // which opens a box

void CallHere(EndingRun& run) {
  run.CallScriptFile("test.dcs");
}

void CallOnAThread(EndingRun& run) {
  std::atomic<bool> done = false;
  std::thread thread([&] {
    run.CallScriptFile("test.dcs");
    done = true;
  });
  EndingRun::PumpWhile([&] { return !done; });
  thread.join();
}

void RunInWindow(EndingRun& run) {
  Press(IDC_SCRIPT_EXECUTE)(run);
  EndingRun::PumpWhile([&] {
    const HWND button = run.Control(IDC_SCRIPT_EXECUTE);
    return button && Window(button).Text() == "Stop script";
  });
}

const std::vector<Course>& Courses() {
  const auto withFiles = [](EndingRun& run) {
    Open(run);
    run.AddLocalFile();
    run.AddLocalFile();
    run.SelectAll(IDC_FM_LOCAL_LIST);
    run.SelectAll(IDC_FM_DEVICE_LIST);
  };
  const auto failing = [=](const char* operation) {
    return [=](EndingRun& run) {
      withFiles(run);
      run.device.Fail(operation, {5});
    };
  };
  const auto typed = [](EndingRun& run) {
    Open(run);
    SetDlgItemTextA(run.FindWindow(), IDC_TERMINAL_INPUT, "ver");
    SetFocus(run.Control(IDC_TERMINAL_INPUT));
  };
  const auto chosen = [](EndingRun& run) {
    Open(run);
    Press(IDC_SCRIPT_BROWSE)(run);
  };
  const auto edit = [](EndingRun& run) { SendMessageA(run.Control(IDC_FM_LOCAL_LIST), WM_KEYDOWN, VK_SPACE, 0); };
  const auto connect = [](EndingRun& run) { run.Connect(); };
  const auto show = [](EndingRun& run) { run.Show(); };
  // The rest is tried where a worker or a script is under way.
  constexpr unsigned kMost =
      kDelete | kDestroyWindow | kDisconnect | kConnectOther | kDestroyAndShow | kDestroyThenDelete;
  static const std::vector<Course> courses = {
      {"Terminal: connect", ONX_OBJ_TERMINAL, kMost, show, connect},
      {"Terminal: show", ONX_OBJ_TERMINAL, kMost, connect, show},
      {"Terminal: send, failing", ONX_OBJ_TERMINAL, kMost,
       [=](EndingRun& run) {
         typed(run);
         run.device.Fail("Transmit", {5});
       },
       Press(IDOK)},
      {"Terminal: poll", ONX_OBJ_TERMINAL, kAnything,
       [=](EndingRun& run) {
         typed(run);
         Press(IDOK)(run);
       },
       Tick},
      {"File Manager: connect", ONX_OBJ_FILE_MANAGER, kMost, show, connect},
      {"File Manager: show", ONX_OBJ_FILE_MANAGER, kMost, connect, show},
      {"File Manager: close", ONX_OBJ_FILE_MANAGER, kAnything,
       [](EndingRun& run) {
         Open(run);
         run.HearOfEvents();
       },
       Press(IDOK)},
      {"File Manager: refresh, failing", ONX_OBJ_FILE_MANAGER, kMost, failing("ReadDirectory"), Press(IDC_FM_REFRESH)},
      {"File Manager: delete, failing", ONX_OBJ_FILE_MANAGER, kMost, failing("Delete"), Press(IDC_FM_DELETE_FILES)},
      {"File Manager: format, failing", ONX_OBJ_FILE_MANAGER, kMost, failing("Format"), Press(IDC_FM_FORMAT)},
      {"File Manager: copy, failing", ONX_OBJ_FILE_MANAGER, kAnything | kAbort, failing("TransmitFile"),
       Press(IDC_FM_COPY_ALL)},
      {"File Manager: file dialog", ONX_OBJ_FILE_MANAGER, kAnything, Open, Press(IDC_FM_ADD_FILES)},
      {"File Manager: properties", ONX_OBJ_FILE_MANAGER, kAnything, withFiles, edit},
      {"Script Processor: Call here", ONX_OBJ_SCRIPT_PROCESSOR, kAnything, Open, CallHere, true},
      {"Script Processor: Call on a thread", ONX_OBJ_SCRIPT_PROCESSOR, kAnything, Open, CallOnAThread},
      {"Script Processor: window", ONX_OBJ_SCRIPT_PROCESSOR, kDelete | kDestroyWindow | kHide | kDisconnect | kAbort,
       chosen, RunInWindow},
  };
  return courses;
}

} // namespace

TEST_CASE("whatever is done wherever control leaves the module") {
  const TestHost host;
  PoisonFreedMemory(host.Module());
  const TemporaryFolder folder;
  folder.Write("test.dcs", kScript);
  folder.Write("test.dcj", "a.bin\t1\t2\tnormal\nb.bin\t1\t2\tnormal\n");
  for (const Course& course : Courses()) {
    for (unsigned deed = 1; deed <= kAbort; deed <<= 1) {
      if ((course.deeds & deed) == 0)
        continue;
      int turn = 0;
      for (bool reached = true; reached; ++turn) {
        EndingRun run(host, course.type, folder);
        run.Do(course.prepare);
        run.DoWith(deed, turn, course.below, course.act);
        reached = !run.Place().empty();
        const std::string complaints = run.End();
        CHECK_MESSAGE(complaints.empty(),
                      course.name << ": " << NameOf(deed) << " at " << run.Place() << ": " << complaints);
      }
      CHECK_MESSAGE(turn > 1, course.name << ": control never leaves");
    }
  }
}
