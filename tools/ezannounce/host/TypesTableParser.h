#pragma once

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParser.h"

#include <string>
#include <string_view>
#include <vector>

/// Declares every MIME type that the media types file announces, so that a server without a format parser for
/// a type advertises it all the same. Of an entry this is the first MIME type: the others are names by which
/// devices may ask. Entries that are excluded are not declared, nor is what is no MIME type, or was declared
/// before, be it by another parser. Recognises nothing: that is the work of the media types ini parser.
class TypesTableParser : public ezMediaParser {
public:
    /// @param aMatcher   loaded; borrowed
    /// @param aDeclared  the protocolInfo strings that the other parsers declare
    TypesTableParser(ExtensionMimeTypeMatcher& aMatcher, std::vector<std::string> aDeclared);

    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    ezCString GetDLNAInfo() override;

private:
    ExtensionMimeTypeMatcher& mMatcher;
    std::vector<std::string> mDeclared;
};

/// Whether a text can stand as a MIME type in a list of protocolInfo: a type, a slash, a subtype (the
/// characters of RFC 2045 tokens) and possibly parameters, which hold no comma, colon, blank or control
/// character.
bool IsMimeType(std::string_view aText);
