#include "ezFormats/PNGParser.h"

#include "ezFormats/detail/MediaBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <utility>

namespace {

constexpr const char* kMimeTypes = "image/png";

} // namespace

PNGParser::PNGParser(std::shared_ptr<const ProfileRules> aRules)
    : FormatParser("PNGParser", "png", kMimeTypes, {16, 256 * 1024}, std::move(aRules)) {}

PNGParser::~PNGParser() = default;

bool PNGParser::ReadFormat(MediaBytes& /*aBytes*/, ezMediaInfo& /*anInfo*/) {
    return Refuse(Cause::Unsupported, "not read yet");
}
