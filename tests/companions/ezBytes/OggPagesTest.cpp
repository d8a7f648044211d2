#include "ezBytes/OggPages.h"

#include "ezBytes/ByteSource.h"

#include "support/CommentBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>

// Pages of Ogg, and the packets on them.

namespace {

constexpr unsigned kSerial = 7;

/// A file in memory, and a packet of it.
class File {
public:
    explicit File(const std::string& aBytes, std::uint32_t aMaxPages = 100)
        : mText(aBytes),
          mBytes(reinterpret_cast<const unsigned char*>(mText.data()), mText.size()),
          mPacket(mBytes, ByteReader(mBytes), kSerial, aMaxPages) {}

    /// All of the packet that there is.
    std::string Read() {
        std::string text;
        unsigned char byte = 0;
        while (mPacket.Get(text.size(), &byte)) {
            text.push_back(static_cast<char>(byte));
        }
        return text;
    }
    OggPacketBytes& Packet() { return mPacket; }

private:
    std::string mText;
    BlockBytes mBytes;
    OggPacketBytes mPacket;
};

std::string Joined(const std::vector<std::string>& aPages, const std::string& aBetween = "") {
    std::string all;
    for (const std::string& page : aPages) {
        all += page + aBetween;
    }
    return all;
}

} // namespace

TEST(OggPages, HeaderTellsWhatIsOnThePage) {
    const std::string bytes = PageOfOgg(kSerial, 3, std::string(300, 'a'), true, 44100) + "rest";
    BlockBytes block(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    ByteReader reader(block);
    ByteReader body = reader;
    OggPage page;
    ASSERT_TRUE(ReadOggPage(reader, &page, &body));
    EXPECT_TRUE(page.mfContinues);
    EXPECT_TRUE(page.mfBegins);
    EXPECT_EQ(page.mGranule, 44100U);
    EXPECT_EQ(page.mSerial, kSerial);
    EXPECT_EQ(page.mEndings, 1U);
    EXPECT_EQ(page.mFirstSize, 300U);
    EXPECT_TRUE(page.mfFirstEnds);
    EXPECT_EQ(page.mStart, 0U);
    EXPECT_EQ(body.GetLeft(), 300U);
    EXPECT_EQ(Str(reader.ReadText(4)), "rest");
    EXPECT_FALSE(ReadOggPage(reader, &page, &body));
}

TEST(OggPages, PageThatIsNotWholeHasAHeaderOrNone) {
    const std::string whole = PageOfOgg(kSerial, 0, std::string(20, 'a'), true);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        BlockBytes block(reinterpret_cast<const unsigned char*>(whole.data()), size);
        ByteReader reader(block);
        ByteReader body = reader;
        OggPage page;
        EXPECT_EQ(ReadOggPage(reader, &page, &body), size >= 28) << size;
        EXPECT_TRUE(body.HasFailed()) << size;
    }
}

TEST(OggPages, PacketIsReadFromAsManyPagesAsItTakes) {
    const std::string packet = std::string(254, 'a') + std::string(255, 'b') + std::string(300, 'c');
    const std::vector<std::string> pages = PagesOfOgg(kSerial, packet, 255);
    EXPECT_EQ(File(Joined(pages)).Read(), packet);
    EXPECT_EQ(File(Joined(pages, PageOfOgg(9, 0, "other", true))).Read(), packet);
    File file(Joined(pages) + PageOfOgg(kSerial, 0, "next", true));
    EXPECT_FALSE(file.Packet().GetSize().has_value()); // not known before its end
    EXPECT_EQ(file.Read(), packet);
    EXPECT_EQ(file.Packet().GetSize(), packet.size());
    // Bytes of the file that hold a part of it.
    const std::vector<BytePiece> slice = file.Packet().Slice(250, 10);
    ASSERT_EQ(slice.size(), 2U);
    EXPECT_EQ(slice[0].mOffset, 28U + 250);
    EXPECT_EQ(slice[0].mSize, 5U);
    EXPECT_EQ(slice[1].mOffset, pages[0].size() + 28);
}

TEST(OggPages, PagesAreReadWhenTheyAreAskedFor) {
    const std::vector<std::string> pages = PagesOfOgg(kSerial, std::string(1000, 'a'), 255);
    File file(pages[0] + pages[1] + "no page");
    EXPECT_TRUE(file.Packet().Reach(510));
    EXPECT_FALSE(file.Packet().Reach(511));
    EXPECT_TRUE(file.Packet().Reach(510));
    EXPECT_EQ(file.Read(), std::string(510, 'a'));
    EXPECT_EQ(File(Joined(pages), 3).Read(), std::string(765, 'a')) << "no more than so many";
}

TEST(OggPages, PacketAfterItBeginsOnTheNextPage) {
    const std::vector<std::string> first = PagesOfOgg(kSerial, std::string(600, 'a'), 255);
    const std::vector<std::string> second = PagesOfOgg(kSerial, std::string(400, 'b'), 255);
    File file(Joined(first) + PageOfOgg(9, 0, "other", true) + Joined(second));
    EXPECT_TRUE(file.Packet().Next()); // the first need not have been read
    EXPECT_EQ(file.Read(), std::string(400, 'b'));
    EXPECT_EQ(file.Packet().GetSize(), 400U);
    EXPECT_FALSE(file.Packet().Next());
    File cut(Joined({first[0], first[1]}) + Joined(second));
    EXPECT_FALSE(cut.Packet().Next()) << "it is not whole";
    File few(Joined(first) + Joined(second), 3);
    EXPECT_FALSE(few.Packet().Next()) << "no more than so many pages";
}

TEST(OggPages, PacketEndsWherePagesAreMissing) {
    const std::vector<std::string> pages = PagesOfOgg(kSerial, std::string(1000, 'a'), 255);
    EXPECT_EQ(File(pages[1]).Read(), "");
    EXPECT_EQ(File(pages[0] + PageOfOgg(kSerial, 0, "anew", true)).Read(), std::string(255, 'a'));
    EXPECT_EQ(File(pages[0] + PageOfOgg(kSerial, 3, "begins", true)).Read(), std::string(255, 'a'));
    EXPECT_EQ(File(pages[0] + pages[1].substr(0, 100)).Read(), std::string(255, 'a'));
}
