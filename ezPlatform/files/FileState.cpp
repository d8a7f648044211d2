#include "ezPlatform/files/FileState.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/HeldFiles.h"
#include "ezPlatform/files/Limits.h"
#include "ezPlatform/text/NUL.h"

#include <string>

namespace {

constexpr std::int64_t kNanoseconds = 1000000000;

} // namespace

ezFileState::ezFileState(const ezCString& aPath) {
    // Before the look: a change after it comes later still.
    struct timespec now = {};
    ezSystem().mNow(&now);
    struct stat status = {};
    if (ezHasNUL(aPath) || ezSystem().mStat(aPath.c_str(), &status) != 0) {
        return;
    }
    mfThere = true;
    mDevice = static_cast<std::uint64_t>(status.st_dev);
    mInode = static_cast<std::uint64_t>(status.st_ino);
    mSize = static_cast<std::uint64_t>(status.st_size);
    mModified = {status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
    mChanged = {status.st_ctim.tv_sec, status.st_ctim.tv_nsec};
    const Time looked = {now.tv_sec, now.tv_nsec};
    // Both: there are file systems that keep no time of the last change of status.
    mfSettled = IsOver(mModified, looked) && IsOver(mChanged, looked);
}

bool ezFileState::IsOver(const Time& aStamp, const Time& aNow) {
    const std::uint64_t seconds = static_cast<std::uint64_t>(aNow.mSeconds) -
                                  static_cast<std::uint64_t>(aStamp.mSeconds) +
                                  std::uint64_t{kFileState_FarSeconds};
    if (seconds > 2 * std::uint64_t{kFileState_FarSeconds}) {
        return true; // long ago, or in a time to come, which no change now is stamped with
    }
    const std::int64_t age = (static_cast<std::int64_t>(seconds) - kFileState_FarSeconds) * kNanoseconds +
                             aNow.mNanoseconds - aStamp.mNanoseconds;
    const std::int64_t step =
        (aStamp.mNanoseconds == 0 ? kFileState_LongestStep : 0) + kFileState_LongestTick;
    return age >= step || age <= -step;
}

ezCString ezFileState::InWords(const Time& aTime) {
    return ezCString(std::to_string(aTime.mSeconds) + "." + std::to_string(aTime.mNanoseconds));
}

ezCString ezFileState::ToText() const {
    if (!mfThere) {
        return "none";
    }
    const std::string numbers =
        std::to_string(mDevice) + " " + std::to_string(mInode) + " " + std::to_string(mSize) + " ";
    return ezCString(numbers) + InWords(mModified) + " " + InWords(mChanged);
}

ezCString ezFileState::ToIdentity() const {
    return mfSettled ? ToText() : ToText() + " " + ezHeld_RandomDigits();
}
