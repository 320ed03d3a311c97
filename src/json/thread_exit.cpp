#include "json/thread_exit.h"

#include <cxxabi.h>

#include <new>

// The handle of this shared object (or program), defined by the C runtime; it
// keeps the code of a thread-exit handler loaded until the handler has run.
extern "C" __attribute__((visibility("hidden"))) void* __dso_handle;

namespace qta::json::detail {

void atThreadExit(void (*handler)(void*) noexcept) {
  if (__cxxabiv1::__cxa_thread_atexit(handler, nullptr, &__dso_handle) != 0) {
    throw std::bad_alloc();
  }
}

}  // namespace qta::json::detail
