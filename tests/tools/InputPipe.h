#pragma once

#include <array>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>

/// A pipe into a program, written to by a thread. A program that ends before it has read everything is no
/// trouble.
class InputPipe {
public:
    /// Writes some bytes. False when nobody reads them any more.
    using Write = std::function<bool(const std::string&)>;

    explicit InputPipe(const std::function<void(const Write&)>& aWriter) {
        if (pipe2(mEnds.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        mThread = std::thread([this, aWriter] {
            sigset_t brokenPipe = {};
            sigaddset(&brokenPipe, SIGPIPE);
            pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
            aWriter([this](const std::string& aBytes) { return WriteAll(aBytes); });
            close(mEnds[1]);
        });
    }
    ~InputPipe() {
        close(mEnds[0]);
        mThread.join();
    }
    InputPipe(const InputPipe&) = delete;
    InputPipe& operator=(const InputPipe&) = delete;

    int GetReader() const { return mEnds[0]; }

private:
    bool WriteAll(const std::string& aBytes) const {
        std::size_t written = 0;
        while (written < aBytes.size()) {
            const ssize_t count = write(mEnds[1], aBytes.data() + written, aBytes.size() - written);
            if (count < 0) {
                return false;
            }
            written += static_cast<std::size_t>(count);
        }
        return true;
    }

    std::array<int, 2> mEnds = {};
    std::thread mThread;
};

/// Writes all of it at once.
inline std::function<void(const InputPipe::Write&)> Writing(const std::string& aBytes) {
    return [aBytes](const InputPipe::Write& aWrite) { aWrite(aBytes); };
}

/// Writes byte by byte.
inline std::function<void(const InputPipe::Write&)> WritingSingleBytes(const std::string& aBytes) {
    return [aBytes](const InputPipe::Write& aWrite) {
        for (const char byte : aBytes) {
            if (!aWrite(std::string(1, byte))) {
                return;
            }
        }
    };
}
