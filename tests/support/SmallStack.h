#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>
#include <system_error>

// Runs `work` on a thread with a small stack. 256 KiB, the default, are too few for recursion over a deep
// tree.
inline void RunOnSmallStack(std::function<void()> work, std::size_t stackSize = std::size_t{256} * 1024) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, stackSize);
  pthread_t thread{};
  const int failure = pthread_create(
      &thread, &attributes,
      [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
      },
      &work);
  pthread_attr_destroy(&attributes);
  if (failure != 0) throw std::system_error(failure, std::generic_category(), "pthread_create");
  pthread_join(thread, nullptr);
}
