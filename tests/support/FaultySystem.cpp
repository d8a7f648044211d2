#include "support/FaultySystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>

namespace {

FaultySystem* gFaulty = nullptr;

constexpr std::array<const char*, kSystemCallCount> kNames = {
    "open",      "close",    "stat",   "fstat",   "lstat",   "pread",    "pwrite",
    "fsync",     "fchmod",   "rename", "unlink",  "mkdir",   "realpath", "readlink",
    "ftruncate", "futimens", "flock",  "opendir", "readdir", "closedir", "memory"};

/// What each of them is known to fail with.
constexpr std::array<int, kSystemCallCount> kErrors = {EMFILE, EIO,   EIO,    EIO,    EIO,    EIO, ENOSPC,
                                                       EIO,    EPERM, ENOSPC, EACCES, ENOSPC, EIO, EIO,
                                                       EIO,    EPERM, ENOLCK, EMFILE, EIO,    EIO, ENOMEM};

/// An operation that goes on failing for ever must end some time.
constexpr std::size_t kMostPoints = 5000;

template <typename Result>
Result Failure() {
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return -1;
    }
}

/// A call that fails, or is made.
template <SystemCall kCall, auto kMember, typename Type = decltype(kMember)>
struct Hook;
template <SystemCall kCall, auto kMember, typename Result, typename... Arguments>
struct Hook<kCall, kMember, Result (*ezSystemCalls::*)(Arguments...)> {
    static Result Call(Arguments... aArguments) {
        return FaultySystem::Fails(kCall) ? Failure<Result>() : (ezSystem_Real().*kMember)(aArguments...);
    }
    /// Made in any case: what it gives back is gone, whatever it says.
    static Result CallAnyway(Arguments... aArguments) {
        const Result result = (ezSystem_Real().*kMember)(aArguments...);
        return FaultySystem::Fails(kCall) ? Failure<Result>() : result;
    }
};

template <typename Buffer>
ssize_t Move(SystemCall aCall, ssize_t (*ezSystemCalls::*aMember)(int, Buffer, std::size_t, ezFileOffset),
             int aFile, Buffer aBuffer, std::size_t aSize, ezFileOffset anOffset) {
    const Fault* fault = FaultySystem::Strike(aCall);
    if (fault != nullptr && fault->mError != 0) {
        return -1;
    }
    const std::size_t size = fault != nullptr ? std::min(aSize, fault->mMaximum) : aSize;
    return (ezSystem_Real().*aMember)(aFile, aBuffer, size, anOffset);
}

ssize_t PRead(int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
    return Move(SystemCall::PRead, &ezSystemCalls::mPRead, aFile, aBuffer, aSize, anOffset);
}

ssize_t PWrite(int aFile, const void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
    return Move(SystemCall::PWrite, &ezSystemCalls::mPWrite, aFile, aBuffer, aSize, anOffset);
}

template <SystemCall kCall, auto kMember>
void Take(ezSystemCalls& aCalls) {
    aCalls.*kMember = Hook<kCall, kMember>::Call;
}

template <SystemCall kCall, auto kMember>
void TakeGivingBack(ezSystemCalls& aCalls) {
    aCalls.*kMember = Hook<kCall, kMember>::CallAnyway;
}

} // namespace

const char* NameOf(SystemCall aCall) {
    return kNames[static_cast<std::size_t>(aCall)];
}

FaultySystem::FaultySystem(std::vector<Fault> aFaults, FaultReach aReach)
    : mFaults(std::move(aFaults)), mReach(aReach), mCalls(ezSystem_Real()) {
    Take<SystemCall::Open, &ezSystemCalls::mOpen>(mCalls);
    TakeGivingBack<SystemCall::Close, &ezSystemCalls::mClose>(mCalls);
    Take<SystemCall::Stat, &ezSystemCalls::mStat>(mCalls);
    Take<SystemCall::FStat, &ezSystemCalls::mFStat>(mCalls);
    Take<SystemCall::LStat, &ezSystemCalls::mLStatAt>(mCalls);
    Take<SystemCall::Open, &ezSystemCalls::mOpenAt>(mCalls);
    Take<SystemCall::Open, &ezSystemCalls::mDuplicate>(mCalls);
    Take<SystemCall::Rename, &ezSystemCalls::mRenameAt>(mCalls);
    Take<SystemCall::Unlink, &ezSystemCalls::mUnlinkAt>(mCalls);
    mCalls.mPRead = PRead;
    mCalls.mPWrite = PWrite;
    mCalls.mFSync = [](int) { return FaultySystem::Fails(SystemCall::FSync) ? -1 : 0; };
    Take<SystemCall::FChmod, &ezSystemCalls::mFChmod>(mCalls);
    Take<SystemCall::Mkdir, &ezSystemCalls::mMkdir>(mCalls);
    Take<SystemCall::RealPath, &ezSystemCalls::mRealPath>(mCalls);
    Take<SystemCall::ReadLink, &ezSystemCalls::mReadLink>(mCalls);
    Take<SystemCall::FTruncate, &ezSystemCalls::mFTruncate>(mCalls);
    Take<SystemCall::FUTimens, &ezSystemCalls::mFUTimens>(mCalls);
    Take<SystemCall::FLock, &ezSystemCalls::mFLock>(mCalls);
    Take<SystemCall::OpenDir, &ezSystemCalls::mOpenDir>(mCalls);
    Take<SystemCall::ReadDir, &ezSystemCalls::mReadDir>(mCalls);
    TakeGivingBack<SystemCall::CloseDir, &ezSystemCalls::mCloseDir>(mCalls);
    Take<SystemCall::Memory, &ezSystemCalls::mAllocate>(mCalls);
    Take<SystemCall::Memory, &ezSystemCalls::mReallocate>(mCalls);
    gFaulty = this;
    ezSystem_Replace(&mCalls);
}

FaultySystem::~FaultySystem() {
    ezSystem_Replace(nullptr);
    gFaulty = nullptr;
}

bool FaultySystem::HasStruck() const {
    return mfStruck;
}

const Fault* FaultySystem::Strike(SystemCall aCall, FaultReach aReach) {
    return gFaulty != nullptr && gFaulty->mReach == aReach ? gFaulty->Next(aCall) : nullptr;
}

bool FaultySystem::Fails(SystemCall aCall, FaultReach aReach) {
    const Fault* fault = Strike(aCall, aReach);
    return fault != nullptr && fault->mError != 0;
}

const Fault* FaultySystem::Next(SystemCall aCall) {
    const std::size_t count = ++mCounts[static_cast<std::size_t>(aCall)];
    for (const Fault& fault : mFaults) {
        const std::size_t place = count - fault.mFrom; // wraps before the first one
        if (fault.mCall == aCall && count >= fault.mFrom && place < fault.mTimes &&
            (!fault.mfEveryOther || place % 2 == 0)) {
            mfStruck = mfStruck || !fault.mfStanding;
            if (fault.mError != 0) {
                errno = fault.mError;
            }
            return &fault;
        }
    }
    return nullptr;
}

std::size_t OpenDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

FaultManner MannerOf(SystemCall aCall) {
    FaultManner manner;
    manner.mCall = aCall;
    manner.mError = kErrors[static_cast<std::size_t>(aCall)];
    return manner;
}

std::vector<Fault> FaultsAt(const FaultManner& aManner, std::size_t aNth) {
    std::vector<Fault> faults;
    Fault fault;
    fault.mCall = aManner.mCall;
    fault.mFrom = aNth;
    if (aManner.mMaximum != Fault::kWhole) {
        fault.mMaximum = aManner.mMaximum;
        fault.mTimes = aManner.mfForGood && aManner.mError == 0 ? Fault::kForGood : 1;
        faults.push_back(fault);
        ++fault.mFrom;
        fault.mMaximum = Fault::kWhole;
    }
    if (aManner.mError != 0) {
        fault.mError = aManner.mError;
        fault.mTimes = aManner.mfForGood ? Fault::kForGood : 1;
        faults.push_back(fault);
    }
    return faults;
}

FaultyOperation Under(Fault aStanding, FaultyOperation anOperation) {
    aStanding.mfStanding = true;
    return
        [aStanding, operation = std::move(anOperation)](const std::vector<Fault>& aFaults, bool* afStruck) {
            std::vector<Fault> both = aFaults; // first, so that where they meet it is the sweep that strikes
            both.push_back(aStanding);
            return operation(both, afStruck);
        };
}

std::string SweepFaults(const FaultManner& aManner, const FaultyOperation& anOperation) {
    std::string outcomes;
    std::string last;
    std::size_t first = 1;
    const auto endRun = [&](std::size_t anEnd) {
        if (anEnd > first) {
            outcomes += std::to_string(first) +
                        (anEnd - first > 1 ? "-" + std::to_string(anEnd - 1) : std::string()) + ": " + last +
                        "\n";
        }
        first = anEnd;
    };
    for (std::size_t nth = 1; nth <= kMostPoints; ++nth) {
        SCOPED_TRACE(std::string(NameOf(aManner.mCall)) + " " + std::to_string(nth));
        const std::size_t descriptors = OpenDescriptors();
        bool fStruck = false;
        const std::string outcome = anOperation(FaultsAt(aManner, nth), &fStruck);
        EXPECT_EQ(OpenDescriptors(), descriptors);
        if (!fStruck || outcome != last) {
            endRun(nth);
        }
        if (!fStruck) {
            return outcomes;
        }
        last = outcome;
    }
    ADD_FAILURE() << "no end of " << NameOf(aManner.mCall);
    return outcomes;
}

void ExpectOutcomes(const FaultyOperation& anOperation, const std::vector<FaultOutcomes>& anOutcomes) {
    for (std::size_t i = 0; i < kSystemCallCount; ++i) {
        const auto call = static_cast<SystemCall>(i);
        const auto expected = std::find_if(anOutcomes.begin(), anOutcomes.end(),
                                           [&](const FaultOutcomes& aRow) { return aRow.mCall == call; });
        const bool fExpected = expected != anOutcomes.end();
        FaultManner manner = MannerOf(call);
        EXPECT_EQ(SweepFaults(manner, anOperation), fExpected ? expected->mOnce : "") << kNames[i] << " once";
        manner.mfForGood = true;
        EXPECT_EQ(SweepFaults(manner, anOperation), fExpected ? expected->mForGood : "")
            << kNames[i] << " for good";
    }
}

std::string RunInterrupted(std::size_t aMaximum, const FaultyOperation& anOperation) {
    std::vector<Fault> faults;
    for (const SystemCall call : {SystemCall::Open, SystemCall::Close, SystemCall::PRead, SystemCall::PWrite,
                                  SystemCall::FSync, SystemCall::FTruncate, SystemCall::FLock}) {
        Fault fault;
        fault.mCall = call;
        fault.mTimes = Fault::kForGood;
        fault.mError = EINTR;
        fault.mfEveryOther = true;
        faults.push_back(fault);
        // What is not interrupted comes short.
        fault.mError = 0;
        fault.mfEveryOther = false;
        fault.mMaximum = aMaximum;
        faults.push_back(fault);
    }
    const std::size_t descriptors = OpenDescriptors();
    bool fStruck = false;
    std::string outcome = anOperation(faults, &fStruck);
    EXPECT_TRUE(fStruck);
    EXPECT_EQ(OpenDescriptors(), descriptors);
    return outcome;
}

std::string RunUndisturbed(const FaultyOperation& anOperation) {
    const std::size_t descriptors = OpenDescriptors();
    bool fStruck = false;
    std::string outcome = anOperation({}, &fStruck);
    EXPECT_FALSE(fStruck);
    EXPECT_EQ(OpenDescriptors(), descriptors);
    return outcome;
}

std::string CallsOf(const FaultySystem& aSystem) {
    std::string text;
    for (std::size_t i = 0; i < kSystemCallCount; ++i) {
        const std::size_t count = aSystem.Count(static_cast<SystemCall>(i));
        if (count != 0) {
            text += (text.empty() ? "" : ", ") + std::string(kNames[i]) + " " + std::to_string(count);
        }
    }
    return text;
}
