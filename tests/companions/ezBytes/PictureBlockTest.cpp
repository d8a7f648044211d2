#include "ezBytes/PictureBlock.h"
#include "ezBytes/ID3Picture.h"
#include "ezBytes/VorbisComments.h"

#include "ezBytes/ByteSource.h"

#include "support/CommentBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <functional>

// Pictures in tags, and the comments of Vorbis.

namespace {

using namespace std::string_literals;

/// What a function makes of a reader of some bytes.
std::string With(const std::string& aBytes, const std::function<std::string(ByteReader&)>& aRead) {
    BlockBytes block(reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size());
    ByteReader reader(block);
    return aRead(reader);
}

/// "type mime offset size".
std::string Block(const std::string& aBytes, std::uint64_t aSize, std::uint32_t aMaxText = 256) {
    return With(aBytes, [&](ByteReader& aReader) {
        PictureBlock block;
        return !ReadPictureBlock(aReader, aSize, aMaxText, &block)
                   ? "none"s
                   : std::to_string(block.mType) + " " + Str(block.mMimeType) + " " +
                         std::to_string(block.mDataOffset) + " " + std::to_string(block.mDataSize);
    });
}

/// "type mime rest".
std::string Frame(const std::string& aBytes, unsigned aVersion = 3) {
    return With(aBytes, [&](ByteReader& aReader) {
        ID3Picture frame;
        return !ReadID3Picture(aReader, aVersion, 8, &frame)
                   ? "none"s
                   : std::to_string(frame.mType) + " " + Str(frame.mMimeType) + " " +
                         Str(aReader.ReadText(static_cast<std::size_t>(aReader.GetLeft())));
    });
}

/// Keys and values.
std::string All(const std::string& aBytes) {
    return With(aBytes, [](ByteReader& aReader) {
        VorbisComments comments(aReader);
        std::string all;
        ezCString key;
        ByteReader value = aReader;
        while (comments.Next(&key, &value)) {
            all += Str(key) + "=" + Str(value.ReadText(static_cast<std::size_t>(value.GetLeft()))) + ";";
        }
        return all;
    });
}

} // namespace

TEST(PictureBlock, TypeIsThatOfTheFirstBytesElseAsStated) {
    const auto type = [](const std::string& aFirst, const char* aStated) {
        return Str(PictureMimeType(aFirst, aStated));
    };
    EXPECT_EQ(type("\xFF\xD8\xFF", "image/png"), "image/jpeg");
    EXPECT_EQ(type("\x89PNG\r\n\x1A\n", ""), "image/png");
    EXPECT_EQ(type("GIF89a", ""), "image/gif");
    EXPECT_EQ(type("BM", ""), "image/bmp");
    EXPECT_EQ(type("RIFF....WEBP", ""), "image/webp");
    EXPECT_EQ(type("else", "IMAGE/TIFF"), "image/tiff");
    EXPECT_EQ(type("else", "PNG"), "image/png");
    EXPECT_EQ(type("else", "image/svg+xml"), "image/svg+xml");
    EXPECT_EQ(type("else", "jpg"), "image/jpeg");
    for (const char* const none : {"", "image/", "-->", "image/-->", "text/plain", "image/\x16\x16",
                                   "image/\xFF", "image/a b", "image/a;b"}) {
        EXPECT_EQ(type("else", none), "") << none;
    }
}

TEST(PictureBlock, IsReadUpToItsData) {
    const std::string block = PictureOfFlac(3, "data", "image/png", "text");
    EXPECT_EQ(Block(block, block.size()), "3 image/png 45 4");
    EXPECT_EQ(Block(block, block.size() - 1), "none"); // the data are not within it
    EXPECT_EQ(Block(block, block.size(), 9), "3 image/png 45 4");
    EXPECT_EQ(Block(block, block.size(), 8), "none");
    for (std::size_t at = 0; at < 45; ++at) {
        EXPECT_EQ(Block(block.substr(0, at), block.size()), "none") << at;
    }
    EXPECT_EQ(Block(Big(3, 4) + Big(0xFFFFFFFF, 4), UINT64_MAX), "none");
    EXPECT_EQ(Block(Big(3, 4) + Big(0, 4) + Big(0xFFFFFFFF, 4), UINT64_MAX), "none");
}

TEST(PictureBlock, FrameIsReadUpToItsPicture) {
    EXPECT_EQ(Frame("\0image/x\0\3text\0data"s), "3 image/x data");
    EXPECT_EQ(Frame("\3image/x\0\3text\0data"s), "3 image/x data");
    EXPECT_EQ(Frame("\1image/x\0\4\xFF\xFEt\0\0\0data"s), "4 image/x data"); // 16 bits a letter
    EXPECT_EQ(Frame("\2image/x\0\4\0t\0\0data"s), "4 image/x data");
    EXPECT_EQ(Frame("\0PNG\3text\0data"s, 2), "3 PNG data");
    for (const std::string& damaged :
         {"\4image/x\0\3text\0data"s, "\0image/xyz\0\3\0data"s, "\0image/x\0\3text text\0data"s,
          "\0image/x\0\3text"s, "\2image/x\0\3\0t\0t\0t\0t\0t\0\0"s, "\0-->\0\3\0http"s, ""s}) {
        EXPECT_EQ(Frame(damaged), "none") << damaged;
    }
}

TEST(VorbisComments, AreReadOneAfterTheOther) {
    EXPECT_EQ(All(Comments({"a=b", "TITLE==", "none", "=empty", "k="})), "a=b;TITLE==;=empty;k=;");
    const std::string longest(32, 'k');
    EXPECT_EQ(All(Comments({longest + "=1", longest + "k=2", "a=b"})), longest + "=1;a=b;");
    EXPECT_EQ(All(""), "");
}

TEST(VorbisComments, OneThatDoesNotEndInTheBlockEndsThem) {
    const std::string two = Comments({"a=b", "c=d"});
    EXPECT_EQ(All(two.substr(0, two.size() - 1)), "a=b;");
    EXPECT_EQ(All(Little(0xFFFFFFFF) + "writer"), "");
    EXPECT_EQ(All(Little(0) + Little(0xFFFFFFFF) + Little(3) + "a=b"), "a=b;");
    EXPECT_EQ(All(Little(0) + Little(2) + Little(0xFFFFFFFF) + "a=b"), "");
}
