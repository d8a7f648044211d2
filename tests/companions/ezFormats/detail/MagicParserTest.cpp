#include "companions/ezFormats/FormatHost.h"

#include "ez/MimeTypesDotIniParser.h"
#include "ezFormats/detail/FormatMagic.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MagicParser.h"
#include "ezFormats/detail/MediaBytes.h"

#include <gtest/gtest.h>

#include <sstream>

// The parser of what is not what it is called.

namespace {

std::string SampleBytes(const std::string& aName) {
    return ReadWholeFile(std::string(EZ_SAMPLES "/") + aName);
}

/// "MIME-type class profile" of a record.
std::string Announced(const ezMediaInfo* anInfo) {
    if (anInfo == nullptr) {
        return "none";
    }
    const std::string field(anInfo->GetCString(kezInfo_DLNA, "").View());
    return std::string(anInfo->GetCString(kezInfo_MimeType, "-").View()) + " " +
           std::string(anInfo->GetCString(kezInfo_ClassName, "-").View()) + " " +
           field.substr(0, field.find(';'));
}

std::string As(const std::string& aBytes, const std::string& aName) {
    FormatHost host;
    return Announced(host.Parse(aBytes, "/media/" + aName).get());
}

/// An ID3v2.3 tag that holds nothing but so many zeros.
std::string Tag(std::size_t aSize) {
    std::string tag = "ID3\3";
    tag += std::string("\0\0", 2);
    for (unsigned shift = 28; shift != 0;) {
        shift -= 7;
        tag += static_cast<char>(aSize >> shift & 0x7F);
    }
    return tag + std::string(aSize, '\0');
}

} // namespace

TEST(MagicParser, MisnamedMediaIsAnnouncedAsWhatItIs) {
    const std::string photo = "image/jpeg item.imageItem.photo DLNA.ORG_PN=JPEG_SM";
    EXPECT_EQ(As(SampleBytes("pictures/harbour.jpg"), "a.mp3"), photo);
    EXPECT_EQ(As(SampleBytes("pictures/harbour.jpg"), "a.png"), photo);
    EXPECT_EQ(As(SampleBytes("pictures/harbour.jpg"), "a.heic"), photo);
    EXPECT_EQ(As(SampleBytes("pictures/harbour.png"), "a.jpg"),
              "image/png item.imageItem.photo DLNA.ORG_PN=PNG_LRG");
    EXPECT_EQ(As(SampleBytes("music/morning-walk.mp3"), "a.wav"),
              "audio/mpeg item.audioItem.musicTrack DLNA.ORG_PN=MP3");
    EXPECT_EQ(As(SampleBytes("formats/alac.m4a"), "a.mkv"),
              "audio/mp4 item.audioItem.musicTrack DLNA.ORG_OP=01");
}

TEST(MagicParser, WhatItDoesNotKnowIsAnnouncedByItsNameAsBefore) {
    EXPECT_EQ(As("nothing at all", "a.mp3"), "audio/mpeg item.audioItem.musicTrack ");
    EXPECT_EQ(As("nothing at all", "a.jpg"), "image/jpeg item.imageItem.photo ");
    EXPECT_EQ(As(SampleBytes("pictures/harbour.jpg"), "a.txt"), "none");
    EXPECT_EQ(As(SampleBytes("pictures/harbour.jpg"), "a"), "none");
}

TEST(MagicParser, TagOfASongIsSteppedOverAndDecidesNothing) {
    const std::string song = SampleBytes("formats/cbr-without-header.mp3");
    const std::string sound = song.substr(song.find("\xFF\xFB"));
    for (const std::size_t size : {0U, 1U, 5000U, 9000U, 300000U}) {
        EXPECT_EQ(As(Tag(size) + sound, "a.flac").substr(0, 10), "audio/mpeg") << size;
        EXPECT_EQ(As(Tag(size) + Tag(3) + sound, "a.flac").substr(0, 10), "audio/mpeg") << size;
        EXPECT_EQ(As(Tag(size) + SampleBytes("music/plain-water.flac"), "a.flac").substr(0, 10), "audio/flac")
            << size;
        // No picture begins with one.
        EXPECT_EQ(As(Tag(size) + SampleBytes("pictures/harbour.jpg"), "a.flac").substr(0, 10), "audio/flac")
            << size;
    }
}

TEST(FormatMagic, AfterATagOfASongOnlyWhatMayFollowOneShows) {
    const auto found = [](const std::string& aBytes) {
        AwkwardStream stream(aBytes);
        MediaBytes bytes(stream, kMagic_MaxReads, kMagic_MaxBytes);
        const char* const type = FormatMagic_Find(bytes);
        return std::string(type != nullptr ? type : "none");
    };
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        const FormatMagic& magic = format->mMagic;
        for (const SampleFile& sample : AllSamples()) {
            if (sample.mWinner == format->mType) {
                EXPECT_EQ(found(sample.mBytes), magic.mIsAt != nullptr ? format->mType : "none")
                    << sample.mName;
                EXPECT_EQ(found(Tag(7) + sample.mBytes), magic.mfAfterTags ? format->mType : "none")
                    << sample.mName;
            }
        }
    }
}

TEST(MagicParser, EveryByteOfAMagicCounts) {
    const auto winner = [](std::string aBytes, std::size_t aPlace, unsigned aValue) {
        aBytes[aPlace] = static_cast<char>(aValue);
        return FormatHost().Winner(aBytes, "/media/some.gif");
    };
    const std::string photo = SampleBytes("pictures/harbour.jpg");
    const std::string picture = SampleBytes("pictures/harbour.png");
    const std::string film = SampleBytes("video/kite-day.mp4");
    EXPECT_EQ(winner(photo, 0, 0xFF), "jpg");
    EXPECT_EQ(winner(picture, 0, 0x89), "png");
    EXPECT_EQ(winner(film, 0, 0), "mp4");
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(winner(photo, i, 0x01), "-") << i;
    }
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(winner(picture, i, 0x01), "-") << i;
    }
    for (std::size_t i = 4; i < 8; ++i) {
        EXPECT_EQ(winner(film, i, 0x01), "-") << i;
    }
}

TEST(MagicParser, CostsNothingWhereTheNameIsRightAndOneBlockWhereItLies) {
    const auto costsOf = [](const std::string& aBytes, const char* aPath) {
        FormatHost host;
        return host.Costs(aBytes, aPath);
    };
    const std::string photo = SampleBytes("pictures/harbour.jpg");
    const AwkwardStream::Costs right = costsOf(photo, "/a.jpg");
    const AwkwardStream::Costs wrong = costsOf(photo, "/a.gif");
    EXPECT_EQ(wrong.mReads, right.mReads);
    EXPECT_EQ(wrong.mBytes, right.mBytes);
    // Not media: the first block, which every parser shares.
    const AwkwardStream::Costs none = costsOf(std::string(100000, 'x'), "/a.gif");
    EXPECT_EQ(none.mReads, 1U);
    EXPECT_LE(none.mBytes, 8192U);
    // A tag that is longer than the block, and sound that is none.
    const AwkwardStream::Costs tagged = costsOf(Tag(300000) + std::string(100000, 'x'), "/a.gif");
    EXPECT_LE(tagged.mReads, 2U);
    EXPECT_LE(tagged.mBytes, 16384U);
}

TEST(MagicParser, WorstFileStaysWithinTheBudget) {
    std::string tags;
    for (unsigned i = 0; i < 8; ++i) {
        tags += Tag(200000);
    }
    FormatHost host;
    const AwkwardStream::Costs costs = host.Costs(tags + std::string(100000, 'x'), "/a.gif");
    EXPECT_LE(costs.mReads, kMagic_MaxReads);
    EXPECT_LE(costs.mBytes, kMagic_MaxBytes);
}

namespace {

/// A parser of a host's own, which reads on from where the stream stands and knows nothing.
class NotingParser : public ezMediaParser {
public:
    NotingParser(const char* aType, std::vector<std::string>& aNotes)
        : ezMediaParser(aType, nullptr, false), mNotes(aNotes) {}

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        std::string bytes(4, '-');
        std::size_t size = bytes.size();
        const bool fRead = aStream.Read(&size, bytes.data());
        mNotes.push_back(fRead ? bytes.substr(0, size) : "failed");
        return nullptr;
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }
    ezCString GetDLNAInfo() override { return {}; }

private:
    std::vector<std::string>& mNotes;
};

} // namespace

TEST(MagicParser, HandsTheStreamOnAsItCame) {
    const std::string song = Tag(5000) + std::string("\xFF\xFB\x90\x64", 4) + std::string(413, '\0') +
                             std::string("\xFF\xFB\x90\x64", 4) + std::string(413, '\0');
    for (const std::size_t start : {0U, 3U, 9U}) {
        std::vector<std::string> notes;
        ezMediaParserManager manager(nullptr);
        manager.Add(new NotingParser("mp3", notes));
        manager.Add(new MagicParser);
        AwkwardStream stream(song);
        EXPECT_TRUE(stream.Seek(ezuint64(start), ezMediaParserStream::SeekFromStart, true));
        EXPECT_EQ(manager.ParseFromType("any", stream), nullptr);
        EXPECT_EQ(notes, std::vector<std::string>({song.substr(start, 4)}));
        EXPECT_EQ(stream.Tell(), ezuint64(start));
        // Once a request, whatever leads there.
        EXPECT_EQ(manager.ParseFromType("any", stream), nullptr);
        EXPECT_EQ(manager.ParseFromType("mp3", stream), nullptr);
        EXPECT_EQ(notes.size(), 1U);
    }
}

TEST(MagicParser, HasNoCapabilities) {
    MagicParser parser;
    EXPECT_STREQ(parser.GetType().c_str(), "any");
    EXPECT_STREQ(parser.GetDLNAInfo().c_str(), "");
    EXPECT_FALSE(parser.CanExtractCoverArt());
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "image/jpeg", true);
    EXPECT_FALSE(parser.AdjustDLNAInfo(&info));
    EXPECT_FALSE(info.Has(kezInfo_ClassName));
    AwkwardStream stream(SampleBytes("pictures/harbour.jpg"));
    EXPECT_EQ(parser.Parse(stream), nullptr); // no manager, no parsers
}

TEST(MagicParser, StandsLastInEveryPublishedLineOfTheSamples) {
    std::istringstream table(ReadWholeFile(EZ_SAMPLES "/mediaCTRLMediaTypes.ini"));
    bool fPublished = false;
    std::size_t lines = 0;
    for (std::string line; std::getline(table, line);) {
        fPublished = line.compare(0, 1, "[") == 0 ? line == "[MimeTypes]" : fPublished;
        if (line.empty() || line.find('=') == std::string::npos || line[0] == ';') {
            continue;
        }
        const bool fNamed = line.size() > 4 && (line.compare(line.size() - 4, 4, "@any") == 0 ||
                                                line.compare(line.size() - 4, 4, ",any") == 0);
        EXPECT_EQ(fNamed, fPublished) << line;
        EXPECT_TRUE(!fPublished || std::count(line.begin(), line.end(), '@') == 3) << line;
        ++lines;
    }
    EXPECT_GT(lines, 100U);
}
