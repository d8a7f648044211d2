#pragma once

#include "ezHosting/Export.h"

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParser.h"

#include <string>
#include <vector>

/// Declares every MIME type that the media types file announces, so that a server without a format parser for
/// a type advertises it all the same. Of an entry this is the first MIME type: the others are names by which
/// devices may ask. Entries that are excluded are not declared, nor is what is not a MIME type, or was
/// declared before, be it by another parser. Recognises nothing: that is the work of the media types ini
/// parser.
///
/// An ezHost has one. A host that is made by hand adds it to its manager after all other parsers:
///
///     manager.Add(new TypesTableParser(matcher, ProtocolInfosOf(manager.GetDLNAInfo().View())));
class EZHOSTING_API TypesTableParser : public ezMediaParser {
public:
    /// @param aMatcher   loaded; borrowed, outlives the parser
    /// @param aDeclared  the protocolInfo strings that the other parsers declare
    TypesTableParser(ExtensionMimeTypeMatcher& aMatcher, std::vector<std::string> aDeclared);
    ~TypesTableParser() override;

    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    ezCString GetDLNAInfo() override;

private:
    ExtensionMimeTypeMatcher& mMatcher;
    std::vector<std::string> mDeclared;
};
