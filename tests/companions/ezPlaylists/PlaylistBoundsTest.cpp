// How much is read of playlists that are larger than any, and what is made of it.
#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/PlaylistCut.h"
#include "ezPlaylists/detail/ASXPlaylistParser.h"
#include "ezPlaylists/detail/Limits.h"
#include "ezPlaylists/detail/PLSPlaylistParser.h"

#include "PlaylistKit.h"

namespace {

using Texts = std::vector<std::string>;

constexpr std::uint64_t kHuge = std::uint64_t{64} * 1024 * 1024 * 1024;

/// A playlist that begins with a text and goes on with a pattern, over and over, to a size that no memory
/// holds.
class HugeStream : public ezStream {
public:
    HugeStream(std::string aStart, std::string aPattern, std::uint64_t aSize)
        : mStart(std::move(aStart)), mPattern(std::move(aPattern)), mSize(aSize) {}

    ezCString GetExtension() const override { return "m3u"; }
    ezCString GetURI() const override { return "/music/huge.m3u"; }
    ezuint64 GetSize() override { return mSize; }
    bool IsOpened() override { return true; }
    ezStreamingStatus Seek(const ezuint64& aPosition) override {
        if (aPosition > mSize) {
            return ezStreamingStatus_OutOfRange;
        }
        mPosition = aPosition.ToUInt64();
        return ezStreamingStatus_NoError;
    }
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int /*aFlag*/) override {
        char* const buffer = static_cast<char*>(aBuffer);
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(*aSize, mSize - mPosition));
        for (std::size_t done = 0; done < count;) {
            const std::uint64_t at = mPosition + done;
            const bool fStart = at < mStart.size();
            const std::string& text = fStart ? mStart : mPattern;
            const auto from = static_cast<std::size_t>(fStart ? at : (at - mStart.size()) % mPattern.size());
            const std::size_t size = std::min(text.size() - from, count - done);
            std::memcpy(buffer + done, text.data() + from, size);
            done += size;
        }
        mPosition += count;
        mBytes += count;
        const bool fEnd = count < *aSize;
        *aSize = count;
        return fEnd ? ezStreamingStatus_EOS : ezStreamingStatus_NoError;
    }

    std::uint64_t GetBytes() const { return mBytes; }

private:
    const std::string mStart;
    const std::string mPattern;
    const std::uint64_t mSize;
    std::uint64_t mPosition = 0;
    std::uint64_t mBytes = 0; ///< given by all reads
};

/// What a reader makes of such a playlist.
struct Outcome {
    Texts mLocations;
    PlaylistCut mCut = PlaylistCut::None;
    std::uint64_t mBytes = 0; ///< that were read for one walk
};

template <typename Reader>
Outcome OutcomeOf(const std::string& aStart, const std::string& aPattern, std::uint64_t aSize) {
    HugeStream* stream = new HugeStream(aStart, aPattern, aSize);
    const ezStreamOwner owner(stream);
    Reader reader(stream);
    const PlaylistEntries entries = WalkFrom(reader, 0);
    const std::uint64_t bytes = stream->GetBytes();
    EXPECT_EQ(WalkFrom(reader, 0), entries); // the second time too
    return {Locations(entries), GetPlaylistCut(reader), bytes};
}

/// A line of a comment of this many bytes, its end counted.
std::string Comment(std::size_t aSize) {
    return "#" + std::string(aSize - 2, 'x') + "\n";
}

/// Comments that fill a playlist up to a size, and then what is wanted there.
std::string FilledTo(const std::string& aStart, std::size_t aSize, const std::string& aEnd) {
    std::string text = aStart;
    while (aSize - text.size() > 2 * kPlaylist_MaxLine) {
        text += Comment(kPlaylist_MaxLine);
    }
    for (std::size_t left = aSize - text.size(); left > 0; left = aSize - text.size()) {
        text += Comment(left > kPlaylist_MaxLine ? left / 2 : left);
    }
    return text + aEnd;
}

} // namespace

TEST(PlaylistBounds, AHoleOf64GiBIsNoPlaylist) {
    for (const std::string start : {"", "a.mp3\n"}) {
        const Outcome outcome = OutcomeOf<M3UPlaylistParser>(start, std::string(4096, '\0'), kHuge);
        EXPECT_EQ(outcome.mLocations, start.empty() ? Texts{} : Texts{"a.mp3"});
        EXPECT_EQ(outcome.mCut, PlaylistCut::Line);
        EXPECT_LE(outcome.mBytes, kPlaylist_MaxSkippedLine + 4 * kPlaylist_LastBlock);
    }
    const Outcome outcome =
        OutcomeOf<PLSPlaylistParser>("[playlist]\nFile1=a.mp3\n", std::string(4096, '\0'), kHuge);
    EXPECT_EQ(outcome.mLocations, Texts{"a.mp3"});
    EXPECT_EQ(outcome.mCut, PlaylistCut::Line);
    EXPECT_LE(outcome.mBytes, kPlaylist_MaxSkippedLine + 4 * kPlaylist_LastBlock);
}

TEST(PlaylistBounds, LinesWithoutEndAreReadToTheBound) {
    for (const std::string& pattern : {Comment(4096), Comment(60'000)}) {
        const Outcome outcome = OutcomeOf<M3UPlaylistParser>("a.mp3\n", pattern, kHuge);
        EXPECT_EQ(outcome.mLocations, Texts{"a.mp3"});
        EXPECT_EQ(outcome.mCut, PlaylistCut::Size);
        EXPECT_LE(outcome.mBytes, kPlaylist_MaxBytes + 4 * kPlaylist_LastBlock);
    }
    const Outcome outcome = OutcomeOf<PLSPlaylistParser>("[playlist]\nFile1=a.mp3\n", Comment(4096), kHuge);
    EXPECT_EQ(outcome.mLocations, Texts{"a.mp3"});
    EXPECT_EQ(outcome.mCut, PlaylistCut::Size);
    EXPECT_LE(outcome.mBytes, kPlaylist_MaxBytes + 1);
    EXPECT_EQ(OutcomeOf<ASXPlaylistParser>("<asx>", Comment(4096), kHuge).mCut, PlaylistCut::Size);
}

TEST(PlaylistBounds, ALineAtTheBoundIsReadOverAndALongerOneEndsThePlaylist) {
    for (const std::size_t more : {0U, 1U}) {
        const std::string longest(kPlaylist_MaxSkippedLine + more, 'x');
        const std::string text = "a.mp3\n" + longest + "\nb.mp3\n";
        for (const std::string& pattern : {std::string("\n"), std::string("x")}) {
            const Outcome outcome = OutcomeOf<M3UPlaylistParser>(text, pattern, text.size());
            EXPECT_EQ(outcome.mLocations, more == 0 ? (Texts{"a.mp3", "b.mp3"}) : Texts{"a.mp3"});
            EXPECT_EQ(outcome.mCut, more == 0 ? PlaylistCut::None : PlaylistCut::Line);
        }
        const std::string open = "a.mp3\n" + longest; // the end of the stream ends it
        EXPECT_EQ(OutcomeOf<M3UPlaylistParser>(open, "x", open.size()).mCut,
                  more == 0 ? PlaylistCut::None : PlaylistCut::Line);
        const std::string pls = "[playlist]\nFile1=a\n" + longest + "\nFile2=b\n";
        EXPECT_EQ(OutcomeOf<PLSPlaylistParser>(pls, "x", pls.size()).mLocations,
                  more == 0 ? (Texts{"a", "b"}) : Texts{"a"});
    }
}

TEST(PlaylistBounds, OnceALineEndedAPlaylistNothingAfterItIsAnEntry) {
    const std::string text = "a.mp3\n" + std::string(kPlaylist_MaxSkippedLine + 1, 'x') + "\nb.mp3\n";
    const ezStreamOwner stream = MemoryPlaylist(text);
    M3UPlaylistParser reader(stream.get());
    EXPECT_EQ(Locations(WalkFrom(reader, 0)), Texts{"a.mp3"});
    PlaylistParserEntry entry;
    EXPECT_FALSE(reader.FetchEntryAtPos(text.find("b.mp3"), &entry));
    EXPECT_FALSE(reader.FetchEntryAtIndex(1, &entry));
    ASSERT_TRUE(reader.FetchEntryAtIndex(0, &entry));
    EXPECT_EQ(entry.mURI, "a.mp3");
    EXPECT_TRUE(entry.mNextEntryStreamPos == kezuint64_Max);
}

TEST(PlaylistBounds, APlaylistOfTheLargestSizeIsWholeAndALongerOneIsCut) {
    const std::string last = "last.mp3";
    const auto size = static_cast<std::size_t>(kPlaylist_MaxBytes);
    const std::string text = FilledTo("a.mp3\n", size - last.size(), last);
    ASSERT_EQ(text.size(), size);
    Outcome outcome = OutcomeOf<M3UPlaylistParser>(text, "\n", size);
    EXPECT_EQ(outcome.mLocations, (Texts{"a.mp3", last}));
    EXPECT_EQ(outcome.mCut, PlaylistCut::None);
    outcome = OutcomeOf<M3UPlaylistParser>(text, "x", size + 1); // half of a name is none
    EXPECT_EQ(outcome.mLocations, Texts{"a.mp3"});
    EXPECT_EQ(outcome.mCut, PlaylistCut::Size);
}

TEST(PlaylistBounds, TheLookForHLSReadsNoLineToItsEnd) {
    const std::string tag = "#EXT-X-TARGETDURATION:";
    for (const std::size_t more : {0U, 1U}) {
        const std::string text = FilledTo("", kPlaylist_HLSLook - tag.size() + more, tag + "9\na.mp3\n");
        const ezStreamOwner stream = MemoryPlaylist(text);
        EXPECT_EQ(M3UPlaylistParser(stream.get()).IsHLS(), more == 0);
    }
    HugeStream* stream = new HugeStream("#EXTM3U\n", "x", kHuge);
    const ezStreamOwner owner(stream);
    M3UPlaylistParser reader(stream);
    EXPECT_FALSE(reader.IsHLS());
    EXPECT_LE(stream->GetBytes(), kPlaylist_HLSLook + kPlaylist_LastBlock);
}

TEST(PlaylistBounds, AReaderOfAHostIsNotCut) {
    struct Own : PlaylistParser {
        void ParseAll(PlaylistParserCallback /*aCallback*/, void* /*aUserData*/) override {}
    };
    EXPECT_EQ(GetPlaylistCut(Own()), PlaylistCut::None);
}
