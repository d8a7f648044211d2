#pragma once

#include "ezFormats/FormatParser.h"

/// JPEG pictures.
class EZFORMATS_API JPEGParser : public FormatParser {
public:
    explicit JPEGParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn());
    ~JPEGParser() override;

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
