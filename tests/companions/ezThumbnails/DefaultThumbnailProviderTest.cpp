#include "ezThumbnails/DefaultThumbnailProvider.h"

#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace {

/// The picture that the generator is given for an item.
std::string PictureFor(const char* aMimeType) {
    const TemporaryFolder folder;
    ThumbnailTrace trace;
    ScriptedGenerator generator(trace);
    DefaultThumbnailProvider provider(&generator);
    ThumbnailInfo info;
    info.mMimeType = aMimeType;
    info.mThumbnailID = kPNGThumbnailID;
    EXPECT_TRUE(provider.CanProvideThumbnailFor(&info));
    ezFile file;
    EXPECT_TRUE(file.Create(Bytes(folder.Path("out")), true, ezFileAccessMode_ReadWrite));
    EXPECT_TRUE(provider.BuildThumbnail(&info, &file));
    EXPECT_EQ(trace.size(), 2U);
    EXPECT_EQ(trace.back().compare(0, 6, "build "), 0);
    return trace.back().substr(6);
}

std::uint32_t Big32At(const std::string& aBytes, std::size_t aPlace) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(aBytes.at(aPlace + i));
    }
    return value;
}

std::uint32_t Crc32(const std::string& aBytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : aBytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
        }
    }
    return ~crc;
}

} // namespace

TEST(DefaultThumbnailProvider, EachMediaClassHasAPictureOfItsOwn) {
    const std::set<std::string> pictures = {PictureFor("audio/mpeg"), PictureFor("video/mp4"),
                                            PictureFor("image/jpeg"), PictureFor("text/plain")};
    EXPECT_EQ(pictures.size(), 4U);
    EXPECT_EQ(PictureFor("AUDIO/x-odd"), PictureFor("audio/mpeg"));
    EXPECT_EQ(PictureFor("video"), PictureFor("video/mp4"));
    EXPECT_EQ(PictureFor(""), PictureFor("text/plain"));
    EXPECT_EQ(PictureFor("audiobook/x"), PictureFor("text/plain"));
}

TEST(DefaultThumbnailProvider, ThePicturesAreWholeSmallPNGs) {
    for (const char* const type : {"audio/x", "video/x", "image/x", "other/x"}) {
        const std::string png = PictureFor(type);
        EXPECT_LT(png.size(), 2000U);
        ASSERT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1A\n");
        EXPECT_EQ(Big32At(png, 16), 240U);
        EXPECT_EQ(Big32At(png, 20), 240U);
        std::string names;
        std::size_t place = 8;
        while (place < png.size()) {
            const std::size_t size = Big32At(png, place);
            names += png.substr(place + 4, 4) + " ";
            EXPECT_EQ(Big32At(png, place + 8 + size), Crc32(png.substr(place + 4, size + 4)));
            place += size + 12;
        }
        EXPECT_EQ(place, png.size());
        EXPECT_EQ(names, "IHDR PLTE IDAT IEND ");
    }
}

TEST(DefaultThumbnailProvider, WhatTheGeneratorDoesNotMakeOfAPNGIsNotPossible) {
    ThumbnailTrace trace;
    auto generator = std::make_unique<ScriptedGenerator>(trace);
    DefaultThumbnailProvider provider(generator.get());
    const ThumbnailInfo info;
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&info), kPNGThumbnailID);
    generator->mFormats.clear();
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&info), kNoThumbnailID);
    generator.reset(); // dies first, and the provider does not mind
}

TEST(DefaultThumbnailProvider, WithoutAGeneratorARequestOrAFileThereIsNone) {
    ThumbnailTrace trace;
    ScriptedGenerator generator(trace);
    ThumbnailInfo info;
    ezFile file;
    DefaultThumbnailProvider without(nullptr);
    EXPECT_EQ(without.GetPossibleThumbnailFor(&info), kNoThumbnailID);
    EXPECT_FALSE(without.BuildThumbnail(&info, &file));
    DefaultThumbnailProvider provider(&generator);
    EXPECT_FALSE(provider.BuildThumbnail(nullptr, &file));
    EXPECT_FALSE(provider.BuildThumbnail(&info, nullptr));
    EXPECT_TRUE(trace.empty());
    ezThumbnailProviderManager manager(nullptr, nullptr);
    manager.SetDefaultProvider(new DefaultThumbnailProvider(manager.GetThumbnailGenerator()));
    EXPECT_EQ(manager.GetPossibleThumbnailFor(&info), kNoThumbnailID);
}
