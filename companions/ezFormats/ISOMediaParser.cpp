#include "ezFormats/ISOMediaParser.h"

#include "ezFormats/detail/MediaBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <utility>

namespace {

constexpr const char* kMimeTypes =
    "video/mp4,audio/mp4,video/quicktime,video/3gpp,audio/3gpp,video/3gpp2,audio/3gpp2";

} // namespace

ISOMediaParser::ISOMediaParser(std::shared_ptr<const ProfileRules> aRules)
    : FormatParser("ISOMediaParser", "mp4", kMimeTypes, {16, 256 * 1024}, std::move(aRules)) {}

ISOMediaParser::~ISOMediaParser() = default;

bool ISOMediaParser::ReadFormat(MediaBytes& /*aBytes*/, ezMediaInfo& /*anInfo*/) {
    return Refuse(Cause::Unsupported, "not read yet");
}
