// A folder of its own for a test that needs files.
#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

// Made empty under the system's folder for such things, removed with everything in it by the destructor.
class TemporaryFolder {
public:
  TemporaryFolder() {
    std::random_device random;
    do {
      m_systemPath = std::filesystem::temp_directory_path() / ("ond-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_systemPath));
    m_path = m_systemPath.string();
    std::replace(m_path.begin(), m_path.end(), '/', '\\');
    if (m_path.starts_with('\\'))
      m_path = "Z:" + m_path;
  }
  ~TemporaryFolder() {
    std::error_code ignored; // what a test leaves open on Windows stays behind
    std::filesystem::remove_all(m_systemPath, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // As scripts spell it: with a drive and backslashes, none at the end.
  const std::string& Path() const { return m_path; }
  std::string PathOf(std::string_view name) const { return m_path + "\\" + std::string(name); }
  // The same for the standard library.
  const std::filesystem::path& SystemPath() const { return m_systemPath; }

  void Write(std::string_view name, std::string_view bytes) const {
    std::ofstream file(m_systemPath / name, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    REQUIRE_MESSAGE(file.good(), "cannot write ", std::string(name));
  }
  // Fails the test when there is no such file.
  std::string Read(std::string_view name) const {
    std::ifstream file(m_systemPath / name, std::ios::binary);
    REQUIRE_MESSAGE(file.is_open(), "cannot read ", std::string(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // Sorted.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_systemPath))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

private:
  std::filesystem::path m_systemPath;
  std::string m_path;
};
