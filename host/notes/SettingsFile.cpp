#include "host/notes/SettingsFile.h"

#include "host/support/Files.h"

#include <utility>

namespace host {
namespace {

constexpr std::uint64_t kLargest = 1 << 20; // bytes; ours is far smaller
constexpr const char* kOldSuffix = ".old";

} // namespace

SettingsFile::SettingsFile(std::string path, Tell tell) : m_path(std::move(path)), m_tell(std::move(tell)) {
  Read();
}

void SettingsFile::Change(const std::function<void(Settings& settings)>& change) {
  const bool writable = Read();
  const Settings before = m_settings;
  change(m_settings);
  if (writable && m_settings != before)
    Write();
}

bool SettingsFile::ForgetAll() {
  if (!m_path.empty() && IsAnythingAt(m_path) && !RemoveLocalFile(m_path))
    return false;
  m_path.clear();
  m_settings = {};
  return true;
}

bool SettingsFile::Read() {
  if (m_path.empty())
    return false;
  if (!IsAnythingAt(m_path)) {
    if (m_wasThere) // somebody has deleted it, and means it
      m_settings = {};
    m_wasThere = false;
    return true;
  }
  const auto bytes = ReadWholeFile(m_path, kLargest);
  if (!bytes) {
    TellOnce(m_path + (bytes.error() == ReadFailure::kTooLarge ? " is too large for settings" : " cannot be read") +
             ", and is left alone");
    return false;
  }
  ReadSettings read = ParseSettings(*bytes);
  if (read.isForeign) {
    TellOnce(m_path + " is no file of settings, and is left alone");
    return false;
  }
  m_wasThere = true;
  m_settings = std::move(read.settings);
  m_damaged = read.badLines.empty() ? std::string() : *bytes;
  if (!read.badLines.empty())
    TellOnce(m_path + ":" + std::to_string(read.badLines.front()) +
             ": this line is not understood; when the file is written, what it was is kept as " + m_path + kOldSuffix);
  return true;
}

void SettingsFile::Write() {
  const std::size_t name = m_path.find_last_of("\\/");
  if (name != std::string::npos)
    MakeFolder(m_path.substr(0, name));
  const bool kept = m_damaged.empty() || WriteWholeFile(m_path + kOldSuffix, m_damaged);
  if (!kept || !WriteWholeFile(m_path, SettingsText(m_settings)))
    TellOnce(m_path + " cannot be written; what is used now will not be remembered");
  else
    m_wasThere = true;
}

void SettingsFile::TellOnce(const std::string& problem) {
  if (m_told.insert(problem).second)
    m_tell(problem);
}

} // namespace host
