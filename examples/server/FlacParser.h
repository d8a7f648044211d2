#pragma once

#include "ez/MediaParser.h"
#include "ez/MediaParserStream.h"
#include "ezPlatform/media/MediaInfo.h"

#include <cstdint>
#include <cstring>

/// A parser of the host's own: FLAC files (RFC 9639, section 8), whose first block states the stream's facts.
class FlacParser : public ezMediaParser {
public:
    FlacParser() : ezMediaParser("flac", nullptr, false) {} // the type that the media types file names

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        return ParseFromStream(aStream, kHeadSize, 0);
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; } // there is no profile for FLAC
    ezCString GetDLNAInfo() override { return "audio/flac:*"; }

protected:
    ezMediaInfo* Read(uint8* aBegin, std::size_t aSize, uint8* /*anEnd*/, std::size_t /*anEndSize*/,
                      const ezuint64& /*aMediaSize*/) override {
        if (aSize < kHeadSize || std::memcmp(aBegin, "fLaC", 4) != 0 || (aBegin[4] & 0x7FU) != 0) {
            return nullptr; // somebody else's
        }
        std::uint64_t facts = 0;
        for (std::size_t i = 18; i < kHeadSize; ++i) {
            facts = facts << 8 | aBegin[i];
        }
        const std::uint64_t rate = facts >> 44;
        const std::uint64_t samples = facts & 0xFFFFFFFFF; // 0 when the encoder did not know
        if (rate == 0) {
            return nullptr; // and no division by what a stranger wrote
        }
        ezMediaInfo* info = new ezMediaInfo;
        info->Set(kezInfo_AudioTrackCount, 1, true);
        info->Set(kezInfo_AudioCodec, "FLAC", true);
        info->Set(kezInfo_AudioSamplingRate, rate, true);
        info->Set(kezInfo_AudioChannelCount, (facts >> 41 & 7) + 1, true);
        info->Set(kezInfo_AudioBitsPerSample, (facts >> 36 & 31) + 1, true);
        if (samples >= rate) {
            info->SetDuration(samples * 1000 / rate, "header"); // in milliseconds; the seconds follow
        }
        return info; // the media types file adds MIME type and class
    }

private:
    static constexpr std::size_t kHeadSize = 26;
};
