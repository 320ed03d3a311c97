#include "qta/utils/io_loops.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

namespace qta::utils {
namespace {

constexpr int kRead = 0, kWrite = 1;  // the ends of a pipe

volatile sig_atomic_t interruptions = 0;

// The other side, in a child process: reads `size` bytes from the pipe
// `there`, then writes them back into the pipe `back`, in 4096-byte steps that
// each follow a signal to the parent and a pause, so the parent's calls block
// and are interrupted. It closes the parent's ends first, so that either side
// failing ends the other.
[[noreturn]] void slowEcho(const int there[2], const int back[2], size_t size) {
  for (int end : {there[kWrite], back[kRead]}) close(end);
  std::vector<char> bytes(size);
  for (bool reading : {true, false}) {
    for (size_t offset = 0; offset < size;) {
      kill(getppid(), SIGUSR1);
      usleep(200);
      const size_t step = std::min<size_t>(4096, size - offset);
      const ssize_t moved = reading ? read(there[kRead], &bytes[offset], step)
                                    : write(back[kWrite], &bytes[offset], step);
      if (moved <= 0) _exit(1);
      offset += static_cast<size_t>(moved);
    }
  }
  _exit(0);
}

TEST(IoLoops, MoveEveryByteAcrossInterruptedCalls) {
  std::vector<char> data(512 * 1024), received(data.size());
  for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<char>(i * 7 + i / 251);
  // Without SA_RESTART, calls blocked when the signal comes fail with EINTR.
  struct sigaction counting = {}, previous = {};
  counting.sa_handler = [](int) { interruptions = interruptions + 1; };
  sigaction(SIGUSR1, &counting, &previous);
  int there[2], back[2];
  ASSERT_EQ(pipe(there), 0);
  ASSERT_EQ(pipe(back), 0);
  const pid_t peer = fork();
  if (peer == 0) slowEcho(there, back, data.size());
  close(there[kRead]);
  close(back[kWrite]);
  size_t receivedCount = 0;
  EXPECT_EQ(writeAll(there[kWrite], data.data(), data.size()), 0);
  close(there[kWrite]);
  const int writeInterruptions = interruptions;
  EXPECT_EQ(readAll(back[kRead], received.data(), received.size(), &receivedCount), 0);
  EXPECT_GT(writeInterruptions, 0);
  EXPECT_GT(interruptions, writeInterruptions);
  EXPECT_EQ(receivedCount, data.size());
  EXPECT_TRUE(received == data);
  close(back[kRead]);
  waitpid(peer, nullptr, 0);
  sigaction(SIGUSR1, &previous, nullptr);
}

// Errors stop the loops with -1, errno from the failing call and the bytes
// moved before it in `done`, which may be left out. A non-blocking pipe fails
// with EAGAIN once it is full (writes) or empty (reads). End of file is no
// error: readAll returns 0 with what it read.
TEST(IoLoops, StopAtErrorsAndAtEndOfFile) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
  const size_t capacity = static_cast<size_t>(fcntl(ends[kWrite], F_GETPIPE_SZ));
  std::vector<char> sent(capacity * 2), back(sent.size());
  size_t sentCount = 0, backCount = 0;
  EXPECT_EQ(writeAll(ends[kWrite], sent.data(), sent.size(), &sentCount), -1);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_EQ(readAll(ends[kRead], back.data(), back.size(), &backCount), -1);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_EQ(sentCount, capacity);
  EXPECT_EQ(backCount, capacity);

  EXPECT_EQ(write(ends[kWrite], "abc", 3), 3);
  close(ends[kWrite]);
  EXPECT_EQ(readAll(ends[kRead], back.data(), 10, &backCount), 0);
  EXPECT_EQ(std::string(back.data(), backCount), "abc");
  close(ends[kRead]);
}

}  // namespace
}  // namespace qta::utils
