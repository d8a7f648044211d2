// The door: media that arrive through a stream, whose content, answers and use the input decides.

#include "fuzz/support/Check.h"
#include "fuzz/support/FuzzInput.h"

#include "ez/StreamMediaParserStream.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/streams/Stream.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMaximumOperations = 48;
constexpr std::size_t kMaximumAnswers = 256; ///< of a stream that misbehaves; then it ends
constexpr std::size_t kLargestRead = 40000;
constexpr std::array<std::size_t, 8> kContentSizes = {0, 1, 100, 8191, 8192, 8193, 20000, 70000};

char ContentAt(std::size_t anOffset) {
    return static_cast<char>(anOffset * 31 + anOffset / 251 + 7);
}

std::string Content(std::size_t aSize) {
    std::string text(aSize, '\0');
    for (std::size_t i = 0; i < aSize; ++i) {
        text[i] = ContentAt(i);
    }
    return text;
}

/// What a stream is like.
struct Nature {
    explicit Nature(std::uint8_t aFlags)
        : mfLending((aFlags & 1) != 0),
          mfSeekable((aFlags & 2) == 0),
          mfSizeKnown((aFlags & 4) == 0),
          mfTrickling((aFlags & 8) != 0),
          mfMisbehaving((aFlags & 16) != 0),
          mfOwned((aFlags & 32) != 0) {}

    bool mfLending;
    bool mfSeekable;
    bool mfSizeKnown;
    bool mfTrickling;   ///< bytes arrive as the reader waits for them
    bool mfMisbehaving; ///< answers come from the input
    bool mfOwned;
};

/// A stream on one thread. A read that finds nothing lets more arrive and fires at once, so that every wait
/// ends; a stream that misbehaves ends after a number of answers.
class InputStream : public ezStream {
public:
    InputStream(std::string aContent, const Nature& aNature, FuzzInput& anInput)
        : mContent(std::move(aContent)),
          mNature(aNature),
          mInput(anInput),
          mArrived(aNature.mfTrickling ? 0 : mContent.size()) {}

    ezCString GetExtension() const override { return "BIN"; }
    ezCString GetURI() const override { return "stream:/Fuzzed.BIN"; }
    bool IsOpened() override { return true; }
    bool HasOwnBuffer() const override { return mNature.mfLending; }
    bool CanLend(int /*anAccess*/) const override { return mNature.mfLending; }

    ezuint64 GetSize() override {
        if (mNature.mfMisbehaving && mInput.Byte() % 4 == 1) {
            return ezuint64(mInput.Number(8));
        }
        return mNature.mfSizeKnown || mArrived == mContent.size() ? mContent.size() : 0;
    }

    ezStreamingStatus Seek(const ezuint64& aPosition) override {
        if (mNature.mfMisbehaving && mInput.Byte() % 4 == 1) {
            return static_cast<ezStreamingStatus>(mInput.Byte() % 12); // NoError too, without moving
        }
        if (!mNature.mfSeekable && aPosition != mPosition) {
            return ezStreamingStatus_NotSupported;
        }
        if (aPosition > mContent.size()) {
            return ezStreamingStatus_OutOfRange;
        }
        mPosition = static_cast<std::size_t>(aPosition.ToUInt64());
        return ezStreamingStatus_NoError;
    }

    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        const std::size_t asked = *aSize;
        const void* data = nullptr;
        const ezStreamingStatus status = LendingRead(&data, aSize, aFlag);
        const std::size_t given = std::min(asked, *aSize);
        if (given != 0 && data != nullptr) {
            std::memcpy(aBuffer, data, given);
            mPosition = std::min(mPosition + given, mContent.size());
        }
        return status;
    }

    ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag) override {
        FuzzCheck(aFlag == ezStreamReadFlag_Whole);
        FuzzCheck(*aSize != 0);
        return mNature.mfMisbehaving && mInput.Byte() % 4 == 1 ? Misanswer(aData, aSize)
                                                               : Answer(aData, aSize);
    }

protected:
    ~InputStream() override = default;

private:
    ezStreamingStatus Answer(const void** aData, std::size_t* aSize) {
        const std::size_t wanted = *aSize;
        const std::size_t left = mContent.size() - mPosition;
        const std::size_t needed = std::min(wanted, left);
        if (mPosition + needed > mArrived) {
            mArrived = std::min(mArrived + 1 + static_cast<std::size_t>(mInput.Number(2)), mContent.size());
            *aSize = 0;
            FireThreshold();
            return ezStreamingStatus_NoError;
        }
        Lend(aData, needed);
        *aSize = needed;
        return wanted > left || left == 0 ? ezStreamingStatus_EOS : ezStreamingStatus_NoError;
    }

    ezStreamingStatus Misanswer(const void** aData, std::size_t* aSize) {
        if (++mAnswers >= kMaximumAnswers) {
            *aSize = 0;
            return ezStreamingStatus_EOS;
        }
        constexpr std::array<std::size_t, 8> counts = {0, 1, 7, 8191, 8192, 8193, SIZE_MAX, SIZE_MAX / 2};
        const std::size_t asked = *aSize;
        const auto status = static_cast<ezStreamingStatus>(mInput.Byte() % 12);
        *aSize = counts[mInput.Byte() % counts.size()];
        Lend(aData, std::min(asked, *aSize));
        if (mInput.Byte() % 8 == 1) {
            *aData = nullptr;
        }
        FireThreshold(); // also for what is no news
        return status;
    }

    /// Lends a block of just that size, which stays until the next call.
    void Lend(const void** aData, std::size_t aSize) {
        mLent.reset(new char[aSize]);
        for (std::size_t i = 0; i < aSize; ++i) {
            mLent[i] = ContentAt(mPosition + i);
        }
        *aData = mLent.get();
    }

    const std::string mContent;
    const Nature mNature;
    FuzzInput& mInput;
    std::size_t mArrived;
    std::size_t mPosition = 0;
    std::size_t mAnswers = 0;
    std::unique_ptr<char[]> mLent;
};

/// Uses the adapter, and knows what may come of it.
class Play {
public:
    Play(ezStreamMediaParserStream& anAdapter, std::size_t aContentSize, const Nature& aNature)
        : mAdapter(anAdapter), mContentSize(aContentSize), mNature(aNature) {}

    void Operate(FuzzInput& anInput) {
        const std::uint8_t verb = anInput.Byte() % 8;
        const std::uint64_t position = anInput.Byte() % 8 == 7 ? anInput.Number(8) : anInput.Number(2) * 2;
        const std::size_t size = static_cast<std::size_t>(anInput.Number(2)) % kLargestRead;
        switch (verb) {
        case 0:
        case 1:
            ReadExactly(position, size);
            break;
        case 2:
        case 3:
            ReadUpTo(position, size);
            break;
        case 4:
            ReadFromEnd(size);
            break;
        case 5:
            mAdapter.Seek(position, ezMediaParserStream::SeekFromStart, (size & 1) != 0);
            break;
        case 6:
            CopyInfo();
            break;
        default:
            CloseAndOpen((size & 1) != 0);
        }
    }

private:
    bool IsSane() const { return !mNature.mfMisbehaving; }
    bool IsReliable() const { return IsSane() && mNature.mfSeekable && mfOpen; }

    void CheckBytes(std::uint64_t aPosition, const std::vector<char>& aBytes, std::size_t aCount) const {
        if (!IsSane()) {
            return; // the stream chooses what it gives
        }
        FuzzCheck(aCount == 0 || (aPosition <= mContentSize && aCount <= mContentSize - aPosition));
        for (std::size_t i = 0; i < aCount; ++i) {
            FuzzCheck(aBytes[i] == ContentAt(static_cast<std::size_t>(aPosition) + i));
        }
    }

    void ReadExactly(std::uint64_t aPosition, std::size_t aSize) {
        std::vector<char> bytes(aSize); // of just the size, so that a sanitizer sees a byte too many
        const bool fRead = mAdapter.ReadFrom(ezuint64(aPosition), aSize, bytes.data());
        const bool fThere = aPosition <= mContentSize && aSize <= mContentSize - aPosition;
        if (IsReliable() && aSize != 0) {
            FuzzCheck(fRead == fThere);
        }
        if (fRead) {
            CheckBytes(aPosition, bytes, aSize);
            FuzzCheck(mAdapter.Tell() == ezuint64(aPosition + aSize));
        }
    }

    void ReadUpTo(std::uint64_t aPosition, std::size_t aSize) {
        std::vector<char> bytes(aSize);
        std::size_t count = aSize;
        const bool fRead = mAdapter.ReadFrom(ezuint64(aPosition), &count, bytes.data());
        FuzzCheck(count <= aSize);
        if (fRead) {
            CheckBytes(aPosition, bytes, count);
            FuzzCheck(mAdapter.Tell() == ezuint64(aPosition + count));
        }
    }

    void ReadFromEnd(std::size_t aSize) {
        std::vector<char> bytes(aSize);
        const bool fRead = mAdapter.ReadFromEnd(aSize, bytes.data());
        if (fRead && IsSane()) {
            FuzzCheck(aSize <= mContentSize);
            CheckBytes(mContentSize - aSize, bytes, aSize);
        }
    }

    void CopyInfo() {
        const ezuint64 position = mAdapter.Tell();
        ezMediaInfo info;
        mAdapter.CopyInfo(&info);
        mAdapter.CopyInfo(nullptr);
        FuzzCheck(mAdapter.Tell() == position || !IsSane());
        FuzzCheck(info.GetCString(kezInfo_FileExtension, "") == "bin");
    }

    void CloseAndOpen(bool afOpen) {
        mAdapter.Close();
        mfOpen = false;
        if (afOpen) {
            mfOpen = mAdapter.Open();
            FuzzCheck(mfOpen != mNature.mfOwned); // an owned stream has gone
        }
    }

    ezStreamMediaParserStream& mAdapter;
    std::size_t mContentSize;
    Nature mNature;
    bool mfOpen = true;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    FuzzInput input(aData, aSize);
    const std::size_t size = kContentSizes[input.Byte() % kContentSizes.size()];
    const Nature nature(input.Byte());
    auto* stream = new InputStream(Content(size), nature, input);
    const ezStreamOwner owner(nature.mfOwned ? nullptr : stream);
    ezStreamMediaParserStream adapter(stream, nature.mfOwned);
    FuzzCheck(adapter.Open());
    Play play(adapter, size, nature);
    for (std::size_t i = 0; i < kMaximumOperations && !input.IsEmpty(); ++i) {
        play.Operate(input);
    }
    return 0;
}
