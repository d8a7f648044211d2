#pragma once

#include "ezFormats/mpegsystem/StreamCodec.h"
#include "ezFormats/ts/TSSections.h"

#include <cstdint>
#include <string>
#include <vector>

/// @name Tables, by their table_id
/// @{
inline constexpr std::uint8_t kTSTable_Association = 0x00;
inline constexpr std::uint8_t kTSTable_Map = 0x02;
/// @}

/// A stream of a program, as its map says (ISO/IEC 13818-1, 2.4.4.8).
struct TSStream {
    std::uint16_t mPID = 0;
    StreamCodec mCodec = StreamCodec::Unknown; ///< Unknown: the payload decides
    StreamCodec mElse = StreamCodec::Unknown;  ///< what it is where the payload tells nothing either
    const char* mName = "";                    ///< the codec's, where the payload tells nothing; may be ""
    bool mfEncrypted = false;                  ///< the kind of stream says so
    std::uint32_t mChannels = 0;               ///< of sound, where a descriptor tells
    std::string mLanguages;                    ///< as kezInfo_Languages has them

    StreamKind GetKind() const { return StreamCodec_GetKind(mCodec); }
};

/// A program, as a map says.
struct TSProgram {
    std::uint16_t mNumber = 0;
    std::uint16_t mMapPID = 0;
    std::uint16_t mClockPID = kTSPacket_NullPID; ///< PCR_PID
    bool mfMapped = false;                       ///< a map was found
    bool mfOfJapan = false;                      ///< its broadcaster writes texts and times in another way
    std::vector<TSStream> mStreams;
};

/// Adds the programs of a section of the association (2.4.4.3) that are not there yet.
void ReadTSAssociation(const TSSection& aSection, std::vector<TSProgram>& aPrograms);

/// Reads the map of a program; what is damaged within ends it.
void ReadTSMap(const TSSection& aSection, TSProgram* aProgram);
