#include "ezFormats/ps/PSPackets.h"

#include "support/PsBytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace ps;
using namespace std::string_literals;

namespace {

const unsigned char* Bytes(const std::string& aText) {
    return reinterpret_cast<const unsigned char*>(aText.data());
}

/// "clock rate size" and the kind; "-" for bytes that are no header.
std::string Header(const std::string& aBytes) {
    PackHeader header;
    if (!PackHeader_Read(Bytes(aBytes), aBytes.size(), header)) {
        return "-";
    }
    return std::to_string(header.mClock) + " " + std::to_string(header.mMuxRate) + " " +
           std::to_string(header.mSize) + (header.mfMPEG2 ? " MPEG-2" : " MPEG-1");
}

/// The packets of a block: code and bytes, and "+" where these are not all; and how many were in order.
std::string Packets(const std::string& aBytes) {
    std::vector<unsigned char> block(aBytes.begin(),
                                     aBytes.end()); // of its own, so that a read past it is seen
    PSPackets packets(block.data(), block.size());
    PSPacket packet;
    std::string text;
    while (packets.Next(packet)) {
        char code[8];
        std::snprintf(code, sizeof code, "%02X", packet.mCode);
        text += code + (":" + std::to_string(packet.mSize)) + (packet.mfWhole ? " " : "+ ");
    }
    return text + std::to_string(packets.CountInOrder());
}

} // namespace

TEST(PackHeader, IsOfEitherKindAndKeepsItsMarkerBits) {
    constexpr std::uint64_t kLast = (std::uint64_t{1} << 33) - 1;
    EXPECT_EQ(Header(Pack(0)), "0 25200 14 MPEG-2");
    EXPECT_EQ(Header(Pack(kLast, 7, 0x3FFFFF)), "8589934591 4194303 21 MPEG-2");
    EXPECT_EQ(Header(PackMPEG1(90000)), "90000 3528 12 MPEG-1");
    EXPECT_EQ(Header(PackMPEG1(kLast, 0x3FFFFF)), "8589934591 4194303 12 MPEG-1");
    // Bits that are the same in every header, and no other: each is a bit of a byte.
    const auto damages = [](const std::string& aHeader) {
        std::string places;
        for (std::size_t bit = 0; bit < 8 * aHeader.size(); ++bit) {
            std::string damaged = aHeader;
            damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (0x80 >> bit % 8));
            places += bit >= 32 && Header(damaged) == "-" ? std::to_string(bit) + " " : "";
        }
        return places;
    };
    EXPECT_EQ(damages(Pack(0)), "32 33 37 53 69 79 102 103 ");
    EXPECT_EQ(damages(PackMPEG1(0)), "32 33 34 35 39 55 71 72 95 ");
    for (const std::string& header : {Pack(1), PackMPEG1(1)}) {
        for (std::size_t size = 0; size < header.size(); ++size) {
            EXPECT_EQ(Header(header.substr(0, size)), "-") << size;
        }
    }
}

TEST(PSPackets, FollowEachOtherWithStuffingOrZerosBetween) {
    EXPECT_EQ(Packets(Pack(0, 3) + Plain(0xBB, "system") + Plain(0xE0, "picture") + Pack(1) + End()),
              "BA:17 BB:6 E0:7 BA:14 B9:4 4");
    EXPECT_EQ(Packets(Pack(0) + "\0\0\0"s + Plain(0xC0, "sound")), "BA:14 C0:5 1");
    EXPECT_EQ(Packets(PackMPEG1(0) + Plain(0xC0, "sound") + Plain(0xBE, "")), "BA:12 C0:5 BE:0 2");
    EXPECT_EQ(Packets(Pack(0) + Plain(0xC0, "sound").substr(0, 8)), "BA:14 C0:2+ 1");
    EXPECT_EQ(Packets(Pack(0) + Plain(0xC0, "sound").substr(0, 5)), "BA:14 0");
    EXPECT_EQ(Packets(""), "0");
    EXPECT_EQ(Packets("\0\0\1"s), "0");
}

TEST(PSPackets, AfterAGapOneIsTakenThatEndsWhereAnotherBegins) {
    EXPECT_EQ(Packets("junk" + Plain(0xC0, "sound") + Plain(0xC0, "more")), "C0:5 C0:4 1");
    EXPECT_EQ(Packets("junk" + Plain(0xC0, "sound") + "junk" + Plain(0xC0, "more")), "0");
    EXPECT_EQ(Packets("junk" + Plain(0xC0, "sound")), "0");
    EXPECT_EQ(Packets("junk" + Code(0xB9) + Code(0xB9)), "0");
    EXPECT_EQ(Packets(Pack(0) + "junk" + Pack(1) + "junk"), "BA:14 BA:14 0");
    // A header whose marks are wrong; what looks like a code within a packet.
    EXPECT_EQ(Packets(Pack(0) + Code(0xBA) + std::string(10, '\xFF') + Pack(1)), "BA:14 BA:14 0");
    EXPECT_EQ(Packets(Pack(0) + Plain(0xC0, Plain(0xC1, "no") + Plain(0xC2, "no"))), "BA:14 C0:16 1");
}

TEST(PSPackets, VideoWithoutALengthEndsAtTheNextCode) {
    const std::string open = Code(0xE0) + "\0\0picture"s;
    EXPECT_EQ(Packets(Pack(0) + open + Pack(1)), "BA:14 E0:7+ BA:14 2");
    EXPECT_EQ(Packets(open + Pack(1)), "BA:14 0") << "nothing tells that it begins there";
    EXPECT_EQ(Packets(Pack(0) + open), "BA:14 E0:7+ 1");
}
