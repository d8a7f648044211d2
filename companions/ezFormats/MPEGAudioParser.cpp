#include "ezFormats/MPEGAudioParser.h"

#include "ezFormats/detail/MediaBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <utility>

namespace {

constexpr const char* kMimeTypes = "audio/mpeg";

} // namespace

MPEGAudioParser::MPEGAudioParser(std::shared_ptr<const ProfileRules> aRules)
    : FormatParser("MPEGAudioParser", "mp3", kMimeTypes, {16, 256 * 1024}, std::move(aRules)) {}

MPEGAudioParser::~MPEGAudioParser() = default;

bool MPEGAudioParser::ReadFormat(MediaBytes& /*aBytes*/, ezMediaInfo& /*anInfo*/) {
    return Refuse(Cause::Unsupported, "not read yet");
}
