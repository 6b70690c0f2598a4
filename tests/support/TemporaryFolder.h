// A folder of its own for a test that needs files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// Made empty under the system's folder for such things, removed with everything in it by the destructor.
class TemporaryFolder {
public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // As scripts spell it: with a drive and backslashes, none at the end.
  const std::string& Path() const { return m_path; }
  std::string PathOf(std::string_view name) const { return m_path + "\\" + std::string(name); }
  // The same for the standard library.
  const std::filesystem::path& SystemPath() const { return m_systemPath; }

  void Write(std::string_view name, std::string_view bytes) const;
  // Fails the test when there is no such file.
  std::string Read(std::string_view name) const;
  // Sorted.
  std::vector<std::string> Names() const;

private:
  std::filesystem::path m_systemPath;
  std::string m_path;
};
