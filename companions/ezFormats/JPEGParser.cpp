#include "ezFormats/JPEGParser.h"

#include "ezFormats/detail/MediaBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <utility>

namespace {

constexpr const char* kMimeTypes = "image/jpeg";

} // namespace

JPEGParser::JPEGParser(std::shared_ptr<const ProfileRules> aRules)
    : FormatParser("JPEGParser", "jpg", kMimeTypes, {16, 256 * 1024}, std::move(aRules)) {}

JPEGParser::~JPEGParser() = default;

bool JPEGParser::ReadFormat(MediaBytes& /*aBytes*/, ezMediaInfo& /*anInfo*/) {
    return Refuse(Cause::Unsupported, "not read yet");
}
