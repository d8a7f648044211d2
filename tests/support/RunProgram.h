#pragma once

#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

/// How a program ended and what it wrote.
struct ProgramResult {
    int mStatus = -1;         ///< the exit status; -1 when a signal ended it
    int mSignal = 0;          ///< the signal that ended it; 0 when none did
    double mCpuSeconds = 0.0; ///< that it took, of all its threads
    std::string mOut;
    std::string mError;
};

struct ProgramOptions {
    std::string mFolder;            ///< working directory; "" for that of the tests
    bool mfWithoutRights = false;   ///< permissions refuse it, also when the tests run as root
    bool mfErrorOnTerminal = false; ///< its standard error is a terminal
    std::string mOutTo;             ///< the file that standard output goes to instead of mOut
    /// Variables of its environment that are not those of the tests, as "NAME=VALUE"; "NAME" takes one away.
    std::vector<std::string> mEnvironment;
    int mIn = -1; ///< standard input, borrowed; -1 for an empty one
    /// Called when the program has been started, with its process.
    std::function<void(pid_t)> mWhenStarted;
};

/// Runs a program and waits for its end. Throws where it cannot be started.
ProgramResult RunProgram(const std::string& aProgram, const std::vector<std::string>& anArguments,
                         const ProgramOptions& anOptions = ProgramOptions());

/// The lines of a text, without their ends.
std::vector<std::string> LinesOf(const std::string& aText);
