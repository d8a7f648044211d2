#pragma once

#include "ezFormats/FormatParser.h"

/// MPEG audio files: layers I to III of MPEG-1, MPEG-2 and MPEG-2.5 (mp3, mp2, mpa).
class EZFORMATS_API MPEGAudioParser : public FormatParser {
public:
    explicit MPEGAudioParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn());
    ~MPEGAudioParser() override;

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
