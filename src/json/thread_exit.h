// Work to do when the calling thread exits.
#ifndef QTA_JSON_THREAD_EXIT_H_
#define QTA_JSON_THREAD_EXIT_H_

namespace qta::json::detail {

// Runs `handler` when the calling thread exits, as a thread_local destructor
// would run, through the C++ runtime's own hook (GNU libstdc++ and LLVM
// libc++ both provide __cxa_thread_atexit); a handler registered while the
// thread is exiting runs as well. Throws std::bad_alloc when the handler
// cannot be registered.
void atThreadExit(void (*handler)(void*) noexcept);

}  // namespace qta::json::detail

#endif  // QTA_JSON_THREAD_EXIT_H_
