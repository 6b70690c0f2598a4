// A disk that is full, as far as this process can tell.
#include "frame/CONXDeviceClient.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <sys/resource.h>

#include <csignal>

namespace {

class FileSizeLimit {
public:
  explicit FileSizeLimit(rlim_t bytes) : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
    REQUIRE(getrlimit(RLIMIT_FSIZE, &m_previous) == 0);
    const rlimit limit{bytes, m_previous.rlim_max};
    REQUIRE(setrlimit(RLIMIT_FSIZE, &limit) == 0);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &m_previous);
    std::signal(SIGXFSZ, m_previousHandler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
  rlimit m_previous{};
  void (*m_previousHandler)(int);
};

} // namespace

TEST_CASE("a save that runs out of space keeps the old job file") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "before");
  for (const std::size_t count : {10u, 10000u}) { // found out when closing, and while writing
    CAPTURE(count);
    std::vector<TFILEENTRY> entries(count);
    int result;
    {
      const FileSizeLimit limit(100);
      result = CONXDeviceClient::SaveJobFile(folder.PathOf("list.dcj").c_str(), &entries);
    }
    CHECK(result == 0);
    CHECK(folder.Read("list.dcj") == "before");
    CHECK(folder.Names() == std::vector<std::string>{"list.dcj"});
  }
}
