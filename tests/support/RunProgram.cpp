#include "support/RunProgram.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// The two ends of what the child writes to: a pipe, or a terminal of its own.
struct Channel {
    int mRead = -1;
    int mWrite = -1;
};

Channel NewPipe() {
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    return {ends[0], ends[1]};
}

Channel NewTerminal() {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
        throw std::runtime_error("no terminal");
    }
    const int slave = open(ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0) {
        throw std::runtime_error("no terminal");
    }
    return {master, slave};
}

/// From here on permissions hold for root too. Its files stay its own, so that the program is still found
/// wherever it was built.
bool DropRights() {
    return geteuid() != 0 || (prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE) == 0 &&
                              prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH) == 0);
}

[[noreturn]] void RunChild(const std::string& aProgram, std::vector<char*>& anArguments,
                           const ProgramOptions& anOptions, int anOut, int anError) {
    constexpr int kCannotStart = 127;
    const int in = anOptions.mIn >= 0 ? anOptions.mIn : open("/dev/null", O_RDONLY | O_CLOEXEC);
    int out = anOut;
    if (!anOptions.mOutTo.empty()) {
        out = open(anOptions.mOutTo.c_str(), O_WRONLY | O_CLOEXEC);
    }
    const bool fReady = dup2(in, STDIN_FILENO) >= 0 && dup2(out, STDOUT_FILENO) >= 0 &&
                        dup2(anError, STDERR_FILENO) >= 0 &&
                        (anOptions.mFolder.empty() || chdir(anOptions.mFolder.c_str()) == 0) &&
                        (!anOptions.mfWithoutRights || DropRights());
    for (const std::string& variable : anOptions.mEnvironment) {
        // The name alone is taken away; the texts outlive what is executed here.
        putenv(const_cast<char*>(variable.c_str()));
    }
    if (fReady) {
        execv(aProgram.c_str(), anArguments.data());
    }
    _exit(kCannotStart);
}

/// Reads both channels until nobody writes to them any more.
void ReadAll(int anOut, std::string& aOutText, int anError, std::string& anErrorText) {
    std::array<pollfd, 2> channels = {{{anOut, POLLIN, 0}, {anError, POLLIN, 0}}};
    const std::array<std::string*, 2> texts = {&aOutText, &anErrorText};
    while (channels[0].fd >= 0 || channels[1].fd >= 0) {
        if (poll(channels.data(), channels.size(), -1) < 0 && errno != EINTR) {
            throw std::runtime_error("poll failed");
        }
        for (std::size_t i = 0; i < channels.size(); ++i) {
            if (channels[i].fd < 0 || channels[i].revents == 0) {
                continue;
            }
            std::array<char, 65536> buffer = {};
            const ssize_t count = read(channels[i].fd, buffer.data(), buffer.size());
            if (count > 0) {
                texts[i]->append(buffer.data(), static_cast<std::size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                channels[i].fd = -1; // a terminal that nobody writes to any more gives an error
            }
        }
    }
}

double Seconds(const timeval& aTime) {
    return static_cast<double>(aTime.tv_sec) + static_cast<double>(aTime.tv_usec) / 1e6;
}

} // namespace

ProgramResult RunProgram(const std::string& aProgram, const std::vector<std::string>& anArguments,
                         const ProgramOptions& anOptions) {
    std::vector<std::string> words = anArguments;
    words.insert(words.begin(), aProgram);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    const Channel out = NewPipe();
    const Channel error = anOptions.mfErrorOnTerminal ? NewTerminal() : NewPipe();
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("no child");
    }
    if (child == 0) {
        RunChild(aProgram, arguments, anOptions, out.mWrite, error.mWrite);
    }
    close(out.mWrite);
    close(error.mWrite);
    if (anOptions.mWhenStarted) {
        anOptions.mWhenStarted(child);
    }
    ProgramResult result;
    ReadAll(out.mRead, result.mOut, error.mRead, result.mError);
    close(out.mRead);
    close(error.mRead);
    int status = 0;
    rusage usage = {};
    while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    result.mStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.mSignal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.mCpuSeconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    return result;
}

std::vector<std::string> LinesOf(const std::string& aText) {
    std::vector<std::string> lines;
    std::istringstream stream(aText);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}
