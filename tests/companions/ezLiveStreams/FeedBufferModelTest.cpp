#include "ezLiveStreams/FeedBuffer.h"

#include "Media.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <rapidcheck/gtest.h>

// The rules of the window stated a second time over a flat media, and compared operation by operation.

namespace {

constexpr std::uint64_t kWindow = 100'000; // more than a block of the buffer
constexpr std::uint64_t kLargest = 150'000;
constexpr std::uint64_t kMediaSize = 400'000;

class Model {
public:
    explicit Model(const std::string& aMedia) : mMedia(aMedia) {}

    /// Bytes of these that the writer can bring without waiting. Only bytes that arrive make others go.
    std::uint64_t RoomFor(std::uint64_t aSize) {
        const std::uint64_t some = std::min<std::uint64_t>(aSize, mMedia.size() - mEnd);
        if (some > 0 && mEnd - mStart == mWindow && mWanted > mEnd) {
            const std::uint64_t needed = mWanted - std::min(mWanted, mWindow);
            const std::uint64_t back = mWindow - mWindow / 4;
            const std::uint64_t kept = mPosition - std::min(mPosition, back);
            mStart = std::max(mStart, std::min({std::max(needed, kept), mPosition, mEnd}));
        }
        return std::min(some, mWindow - (mEnd - mStart));
    }

    void Append(std::uint64_t aCount) { mEnd += aCount; }

    ReadResult Read(std::uint64_t aSize, bool afWhole) {
        mWanted = 0;
        const std::uint64_t left = mSize ? *mSize - std::min(*mSize, mPosition) : UINT64_MAX;
        const std::uint64_t there = mPosition >= mStart && mPosition < mEnd ? mEnd - mPosition : 0;
        if (there >= std::min(aSize, left) || (!afWhole && there > 0)) {
            const std::uint64_t count = std::min({aSize, left, there});
            const std::string bytes = count == 0 ? ""
                                                 : mMedia.substr(static_cast<std::size_t>(mPosition),
                                                                 static_cast<std::size_t>(count));
            mPosition += count;
            return {count < aSize && count == left ? ezStreamingStatus_EOS : ezStreamingStatus_NoError,
                    bytes};
        }
        if (mfFailed) {
            return Failed(ezStreamingStatus_ReadError);
        }
        mWanted = mPosition + std::min(aSize, left);
        mWindow = std::max(mWindow, std::min(aSize, left));
        return Nothing();
    }

    ezStreamingStatus Seek(std::uint64_t aPosition) {
        mWanted = 0;
        if (aPosition < mStart || (mSize && aPosition > *mSize)) {
            return ezStreamingStatus_OutOfRange;
        }
        mPosition = aPosition;
        return ezStreamingStatus_NoError;
    }

    const std::string& mMedia;
    std::uint64_t mStart = 0;
    std::uint64_t mEnd = 0;
    std::uint64_t mWindow = kWindow;
    std::uint64_t mPosition = 0;
    std::uint64_t mWanted = 0;
    std::optional<std::uint64_t> mSize;
    bool mfFailed = false;
};

} // namespace

RC_GTEST_PROP(FeedBufferModel, EveryOrderOfOperationsGivesWhatTheRulesSay, ()) {
    const std::string media = MediaBytes(kMediaSize);
    ezFeedBuffer buffer(
        {kWindow, kLargest}, [] {}, [] {});
    Model model(media);
    if (*rc::gen::arbitrary<bool>()) {
        RC_ASSERT(buffer.SetSize(kMediaSize));
        model.mSize = kMediaSize;
    }
    const int count = *rc::gen::inRange(1, 60);
    for (int i = 0; i < count; ++i) {
        const int operation = *rc::gen::inRange(0, 20);
        if (operation < 8) {
            const std::uint64_t size = *rc::gen::inRange<std::uint64_t>(0, kLargest + 1);
            const auto some = static_cast<std::size_t>(model.RoomFor(size));
            model.Append(some);
            RC_ASSERT(buffer.Append(media.data() + model.mEnd - some, some) == ezFeedBuffer::Push::Taken);
        } else if (operation < 14) {
            const std::size_t size = *rc::gen::inRange<std::size_t>(0, kLargest + 1);
            const int flag = *rc::gen::inRange(0, 5) == 0 ? 0 : ezStreamReadFlag_Whole;
            RC_ASSERT(ReadOnce(buffer, size, flag) == model.Read(size, flag != 0));
        } else if (operation < 18) {
            const std::uint64_t position = *rc::gen::inRange<std::uint64_t>(0, kMediaSize + 1000);
            RC_ASSERT(buffer.Seek(position) == model.Seek(position));
        } else if (operation == 18) {
            if (model.mSize == kMediaSize && model.mEnd < kMediaSize) {
                model.mfFailed = true;
            } else if (!model.mSize) {
                model.mSize = model.mEnd;
            }
            buffer.End();
            break;
        } else {
            model.mfFailed = true;
            buffer.Fail(ezStreamingStatus_ReadError, "broken");
            break;
        }
        RC_ASSERT(buffer.GetSize(false) == model.mSize);
    }
    for (int i = 0; i < 10; ++i) { // after the end or failure
        const std::uint64_t position = *rc::gen::inRange<std::uint64_t>(0, kMediaSize + 1000);
        const std::size_t size = *rc::gen::inRange<std::size_t>(0, kLargest + 1);
        RC_ASSERT(buffer.Seek(position) == model.Seek(position));
        RC_ASSERT(ReadOnce(buffer, size) == model.Read(size, true));
    }
}
