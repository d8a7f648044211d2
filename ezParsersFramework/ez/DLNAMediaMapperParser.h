#pragma once

#include "ez/MediaParser.h"

class DLNAMediaMapper;
class DLNAMediaMapperEntry;

/// Looks the name of a file up in the media mapper instead of reading its content. A manager makes one
/// (ezMediaParserManager::AddDLNAMediaMapperParser).
class EZPARSERS_API DLNAMediaMapperParser : public ezMediaParser {
public:
    /// @param aMediaMapper       borrowed, used by Parse; already loaded, since the profiles that the parser
    ///                           declares are taken here
    /// @param anEnvironmentInfo  borrowed, may be null
    DLNAMediaMapperParser(DLNAMediaMapper* aMediaMapper, ezPropertyList* anEnvironmentInfo);
    ~DLNAMediaMapperParser() override;

    /// The facts of the file's first entry: MIME type, class by its part before "/", profile, bit rate, and
    /// duration where it reads as one; of LPCM also channels, sampling rate and bits per sample. Null for a
    /// file without an entry.
    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    /// Always false: the parser adjusts nothing.
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    /// The enabled profiles as the table had them when the parser was made.
    ezCString GetDLNAInfo() override;

private:
    void CacheDLNAInfo();
    /// The first entry of a file; null for one without, and for a stream that is no file.
    const DLNAMediaMapperEntry* FindEntry(const ezMediaParserStream& aStream) const;

    DLNAMediaMapper* mMediaMapper;
    ezCString mDLNAInfo;

    friend class ParseReporter; // which tells of the entry
};
