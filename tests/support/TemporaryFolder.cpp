#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace fs = std::filesystem;

namespace {

fs::path MakeFolder() {
  std::random_device random;
  for (;;) {
    const fs::path folder = fs::temp_directory_path() / ("ond-test-" + std::to_string(random()));
    if (fs::create_directory(folder))
      return folder;
  }
}

std::string ScriptSpelling(const fs::path& path) {
  std::string spelling = path.string();
  std::replace(spelling.begin(), spelling.end(), '/', '\\');
  return spelling.starts_with('\\') ? "Z:" + spelling : spelling;
}

} // namespace

TemporaryFolder::TemporaryFolder() : m_systemPath(MakeFolder()), m_path(ScriptSpelling(m_systemPath)) {}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored; // what a test leaves open on Windows stays behind
  fs::remove_all(m_systemPath, ignored);
}

void TemporaryFolder::Write(std::string_view name, std::string_view bytes) const {
  std::ofstream file(m_systemPath / name, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  REQUIRE_MESSAGE(file.good(), "cannot write ", std::string(name));
}

std::string TemporaryFolder::Read(std::string_view name) const {
  std::ifstream file(m_systemPath / name, std::ios::binary);
  REQUIRE_MESSAGE(file.is_open(), "cannot read ", std::string(name));
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> TemporaryFolder::Names() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(m_systemPath))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}
