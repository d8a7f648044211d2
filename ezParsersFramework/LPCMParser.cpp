#include "ez/LPCMParser.h"

#include "ez/MediaParserStream.h"
#include "ez/UPnPClasses.h"

#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

constexpr const char* kProfile = "LPCM";

constexpr uint32 kBytesPerSample = 2;
constexpr uint32 kMillisecondsPerSecond = 1000;

struct Format {
    const char* mName; ///< file name without extension, lower case
    const char* mMimeType;
    uint32 mChannels;
    uint32 mRate; ///< Hz
};

constexpr std::array<Format, 4> kFormats = {{
    {"b-lpcm-1", "audio/L16;rate=44100;channels=1", 1, 44100},
    {"b-lpcm-2", "audio/L16;rate=44100;channels=2", 2, 44100},
    {"b-lpcm-3", "audio/L16;rate=48000;channels=1", 1, 48000},
    {"b-lpcm-4", "audio/L16;rate=48000;channels=2", 2, 48000},
}};

} // namespace

LPCMParser::LPCMParser(ezPropertyList* anEnvironmentInfo) : ezMediaParser("LPCM", anEnvironmentInfo, false) {}

LPCMParser::~LPCMParser() = default;

ezMediaInfo* LPCMParser::Parse(ezMediaParserStream& aStream) {
    const ezPathName path = ezPathName::MakeFilePath(aStream.GetFullPath());
    if (!ezIsEqualNoCase(path.GetExtension().View(), "pcm")) {
        return nullptr;
    }
    ezLog_F(EZLOGLEVEL_DEBUG, "LPCMParser::Parse()\n"); // also when the file is declined below
    const ezCString name = path.GetFileName().Lower();
    if (GetCTTContext() == 0 || name.Left(2) != "b-") {
        return nullptr;
    }
    const auto* format = std::find_if(kFormats.begin(), kFormats.end(),
                                      [&](const Format& aFormat) { return name == aFormat.mName; });
    if (format == kFormats.end()) {
        return nullptr;
    }
    ezMediaInfo* info = new ezMediaInfo;
    info->Set(kezInfo_MimeType, format->mMimeType, true);
    info->Set(kezInfo_AudioCodec, "LPCM", true);
    info->Set(kezInfo_AudioBitRate, format->mRate, true); // the sampling rate: for LPCM it is kept here
    info->Set(kezInfo_AudioChannelCount, format->mChannels, true);
    info->Set(kezInfo_AudioBitsPerSample, 16, true);
    info->Set(kezInfo_AudioTrackCount, 1, true);
    AdjustDLNAInfo(info);
    if (const std::optional<std::uint64_t> size = ezKnownSize(aStream.GetMediaSize())) {
        const uint32 speed = format->mChannels * format->mRate * kBytesPerSample; // bytes a second
        const ezuint64 seconds = *size / speed;
        const ezuint64 rest = (*size - seconds * speed) * kMillisecondsPerSecond / speed;
        info->SetDuration(seconds * kMillisecondsPerSecond + rest, "");
    }
    return info;
}

bool LPCMParser::AdjustDLNAInfo(ezMediaInfo* anInfo) {
    if (anInfo == nullptr || !anInfo->GetCString(kezInfo_MimeType, "").Contains("audio/L16")) {
        return false;
    }
    anInfo->Set(kezInfo_ClassName, kezUPnPClass_AudioItem, true);
    anInfo->Set(kezInfo_DLNA, ezDLNAField::TextOfProfile(kProfile), true);
    return true;
}

ezCString LPCMParser::GetDLNAInfo() {
    ezCString text;
    for (const Format& format : kFormats) {
        if (!text.IsEmpty()) {
            text += ",";
        }
        text += format.mMimeType;
        text += ":" + ezDLNAField::TextOfProfile(kProfile);
    }
    return text;
}
