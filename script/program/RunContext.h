// What a running script shares with whoever started it.
#pragma once

#include "platform/Platform.h"

#include <memory>
#include <string>

class RunContext {
public:
  // With a stop event of its own.
  RunContext() : m_ownEvent(std::make_unique<platform::StopEvent>()), m_stopEvent(m_ownEvent.get()) {}
  // On the stop event of another context, which must outlive this one: one stop request ends both runs.
  explicit RunContext(RunContext& other) : m_stopEvent(other.m_stopEvent) {}
  RunContext& operator=(const RunContext&) = delete;

  platform::StopEvent& StopEvent() { return *m_stopEvent; }

  // The folder that file names are relative to; no trailing backslash.
  const std::string& BaseDirectory() const { return m_baseDirectory; }
  void SetBaseDirectory(std::string folder) { m_baseDirectory = std::move(folder); }

private:
  std::unique_ptr<platform::StopEvent> m_ownEvent; // null on another's event
  platform::StopEvent* m_stopEvent;
  std::string m_baseDirectory;
};
