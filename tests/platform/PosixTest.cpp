// What only holds where drive Z: is the root of the file system.
#include "platform/Platform.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using platform::File;

namespace {

platform::StopEvent* g_event = nullptr;

} // namespace

TEST_CASE("a signal handler may set the stop event") {
  platform::StopEvent event;
  g_event = &event;
  const auto previous = std::signal(SIGUSR1, [](int) { g_event->Set(); });
  const pid_t child = fork();
  REQUIRE(child >= 0);
  if (child == 0) {
    usleep(20000);
    kill(getppid(), SIGUSR1);
    _exit(0);
  }
  CHECK(event.Wait(10000)); // most likely interrupted in the middle
  CHECK(waitpid(child, nullptr, 0) == child);
  std::signal(SIGUSR1, previous);
}

TEST_CASE("drive Z: is the root") {
  CHECK(File::Open("Z:\\etc\\passwd", File::Mode::kRead));
  CHECK(File::Open("z:/etc\\passwd", File::Mode::kRead));
  CHECK(File::Open("\\etc\\passwd", File::Mode::kRead));
  CHECK(File::Open("/etc/passwd", File::Mode::kRead));
  CHECK_FALSE(File::Open("C:\\etc\\passwd", File::Mode::kRead));
  CHECK_FALSE(File::Open("\\\\etc\\passwd", File::Mode::kRead));
}

TEST_CASE("the longest path counts when it is resolved") {
  const std::string longest = "Z:\\" + std::string(platform::kMaxPath - 3, 'x');
  CHECK(platform::FullPath(longest) == longest);
  CHECK_FALSE(platform::FullPath(longest + "x"));
  CHECK_FALSE(platform::FullPath(""));
  CHECK(platform::FullPath(longest + "\\..\\a") == "Z:\\a");
}

TEST_CASE("only regular files open, and nothing blocks") {
  const TemporaryFolder folder;
  REQUIRE(mkfifo((folder.SystemPath() / "pipe").c_str(), 0600) == 0);
  for (const std::string& path : {folder.PathOf("pipe"), std::string("/dev/zero"), std::string("/dev/null")}) {
    CAPTURE(path);
    CHECK_FALSE(File::Open(path, File::Mode::kRead));
    CHECK_FALSE(File::Open(path, File::Mode::kUpdate));
    CHECK_FALSE(File::Open(path, File::Mode::kCreate));
  }
  folder.Write("file", "x");
  CHECK_FALSE(platform::MoveFileOver(folder.PathOf("file"), folder.PathOf("pipe")));
  CHECK(folder.Read("file") == "x");
}
