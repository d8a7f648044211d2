#include "ezLiveStreams/HttpStream.h"
#include "ezLiveStreams/detail/DescriptorCalls.h"

#include "support/Patience.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <netinet/in.h>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// What a daemon prints whose standard output is closed must not go to a server.

namespace {

int InDaemon(const std::function<int()>& aWork) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(kPatience);
        for (int file = 0; file < 256; ++file) {
            close(file); // also what whoever ran the test left open
        }
        _exit(aWork());
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool IsConnection(int aFile) {
    sockaddr_storage address = {};
    socklen_t size = sizeof address;
    return getpeername(aFile, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
           address.ss_family == AF_INET;
}

} // namespace

TEST(StandardPlaces, APipeOfOurOwnStaysOutOfThem) {
    EXPECT_EQ(InDaemon([] {
                  int ends[2] = {-1, -1};
                  return DescriptorCalls_Real().mPipe(ends, O_CLOEXEC) == 0 && ends[0] >= 3 && ends[1] >= 3 &&
                                 fcntl(0, F_GETFD) < 0 && fcntl(1, F_GETFD) < 0 && write(ends[1], "x", 1) == 1
                             ? 42
                             : 1;
              }),
              42);
    for (const rlim_t room : {rlim_t{3}, rlim_t{4}}) {
        EXPECT_EQ(InDaemon([room] {
                      const rlimit little = {room, room};
                      int ends[2] = {-1, -1};
                      if (setrlimit(RLIMIT_NOFILE, &little) != 0 ||
                          DescriptorCalls_Real().mPipe(ends, O_CLOEXEC) != -1 || errno == 0) {
                          return 1;
                      }
                      for (int file = 0; file < 4; ++file) {
                          if (fcntl(file, F_GETFD) >= 0) {
                              return 2;
                          }
                      }
                      return 42;
                  }),
                  42)
            << room;
    }
}

TEST(StandardPlaces, AConnectionToAServerStaysOutOfThem) {
    // Connected to by the system alone: a server of the kit has a thread, and none may run where a child
    // begins threads.
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), size), 0);
    ASSERT_EQ(listen(listener, 5), 0);
    ASSERT_EQ(getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
    const std::string url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/film.mp4";
    EXPECT_EQ(InDaemon([&url] {
                  new ezHttpStream(url.c_str(), ezHttpOptions()); // for as long as the daemon lives
                  for (;;) {
                      for (int file = 0; file <= 2; ++file) {
                          if (IsConnection(file)) {
                              return 1;
                          }
                      }
                      for (int file = 3; file < 30; ++file) {
                          if (IsConnection(file)) {
                              return 42;
                          }
                      }
                      std::this_thread::sleep_for(std::chrono::milliseconds(10));
                  }
              }),
              42);
    close(listener);
}
