#include "tests/support/RunOnStack.h"

#include <doctest/doctest.h>

#include <pthread.h>

void RunOnStack(std::size_t bytes, std::function<void()> work) {
  pthread_attr_t attributes;
  REQUIRE(pthread_attr_init(&attributes) == 0);
  REQUIRE(pthread_attr_setstacksize(&attributes, bytes) == 0);
  const auto start = [](void* function) -> void* {
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
  };
  pthread_t thread{};
  const int error = pthread_create(&thread, &attributes, start, &work);
  pthread_attr_destroy(&attributes);
  REQUIRE(error == 0);
  pthread_join(thread, nullptr);
}
