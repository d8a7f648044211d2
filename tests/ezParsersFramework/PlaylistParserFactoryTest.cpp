#include "ez/PlaylistParserFactory.h"

#include "support/Catchers.h"
#include "support/ScriptedPlaylist.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

/// A stream that the factory never looks into.
ezStream* AStream() {
    static int place = 0;
    return reinterpret_cast<ezStream*>(&place); // NOLINT: only its address counts
}

/// Tells which builder made it, and of what.
class BuiltPlaylist : public ScriptedPlaylist {
public:
    BuiltPlaylist(int aNumber, ezStream* aStream) : mNumber(aNumber), mStream(aStream) { ++sAlive; }
    ~BuiltPlaylist() override { --sAlive; }

    int mNumber;
    ezStream* mStream;
    static int sAlive;
};

int BuiltPlaylist::sAlive = 0;

template <int Number>
PlaylistParser* Build(ezStream* aStream) {
    return new BuiltPlaylist(Number, aStream);
}

PlaylistParser* BuildNone(ezStream* /*aStream*/) {
    return nullptr;
}

class PlaylistFactory : public testing::Test {
protected:
    /// The number of the builder that answers; -1 when none does. All three ways to ask agree.
    int Found(const ezCString& aMimeType, const ezCString& anExtension) const {
        const PlaylistParserFactoryInfo* info = mFactory.GetPlaylistParserFactoryInfo(aMimeType, anExtension);
        EXPECT_EQ(mFactory.IsSupportedPlaylist(aMimeType, anExtension), info != nullptr);
        const std::unique_ptr<PlaylistParser> parser(
            mFactory.NewPlaylistParser(AStream(), aMimeType, anExtension));
        EXPECT_EQ(parser != nullptr, info != nullptr);
        return parser != nullptr ? static_cast<BuiltPlaylist&>(*parser).mNumber : -1;
    }
    int ByExtension(const ezCString& anExtension) const { return Found("", anExtension); }
    int ByType(const ezCString& aMimeType) const { return Found(aMimeType, ""); }
    std::string ListOf(const ezCString& aMimeType) const {
        return Str(mFactory.GetPlaylistParserFactoryInfo(aMimeType, "")->mExtensionList);
    }

    PlaylistParserFactory mFactory;
};

} // namespace

TEST_F(PlaylistFactory, KnowsNoReaderAtFirst) {
    EXPECT_EQ(Found("audio/x-mpegurl", "m3u"), -1);
    EXPECT_EQ(ByExtension("m3u"), -1);
    EXPECT_EQ(ByExtension("."), -1);
    EXPECT_EQ(Found("", ""), -1);
}

TEST_F(PlaylistFactory, KeepsARegistrationAsItIsDescribed) {
    EXPECT_TRUE(mFactory.Register(Build<1>, "Audio/X-MpegURL", "M3U,m3u8"));
    const PlaylistParserFactoryInfo* info = mFactory.GetPlaylistParserFactoryInfo("Audio/X-MpegURL", "");
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->mBuilderFunc, &Build<1>);
    EXPECT_EQ(info->mMimeType, "Audio/X-MpegURL");
    EXPECT_EQ(info->mExtensionList, ",m3u,m3u8,");
    mFactory.Register(Build<2>, "a/b", "");
    EXPECT_EQ(ListOf("a/b"), ",,");
    mFactory.Register(Build<3>, "a/c", " .PLS, x.Y ,,\xC3\x89");
    EXPECT_EQ(ListOf("a/c"), ", .pls, x.y ,,\xC3\x89,") << "nothing else is touched";
}

TEST_F(PlaylistFactory, CommasKeepExtensionsApart) {
    mFactory.Register(Build<1>, "audio/x-mpegurl", "m3u,m3u8");
    for (const char* extension : {"m3u", "M3U", "m3u8", "M3U8", ".m3u", ".M3U", "m3.u", "..m3u8."}) {
        EXPECT_EQ(ByExtension(extension), 1) << extension;
    }
    for (const char* extension : {"m3", "3u", "m3u88", "u", "8", " m3u", "m3u ", ".", ""}) {
        EXPECT_EQ(ByExtension(extension), -1) << extension;
    }
    EXPECT_EQ(ByExtension("m3u,m3u8"), 1) << "the key is looked for as it is";
}

TEST_F(PlaylistFactory, AMIMETypeDecidesAlone) {
    mFactory.Register(Build<1>, "audio/x-mpegurl", "m3u");
    EXPECT_EQ(Found("audio/x-mpegurl", "pls"), 1);
    EXPECT_EQ(Found("audio/x-mpegurl", ""), 1);
    EXPECT_EQ(Found("audio/x-scpls", "m3u"), -1);
    EXPECT_EQ(Found("*", "m3u"), -1);
    EXPECT_EQ(Found("", "m3u"), 1);
}

TEST_F(PlaylistFactory, AMIMETypeIsComparedToTheLetter) {
    mFactory.Register(Build<1>, "audio/x-mpegurl", "m3u");
    EXPECT_EQ(Found("Audio/x-mpegurl", "m3u"), -1);
    EXPECT_EQ(Found("audio/x-mpegurl;charset=utf-8", "m3u"), -1);
    EXPECT_EQ(Found("audio/x-mpegurl ", "m3u"), -1);
    EXPECT_EQ(Found("audio/x-mpegur", "m3u"), -1);
}

TEST_F(PlaylistFactory, TheFirstRegistrationWins) {
    mFactory.Register(Build<1>, "a/a", "x,y");
    mFactory.Register(Build<2>, "a/a", "y,z");
    mFactory.Register(Build<3>, "a/b", "x,y,z,w");
    EXPECT_EQ(ByType("a/a"), 1);
    EXPECT_EQ(ByType("a/b"), 3);
    EXPECT_EQ(ByExtension("x"), 1);
    EXPECT_EQ(ByExtension("y"), 1);
    EXPECT_EQ(ByExtension("z"), 2);
    EXPECT_EQ(ByExtension("w"), 3);
}

TEST_F(PlaylistFactory, ADotAloneMeetsTheReadersRegisteredWithoutExtensions) {
    mFactory.Register(Build<1>, "a/a", "x");
    mFactory.Register(Build<2>, "a/b", "");
    mFactory.Register(Build<3>, "a/c", "");
    EXPECT_EQ(ByExtension("."), 2);
    EXPECT_EQ(ByExtension("..."), 2);
    EXPECT_EQ(ByExtension(""), -1);
    EXPECT_EQ(Found("a/d", "."), -1);
}

TEST_F(PlaylistFactory, AReaderMayHaveExtensionsAlone) {
    EXPECT_TRUE(mFactory.Register(Build<1>, "", "x"));
    EXPECT_EQ(ByExtension("x"), 1);
    EXPECT_EQ(Found("a/a", "x"), -1);
    EXPECT_EQ(Found("", ""), -1) << "the empty type is no type";
}

TEST_F(PlaylistFactory, BlanksAndDotsOfAListBelongToItsExtensions) {
    mFactory.Register(Build<1>, "", "m3u, m3u8,.pls");
    EXPECT_EQ(ByExtension("m3u"), 1);
    EXPECT_EQ(ByExtension("m3u8"), -1);
    EXPECT_EQ(ByExtension(" m3u8"), 1);
    EXPECT_EQ(ByExtension("pls"), -1);
    EXPECT_EQ(ByExtension(".pls"), -1) << "the dot is taken out of what is asked for alone";
}

TEST_F(PlaylistFactory, AnExtensionWithANULMeetsNoOther) {
    mFactory.Register(Build<1>, "", "m3u8");
    EXPECT_EQ(ByExtension(Bytes(std::string("m3u8\0x", 6))), -1);
    EXPECT_EQ(ByExtension(Bytes(std::string("m3u\0", 4))), -1);
}

TEST_F(PlaylistFactory, ABuilderIsHandedTheStreamAndItsReaderIsTheCallers) {
    mFactory.Register(Build<1>, "a/a", "x");
    {
        const std::unique_ptr<PlaylistParser> parser(mFactory.NewPlaylistParser(AStream(), "a/a", "x"));
        ASSERT_NE(parser, nullptr);
        EXPECT_EQ(static_cast<BuiltPlaylist&>(*parser).mStream, AStream());
        const std::unique_ptr<PlaylistParser> other(mFactory.NewPlaylistParser(nullptr, "a/a", "x"));
        ASSERT_NE(other, nullptr);
        EXPECT_NE(other, parser);
        EXPECT_EQ(static_cast<BuiltPlaylist&>(*other).mStream, nullptr);
        EXPECT_EQ(BuiltPlaylist::sAlive, 2);
    }
    EXPECT_EQ(BuiltPlaylist::sAlive, 0);
}

TEST_F(PlaylistFactory, ABuilderThatFailsGivesNoReaderAndIsSupportedStill) {
    mFactory.Register(BuildNone, "a/a", "x");
    mFactory.Register(Build<2>, "a/a", "x");
    EXPECT_TRUE(mFactory.IsSupportedPlaylist("a/a", "x"));
    EXPECT_EQ(mFactory.NewPlaylistParser(AStream(), "a/a", "x"), nullptr) << "no other is tried";
}

TEST_F(PlaylistFactory, ARegistrationWithoutABuilderIsACallersMistake) {
    const AssertCatcher assertions;
    EXPECT_FALSE(mFactory.Register(nullptr, "a/a", "x"));
    EXPECT_FALSE(mFactory.Register(nullptr, "", ""));
    EXPECT_EQ(assertions.Failures(),
              AssertCatcher::Noted({"aPlaylistParserBuilderFunc != NULL @ PlaylistParserFactory",
                                    "aPlaylistParserBuilderFunc != NULL @ PlaylistParserFactory"}));
    EXPECT_EQ(ByType("a/a"), -1);
    EXPECT_EQ(ByExtension("x"), -1);
}

TEST_F(PlaylistFactory, ARegistrationForNothingIsACallersMistake) {
    const AssertCatcher assertions;
    EXPECT_FALSE(mFactory.Register(Build<1>, "", ""));
    EXPECT_EQ(
        assertions.Failures(),
        AssertCatcher::Noted({"!aMimeType.IsEmpty() || !anExtensionList.IsEmpty() @ PlaylistParserFactory"}));
    EXPECT_EQ(ByExtension("."), -1);
}

namespace {

/// A reader that declares what it reads.
class DeclaredReader : public BuiltPlaylist {
public:
    using BuiltPlaylist::BuiltPlaylist;
    static constexpr const char* kMimeTypes[] = {"audio/x-mpegurl", "audio/mpegurl"};
    static constexpr const char* kExtensionList = "m3u,M3U8";
    static PlaylistParser* sBuild(ezStream* aStream) { return new DeclaredReader(9, aStream); }
};

/// The same, with a mistake in it.
class WrongReader : public DeclaredReader {
public:
    static constexpr const char* kMimeTypes[] = {"", "audio/wrong"};
    static constexpr const char* kExtensionList = "";
};

} // namespace

TEST_F(PlaylistFactory, AReaderRegistersEachOfItsMIMETypesUnderItsExtensions) {
    EXPECT_TRUE(PlaylistParser::RegisterTo<DeclaredReader>(&mFactory));
    EXPECT_EQ(ByType("audio/x-mpegurl"), 9);
    EXPECT_EQ(ByType("audio/mpegurl"), 9);
    EXPECT_EQ(ByExtension("m3u8"), 9);
    EXPECT_EQ(ListOf("audio/mpegurl"), ",m3u,m3u8,");
    EXPECT_FALSE(PlaylistParser::RegisterTo<DeclaredReader>(nullptr));
}

TEST_F(PlaylistFactory, AReaderIsToldWhenOneOfItsRegistrationsIsRefused) {
    const AssertCatcher assertions;
    EXPECT_FALSE(PlaylistParser::RegisterTo<WrongReader>(&mFactory));
    EXPECT_EQ(ByType("audio/wrong"), 9) << "the others stand";
}
