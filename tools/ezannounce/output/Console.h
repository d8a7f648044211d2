#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

/// What the tool writes: results to standard output, everything else to standard error, where a long walk
/// shows its progress when it is a terminal. Texts from outside are made safe for a terminal here.
class Console {
public:
    /// The library's log comes here.
    Console();
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Writes a result as it is.
    void Print(std::string_view aText);

    /// "ezannounce: NAME: REASON" on standard error.
    void Error(std::string_view aName, std::string_view aReason);
    /// "ezannounce: TEXT" on standard error.
    void Error(std::string_view aText);
    /// A line of the library's log, on standard error.
    void Log(int aLevel, std::string_view aText);

    /// One more file of a walk. Shows the count on a terminal, not at every file.
    void Progress(std::string_view aFolder);

    /// Brings out what is still held back. False, with an error line, when standard output did not take
    /// everything.
    bool Finish();

private:
    using Clock = std::chrono::steady_clock;

    void WriteError(std::string_view aText);
    void ClearProgress();

    bool mfTerminal;
    int mPrintError = 0; ///< the errno of the first failure of standard output
    bool mfProgressShown = false;
    std::size_t mFileCount = 0;
    Clock::time_point mLastProgress;
};
