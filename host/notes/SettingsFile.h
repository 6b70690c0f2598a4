// The file with the settings, as good as it can be had.
#pragma once

#include "host/notes/Settings.h"

#include <functional>
#include <set>

namespace host {

// Several programs may use one file: each reads it again before it changes something and writes it whole, so all of
// them add to it; of two that write in the same instant, the last one stays. The file is written beside and put into
// its place. What is no file of settings, too large, or cannot be read is never written. [one thread]
class SettingsFile {
public:
  using Tell = std::function<void(const std::string& problem)>;

  // No path: nothing is read, and nothing is written. Each problem is told once.
  SettingsFile(std::string path, Tell tell);

  // As they were read or changed last.
  const Settings& Get() const { return m_settings; }
  // Empty when there is none.
  const std::string& Path() const { return m_path; }
  // Changes what is in the file now, which Get() has afterwards, written or not.
  void Change(const std::function<void(Settings& settings)>& change);
  // Deletes the file; from now on nothing is read and written any more. False, and nothing has changed, when it cannot
  // be deleted.
  bool ForgetAll();

private:
  // False: what is there must stay as it is.
  bool Read();
  void Write();
  void TellOnce(const std::string& problem);

  std::string m_path;
  const Tell m_tell;
  Settings m_settings;
  std::string m_damaged; // what the file was, when not all of it could be understood
  bool m_wasThere = false;
  std::set<std::string> m_told;
};

} // namespace host
