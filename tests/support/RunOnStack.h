// Threads with a stack of a chosen size.
#pragma once

#include <cstddef>
#include <functional>

// Runs `work` on a new thread whose stack spans `bytes`, and waits for its end. Fails the test when there is no such
// thread.
void RunOnStack(std::size_t bytes, std::function<void()> work);
