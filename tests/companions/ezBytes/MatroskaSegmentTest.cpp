#include "ezBytes/MatroskaSegment.h"

#include "ezBytes/Limits.h"

#include "support/EbmlBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// Where the parts of a Matroska file are found that tell of it.

namespace {

using ebml::Element;
using ebml::Head;
using ebml::Info;
using ebml::Seek;
using ebml::SeekHead;
using ebml::Segment;
using ebml::Tags;
using ebml::Tracks;
using ebml::Unknown;
using Strings = std::vector<std::string>;

const std::string kCluster = Element(kMatroska_Cluster, "frames");

/// A file in memory, and its segment. The size of a stream is not known.
class File {
public:
    explicit File(const std::string& aBytes, bool afStream = false)
        : mText(aBytes), mBytes(mText, afStream), mSegment(mBytes, mBudget) {}

    MatroskaSegment& Get() { return mSegment; }

    /// What the parts of an id hold, "!" in front of what is cut.
    Strings All(EBMLId anId) {
        Strings contents;
        EBMLElement element{ByteReader(mBytes)};
        for (std::size_t i = 0; mSegment.Find(anId, i, &element); ++i) {
            const auto size = static_cast<std::size_t>(element.mContent.GetLeft());
            contents.push_back((element.mfCut ? "!" : "") + Str(element.mContent.ReadText(size)));
        }
        return contents;
    }

private:
    class Bytes : public BlockBytes {
    public:
        Bytes(const std::string& aText, bool afStream)
            : BlockBytes(reinterpret_cast<const unsigned char*>(aText.data()), aText.size()),
              mfStream(afStream) {}
        std::optional<std::uint64_t> GetSize() const override {
            return mfStream ? std::nullopt : BlockBytes::GetSize();
        }

    private:
        bool mfStream;
    };

    std::string mText;
    Bytes mBytes;
    std::uint32_t mBudget = 1000;
    MatroskaSegment mSegment;
};

/// Parts of an id in a segment of that content.
Strings PartsOf(EBMLId anId, const std::string& aContent) {
    File file(Head() + Segment(aContent));
    EXPECT_TRUE(file.Get().Open());
    return file.All(anId);
}

} // namespace

TEST(MatroskaSegment, HeadTellsTheKindOfDocument) {
    const auto kind = [](const std::string& aBytes) {
        File file(aBytes);
        return file.Get().Open() ? Str(file.Get().GetDocType()) : "none";
    };
    const std::string segment = Segment(Info(""));
    EXPECT_EQ(kind(Head("matroska") + segment), "matroska");
    EXPECT_EQ(kind(Head(std::string("webm\0\0", 6)) + segment), "webm");
    EXPECT_EQ(kind(Head("WebM") + segment), "webm");
    EXPECT_EQ(kind(Head("other") + segment), "none");
    EXPECT_EQ(kind(Element(kEBML_Head, "") + segment), "none");
    EXPECT_EQ(kind(ebml::Void(3) + Head() + ebml::Void(300) + segment), "matroska");
    EXPECT_EQ(kind(Unknown(kEBML_Head, Element(kEBML_DocType, "webm")) + segment), "none");
    EXPECT_EQ(kind(Head() + Info("")), "none");
    EXPECT_EQ(kind(segment), "none");
    EXPECT_EQ(kind(""), "none");
    // lengths of ids and sizes that the head allows are those that are read in any case
    const std::string odd =
        Element(kEBML_Head, ebml::Number(kEBML_MaxIdLength, 77) + Element(kEBML_DocType, "webm"));
    EXPECT_EQ(kind(odd + segment), "webm");
}

TEST(MatroskaSegment, PartsBeforeTheFirstClusterAreMet) {
    const std::string front = Info("i") + Element(0x4123, "?") + Tracks("t") + Tags("a") + Tags("b");
    EXPECT_EQ(PartsOf(kMatroska_Info, front + kCluster + Tags("c")), Strings({"i"}));
    EXPECT_EQ(PartsOf(kMatroska_Tags, front + kCluster + Tags("c")), (Strings{"a", "b"}));
    EXPECT_EQ(PartsOf(kMatroska_Cues, front + kCluster), Strings());
    EXPECT_EQ(PartsOf(kMatroska_Tags, front), (Strings{"a", "b"})); // no cluster at all
}

TEST(MatroskaSegment, SeekHeadNamesThoseAfterTheClusters) {
    const std::string rest = Info("i") + kCluster;
    const std::size_t head = SeekHead(Seek(kMatroska_Tags, 0) + Seek(kMatroska_Info, 0)).size();
    const std::string seek = SeekHead(Seek(kMatroska_Tags, head + rest.size()) + Seek(kMatroska_Info, head));
    EXPECT_EQ(PartsOf(kMatroska_Tags, seek + rest + Tags("c")), Strings({"c"}));
    // what was met is not told twice
    EXPECT_EQ(PartsOf(kMatroska_Info, seek + rest + Tags("c")), Strings({"i"}));
}

TEST(MatroskaSegment, SeekHeadThatLiesFindsNothing) {
    const std::string rest = Info("i") + kCluster + Tags("c");
    for (const std::uint64_t position : {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{30},
                                         std::uint64_t{1} << 40, UINT64_MAX - 4, UINT64_MAX}) {
        EXPECT_EQ(PartsOf(kMatroska_Tags, SeekHead(Seek(kMatroska_Tags, position)) + rest), Strings())
            << position;
    }
    // neither does an entry that is not whole
    EXPECT_EQ(
        PartsOf(kMatroska_Tags, SeekHead(Element(0x4DBB, Element(0x53AB, ebml::Id(kMatroska_Tags)))) + rest),
        Strings());
}

TEST(MatroskaSegment, SecondSeekHeadIsReadForWhatTheFirstDoesNotName) {
    const std::size_t head = SeekHead(Seek(kMatroska_SeekHead, 0)).size();
    const std::size_t second = head + kCluster.size();
    const std::string tags = SeekHead(Seek(kMatroska_Tags, 2 * head + kCluster.size()));
    EXPECT_EQ(
        PartsOf(kMatroska_Tags, SeekHead(Seek(kMatroska_SeekHead, second)) + kCluster + tags + Tags("c")),
        Strings({"c"}));
}

TEST(MatroskaSegment, SeekHeadsThatNameEachOtherEnd) {
    const std::size_t head = SeekHead(Seek(kMatroska_SeekHead, 0)).size();
    const std::string self = SeekHead(Seek(kMatroska_SeekHead, 0));
    EXPECT_EQ(PartsOf(kMatroska_Tags, self + kCluster), Strings());
    const std::size_t second = head + kCluster.size();
    EXPECT_EQ(PartsOf(kMatroska_Tags, SeekHead(Seek(kMatroska_SeekHead, second)) + kCluster +
                                          SeekHead(Seek(kMatroska_SeekHead, 0))),
              Strings());
    // one after the other, more than are read
    const auto chained = [head](std::size_t aCount) {
        std::string bytes = SeekHead(Seek(kMatroska_SeekHead, head + kCluster.size())) + kCluster;
        for (std::size_t i = 1; i < aCount; ++i) {
            bytes += SeekHead(Seek(kMatroska_SeekHead, bytes.size() + head));
        }
        return bytes + SeekHead(Seek(kMatroska_Tags, bytes.size() + head)) + Tags("c");
    };
    EXPECT_EQ(PartsOf(kMatroska_Tags, chained(kMatroska_MaxSeekHeads)), Strings({"c"}));
    EXPECT_EQ(PartsOf(kMatroska_Tags, chained(kMatroska_MaxSeekHeads + 1)), Strings());
}

TEST(MatroskaSegment, PartsThatAreRememberedAreBounded) {
    const auto tags = [](std::size_t aCount) {
        std::string all;
        for (std::size_t i = 0; i < aCount; ++i) {
            all += Tags("");
        }
        return all;
    };
    EXPECT_EQ(PartsOf(kMatroska_Tags, tags(kMatroska_MaxParts)).size(), kMatroska_MaxParts);
    EXPECT_EQ(PartsOf(kMatroska_Tags, tags(kMatroska_MaxParts + 1)).size(), kMatroska_MaxParts);
}

TEST(MatroskaSegment, SegmentOfUnknownSizeGoesUpToTheNextDocument) {
    const std::string front = Info("i") + Tags("a");
    for (const std::string& segment :
         {Unknown(kMatroska_Segment, front), Unknown(kMatroska_Segment, front, 1),
          ebml::Stating(kMatroska_Segment, 0, front)}) {
        File file(Head() + segment + Head() + Segment(Tags("b")));
        ASSERT_TRUE(file.Get().Open());
        EXPECT_TRUE(file.Get().IsOfUnknownSize());
        EXPECT_EQ(file.All(kMatroska_Tags), Strings({"a"}));
    }
}

TEST(MatroskaSegment, CutSegmentIsReadAsFarAsItIsThere) {
    File file(Head() +
              ebml::Stating(kMatroska_Segment, 1U << 30, Info("i") + ebml::Stating(kMatroska_Tags, 9, "a")));
    ASSERT_TRUE(file.Get().Open());
    EXPECT_FALSE(file.Get().IsOfUnknownSize());
    EXPECT_EQ(file.All(kMatroska_Info), Strings({"i"}));
    EXPECT_EQ(file.All(kMatroska_Tags), Strings({"!a"}));
}

TEST(MatroskaSegment, FirstClusterIsWhereItStands) {
    const std::string before = Head() + ebml::Id(kMatroska_Segment) + ebml::Size(0x1000, 8) + Info("i");
    File file(before + kCluster + kCluster);
    ASSERT_TRUE(file.Get().Open());
    EXPECT_TRUE(file.Get().HasClusters());
    EXPECT_EQ(file.Get().GetClusters().GetPosition(), before.size());
    File none(before);
    ASSERT_TRUE(none.Get().Open());
    EXPECT_FALSE(none.Get().HasClusters());
    EXPECT_EQ(none.Get().GetClusters().GetLeft(), 0U);
}

TEST(MatroskaSegment, StreamWithoutASizeIsNotAskedForWhatIsFar) {
    const auto tags = [](std::uint64_t aPosition) {
        const std::string front = SeekHead(Seek(kMatroska_Tags, aPosition)) + Info("i");
        const std::string cluster = ebml::Stating(kMatroska_Cluster, 0, "");
        const std::string between(static_cast<std::size_t>(aPosition) - front.size() - cluster.size(), 'x');
        File file(Head() + ebml::Stating(kMatroska_Segment, 1U << 30, front + cluster + between + Tags("c")),
                  true);
        EXPECT_TRUE(file.Get().Open());
        return file.All(kMatroska_Tags);
    };
    const std::uint64_t start = Head().size() + 12; // of what the segment holds
    EXPECT_EQ(tags(kMatroska_StreamReach - start - 1), Strings({"c"}));
    EXPECT_EQ(tags(kMatroska_StreamReach - start), Strings());
}

TEST(MatroskaSegment, EveryTruncationIsReadAsFarAsItGoes) {
    const std::string whole =
        Head() + Segment(SeekHead(Seek(kMatroska_Cues, 60)) + Info("i") + kCluster + Tags("c"));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        File file(whole.substr(0, size));
        if (file.Get().Open()) {
            EXPECT_LE(file.All(kMatroska_Info).size(), 1U);
            EXPECT_EQ(file.All(kMatroska_Cues), Strings());
        }
    }
}

TEST(MatroskaSegment, ClusterOfUnknownSizeEndsAtAnyPartOfTheSegment) {
    for (const EBMLId id :
         {kMatroska_SeekHead, kMatroska_Info, kMatroska_Tracks, kMatroska_Cluster, kMatroska_Cues,
          kMatroska_Attachments, kMatroska_Chapters, kMatroska_Tags, kMatroska_Segment, kEBML_Head}) {
        EXPECT_FALSE(MatroskaCluster_MayHold(id)) << id;
    }
    for (const EBMLId id : {0xE7U, 0xA3U, 0xA0U, 0xABU, 0xA7U}) {
        EXPECT_TRUE(MatroskaCluster_MayHold(id)) << id;
    }
}
