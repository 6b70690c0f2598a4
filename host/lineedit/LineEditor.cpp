#include "host/lineedit/LineEditor.h"

#include "host/lineedit/LineLayout.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace host {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kForEver{-1};

bool HasControl(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

bool WriteToOutput(std::string_view text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

// Calls something once in a while.
class Ticker {
public:
  explicit Ticker(const std::function<void()>& tick) : m_tick(tick) {}

  std::chrono::milliseconds Time() const { return m_tick ? LineEditor::kIdleTime : kForEver; }
  void MayTick() {
    if (!m_tick || Clock::now() < m_next)
      return;
    m_tick();
    m_next = Clock::now() + LineEditor::kIdleTime;
  }

private:
  const std::function<void()>& m_tick;
  Clock::time_point m_next = Clock::now();
};

} // namespace

LineEditor::LineEditor(const std::string& historyFile) : m_history(Keyboard::IsThere() ? historyFile : std::string()) {
  if (Keyboard::IsThere())
    m_keyboard.emplace(m_stopped);
  else
    m_plain.emplace(m_stopped);
}

// --- reading

void LineEditor::Take() {
  if (m_keyboard)
    m_keyboard->Take();
}

Typed LineEditor::Read(const std::string& prompt, const std::function<void()>& idle) {
  if (!m_keyboard)
    return ReadPlain(idle);
  m_isReading = true;
  m_prompt = prompt;
  m_line.Set({});
  Draw();
  Flush();
  Ticker ticker(idle);
  while (!m_isStopped) {
    if (const std::optional<Key> key = m_keyboard->Read(ticker.Time())) {
      if (auto typed = Take(*key))
        return *typed;
      Flush();
    }
    ticker.MayTick();
  }
  return Finish(TypedKind::kStopped);
}

Typed LineEditor::ReadPlain(const std::function<void()>& idle) {
  Ticker ticker(idle);
  while (!m_isStopped) {
    if (auto line = m_plain->Read(ticker.Time()))
      return {TypedKind::kLine, std::move(*line)};
    if (m_plain->HasEnded())
      return {TypedKind::kEnd, {}};
    ticker.MayTick();
  }
  return {TypedKind::kStopped, {}};
}

std::optional<Typed> LineEditor::Take(const Key& key) {
  switch (key.kind) {
  case KeyKind::kEnter:
    m_history.Add(Keyboard::HostText(m_line.Text()));
    return Finish(TypedKind::kLine);
  case KeyKind::kInterrupt:
    return Finish(TypedKind::kInterrupt);
  case KeyKind::kGone:
    return Finish(TypedKind::kStopped);
  case KeyKind::kEndOfInput:
    if (m_line.Text().empty())
      return Finish(TypedKind::kEnd);
    m_line.Apply({KeyKind::kDelete, {}});
    break;
  case KeyKind::kUp:
    Step(m_history.StepBack(Keyboard::HostText(m_line.Text())));
    break;
  case KeyKind::kDown:
    Step(m_history.StepForward(Keyboard::HostText(m_line.Text())));
    break;
  case KeyKind::kClear:
    ClearScreen();
    return std::nullopt;
  case KeyKind::kSuspend:
    Erase();
    Flush();
    m_keyboard->Suspend();
    break;
  default:
    if (!m_line.Apply(key))
      return std::nullopt;
  }
  Draw();
  return std::nullopt;
}

// What stays on the screen is the whole line, however long it is.
Typed LineEditor::Finish(TypedKind kind) {
  Erase();
  LineBuffer whole;
  whole.Set(m_line.Text());
  m_pending += LayLine(m_unfinished + m_prompt, whole, std::string::npos / 2).shown;
  if (kind == TypedKind::kInterrupt)
    m_pending += "^C";
  m_pending += '\n';
  m_unfinished.clear();
  m_isReading = false;
  Flush();
  return {kind, Keyboard::HostText(m_line.Text())};
}

void LineEditor::Step(const std::string* line) {
  if (line)
    m_line.Set(Keyboard::KeyText(*line));
}

// --- printing

bool LineEditor::Print(std::string_view text) {
  if (text.empty() || m_failed)
    return !m_failed;
  if (m_keyboard)
    PrintAbove(text);
  else
    m_failed = !WriteToOutput(text);
  return !m_failed;
}

void LineEditor::PrintAbove(std::string_view text) {
  Erase();
  const std::size_t end = text.rfind('\n') + 1; // 0 when there is none
  if (end != 0)
    m_pending.append(std::exchange(m_unfinished, {})).append(text.substr(0, end));
  m_unfinished += text.substr(end);
  if (HasControl(m_unfinished))
    m_pending.append(std::exchange(m_unfinished, {})).append("\n");
  Draw();
  Flush();
}

void LineEditor::Rest() {
  if (!m_keyboard)
    return;
  Erase();
  if (!m_unfinished.empty())
    m_pending.append(std::exchange(m_unfinished, {})).append("\n");
  Flush();
  m_keyboard->Rest();
}

void LineEditor::ClearScreen() {
  if (!m_keyboard)
    return;
  m_keyboard->ClearScreen();
  m_drawn = 0;
  Draw();
  Flush();
}

void LineEditor::Erase() {
  if (m_drawn != 0) // the window may have become smaller
    m_pending.append("\r").append(std::min(m_drawn, m_keyboard->Columns() - 1), ' ').append("\r");
  m_drawn = 0;
}

void LineEditor::Draw() {
  Erase();
  if (!m_isReading && m_unfinished.empty())
    return;
  // The last column stays free: what stands there may begin a new row.
  const LineLayout layout = LayLine(m_unfinished + (m_isReading ? m_prompt : ""), m_isReading ? m_line : LineBuffer(),
                                    m_keyboard->Columns() - 1);
  m_pending.append(layout.shown).append("\r").append(layout.beforeCursor);
  m_drawn = layout.columns;
}

void LineEditor::Flush() {
  const std::string pending = std::exchange(m_pending, {});
  if (!pending.empty() && !m_keyboard->Write(pending))
    m_failed = true;
}

} // namespace host
