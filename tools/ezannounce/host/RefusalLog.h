#pragma once

#include <string>
#include <thread>
#include <vector>

class Console;
struct ezLogLine;

/// What a parser said when it refused a file.
struct Refusal {
    std::string mParserName; ///< the class
    std::string mReason;     ///< "malformed: ends before the frame header"
};

/// Listens to the library's log for the reasons for which parsers refuse a file: lines of the level debug of
/// the form "CLASS: CAUSE: REASON". Lets all lines that were asked for through to the console. At most one
/// lives at a time, made before other threads use the libraries; what these log is no reason of a parser
/// here.
class RefusalLog {
public:
    /// @param aConsole  where lines go on to; borrowed; null for standard error
    explicit RefusalLog(Console* aConsole);
    ~RefusalLog();
    RefusalLog(const RefusalLog&) = delete;
    RefusalLog& operator=(const RefusalLog&) = delete;

    /// What was said since the last call.
    std::vector<Refusal> Take();

private:
    static void sListen(const ezLogLine& aLine, void* aThis);
    void Listen(const ezLogLine& aLine);

    Console* mConsole;
    int mLevel; ///< that lines are let through at
    std::thread::id mThread = std::this_thread::get_id();
    std::vector<Refusal> mRefusals;
};
