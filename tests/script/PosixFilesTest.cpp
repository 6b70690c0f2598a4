#include "tests/script/ScriptHarness.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/posix/FileSizeLimit.h"
#include "tests/support/posix/OrdinaryUser.h"

#include <sys/stat.h>

TEST_CASE("writestringtofile tells how much really went to a full disk") {
  const TemporaryFolder folder;
  folder.Write("old.txt", "0123456789");
  ScriptHarness harness;
  std::string output;
  {
    const FileSizeLimit limit(8);
    output =
        harness.Run("print(writestringtofile(\"a.txt\", \"0123456789\"), \" \","
                    "writestringtofile(\"old.txt\", \"abcd\", 6), \" \", writestringtofile(\"old.txt\", \"x\", 9));",
                    folder.Path().c_str());
  }
  CHECK(output == "8 2 0");
  CHECK(folder.Read("a.txt") == "01234567");
  CHECK(folder.Read("old.txt") == "012345ab89");
}

TEST_CASE("writestringtofile with an offset leaves a file whole that it may not open") {
  const TemporaryFolder folder;
  folder.Write("log.txt", "0123456789");
  chmod((folder.SystemPath() / "log.txt").c_str(), 0222);
  ScriptHarness harness;
  std::string output;
  {
    const OrdinaryUser user;
    output = harness.Run("print(writestringtofile(\"log.txt\", \"abc\", 2));", folder.Path().c_str());
  }
  CHECK(output == "0");
  chmod((folder.SystemPath() / "log.txt").c_str(), 0644);
  CHECK(folder.Read("log.txt") == "0123456789");
}

TEST_CASE("files whose bytes the system makes when they are read have a size of 0") {
  ScriptHarness harness;
  CHECK(harness.Run("print(substr(readstringfromfile(\"/proc/version\"), 0, 6), getfilesize(\"/proc/version\"),"
                    "readstringfromfile(\"/proc/version\", 3, 2));",
                    "Z:\\") == "Linux 0ux");
  // Read as a script: its first line is no statement.
  CHECK(harness.Run("executesubscript(\"/proc/version\");", "Z:\\").starts_with("Unknown identifier near line 1/"));
}
