// Carries out what a text says a person does at one object's window, line by line: "VERB: WORD | WORD". StepRunner.cpp
// lists the verbs. What a line says to be there is waited for; @ is the runner's folder, <2A> the byte with that code.
#pragma once

#include "tests/support/Cases.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/support/BenchDevice.h"
#include "tests/windows/support/ListView.h"
#include "tests/windows/support/TestHost.h"

#include <map>

class StepRunner {
public:
  // Shows the window, connected to a device.
  StepRunner(std::uint32_t type, const char* caption);
  // Takes a picture of the window that the steps work just now, for those who want one.
  std::function<void(const Window&, const std::string& name)> shoot;
  void Do(const std::string& line);

private:
  using Verbs = std::map<std::string, std::function<void(const Words&)>>;
  Verbs ControlVerbs();
  Verbs KeyboardVerbs();
  Verbs WindowVerbs();
  Verbs DeviceVerbs();
  Verbs FileVerbs();

  // Of the window that the steps work just now, a box or the object's own, or else of the object's. A button by its
  // text, others as kControls names them.
  Window Control(const std::string& name) const;
  WPARAM IdOf(const std::string& control) const;
  ListView List(const std::string& name) const;

  void Press(const Window& button) const;
  void ChooseMode(int position) const;
  void TypeKeys(const std::string& names) const;
  void SendLine(const std::string& line) const;
  void Show();
  void WaitForBox(const std::string& caption);
  void Choose(const std::string& caption, const std::string& path);
  void EndBox(const std::function<void()>& act);
  void Connect(const std::string& name);
  void SetDirectory(const Words& files);
  void SetInfo(const std::deque<std::uint32_t>& fields);
  void LockBySomebody();
  void Receive(const Words& portions);
  void RunScript(const std::string& script);
  void Drop(const Words& paths) const;
  void SelectRows(const std::string& list, const std::deque<int>& rows) const;
  void SetCell(const std::string& list, const std::deque<int>& place, const std::string& text) const;

  // These wait until it is so.
  void Expect(const std::string& wanted, const std::function<std::string()>& seen) const;
  void ExpectThat(const std::string& yesOrNo, const std::function<bool()>& holds) const;
  void ExpectSelected(const std::string& list, const std::string& item) const;
  void ExpectScrolled(const std::string& edit) const;
  void ExpectItems(const std::string& list, const Words& items) const;
  void CheckCalls(const std::string& wanted);
  void CheckSent(const std::string& wanted);

  TestHost m_host;
  TemporaryFolder m_folder;
  BenchDevice m_device, m_other;
  const std::string m_caption;
  TestClient m_client;
  Window m_own, m_window;
  int m_somebody = 0; // who also locks the device
  std::size_t m_heldBySomebody = 0;
  Verbs m_verbs;
};

// Carries out each section of a file below tests/ as a subcase of its own, in the order of their names, with a new
// runner. For doctest's test cases.
void RunSteps(const std::string& file, std::uint32_t type, const char* caption,
              const std::function<void(const Window&, const std::string&)>& shoot = nullptr);
