#pragma once

#include "ez/PlaylistParser.h"

#include "support/Str.h"

#include "ezBytes/Utf8.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

// What the tests of all playlist readers share: streams, one plain walk, and the check that every fetch
// agrees with it.

inline ezStreamOwner MemoryPlaylist(const std::string& aText, const char* aURI = "/music/list.m3u") {
    void* block = ezMalloc(aText.size() + 1);
    std::memcpy(block, aText.data(), aText.size());
    auto stream = new ezMemoryStream(block, aText.size(), ezCString());
    stream->SetURI(aURI);
    return ezStreamOwner(stream);
}

/// The text with other line ends than "\n".
inline std::string WithLineEnds(const std::string& aText, const std::string& anEnd) {
    std::string text;
    for (const char byte : aText) {
        text += byte == '\n' ? anEnd : std::string(1, byte);
    }
    return text;
}

/// A text in UTF-8 as UTF-16 with its byte order mark.
inline std::string InUtf16(std::string_view aText, bool afBigEndian) {
    std::string text;
    const auto put = [&](char32_t aUnit) {
        const char high = static_cast<char>(aUnit >> 8);
        const char low = static_cast<char>(aUnit & 0xFF);
        text += afBigEndian ? high : low;
        text += afBigEndian ? low : high;
    };
    put(0xFEFF);
    while (!aText.empty()) {
        const Utf8Character character = FirstUtf8Character(aText);
        if (character.mCodePoint >= 0x10000) {
            put(0xD800 + ((character.mCodePoint - 0x10000) >> 10));
            put(0xDC00 + (character.mCodePoint & 0x3FF));
        } else {
            put(character.mCodePoint);
        }
        aText.remove_prefix(std::max<std::size_t>(character.mLength, 1));
    }
    return text;
}

/// A playlist that arrives byte by byte from a thread of its own.
class ArrivingStream : public ezStream {
public:
    static constexpr std::size_t kNever = static_cast<std::size_t>(-1);

    /// @param aFailingAt  from this byte on, reads fail
    explicit ArrivingStream(std::string aText, std::size_t aFailingAt = kNever)
        : mText(std::move(aText)), mFailingAt(aFailingAt), mThread([this] { Arrive(); }) {}

    ezCString GetExtension() const override { return "m3u"; }
    ezCString GetURI() const override { return "http://host/lists/arriving.m3u"; }
    ezuint64 GetSize() override { return 0; }
    bool IsOpened() override { return true; }
    ezStreamingStatus Seek(const ezuint64& aPosition) override {
        if (aPosition > mText.size()) {
            return ezStreamingStatus_OutOfRange;
        }
        mPosition = static_cast<std::size_t>(aPosition.ToUInt64());
        return ezStreamingStatus_NoError;
    }
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        const std::size_t arrived = mArrived;
        const std::size_t wanted = std::min(*aSize, mText.size() - mPosition);
        std::size_t count = std::min(wanted, std::max(arrived, mPosition) - mPosition);
        if ((aFlag & ezStreamReadFlag_Whole) != 0 && count < wanted) {
            count = 0;
        }
        if (mPosition + count >= mFailingAt) {
            *aSize = 0;
            return ezStreamingStatus_ReadError;
        }
        std::memcpy(aBuffer, mText.data() + mPosition, count);
        const bool fEnd = wanted < *aSize && count == wanted;
        mPosition += count;
        *aSize = count;
        if (count == 0 && !fEnd) {
            ++mWaits;
        } else {
            ++mReads;
        }
        return fEnd ? ezStreamingStatus_EOS : ezStreamingStatus_NoError;
    }
    void RegisterThresholdCallBack(ezStreamThresholdCallBack aCallBack, void* aUserData) override {
        ++mRegistered;
        ezStream::RegisterThresholdCallBack(aCallBack, aUserData);
    }
    void UnregisterThresholdCallBack(ezStreamThresholdCallBack aCallBack) override {
        --mRegistered;
        ezStream::UnregisterThresholdCallBack(aCallBack);
    }

    std::size_t mReads = 0;
    std::atomic<std::size_t> mWaits{0};
    int mRegistered = 0;

protected:
    ~ArrivingStream() override {
        mfEnough = true;
        mThread.join();
    }

private:
    void Arrive() {
        while (mArrived < mText.size() && !mfEnough) {
            // However late the reader is, it has to wait once.
            if (mArrived + 1 == mText.size() && mWaits == 0) {
                std::this_thread::yield();
                continue;
            }
            ++mArrived;
            FireThreshold();
            if (mArrived % 16 == 0) {
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        }
    }

    std::string mText;
    std::size_t mFailingAt;
    std::size_t mPosition = 0;
    std::atomic<std::size_t> mArrived{0};
    std::atomic<bool> mfEnough{false};
    std::thread mThread; ///< last, so that it finds everything else
};

/// A playlist in memory whose reads give a few bytes at most, fail from some byte on, and count.
class ScriptedStream : public ezStream {
public:
    static constexpr std::size_t kNever = static_cast<std::size_t>(-1);

    explicit ScriptedStream(std::string aText, std::size_t aMaximum = kNever, std::size_t aFailingAt = kNever)
        : mText(std::move(aText)), mMaximum(aMaximum), mFailingAt(aFailingAt) {}

    ezCString GetExtension() const override { return "m3u"; }
    ezCString GetURI() const override { return "/music/scripted.m3u"; }
    ezuint64 GetSize() override { return mText.size(); }
    bool IsOpened() override { return true; }
    ezStreamingStatus Seek(const ezuint64& aPosition) override {
        if (!mfSeekable || aPosition > mText.size()) {
            return ezStreamingStatus_OutOfRange;
        }
        mPosition = static_cast<std::size_t>(aPosition.ToUInt64());
        return ezStreamingStatus_NoError;
    }
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int /*aFlag*/) override {
        const std::size_t wanted = std::min({*aSize, mText.size() - mPosition, mMaximum});
        if (mPosition >= mFailingAt && mFailingAt != kNever) {
            *aSize = 0;
            return ezStreamingStatus_ReadError;
        }
        const std::size_t count = std::min(wanted, mFailingAt - mPosition);
        std::memcpy(aBuffer, mText.data() + mPosition, count);
        mPosition += count;
        mBytes += count;
        const bool fEnd = count < *aSize && mPosition == mText.size();
        *aSize = count;
        return fEnd ? ezStreamingStatus_EOS : ezStreamingStatus_NoError;
    }

    void SetFailingAt(std::size_t aFailingAt) { mFailingAt = aFailingAt; }
    void SetSeekable(bool afSeekable) { mfSeekable = afSeekable; }
    std::size_t GetBytes() const { return mBytes; }

private:
    std::string mText;
    std::size_t mMaximum;
    std::size_t mFailingAt;
    std::size_t mPosition = 0;
    std::size_t mBytes = 0; ///< given by all reads
    bool mfSeekable = true;
};

inline bool operator==(const PlaylistParserEntry& aLeft, const PlaylistParserEntry& aRight) {
    return aLeft.mTitle == aRight.mTitle && aLeft.mURI == aRight.mURI &&
           aLeft.mDuration == aRight.mDuration && aLeft.mStreamPos == aRight.mStreamPos &&
           aLeft.mNextEntryStreamPos == aRight.mNextEntryStreamPos &&
           aLeft.mRelativeEntryIndex == aRight.mRelativeEntryIndex &&
           aLeft.mSpecificTags == aRight.mSpecificTags;
}

inline std::ostream& operator<<(std::ostream& aStream, const PlaylistParserEntry& anEntry) {
    return aStream << anEntry.mRelativeEntryIndex << " \"" << Str(anEntry.mTitle) << "\" <"
                   << Str(anEntry.mURI) << "> " << anEntry.mDuration << " s at "
                   << anEntry.mStreamPos.ToUInt64() << ", next " << anEntry.mNextEntryStreamPos.ToUInt64()
                   << ", tags \"" << Str(anEntry.mSpecificTags) << "\"";
}

using PlaylistEntries = std::vector<PlaylistParserEntry>;

inline bool sCollect(PlaylistParserEntry* anEntry, void* aUserData) {
    static_cast<PlaylistEntries*>(aUserData)->push_back(*anEntry);
    return false;
}

/// One plain walk from a position; empty where it cannot be sought.
inline PlaylistEntries WalkFrom(PlaylistParser& aParser, const ezuint64& aPos) {
    PlaylistEntries entries;
    if (aParser.SeekBytes(aPos)) {
        aParser.ParseAll(sCollect, &entries);
    }
    return entries;
}

inline PlaylistParserEntry SomeEntry() {
    PlaylistParserEntry entry;
    entry.mTitle = "untouched";
    entry.mURI = "untouched.mp3";
    entry.mDuration = 77;
    entry.mStreamPos = 78;
    entry.mNextEntryStreamPos = 79;
    entry.mRelativeEntryIndex = 80;
    entry.mSpecificTags = "untouched tags";
    return entry;
}

/// What a fetch of the entry gives: it counts from itself.
inline PlaylistParserEntry AsFetched(PlaylistParserEntry anEntry) {
    anEntry.mRelativeEntryIndex = 0;
    return anEntry;
}

/// Entries of the plain walk from an index on, counted from there.
inline PlaylistEntries TailOf(const PlaylistEntries& aPlain, std::size_t anIndex) {
    PlaylistEntries tail(aPlain.begin() + static_cast<std::ptrdiff_t>(anIndex), aPlain.end());
    for (std::size_t i = 0; i < tail.size(); ++i) {
        tail[i].mRelativeEntryIndex = static_cast<uint32>(i);
    }
    return tail;
}

inline void CheckChain(const PlaylistEntries& aPlain) {
    for (std::size_t i = 0; i < aPlain.size(); ++i) {
        EXPECT_EQ(aPlain[i].mRelativeEntryIndex, i);
        EXPECT_FALSE(aPlain[i].mURI.IsEmpty());
        EXPECT_TRUE(aPlain[i].mNextEntryStreamPos ==
                    (i + 1 < aPlain.size() ? aPlain[i + 1].mStreamPos : ezuint64(kezuint64_Max)))
            << aPlain[i];
    }
}

inline void CheckFetches(PlaylistParser& aParser, const PlaylistEntries& aPlain, std::size_t anIndexStep) {
    for (std::size_t i = aPlain.size(); i-- > 0;) { // backward: no fetch leans on the one before
        PlaylistParserEntry entry = SomeEntry();
        EXPECT_TRUE(aParser.FetchEntryAtPos(aPlain[i].mStreamPos, &entry));
        EXPECT_EQ(entry, AsFetched(aPlain[i]));
        if (i % anIndexStep == 0) {
            entry = SomeEntry();
            EXPECT_TRUE(aParser.FetchEntryAtIndex(static_cast<uint32>(i), &entry));
            EXPECT_EQ(entry, AsFetched(aPlain[i]));
        }
        const bool fLast = i + 1 == aPlain.size();
        EXPECT_EQ(aParser.FetchNextEntry(&entry), !fLast);
        EXPECT_EQ(entry, AsFetched(fLast ? aPlain[i] : aPlain[i + 1]));
    }
    for (const std::size_t index : {aPlain.size(), aPlain.size() + 1, std::size_t{UINT32_MAX}}) {
        PlaylistParserEntry entry = SomeEntry();
        EXPECT_FALSE(aParser.FetchEntryAtIndex(static_cast<uint32>(index), &entry));
        EXPECT_EQ(entry, SomeEntry());
    }
}

/// From any byte: the first entry is that of a fetch there, and what follows it is a part of the plain walk.
inline void CheckStart(PlaylistParser& aParser, const PlaylistEntries& aPlain, std::uint64_t aPos) {
    const PlaylistEntries walk = WalkFrom(aParser, aPos);
    PlaylistParserEntry entry = SomeEntry();
    EXPECT_EQ(aParser.FetchEntryAtPos(aPos, &entry), !walk.empty()) << "from " << aPos;
    if (!walk.empty()) {
        PlaylistParserEntry first = walk.front();
        first.mStreamPos = aPos;
        EXPECT_EQ(entry, first);
        CheckChain(walk);
        const PlaylistEntries rest = TailOf(walk, 1);
        ASSERT_LE(rest.size(), aPlain.size());
        EXPECT_EQ(rest, TailOf(aPlain, aPlain.size() - rest.size())) << "from " << aPos;
    }
    for (std::size_t i = 0; i < aPlain.size(); ++i) {
        if (aPlain[i].mStreamPos == aPos) {
            EXPECT_EQ(walk, TailOf(aPlain, i)) << "from " << aPos;
        }
    }
}

/// A walk that is stopped goes on after the entry at which it was.
inline void CheckStoppedWalk(PlaylistParser& aParser, const PlaylistEntries& aPlain) {
    PlaylistEntries entries;
    const auto takeOne = [](PlaylistParserEntry* anEntry, void* aUserData) {
        sCollect(anEntry, aUserData);
        return true;
    };
    EXPECT_EQ(aParser.SeekBytes(0), true);
    const std::size_t count = std::min<std::size_t>(aPlain.size(), 50);
    for (std::size_t i = 0; i < count; ++i) {
        aParser.ParseAll(takeOne, &entries);
    }
    EXPECT_EQ(entries, PlaylistEntries(aPlain.begin(), aPlain.begin() + static_cast<std::ptrdiff_t>(count)));
}

/// Every fetch agrees with one plain walk, from every start. Gives the plain walk.
inline PlaylistEntries CheckAgreement(PlaylistParser& aParser, std::size_t aSize) {
    PlaylistEntries plain = WalkFrom(aParser, 0);
    CheckChain(plain);
    const std::size_t step = std::max<std::size_t>(1, plain.size() / 200);
    CheckFetches(aParser, plain, step);
    // A walk from every byte of a short playlist, from fewer the longer it is.
    const std::size_t stride = 1 + static_cast<std::size_t>(std::uint64_t{aSize} * aSize / 20000000);
    for (std::size_t pos = 0; pos <= aSize + 2; pos += stride) {
        CheckStart(aParser, plain, pos);
        if (testing::Test::HasFailure()) {
            break; // one place tells enough
        }
    }
    for (const std::uint64_t pos : {std::uint64_t{INT64_MAX}, std::uint64_t{INT64_MAX} + 1, UINT64_MAX}) {
        CheckStart(aParser, plain, pos);
    }
    CheckStoppedWalk(aParser, plain);
    EXPECT_EQ(WalkFrom(aParser, 0), plain);
    return plain;
}

/// The same over a playlist in memory, read by a reader of this class; its entries.
template <typename Reader>
PlaylistEntries Agreed(const std::string& aText, const char* aURI = "/music/list.m3u") {
    const ezStreamOwner stream = MemoryPlaylist(aText, aURI);
    Reader reader(stream.get());
    return CheckAgreement(reader, aText.size());
}

/// Locations, and titles where there are some, for comparisons that print what differs.
inline std::vector<std::string> Locations(const PlaylistEntries& anEntries) {
    std::vector<std::string> locations;
    for (const PlaylistParserEntry& entry : anEntries) {
        locations.push_back(Str(entry.mURI));
    }
    return locations;
}
