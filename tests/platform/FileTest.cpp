#include "platform/Platform.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>

using platform::File;

TEST_CASE("how a file is opened decides what must be there and what can be done") {
  const TemporaryFolder folder;
  const std::string path = folder.PathOf("a");
  CHECK_FALSE(File::Open(path, File::Mode::kRead));
  CHECK(folder.Names().empty());

  auto file = File::Open(path, File::Mode::kCreate);
  REQUIRE(file);
  CHECK(file->Write("0123456789", 10) == 10);
  CHECK(file->Seek(2));
  CHECK(file->Write("ab", 2) == 2);
  CHECK(file->Size() == 10U);
  char byte = 0;
  CHECK(file->Read(&byte, 1) == 0); // it is for writing
  CHECK_FALSE(file->Close());       // and this tells that something went wrong
  CHECK(folder.Read("a") == "01ab456789");

  file = File::Open(path, File::Mode::kUpdate);
  REQUIRE(file);
  errno = EINTR; // what an earlier call has left says nothing about this one
  CHECK(file->ReadText(3) == "01a");
  CHECK(file->ReadText(100) == "b456789");
  CHECK(file->Seek(12));
  CHECK(file->Write("x", 1) == 1);
  CHECK(file->Close());
  CHECK_FALSE(file->Close());
  CHECK(folder.Read("a") == std::string("01ab456789\0\0x", 13));

  file = File::Open(path, File::Mode::kRead);
  REQUIRE(file);
  CHECK(file->Write("x", 1) == 0);
  CHECK(file->Size() == 13U);

  file = File::Open(path, File::Mode::kCreate);
  REQUIRE(file);
  CHECK(file->Size() == 0U);
  CHECK(file->Close());
}
