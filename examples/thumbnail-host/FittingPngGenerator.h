#pragma once

#include "ez/StreamMediaParserStream.h"
#include "ez/ThumbnailProvider.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/Stream.h"

#include <cstring>
#include <string>

/// Serves PNG pictures that have the wanted size already, as they are: a generator for a device without
/// codecs.
class FittingPngGenerator : public ezThumbnailGenerator {
public:
    FittingPngGenerator() : ezThumbnailGenerator("FittingPngGenerator") {}

    uint32 CanConvert(const ezCString& aMimeType) override {
        return aMimeType.CompareNoCase("image/png") == 0 ? kPNGThumbnailID : kNoThumbnailID;
    }

    bool BuildThumbnail(const ThumbnailInfo* anInfo, const ezThumbnailSource* aSource,
                        ezFile* aFile) override {
        const std::string picture = ReadAll(aSource->GetStream());
        return (anInfo->mThumbnailID & kPNGThumbnailID) != 0 && IsWhole(picture) && Fits(*anInfo, picture) &&
               aFile->Write(picture.data(), picture.size()) == static_cast<int>(picture.size());
    }

private:
    static constexpr std::size_t kMaxSize = std::size_t{256} << 10; ///< whatever a stranger's file holds

    /// All of the picture; empty when there is none, or it is too large.
    static std::string ReadAll(ezStream* aStream) {
        ezStreamMediaParserStream input(aStream, true); // null and not open are read as nothing
        std::size_t count = kMaxSize;
        std::string picture(count, '\0');
        const bool fRead = input.Open() && input.Read(&count, picture.data()) && count < kMaxSize;
        picture.resize(fRead ? count : 0);
        return picture;
    }

    /// A PNG from its header to its end, of 8 bits a sample and without interlace.
    static bool IsWhole(const std::string& aPicture) {
        constexpr char kStart[] = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR";
        constexpr char kEnd[] = "\0\0\0\0IEND\xAE\x42\x60\x82";
        const std::size_t start = sizeof kStart - 1;
        const std::size_t end = sizeof kEnd - 1;
        return aPicture.size() > 33 + end && std::memcmp(aPicture.data(), kStart, start) == 0 &&
               aPicture[24] == 8 && aPicture[28] == 0 &&
               std::memcmp(aPicture.data() + aPicture.size() - end, kEnd, end) == 0;
    }

    static bool Fits(const ThumbnailInfo& anInfo, const std::string& aPicture) {
        const uint32 width = Big32(aPicture, 16);
        const uint32 height = Big32(aPicture, 20);
        uint32 wantedWidth = 0;
        uint32 wantedHeight = 0;
        GetThumbnailFinalSize(&anInfo, width, height, &wantedWidth, &wantedHeight);
        return width != 0 && height != 0 && width == wantedWidth && height == wantedHeight;
    }

    static uint32 Big32(const std::string& aText, std::size_t anOffset) {
        uint32 value = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            value = value << 8 | static_cast<unsigned char>(aText[anOffset + i]);
        }
        return value;
    }
};
