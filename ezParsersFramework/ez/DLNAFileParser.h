#pragma once

#include "ez/MediaParser.h"

/// Recognises the media of the DLNA conformance test suite by their file names, while the environment's
/// kProperty_CTTContext is not 0, and states the MIME type, class and profile that the test expects. Reads no
/// content; LPCM files go to LPCMParser. Not added to a manager: the media types ini parser makes one where
/// it needs it.
class EZPARSERS_API DLNAFileParser : public ezMediaParser {
public:
    /// @param anEnvironmentInfo  borrowed, may be null
    explicit DLNAFileParser(ezPropertyList* anEnvironmentInfo);
    ~DLNAFileParser() override;

    ezMediaInfo* Parse(ezMediaParserStream& aMediaStream) override;
    /// Never: a record alone does not tell the file's name.
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    /// What a server advertises during a conformance test; "" outside one.
    ezCString GetDLNAInfo() override;
};
