#include "tests/windows/support/StepRunner.h"

#include "res/resource.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <sstream>

namespace {

constexpr int kLimitMs = 20000;

const std::map<std::string, int> kControls = {{"configuration", IDC_FM_CONFIGURATION},
                                              {"local list", IDC_FM_LOCAL_LIST},
                                              {"device list", IDC_FM_DEVICE_LIST},
                                              {"summary", IDC_FM_SUMMARY},
                                              {"filename", IDC_PROPERTIES_FILENAME},
                                              {"file id", IDC_PROPERTIES_FILE_ID},
                                              {"file type", IDC_PROPERTIES_FILE_TYPE},
                                              {"mode", IDC_PROPERTIES_FILE_MODE},
                                              {"note", IDC_PROPERTIES_NOTE},
                                              {"log", IDC_SCRIPT_LOG},
                                              {"path", IDC_SCRIPT_PATH},
                                              {"status", IDC_SCRIPT_CONFIGURATION},
                                              {"prompt", IDC_INPUT_PROMPT},
                                              {"value", IDC_INPUT_VALUE},
                                              {"list prompt", IDC_LIST_PROMPT},
                                              {"items", IDC_LIST_ITEMS},
                                              {"input", IDC_TERMINAL_INPUT},
                                              {"answers", IDC_TERMINAL_ANSWERS},
                                              {"terminal status", IDC_TERMINAL_STATUS},
                                              {"terminal configuration", IDC_TERMINAL_CONFIGURATION}};
const std::map<std::string, WORD> kKeys = {{"RETURN", VK_RETURN}, {"ESCAPE", VK_ESCAPE}, {"TAB", VK_TAB},
                                           {"DELETE", VK_DELETE}, {"SPACE", VK_SPACE},   {"UP", VK_UP},
                                           {"DOWN", VK_DOWN},     {"HOME", VK_HOME},     {"PAGEDOWN", VK_NEXT}};

Words SplitAtBlanks(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

template <typename Number>
std::deque<Number> Numbers(const std::string& text) {
  std::deque<Number> numbers;
  for (const std::string& word : SplitAtBlanks(text))
    numbers.push_back(static_cast<Number>(std::stoll(word)));
  return numbers;
}

std::string ButtonText(HWND button) {
  std::string text = Window(button).Text();
  std::erase(text, '&');
  return text;
}

LONG TypeOf(const Window& button) {
  return GetWindowLongA(button.Handle(), GWL_STYLE) & BS_TYPEMASK;
}

bool IsButton(HWND control) {
  char kind[16] = "";
  GetClassNameA(control, kind, sizeof(kind));
  return std::string(kind) == "Button" && TypeOf(Window(control)) != BS_GROUPBOX;
}

std::vector<HWND> ButtonsOf(const Window& window) {
  std::vector<HWND> buttons;
  for (HWND child = GetWindow(window.Handle(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsButton(child))
      buttons.push_back(child);
  }
  return buttons;
}

std::string EnabledButtons(const Window& window) {
  Words enabled;
  for (const HWND button : ButtonsOf(window)) {
    if (IsWindowEnabled(button))
      enabled.push_back(ButtonText(button));
  }
  return Joined(enabled);
}

} // namespace

StepRunner::StepRunner(std::uint32_t type, const char* caption) : m_caption(caption), m_client(m_host, type) {
  m_other.directory = {{9, 9, 9}};
  m_client.Connect(&m_device);
  Show();
  for (Verbs verbs : {ControlVerbs(), KeyboardVerbs(), WindowVerbs(), DeviceVerbs(), FileVerbs()})
    m_verbs.merge(verbs);
}

void StepRunner::Do(const std::string& line) {
  CAPTURE(line);
  const std::size_t colon = std::min(line.find(':'), line.size());
  Words words = WordsOf(line.substr(std::min(colon + 1, line.size())));
  for (std::string& word : words) {
    for (std::size_t at = word.find('@'); at != std::string::npos; at = word.find('@', at + 1))
      word.replace(at, 1, m_folder.Path());
  }
  const auto verb = m_verbs.find(line.substr(0, colon));
  REQUIRE_MESSAGE(verb != m_verbs.end(), "there is no such verb");
  verb->second(words);
  m_host.Settle();
  m_host.Settle(); // a press is a chain of posted messages
}

// --- what is done at windows, and what they show

StepRunner::Verbs StepRunner::ControlVerbs() {
  return {
      {"press", [this](const Words& words) { Press(Control(words.at(0))); }},
      // What a program sends; the button may be disabled. To the object's window, or to the current one, whose answer
      // is waited for.
      {"command", [this](const Words& words) { PostMessageA(m_own.Handle(), WM_COMMAND, IdOf(words.at(0)), 0); }},
      {"send", [this](const Words& words) { m_window.Send(WM_COMMAND, IdOf(words.at(0))); }},
      {"set", [this](const Words& words) { Control(words.at(0)).SetText(words.at(1)); }},
      {"select item", [this](const Words& words) { Control(words.at(0)).Select(std::stoi(words.at(1))); }},
      {"file mode", [this](const Words& words) { ChooseMode(std::stoi(words.at(0))); }}, // position in the sorted list
      {"offers", [this](const Words& words) { Control(words.at(0)); }},
      {"enabled", [this](const Words& words) { Expect(Joined(words), [this] { return EnabledButtons(m_window); }); }},
      {"text", [this](const Words& words) { Expect(words.at(1), [&] { return Control(words.at(0)).Text(); }); }},
      {"items",
       [this](const Words& words) {
         ExpectItems(words.at(0), {words.begin() + 1, words.end()});
       }},
      {"selected", [this](const Words& words) { ExpectSelected(words.at(0), words.at(1)); }},
      {"can be changed",
       [this](const Words& words) { ExpectThat(words.at(1), [&] { return Control(words.at(0)).Enabled(); }); }},
      {"checked",
       [this](const Words& words) { ExpectThat(words.at(1), [&] { return Control(words.at(0)).Checked(); }); }},
      {"scrolled", [this](const Words& words) { ExpectScrolled(words.at(0)); }},
      {"default", [this](const Words& words) { CHECK(TypeOf(Control(words.at(0))) == BS_DEFPUSHBUTTON); }},
  };
}

StepRunner::Verbs StepRunner::KeyboardVerbs() {
  return {
      {"focus", [this](const Words& words) { Control(words.at(0)).Focus(); }},
      {"focus by hand", [this](const Words& words) { m_host.Do([&] { SetFocus(Control(words.at(0)).Handle()); }); }},
      {"focus file name", [this](const Words&) { m_window.FileNameField().Focus(); }},
      {"focused", [this](const Words& words) { Control(words.at(0)).WaitForFocus(); }},
      {"keys", [this](const Words& words) { TypeKeys(words.at(0)); }},
      {"key down", [this](const Words& words) { Control(words.at(0)).Send(WM_KEYDOWN, kKeys.at(words.at(1))); }},
      {"type",
       [this](const Words& words) {
         m_window.Activate();
         TypeText(words.at(0));
       }},
      {"send line", [this](const Words& words) { SendLine(words.at(0)); }},
      {"clipboard",
       [](const Words& words) { WaitFor("the clipboard", [&] { return ClipboardBytes() == words.at(0); }); }},
  };
}

StepRunner::Verbs StepRunner::WindowVerbs() {
  return {
      {"box", [this](const Words& words) { WaitForBox(words.at(0)); }},
      {"says", [this](const Words& words) { Expect(words.at(0), [this] { return m_window.BoxText(); }); }},
      {"no box", [this](const Words& words) { CHECK_FALSE(Window::FindTop(words.at(0)).Exists()); }},
      {"answer", [this](const Words& words) { EndBox([&] { Control(words.at(0)).Press(); }); }},
      {"answer by", [this](const Words& words) { EndBox([&] { TypeKeys(words.at(0)); }); }},
      {"close box", [this](const Words&) { EndBox([&] { m_window.PressCloseBox(); }); }},
      {"destroy box", [this](const Words&) { EndBox([&] { m_host.Do([&] { DestroyWindow(m_window.Handle()); }); }); }},
      {"choose", [this](const Words& words) { Choose(words.at(0), words.at(1)); }},
      {"name", [this](const Words& words) { m_window.TypeFileName(words.at(0)); }}, // in a file dialog, which stays
      {"shown", [this](const Words& words) { ExpectThat(words.at(0), [this] { return m_own.Visible(); }); }},
      {"smallest", [this](const Words&) { m_own.Resize(0, 0); }},
      {"shot", [this](const Words& words) { shoot(m_window, words.at(0)); }},
      {"show", [this](const Words&) { Show(); }},
      {"hide", [this](const Words&) { m_host.Do([this] { m_client->CloseDialogNonModal(); }); }},
      {"delete", [this](const Words&) { m_client.Delete(); }},
  };
}

void StepRunner::Show() {
  m_own = m_window = m_client.Show(m_caption);
}

void StepRunner::WaitForBox(const std::string& caption) {
  m_window = Window::WaitForTop(caption);
}

void StepRunner::EndBox(const std::function<void()>& act) {
  const Window box = m_window;
  act();
  box.WaitUntilGone("the box");
  m_window = m_own;
}

void StepRunner::Choose(const std::string& caption, const std::string& path) {
  WaitForBox(caption);
  EndBox([&] { m_window.TypeFileName(path); });
}

void StepRunner::Press(const Window& button) const {
  WaitFor("the button to be enabled", [&] { return button.Enabled(); });
  button.Press();
}

void StepRunner::ChooseMode(int position) const {
  const Window mode = Control("mode");
  mode.Send(CB_SETCURSEL, static_cast<WPARAM>(position));
  m_window.Send(WM_COMMAND, MAKEWPARAM(IDC_PROPERTIES_FILE_MODE, CBN_SELCHANGE),
                reinterpret_cast<LPARAM>(mode.Handle()));
}

void StepRunner::TypeKeys(const std::string& names) const {
  m_window.Activate();
  for (const std::string& name : SplitAtBlanks(names))
    TypeKey(kKeys.at(name));
}

// By Enter in the Terminal's input line.
void StepRunner::SendLine(const std::string& line) const {
  Control("input").Focus();
  Control("input").SetText(line);
  Control("terminal status").SetText("");
  TypeKey(VK_RETURN);
  WaitFor("the status line to tell", [this] { return !Control("terminal status").Text().empty(); });
}

WPARAM StepRunner::IdOf(const std::string& name) const {
  return static_cast<WPARAM>(GetDlgCtrlID(Control(name).Handle()));
}

Window StepRunner::Control(const std::string& name) const {
  if (const auto control = kControls.find(name); control != kControls.end())
    return (GetDlgItem(m_window.Handle(), control->second) ? m_window : m_own).Control(control->second);
  Window found;
  WaitFor("the button \"" + name + "\"", [&] {
    for (const Window& window : {m_own, m_window}) {
      for (const HWND button : ButtonsOf(window)) {
        if (ButtonText(button) == name)
          found = Window(button);
      }
    }
    return found.Exists();
  });
  return found;
}

void StepRunner::Expect(const std::string& wanted, const std::function<std::string()>& seen) const {
  m_host.Settle();
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLimitMs);
  std::string last = seen();
  for (; last != wanted && std::chrono::steady_clock::now() < end; last = seen())
    Sleep(2);
  CHECK(last == wanted);
}

void StepRunner::ExpectThat(const std::string& yesOrNo, const std::function<bool()>& holds) const {
  Expect(yesOrNo, [&] { return std::string(holds() ? "yes" : "no"); });
}

void StepRunner::ExpectSelected(const std::string& list, const std::string& item) const {
  Expect(item, [&] { return std::to_string(Control(list).Send(LB_GETCURSEL)); });
}

void StepRunner::ExpectScrolled(const std::string& edit) const {
  ExpectThat("yes", [&] { return Control(edit).Send(EM_GETFIRSTVISIBLELINE) > 0; });
}

// A list may change meanwhile, so it is read on the thread that changes it.
void StepRunner::ExpectItems(const std::string& list, const Words& items) const {
  Expect(Joined(items), [&] { return m_host.Ask([&] { return Joined(Control(list).Items()); }); });
}

// --- the device, and scripts that talk to it

StepRunner::Verbs StepRunner::DeviceVerbs() {
  return {
      {"connect", [this](const Words& words) { Connect(words.at(0)); }},
      {"state", [this](const Words& words) { m_device.state = static_cast<std::uint32_t>(std::stoi(words.at(0))); }},
      {"directory", [this](const Words& words) { SetDirectory(words); }},
      {"info", [this](const Words& words) { SetInfo(Numbers<std::uint32_t>(words.at(0))); }},
      {"fail", [this](const Words& words) { m_device.Fail(words.at(0), Numbers<std::int32_t>(words.at(1))); }},
      {"hold", [this](const Words& words) { m_device.hold = words.at(0) == "yes"; }},
      {"transfers",
       [this](const Words& words) { Expect(words.at(0), [this] { return std::to_string(m_device.transfers); }); }},
      {"device will say", [this](const Words& words) { m_device.Answer(words); }},
      {"device says", [this](const Words& words) { Receive(words); }},
      {"poll", [this](const Words&) { m_own.Send(WM_TIMER, 1); }},
      {"locked", [this](const Words& words) { ExpectThat(words.at(0), [this] { return m_device.LockDepth() != 0; }); }},
      {"somebody locks", [this](const Words&) { LockBySomebody(); }},
      {"somebody unlocks", [this](const Words&) { m_heldBySomebody = m_device.Unlock(&m_somebody) == 0 ? 0 : 1; }},
      {"forget calls", [this](const Words&) { m_device.ForgetCalls(); }},
      {"calls so far", [this](const Words& words) { CHECK(Joined(m_device.Calls()) == words.at(0)); }},
      {"calls",
       [this](const Words& words) { CheckCalls(words.at(0)); }}, // until no lock is held, then they are forgotten
      {"calls of the other",
       [this](const Words& words) { Expect(words.at(0), [this] { return Joined(m_other.Calls()); }); }},
      {"sent", [this](const Words& words) { CheckSent(words.at(0)); }}, // then it is forgotten
      {"run", [this](const Words& words) { RunScript(words.at(0)); }},
      {"goes on", [this](const Words&) { WaitFor("many calls", [this] { return m_device.Calls().size() > 10; }); }},
  };
}

void StepRunner::Connect(const std::string& name) {
  m_client.Connect(name == "device" ? &m_device : name == "other" ? &m_other : nullptr);
}

// "ID TYPE SIZE" each.
void StepRunner::SetDirectory(const Words& files) {
  m_device.directory.clear();
  for (const std::string& file : files) {
    const auto fields = Numbers<std::uint32_t>(file);
    m_device.directory.push_back(
        {static_cast<std::uint8_t>(fields[0]), static_cast<std::uint8_t>(fields[1]), fields[2]});
  }
}

void StepRunner::SetInfo(const std::deque<std::uint32_t>& fields) {
  m_device.info = {fields[0], fields[1], fields[2], fields[3], fields[4]};
}

void StepRunner::LockBySomebody() {
  WaitFor("the channel to be free", [this] { return m_device.Lock(&m_somebody, 0) == 0; });
  m_heldBySomebody = 1;
}

void StepRunner::Receive(const Words& portions) {
  m_device.Answer(portions);
  WaitFor("the window to take all answers", [this] {
    m_own.Send(WM_TIMER, 1);
    return m_device.AllTaken();
  });
}

void StepRunner::CheckCalls(const std::string& wanted) {
  WaitFor("the action to end", [this] { return m_own.Enabled() && m_device.LockDepth() == m_heldBySomebody; });
  CHECK(Joined(m_device.Calls()) == wanted);
  m_device.ForgetCalls();
}

void StepRunner::CheckSent(const std::string& wanted) {
  Expect(wanted, [this] { return Joined(m_device.Calls("Transmit ")); });
  m_device.ForgetCalls();
}

// Chooses it by the "..." button, once, and executes it.
void StepRunner::RunScript(const std::string& script) {
  const std::string path = m_folder.PathOf("test.dcs");
  m_folder.Write("test.dcs", script);
  if (Control("path").Text() != path) {
    Control("...").Press();
    Choose("Open a script file", path);
    Expect(path, [this] { return Control("path").Text(); });
  }
  Press(Control("Execute script"));
}

// --- files, and the lists of them

StepRunner::Verbs StepRunner::FileVerbs() {
  return {
      {"write", [this](const Words& words) { m_folder.Write(words.at(0), words.at(1)); }},
      {"file", [this](const Words& words) { Expect(words.at(1), [&] { return m_folder.Read(words.at(0)); }); }},
      {"files", [this](const Words& words) { Expect(words.at(0), [this] { return Joined(m_folder.Names()); }); }},
      {"folder",
       [this](const Words& words) { std::filesystem::create_directory(m_folder.SystemPath() / words.at(0)); }},
      {"remove", [this](const Words& words) { std::filesystem::remove(m_folder.SystemPath() / words.at(0)); }},
      {"drop", [this](const Words& words) { Drop(words); }},
      {"rows", [this](const Words& words) { Expect(words.at(1), [&] { return Joined(List(words.at(0)).Rows()); }); }},
      {"select", [this](const Words& words) { SelectRows(words.at(0), Numbers<int>(words.at(1))); }},
      {"double-click", [this](const Words& words) { List(words.at(0)).DoubleClick(std::stoi(words.at(1))); }},
      {"cell",
       [this](const Words& words) { SetCell(words.at(0), Numbers<int>(words.at(1)), words.at(2)); }}, // ROW COLUMN
      {"empty", [this](const Words& words) { List(words.at(0)).Handle().Send(LVM_DELETEALLITEMS); }},
  };
}

void StepRunner::Drop(const Words& paths) const {
  const int count = List("local list").Count() + static_cast<int>(paths.size());
  m_own.DropFiles(paths);
  WaitFor("the dropped files", [&] { return List("local list").Count() == count; });
}

void StepRunner::SelectRows(const std::string& list, const std::deque<int>& rows) const {
  List(list).Select({rows.begin(), rows.end()});
}

void StepRunner::SetCell(const std::string& list, const std::deque<int>& place, const std::string& text) const {
  List(list).SetText(place[0], place[1], text);
}

ListView StepRunner::List(const std::string& name) const {
  return ListView(m_own.Control(kControls.at(name)));
}

// --- sections

void RunSteps(const std::string& file, std::uint32_t type, const char* caption,
              const std::function<void(const Window&, const std::string&)>& shoot) {
  std::map<std::string, Words> sections;
  std::istringstream lines(ReadTestFile(file));
  std::string name;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('['))
      name = line.substr(1, line.find(']') - 1);
    else if (!line.empty() && !line.starts_with('#'))
      sections[name].push_back(line);
  }
  for (const auto& [section, steps] : sections) {
    SUBCASE(section.c_str()) {
      StepRunner runner(type, caption);
      runner.shoot = shoot;
      for (const std::string& step : steps)
        runner.Do(step);
    }
  }
}
