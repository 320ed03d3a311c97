#include "qta/utils/io_loops.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace qta::utils {
namespace {

// A pipe whose ends close with the object.
struct Pipe {
  int read = -1;
  int write = -1;
  Pipe() {
    int ends[2];
    if (pipe(ends) == 0) {
      read = ends[0];
      write = ends[1];
    }
  }
  ~Pipe() {
    closeRead();
    closeWrite();
  }
  void closeRead() {
    if (read >= 0) close(read);
    read = -1;
  }
  void closeWrite() {
    if (write >= 0) close(write);
    write = -1;
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
// installed without SA_RESTART, so blocking calls fail with EINTR.
class InterruptingTimer {
 public:
  InterruptingTimer() {
    signalsDelivered = 0;
    struct sigaction action {};
    action.sa_handler = countSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;
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

// Forks a child that keeps one end of `pipe`, runs `body` and exits with its
// result; returns the child's process id.
template <typename Body>
pid_t runChild(Body body, Pipe& pipe, bool childReads) {
  const pid_t child = fork();
  if (child == 0) {
    if (childReads) {
      pipe.closeWrite();
    } else {
      pipe.closeRead();
    }
    _exit(body());
  }
  return child;
}

int waitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

TEST(ReadAll, CollectsEveryByteAcrossInterruptedReads) {
  const std::vector<char> sent = pattern(256 * 1024);
  Pipe pipe;
  // The child trickles the data in, so the parent's reads block and the timer
  // interrupts them.
  const pid_t child = runChild(
      [&] {
        for (size_t offset = 0; offset < sent.size(); offset += 4096) {
          if (write(pipe.write, sent.data() + offset, 4096) != 4096) return 1;
          usleep(300);
        }
        return 0;
      },
      pipe, false);
  pipe.closeWrite();

  std::vector<char> received(sent.size() + 1);
  size_t done = 0;
  int result;
  {
    InterruptingTimer timer;
    result = readAll(pipe.read, received.data(), sent.size(), &done);
  }
  EXPECT_GT(signalsDelivered, 0);
  EXPECT_EQ(result, 0);
  ASSERT_EQ(done, sent.size());
  EXPECT_EQ(std::memcmp(received.data(), sent.data(), done), 0);
  EXPECT_EQ(waitFor(child), 0);
}

TEST(WriteAll, DeliversEveryByteAcrossInterruptedWrites) {
  const std::vector<char> sent = pattern(1024 * 1024);
  Pipe pipe;
  // The child drains the pipe slowly, so the parent's writes block on a full
  // pipe and the timer interrupts them. Exit status 0: all bytes arrived intact.
  const pid_t child = runChild(
      [&] {
        std::vector<char> chunk(4096);
        size_t offset = 0;
        for (;;) {
          const ssize_t got = read(pipe.read, chunk.data(), chunk.size());
          if (got <= 0) break;
          if (offset + static_cast<size_t>(got) > sent.size() ||
              std::memcmp(chunk.data(), sent.data() + offset, static_cast<size_t>(got)) != 0) {
            return 1;
          }
          offset += static_cast<size_t>(got);
          usleep(100);
        }
        return offset == sent.size() ? 0 : 2;
      },
      pipe, true);
  pipe.closeRead();

  size_t done = 0;
  int result;
  {
    InterruptingTimer timer;
    result = writeAll(pipe.write, sent.data(), sent.size(), &done);
  }
  pipe.closeWrite();
  EXPECT_GT(signalsDelivered, 0);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(done, sent.size());
  EXPECT_EQ(waitFor(child), 0);
}

TEST(ReadAll, EndOfFileIsNoError) {
  struct Case {
    std::string written;
    size_t asked;
  };
  for (const Case& c : {Case{"abc", 10}, Case{"", 4}, Case{"abcd", 4}, Case{"abc", 0}}) {
    Pipe pipe;
    ASSERT_EQ(write(pipe.write, c.written.data(), c.written.size()),
              static_cast<ssize_t>(c.written.size()));
    pipe.closeWrite();
    std::string buffer(c.asked, '\0');
    size_t done = 99;
    EXPECT_EQ(readAll(pipe.read, buffer.data(), c.asked, &done), 0) << c.written;
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
  errno = 0;
  EXPECT_EQ(writeAll(-1, buffer, 10, &done), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(done, 0u);
  done = 99;
  EXPECT_EQ(readAll(-1, buffer, 10, &done), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(done, 0u);

  Pipe pipe;
  ASSERT_EQ(fcntl(pipe.write, F_SETFL, O_NONBLOCK), 0);
  ASSERT_EQ(fcntl(pipe.read, F_SETFL, O_NONBLOCK), 0);
  const size_t capacity = static_cast<size_t>(fcntl(pipe.write, F_GETPIPE_SZ));
  const std::vector<char> big = pattern(capacity * 2);
  EXPECT_EQ(writeAll(pipe.write, big.data(), big.size(), &done), -1);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_EQ(done, capacity);

  std::vector<char> back(capacity * 2);
  EXPECT_EQ(readAll(pipe.read, back.data(), back.size(), &done), -1);
  EXPECT_EQ(errno, EAGAIN);
  EXPECT_EQ(done, capacity);
  EXPECT_EQ(std::memcmp(back.data(), big.data(), capacity), 0);

  // No reader left: EPIPE (with SIGPIPE ignored), nothing written; `done`
  // may be left out.
  pipe.closeRead();
  struct sigaction ignore {
  }, previous{};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &previous);
  EXPECT_EQ(writeAll(pipe.write, buffer, 10), -1);
  EXPECT_EQ(errno, EPIPE);
  sigaction(SIGPIPE, &previous, nullptr);
}

}  // namespace
}  // namespace qta::utils
