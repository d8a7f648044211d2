#pragma once

#include "ezPlatform/base/System.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The kinds of system calls that can be made to fail, whether by a path or in a folder that is open.
enum class SystemCall : std::size_t {
    Open,
    Close,
    Stat,
    FStat,
    LStat,
    PRead,
    PWrite,
    FSync,
    FChmod,
    Rename,
    Unlink,
    Mkdir,
    RealPath,
    ReadLink,
    FTruncate,
    FUTimens,
    FLock,
    OpenDir,
    ReadDir,
    CloseDir,
    Memory, ///< both ways to a block whose size comes from input
};
inline constexpr std::size_t kSystemCallCount = static_cast<std::size_t>(SystemCall::Memory) + 1;

const char* NameOf(SystemCall aCall);

/// What goes wrong, and when.
struct Fault {
    static constexpr std::size_t kForGood = SIZE_MAX;
    static constexpr std::size_t kWhole = SIZE_MAX;

    SystemCall mCall = SystemCall::Open;
    std::size_t mFrom = 1;         ///< the first call of the kind that is struck, counted from 1
    std::size_t mTimes = 1;        ///< how many are struck; kForGood for all from there on
    int mError = 0;                ///< the errno to fail with; 0 to come short alone
    std::size_t mMaximum = kWhole; ///< the most bytes that a read or write that does not fail moves
    bool mfEveryOther = false;     ///< of the calls in range only the first, third and so on
    bool mfStanding = false; ///< a trouble of the place, in all runs of a sweep: HasStruck leaves it out
};

/// Whose calls fail: those of the libraries, which go through their table, or those that a test stands before
/// itself because somebody makes them past it.
enum class FaultReach { Libraries, Direct };

/// Lets the libraries' system calls fail while it lives, and counts them. One at a time.
///
/// A close that fails has closed all the same, as it does on Linux. No fsync reaches the disk, which would
/// only take time.
class FaultySystem {
public:
    /// Without a fault it only counts.
    explicit FaultySystem(std::vector<Fault> aFaults = {}, FaultReach aReach = FaultReach::Libraries);
    ~FaultySystem();
    FaultySystem(const FaultySystem&) = delete;
    FaultySystem& operator=(const FaultySystem&) = delete;

    std::size_t Count(SystemCall aCall) const { return mCounts[static_cast<std::size_t>(aCall)]; }
    /// Whether one of the faults has struck, other than a standing one.
    bool HasStruck() const;

    /// For a call of that reach: what becomes of it. Null where nothing does; errno is set to fail with.
    static const Fault* Strike(SystemCall aCall, FaultReach aReach = FaultReach::Libraries);
    /// Whether such a call fails, rather than come short.
    static bool Fails(SystemCall aCall, FaultReach aReach = FaultReach::Libraries);

private:
    const Fault* Next(SystemCall aCall);

    std::vector<Fault> mFaults;
    const FaultReach mReach;
    bool mfStruck = false;
    std::array<std::size_t, kSystemCallCount> mCounts = {};
    ezSystemCalls mCalls;
};

/// The descriptors that this process has open.
std::size_t OpenDescriptors();

/// What an operation did: "open 2, fstat 1".
std::string CallsOf(const FaultySystem& aSystem);

/// How a sweep makes a call fail.
struct FaultManner {
    SystemCall mCall = SystemCall::Open;
    int mError = 0;
    bool mfForGood = false;               ///< and all that follow
    std::size_t mMaximum = Fault::kWhole; ///< comes short of so many bytes; the error strikes the call after
};

/// One call of a kind fails, with an error that it is known for.
FaultManner MannerOf(SystemCall aCall);

/// The faults of a manner that begin with the n-th call.
std::vector<Fault> FaultsAt(const FaultManner& aManner, std::size_t aNth);

/// Makes a stage of its own, performs with these faults, and tells what came of it. The flag receives whether
/// a fault has struck.
using FaultyOperation = std::function<std::string(const std::vector<Fault>& aFaults, bool* afStruck)>;

/// An operation where one more thing goes wrong all the time, so that a sweep strikes in pairs: "no write
/// succeeds, and nothing can be removed".
FaultyOperation Under(Fault aStanding, FaultyOperation anOperation);

/// Runs an operation again and again: with the first call of the manner's kind going wrong, with the second,
/// and so on until it runs through with nothing going wrong. Expects of each run that it gives all its
/// descriptors back.
///
/// What came of it, a line for each run of calls with the same outcome: "1-3: OUTCOME\n4: OUTCOME\n". Empty
/// when the operation makes no such call.
std::string SweepFaults(const FaultManner& aManner, const FaultyOperation& anOperation);

/// The outcomes (SweepFaults) that a kind of call has when one call fails, and when that and all that follow
/// fail.
struct FaultOutcomes {
    SystemCall mCall;
    std::string mOnce;
    std::string mForGood;
};

/// Sweeps every kind of call, each with an error that it is known for, and expects these outcomes; of a kind
/// that is not listed, that the operation does not make such a call.
void ExpectOutcomes(const FaultyOperation& anOperation, const std::vector<FaultOutcomes>& anOutcomes);

/// What comes of an operation of which every call that can be interrupted is interrupted, once each; and
/// every read and write moves aMaximum bytes at most.
std::string RunInterrupted(std::size_t aMaximum, const FaultyOperation& anOperation);

/// What comes of an operation when nothing goes wrong.
std::string RunUndisturbed(const FaultyOperation& anOperation);
