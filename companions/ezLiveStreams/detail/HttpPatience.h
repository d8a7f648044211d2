#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

/// How long, and with how much beside the media, a web server is listened to. Until the head of the answer is
/// there, a whole line of it is progress; from then on nothing but bytes of the body is: a trailer that does
/// not end is a stall. Lines, bytes and time of all heads and trailers of a request are bounded together
/// (Limits.h). Asks no clock: the caller says what time it is.
class ezHttpPatience {
public:
    using Clock = std::chrono::steady_clock;

    /// @param aStallTime  above 0; the largest there is means no end
    explicit ezHttpPatience(std::chrono::milliseconds aStallTime) : mStallTime(aStallTime) {}

    /// A request goes out; nothing of the ones before it counts, but for their small parts.
    void Ask(Clock::time_point aNow);
    /// A line of a head or trailer came. False, with the reason set, when it is one too many.
    bool TakeLine(std::size_t aSize, Clock::time_point aNow);
    /// The line that was taken last ended the head of the answer.
    void Accept(Clock::time_point aNow);
    /// Bytes of the body came, and have been taken.
    void TakeBody(Clock::time_point aNow) { mLastProgress = aNow; }
    /// How long the server has for what comes next. 0, with the reason set, when that is over.
    std::chrono::milliseconds TimeLeft(Clock::time_point aNow);

    /// Whether a server that gave this much less than it was asked for is asked for what follows. False, with
    /// the reason set, after too many small parts.
    bool MayContinue(std::uint64_t aPartSize);

    /// Why the server is given up; "" while it is not.
    const std::string& GetReason() const { return mReason; }

private:
    const std::chrono::milliseconds mStallTime;
    std::string mReason;
    Clock::time_point mLastProgress;
    Clock::time_point mHeadBegin;                   ///< of the head or trailer that is being read
    Clock::duration mHeadTime = Clock::duration(0); ///< of those that were read
    bool mfInHead = true;                           ///< or in a trailer
    bool mfAccepted = false;
    std::size_t mLines = 0;
    std::size_t mBytes = 0;
    int mSmallParts = 0; ///< continued since the last large one
};
