#pragma once

#include "ezFormats/FormatParser.h"

/// PNG pictures.
class EZFORMATS_API PNGParser : public FormatParser {
public:
    explicit PNGParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn());
    ~PNGParser() override;

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
