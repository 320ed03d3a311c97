#include "qta/utils/io_loops.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace qta::utils {
namespace {

// A pipe whose ends (kRead, kWrite) close with the object.
constexpr int kRead = 0, kWrite = 1;
struct Pipe {
  int ends[2] = {-1, -1};
  Pipe() { EXPECT_EQ(pipe(ends), 0); }
  ~Pipe() {
    closeEnd(kRead);
    closeEnd(kWrite);
  }
  void closeEnd(int end) {
    if (ends[end] >= 0) close(ends[end]);
    ends[end] = -1;
  }
};

std::vector<char> pattern(size_t size) {
  std::vector<char> bytes(size);
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  return bytes;
}

volatile sig_atomic_t signalsDelivered = 0;
void countSignal(int) { signalsDelivered = signalsDelivered + 1; }

// Sends SIGALRM to this process every 200 microseconds, with a handler
// installed without SA_RESTART, so blocked calls fail with EINTR.
class InterruptingTimer {
 public:
  InterruptingTimer() {
    signalsDelivered = 0;
    struct sigaction action {};
    action.sa_handler = countSignal;
    sigaction(SIGALRM, &action, &previous_);
    const itimerval every{{0, 200}, {0, 200}};
    setitimer(ITIMER_REAL, &every, nullptr);
  }
  ~InterruptingTimer() {
    const itimerval off{};
    setitimer(ITIMER_REAL, &off, nullptr);
    sigaction(SIGALRM, &previous_, nullptr);
  }

 private:
  struct sigaction previous_ {};
};

// The other side of the pipe in a child process (which has no timer): moves
// `data` in 4096-byte steps with pauses, so the parent's calls block. Returns
// 0 when every byte went out or arrived intact.
int slowPeer(Pipe& pipe, const std::vector<char>& data, bool peerWrites) {
  pipe.closeEnd(peerWrites ? kRead : kWrite);
  std::vector<char> chunk(4096);
  size_t offset = 0;
  while (offset < data.size()) {
    const size_t step = std::min(chunk.size(), data.size() - offset);
    const ssize_t moved = peerWrites ? write(pipe.ends[kWrite], data.data() + offset, step)
                                     : read(pipe.ends[kRead], chunk.data(), step);
    if (moved <= 0) return 1;
    const size_t count = static_cast<size_t>(moved);
    if (!peerWrites && std::memcmp(chunk.data(), data.data() + offset, count) != 0) return 2;
    offset += count;
    usleep(200);
  }
  return 0;
}

TEST(IoLoops, MoveEveryByteAcrossInterruptedCalls) {
  const std::vector<char> data = pattern(512 * 1024);
  for (bool parentWrites : {false, true}) {
    SCOPED_TRACE(parentWrites ? "writeAll" : "readAll");
    Pipe pipe;
    const pid_t peer = fork();
    if (peer == 0) _exit(slowPeer(pipe, data, !parentWrites));
    const int mine = parentWrites ? kWrite : kRead;
    pipe.closeEnd(kRead + kWrite - mine);

    std::vector<char> received(data.size());
    size_t done = 0;
    int result;
    {
      InterruptingTimer timer;
      result = parentWrites ? writeAll(pipe.ends[mine], data.data(), data.size(), &done)
                            : readAll(pipe.ends[mine], received.data(), data.size(), &done);
    }
    pipe.closeEnd(mine);
    EXPECT_GT(signalsDelivered, 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(done, data.size());
    if (!parentWrites) {
      EXPECT_TRUE(received == data);
    }
    int status = -1;
    while (waitpid(peer, &status, 0) < 0 && errno == EINTR) {
    }
    EXPECT_EQ(status, 0);
  }
}

TEST(IoLoops, ReadAllStopsAtEndOfFileWithoutError) {
  struct Case {
    std::string written;
    size_t asked;
  };
  for (const Case& c : {Case{"abc", 10}, Case{"", 4}, Case{"abcd", 4}, Case{"abc", 0}}) {
    Pipe pipe;
    ASSERT_EQ(write(pipe.ends[kWrite], c.written.data(), c.written.size()),
              static_cast<ssize_t>(c.written.size()));
    pipe.closeEnd(kWrite);
    std::string buffer(c.asked, '\0');
    size_t done = 99;
    EXPECT_EQ(readAll(pipe.ends[kRead], buffer.data(), c.asked, &done), 0) << c.written;
    EXPECT_EQ(done, std::min(c.written.size(), c.asked)) << c.written;
    EXPECT_EQ(buffer.substr(0, done), c.written.substr(0, done));
  }
}

// Errors stop the loops with -1, errno from the failing call and the bytes
// moved before it in `done`. A non-blocking pipe fails with EAGAIN once it is
// full (writes) or empty (reads).
TEST(IoLoops, ErrorsReportWhatMovedBeforeThem) {
  char buffer[16] = "0123456789";
  size_t done = 99;
  EXPECT_EQ(writeAll(-1, buffer, 10, &done), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(done, 0u);
  done = 99;
  EXPECT_EQ(readAll(-1, buffer, 10, &done), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(done, 0u);

  Pipe pipe;
  for (int end : pipe.ends) ASSERT_EQ(fcntl(end, F_SETFL, O_NONBLOCK), 0);
  const size_t capacity = static_cast<size_t>(fcntl(pipe.ends[kWrite], F_GETPIPE_SZ));
  const std::vector<char> sent = pattern(capacity * 2);
  EXPECT_EQ(writeAll(pipe.ends[kWrite], sent.data(), sent.size(), &done), -1);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_EQ(done, capacity);
  std::vector<char> back(capacity * 2);
  EXPECT_EQ(readAll(pipe.ends[kRead], back.data(), back.size(), &done), -1);
  EXPECT_EQ(errno, EAGAIN);
  ASSERT_EQ(done, capacity);
  EXPECT_EQ(std::memcmp(back.data(), sent.data(), capacity), 0);

  // No reader left: EPIPE (SIGPIPE ignored); `done` may be left out.
  pipe.closeEnd(kRead);
  struct sigaction ignore {
  }, previous{};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &previous);
  EXPECT_EQ(writeAll(pipe.ends[kWrite], buffer, 10), -1);
  EXPECT_EQ(errno, EPIPE);
  sigaction(SIGPIPE, &previous, nullptr);
}

}  // namespace
}  // namespace qta::utils
