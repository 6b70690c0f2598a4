// What went on at the terminal, in a file: a line each, with the time, `<` in front of what the device said, `>` of
// what was sent, `-` of remarks.
#pragma once

#include "host/talk/AnswerView.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace host {

class TermLog {
public:
  TermLog();
  // Whatever is unfinished ends there.
  ~TermLog();
  TermLog(const TermLog&) = delete;
  TermLog& operator=(const TermLog&) = delete;

  // Goes on behind what is in the file. False when it cannot be written. Without it nothing is logged.
  bool Open(const std::string& path);

  void WriteReceived(std::string_view bytes);
  void WriteSent(std::string_view typed);
  void WriteRemark(std::string_view text);
  // Whether something could not be written since the last call.
  bool TakeFailure();

private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void WriteLine(std::string_view mark, std::string_view text);
  void Write(const std::string& text);

  std::unique_ptr<std::FILE, Closer> m_file; // null after a failure too
  AnswerView m_view;
  bool m_failed = false;
};

} // namespace host
