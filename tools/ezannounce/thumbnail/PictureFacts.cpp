#include "thumbnail/PictureFacts.h"

#include "contact-sheet/JpegPage.h"

#include <cstring>
#include <string_view>

namespace {

constexpr char kPngStart[] = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR";
constexpr std::size_t kPngStartSize = sizeof(kPngStart) - 1;

// What a picture ends in; one that was cut short does not.
constexpr std::string_view kPngEnd("\0\0\0\0IEND\xAE\x42\x60\x82", 12);
constexpr std::string_view kJpegEnd("\xFF\xD9");

bool EndsIn(std::string_view aBytes, std::string_view anEnd) {
    return aBytes.size() >= anEnd.size() && aBytes.substr(aBytes.size() - anEnd.size()) == anEnd;
}

uint32 BigEndian(const std::string& aBytes, std::size_t anOffset) {
    uint32 value = 0;
    for (std::size_t i = 0; i < sizeof(value); ++i) {
        value = value << 8 | static_cast<unsigned char>(aBytes[anOffset + i]);
    }
    return value;
}

} // namespace

std::optional<PictureFacts> ReadPictureFacts(const std::string& aBytes) {
    PictureFacts facts;
    if (aBytes.size() >= kPngStartSize + 2 * sizeof(uint32) &&
        std::memcmp(aBytes.data(), kPngStart, kPngStartSize) == 0 && EndsIn(aBytes, kPngEnd)) {
        facts.mFormat = "PNG";
        facts.mWidth = BigEndian(aBytes, kPngStartSize);
        facts.mHeight = BigEndian(aBytes, kPngStartSize + sizeof(uint32));
        return facts;
    }
    facts.mFormat = "JPEG";
    if (!EndsIn(aBytes, kJpegEnd) || !ReadJpegSize(aBytes, facts.mWidth, facts.mHeight)) {
        return std::nullopt;
    }
    return facts;
}

std::string InWords(const PictureFacts& aFacts, std::size_t aByteCount) {
    return std::string(aFacts.mFormat) + ", " + std::to_string(aFacts.mWidth) + "x" +
           std::to_string(aFacts.mHeight) + ", " + std::to_string(aByteCount) + " bytes";
}
