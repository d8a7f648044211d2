#pragma once

#include "ezFormats/FormatParser.h"

/// ISO base media files and their relatives (mp4, m4a, m4v, mov, 3gp).
class EZFORMATS_API ISOMediaParser : public FormatParser {
public:
    explicit ISOMediaParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn());
    ~ISOMediaParser() override;

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
