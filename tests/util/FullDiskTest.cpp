#include "tests/support/TemporaryFolder.h"
#include "tests/support/posix/FileSizeLimit.h"
#include "util/JobFile.h"

TEST_CASE("a save that runs out of space keeps the old job file") {
  const TemporaryFolder folder;
  folder.Write("list.dcj", "before");
  std::vector<TFILEENTRY> entries(10000);
  int result;
  {
    const FileSizeLimit limit(100);
    result = SaveJobFile(folder.PathOf("list.dcj").c_str(), &entries);
  }
  CHECK(result == 0);
  CHECK(folder.Read("list.dcj") == "before");
  CHECK(folder.Names() == std::vector<std::string>{"list.dcj"});
}
