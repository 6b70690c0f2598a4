// A minimised window. Without a window manager Wine takes the keyboard from its process for good once a window was
// minimised, so this stands in a program that does not type.
#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

TEST_CASE("showing a minimised window restores it") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show("Script processor");
  host.Do([&] { ShowWindow(window.Handle(), SW_MINIMIZE); });
  REQUIRE(IsIconic(window.Handle()));
  CHECK(client.Show("Script processor").Handle() == window.Handle());
  CHECK_FALSE(IsIconic(window.Handle()));
}
