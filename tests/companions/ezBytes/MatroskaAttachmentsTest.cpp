#include "ezBytes/MatroskaAttachments.h"

#include "ezBytes/Limits.h"

#include "support/EbmlBytes.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

// Files that a Matroska file holds, and which of them is its cover.

namespace {

using ebml::AttachedFile;
using Strings = std::vector<std::string>;

const std::string kJpeg = "\xFF\xD8\xFF\xE0 a picture";
const std::string kPng = "\x89PNG\r\n\x1A\n a picture";

/// A text as bytes.
class Memory : public BlockBytes {
public:
    explicit Memory(const std::string& aText)
        : BlockBytes(reinterpret_cast<const unsigned char*>(aText.data()), aText.size()) {}
};

std::string Told(const MatroskaAttachment& aFile) {
    return Str(aFile.mName) + " " + Str(aFile.mMimeType) + " " + std::to_string(aFile.mData.GetLeft());
}

/// "name type size" of each of the files that an Attachments element holds.
Strings FilesOf(const std::string& aContent, std::uint32_t aBudget = 1000) {
    Memory bytes(aContent);
    MatroskaAttachments files(ByteReader(bytes), aBudget);
    Strings found;
    for (MatroskaAttachment file{ByteReader(bytes)}; files.Next(&file);) {
        found.push_back(Told(file));
    }
    return found;
}

/// The same of the cover of a file with these; "" where there is none.
std::string CoverOf(const std::string& aFiles) {
    const std::string text = ebml::Head() + ebml::Segment(ebml::Attachments(aFiles));
    Memory bytes(text);
    std::uint32_t budget = 1000;
    MatroskaSegment segment(bytes, budget);
    MatroskaAttachment cover{ByteReader(bytes)};
    EXPECT_TRUE(segment.Open());
    return FindCoverAttachment(segment, budget, &cover) ? Told(cover) : "";
}

std::string Jpeg(const char* aName) {
    return AttachedFile(aName, "image/jpeg", kJpeg);
}

} // namespace

TEST(MatroskaAttachments, AreToldByNameTypeAndSize) {
    EXPECT_EQ(FilesOf(AttachedFile("a.ttf", "font/ttf", "12345") + ebml::Void(3) + Jpeg("b.jpg")),
              (Strings{"a.ttf font/ttf 5", "b.jpg image/jpeg 14"}));
    EXPECT_EQ(FilesOf(""), Strings());
}

TEST(MatroskaAttachments, PartsStandInAnyOrderAndMayBeLeftOut) {
    const std::string data = ebml::Element(0x465C, "data");
    const std::string name = ebml::Element(0x466E, "name");
    const std::string type = ebml::Element(0x4660, "type");
    EXPECT_EQ(FilesOf(ebml::Element(0x61A7, data + type + name) + ebml::Element(0x61A7, name) +
                      ebml::Element(0x61A7, data) + ebml::Element(0x61A7, "")),
              (Strings{"name type 4", "name  0", "  4", "  0"}));
}

TEST(MatroskaAttachments, DataThatIsCutIsNone) {
    const std::string parts = ebml::Element(0x466E, "name") + ebml::Element(0x4660, "type");
    EXPECT_EQ(FilesOf(ebml::Element(0x61A7, parts + ebml::Stating(0x465C, 5, "data"))),
              Strings{"name type 0"});
    EXPECT_EQ(FilesOf(ebml::Element(0x61A7, parts + ebml::Unknown(0x465C, "data"))), Strings{"name type 0"});
    EXPECT_EQ(FilesOf(ebml::Stating(0x61A7, 1000, parts + ebml::Element(0x465C, "data"))),
              Strings{"name type 4"});
}

TEST(MatroskaAttachments, AreBounded) {
    std::string files;
    for (std::uint32_t i = 1; i < kMatroskaAttachments_MaxCount; ++i) {
        files += AttachedFile("a", "b", "c");
    }
    EXPECT_EQ(CoverOf(files + Jpeg("cover.jpg")), "cover.jpg image/jpeg 14");
    EXPECT_EQ(CoverOf(files + AttachedFile("a", "b", "c") + Jpeg("cover.jpg")), "");
    EXPECT_EQ(FilesOf(Jpeg("a"), 3), Strings{"a image/jpeg 0"}) << "elements are counted";
}

TEST(MatroskaCover, IsTheOneOfTheBestName) {
    EXPECT_EQ(CoverOf(Jpeg("small_cover.jpg") + AttachedFile("cover.png", "image/png", kPng)),
              "cover.png image/png 18");
    EXPECT_EQ(CoverOf(Jpeg("small_cover_land.jpg") + Jpeg("cover_land.jpg")), "cover_land.jpg image/jpeg 14");
    EXPECT_EQ(CoverOf(Jpeg("cover_land.jpg") + Jpeg("small_cover.jpg")), "small_cover.jpg image/jpeg 14");
    EXPECT_EQ(CoverOf(Jpeg("small_cover_land.jpg")), "small_cover_land.jpg image/jpeg 14");
    EXPECT_EQ(CoverOf(Jpeg("COVER.JPG") + Jpeg("cover.jpg")), "COVER.JPG image/jpeg 14");
    EXPECT_EQ(CoverOf(Jpeg("cover")), "cover image/jpeg 14");
}

TEST(MatroskaCover, IsNoneOfAnotherName) {
    for (const char* const name :
         {"poster.jpg", "covers.jpg", "cover.front.jpg", "my cover.jpg", ".jpg", ""}) {
        EXPECT_EQ(CoverOf(Jpeg(name)), "") << name;
    }
    EXPECT_EQ(CoverOf(""), "");
}

TEST(MatroskaCover, IsAPictureByItsBytesOrElseItsType) {
    const std::string other = Jpeg("small_cover.jpg");
    EXPECT_EQ(CoverOf(AttachedFile("cover.jpg", "application/octet-stream", kPng) + other),
              "cover.jpg application/octet-stream 18");
    EXPECT_EQ(CoverOf(AttachedFile("cover.bmp", "image/x-of-old", "letters") + other),
              "cover.bmp image/x-of-old 7");
    EXPECT_EQ(CoverOf(AttachedFile("cover.txt", "text/plain", "letters") + other),
              "small_cover.jpg image/jpeg 14");
    EXPECT_EQ(CoverOf(AttachedFile("cover.jpg", "image/jpeg", "") + other), "small_cover.jpg image/jpeg 14");
}

TEST(MatroskaCover, IsNoneWithoutAttachments) {
    const std::string text =
        ebml::Head() + ebml::Segment(ebml::Info("") + ebml::Element(0x1F43B675, "frames") +
                                     ebml::Attachments(Jpeg("cover.jpg")));
    Memory bytes(text);
    std::uint32_t budget = 1000;
    MatroskaSegment segment(bytes, budget);
    MatroskaAttachment cover{ByteReader(bytes)};
    ASSERT_TRUE(segment.Open());
    EXPECT_FALSE(FindCoverAttachment(segment, budget, &cover)) << "clusters are not walked through";
}
