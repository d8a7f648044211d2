#include "ezBytes/AudioTails.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/Limits.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::uint64_t kID3v1Size = 128;
constexpr std::uint64_t kEnhancedSize = 227;
constexpr std::uint64_t kAPEFooterSize = 32;
constexpr std::uint64_t kID3v2HeaderSize = 10;
constexpr std::string_view kLyricsBegin = "LYRICSBEGIN";
constexpr std::uint64_t kLyricsEndSize = 9;
constexpr std::uint64_t kLyricsDigits = 6;
/// The most that version 1 has between its two words, and the first of these.
constexpr std::uint64_t kLyrics1MaxSize = 5100 + 11;

/// Looks at the bytes before a position, which no tail before aStart holds.
class TailReader {
public:
    TailReader(ByteSource& aBytes, std::uint64_t aStart, std::uint32_t aSize)
        : mBytes(aBytes), mStart(aStart), mPlace(AudioTailPlace(aBytes, aStart, aSize).mOffset) {
        mTails.mAudioEnd = aBytes.GetEnd();
    }

    /// Steps over the one that ends where the sound would. False when there is none.
    bool Step() { return StepID3v1() || StepAPE() || StepLyrics2() || StepLyrics1() || StepID3v2(); }

    const AudioTails& Get() const { return mTails; }

private:
    /// A reader of the aCount bytes that stand aBack bytes before the end; a failed one when they are not
    /// among those that are looked at.
    ByteReader Before(std::uint64_t aBack, std::uint64_t aCount) const {
        ByteReader reader(mBytes);
        reader.Require(mTails.mAudioEnd > mPlace && aBack <= mTails.mAudioEnd - mPlace);
        reader.Skip(mTails.mAudioEnd - aBack);
        return reader.Take(aCount);
    }

    bool Has(std::uint64_t aBack, std::string_view aWord) const {
        return Before(aBack, aWord.size()).ReadText(aWord.size()).View() == aWord;
    }

    /// Moves the end. False for a size of 0, or one that reaches too far.
    bool Leave(std::uint64_t aSize) {
        if (aSize == 0 || aSize > mTails.mAudioEnd - mStart) {
            return false;
        }
        mTails.mAudioEnd -= aSize;
        return true;
    }

    bool StepID3v1() {
        if (mTails.mID3v1 != 0 || !Has(kID3v1Size, "TAG") || !Leave(kID3v1Size)) {
            return false;
        }
        mTails.mID3v1 = mTails.mAudioEnd;
        if (Has(kEnhancedSize, "TAG+") && Leave(kEnhancedSize)) {
            mTails.mEnhancedID3v1 = mTails.mAudioEnd;
        }
        return true;
    }

    /// The footer of an APE tag: "APETAGEX", version, size, number of items, flags, 8 reserved bytes.
    bool StepAPE() {
        constexpr std::uint32_t kHasHeader = 0x80000000;
        constexpr std::uint32_t kIsHeader = 0x20000000;
        ByteReader footer = Before(kAPEFooterSize, kAPEFooterSize);
        if (footer.ReadText(8) != "APETAGEX") {
            return false;
        }
        const std::uint32_t version = footer.ReadLittle32();
        const std::uint64_t size = footer.ReadLittle32(); // of items and footer
        footer.Skip(4);                                   // number of items
        const std::uint32_t flags = version >= 2000 ? footer.ReadLittle32() : 0;
        const std::uint64_t header = (flags & kHasHeader) != 0 ? kAPEFooterSize : 0;
        const std::uint64_t end = mTails.mAudioEnd;
        if ((flags & kIsHeader) != 0 || size < kAPEFooterSize || !Leave(size + header)) {
            return false;
        }
        if (mTails.mAPEVersion == 0) {
            mTails.mAPEVersion = version;
            mTails.mAPEItems = end - size;
            mTails.mAPEEnd = end - kAPEFooterSize;
        }
        return true;
    }

    /// "LYRICSBEGIN", fields, their size in six digits, "LYRICS200".
    bool StepLyrics2() {
        constexpr std::uint64_t kEnd = kLyricsEndSize + kLyricsDigits;
        if (!Has(kLyricsEndSize, "LYRICS200")) {
            return false;
        }
        const ezCString digits = Before(kEnd, kLyricsDigits).ReadText(kLyricsDigits);
        std::uint64_t size = 0;
        const std::uint64_t end = mTails.mAudioEnd - kEnd;
        if (!ezReadDecimal(digits.View(), &size) || !Leave(size + kEnd)) {
            return false;
        }
        if (mTails.mLyricsFields == 0 && size >= kLyricsBegin.size()) {
            mTails.mLyricsFields = mTails.mAudioEnd + kLyricsBegin.size();
            mTails.mLyricsEnd = end;
        }
        return true;
    }

    /// "LYRICSBEGIN", text, "LYRICSEND".
    bool StepLyrics1() {
        if (!Has(kLyricsEndSize, "LYRICSEND")) {
            return false;
        }
        const std::uint64_t most = std::min(mTails.mAudioEnd - mStart, kLyrics1MaxSize + kLyricsEndSize);
        for (std::uint64_t back = kLyricsEndSize + kLyricsBegin.size(); back <= most; ++back) {
            if (Has(back, kLyricsBegin)) {
                return Leave(back);
            }
        }
        return false;
    }

    /// The footer of an ID3v2.4 tag (ID3v2.4.0 structure, 3.4).
    bool StepID3v2() {
        ByteReader footer = Before(kID3v2HeaderSize, kID3v2HeaderSize);
        if (footer.ReadText(3) != "3DI") {
            return false;
        }
        footer.Skip(3); // version and flags
        const std::uint64_t size = footer.ReadSyncsafe32();
        return !footer.HasFailed() && Leave(size + 2 * kID3v2HeaderSize);
    }

    ByteSource& mBytes;
    std::uint64_t mStart;
    std::uint64_t mPlace; ///< of the first byte that is looked at
    AudioTails mTails;
};

} // namespace

BytePiece AudioTailPlace(const ByteSource& aBytes, std::uint64_t aStart, std::uint32_t aSize) {
    const std::uint64_t end = aBytes.GetEnd();
    const std::uint64_t size = std::min<std::uint64_t>(end - std::min(aStart, end), aSize);
    return {end - size, size};
}

AudioTails FindAudioTails(ByteSource& aBytes, std::uint64_t aStart, std::uint32_t aSize) {
    TailReader tails(aBytes, aStart, aSize);
    for (unsigned count = 0; count < kAudioTail_MaxCount && tails.Step(); ++count) {
    }
    return tails.Get();
}
