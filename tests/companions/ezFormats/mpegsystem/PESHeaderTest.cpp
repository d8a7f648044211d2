#include "ezFormats/mpegsystem/PESHeader.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace {

const unsigned char* Bytes(const std::string& aText) {
    return reinterpret_cast<const unsigned char*>(aText.data());
}

std::string Number(const std::optional<std::uint64_t>& aNumber) {
    return aNumber ? std::to_string(*aNumber) : "-";
}

/// "packet size, header size, PTS, DTS", and what else is said; "none" for bytes that are no header.
std::string Read(const std::string& aBytes) {
    PESHeader header;
    if (!ReadPESHeader(Bytes(aBytes), aBytes.size(), &header)) {
        return "none";
    }
    std::string text = std::to_string(header.mPacketSize) + " " + std::to_string(header.mHeaderSize) + " " +
                       Number(header.mPTS) + " " + Number(header.mDTS);
    text += header.mfMPEG1 ? " MPEG-1" : "";
    text += header.mfScrambled ? " scrambled" : "";
    return header.mExtension != 0 ? text + " " + std::to_string(header.mExtension) : text;
}

struct Case {
    std::string mBytes;
    const char* mAnswer;
};

// clang-format off
const Case kCases[] = {
    {"\0\0\1\xE0\0\0\x80\0\0"s,                                              "0 9 - -"},
    {"\0\0\1\xC0\0\x10\x80\x80\x05\x21\0\x01\0\x03"s,                        "22 14 1 -"},
    {"\0\0\1\xE0\0\x20\x80\xC0\x0A\x3F\xFF\xFF\xFF\xFF\x11\0\x01\0\x05"s,    "38 19 8589934591 2"},
    {"\0\0\1\xE0\0\x20\xB0\0\0"s,                                            "38 9 - - scrambled"},
    {"\0\0\1\xE0\0\x20\x80\x80\x05\x20\0\x01\0\x03"s,                        "38 14 - -"}, // no marker bit
    {"\0\0\1\xE0\0\x20\x80\x80\x05\x31\0\x01\0\x03"s,                        "38 14 - -"}, // marked as of two
    {"\0\0\1\xE0\0\x20\x80\x80\x04\x21\0\x01\0"s,                            "38 13 - -"}, // no room for one
    {"\0\0\1\xE0\0\x20\x80\x80\x05\x21\0\x01\0"s,                            "none"},      // cut
    {"\0\0\1\xE0\0\x04\x80\x80\x05\x21\0\x01\0\x03"s,                        "none"},      // longer than its packet
    {"\0\0\1\xFD\0\x20\x80\x81\x08\x21\0\x01\0\x03\x01\x81\x55"s,            "38 17 1 - 85"},
    {"\0\0\1\xFD\0\x20\x80\x81\x08\x21\0\x01\0\x03\x01\x81\xD5"s,            "38 17 1 -"},  // no extension of the id
    {"\0\0\1\xFD\0\x20\x80\x01\x01\xFF"s,                                    "38 10 - -"},  // cut within the extension
    // MPEG-1: stuffing, the size of a buffer, one stamp or two, none
    {"\0\0\1\xC0\0\x10\xFF\xFF\x40\x20\x21\0\x01\0\x03"s,                    "22 15 1 - MPEG-1"},
    {"\0\0\1\xE0\0\x20\x31\0\x01\0\x03\x11\0\x01\0\x05"s,                    "38 16 1 2 MPEG-1"},
    {"\0\0\1\xE0\0\x20\x0F"s,                                                "38 7 - - MPEG-1"},
    {"\0\0\1\xE0\0\x20\x0E"s,                                                "none"},
    {"\0\0\1\xE0\0\x20"s + std::string(17, '\xFF') + "\x0F",                 "none"},
    {"\0\0\1\xE0\0\x20\x40"s,                                                "none"},
    // without a header of their own
    {"\0\0\1\xBE\0\x10"s,                                                    "22 6 - -"},
    {"\0\0\1\xBF\x03\xD4"s,                                                  "986 6 - -"},
    // no packets of a stream
    {"\0\0\1\xB3\0\x10\x80\0\0"s,                                            "none"},
    {"\0\0\2\xE0\0\x10\x80\0\0"s,                                            "none"},
    {"\0\0\1\xE0\0"s,                                                        "none"},
};
// clang-format on

} // namespace

TEST(PESHeader, TellsSizesAndStampsOfEitherSyntax) {
    for (const Case& each : kCases) {
        EXPECT_EQ(Read(each.mBytes), each.mAnswer) << testing::PrintToString(each.mBytes);
    }
}

TEST(PESHeader, CutAnywhereIsNoneOrTheSame) {
    for (const Case& each : kCases) {
        for (std::size_t size = 0; size < each.mBytes.size(); ++size) {
            const std::string answer = Read(each.mBytes.substr(0, size));
            EXPECT_TRUE(answer == "none" || answer == each.mAnswer) << size << " " << answer;
        }
    }
}
