#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"
#include "ezPlatform/text/StringList.h"

#include <cstddef>

struct ezDLNAProtocolInfo;

/// @name Bits of an entry's flag word
/// Other bits are carried through unchanged.
/// @{

/// The file cannot be sought by bytes.
inline constexpr uint32 kDLNAMediaMapperByteSeek_MediaNotSupported = 0x01000000;
/// The profile is switched off.
inline constexpr uint32 kDLNAMediaMapperProfile_Disabled = 0x10000000;
/// Play speeds are switched on for the profile. They are announced where this and the next bit say so.
inline constexpr uint32 kDLNAMediaMapperPlaySpeed_ProfileEnabled = 0x20000000;
/// Play speeds are switched on for this file.
inline constexpr uint32 kDLNAMediaMapperPlaySpeed_MediaEnabled = 0x40000000;
/// The file cannot be played at other speeds: the two bits above do not count.
inline constexpr uint32 kDLNAMediaMapperPlaySpeed_MediaNotSupported = 0x80000000;
/// @}

/// One line of the media mapper file: what a server must announce for one named file.
///
/// A line has 13 fields separated by ","; inside a field a comma is written "\,":
/// file name, MIME type, profile, duration, play speeds, mandatory bits, peak bit rate, IFO file, largest,
/// width, height, LP options, further 4th-field parameters. The first three must not be empty. The flag word
/// is one of the further parameters, named by the vendor's domain in upper case and "_GOLDENDMS", in
/// hexadecimal. Text fields other than the play speeds are written as they are: a comma in one of them would
/// split it when it is read again, and a backslash at its end would join it with the next.
///
/// A plain object: the members are the host's to change, which then calls ComputeDLNAProtocolInfo. Not
/// locked.
class EZPARSERS_API DLNAMediaMapperEntry {
public:
    DLNAMediaMapperEntry() = default;
    ~DLNAMediaMapperEntry();

    DLNAMediaMapperEntry(const DLNAMediaMapperEntry&) = delete;
    DLNAMediaMapperEntry& operator=(const DLNAMediaMapperEntry&) = delete;

    /// Reads a line. False when it has fewer than three fields (the entry stays as it is) or one of the first
    /// three is empty (only those three are changed). A member whose field is missing from the line stays as
    /// it is.
    bool Set(const ezCString& aLine);
    /// The line of this entry, without a line end. Takes the profile and the play speeds off the protocolInfo
    /// object and puts the flag word on it: ComputeDLNAProtocolInfo restores it. What is written is the state
    /// of the object, so that choices made on it alone are kept.
    ezCString Get();
    /// Rebuilds mFullProfile and mDLNAProtocolInfo from the other members. Neither carries the flag word.
    void ComputeDLNAProtocolInfo();
    /// File name, MIME type and profile are not empty.
    bool IsValid() const;
    /// Back to a new entry.
    void Reset();

    /// True unless the flag word switches the profile off.
    bool ProfileEnabled() const;
    /// True unless the flag word says that the file cannot be sought by bytes.
    bool CanSupportByteSeek() const;
    /// True for the MIME types of audio and video.
    bool CanSupportTimeSeek() const;
    /// True for the MIME types of audio and video, unless the flag word says that the file cannot be played
    /// at other speeds.
    bool CanSupportPlaySpeed() const;
    /// The flag word's half of CanSupportPlaySpeed alone, whatever the MIME type.
    bool GetPlaySpeedMediaSupported() const;
    /// It can be played at other speeds, and lists one other than "1".
    bool HasPlaySpeedDefined() const;
    /// Its play speeds are switched on, and it has some (HasPlaySpeedDefined).
    bool GetPlaySpeedMediaEnabled() const;
    /// Play speeds are switched on for its profile, and it can be played at other speeds.
    bool GetPlaySpeedProfileEnabled() const;
    /// Writes the switch of the file or of its profile into the flag word. Enabling takes effect only where a
    /// speed is defined, or, for the profile, where play speeds can be supported; else it disables.
    /// @{
    void SetPlaySpeedMediaEnabled(bool afEnabled);
    void SetPlaySpeedProfileEnabled(bool afEnabled);
    /// @}

    /// A field without white space at both ends; "" where the list has no such field.
    static ezCString GetTrimmed(const ezCSVStringList& aFields, std::ptrdiff_t anIndex);
    /// Removes normal speed, and what is not a play speed, from a list. The flag is not used.
    static void ValidatePlaySpeedList(ezCSVStringList& aSpeeds, bool afUnused);

    ezCString mFileName; ///< with its extension
    ezCString mMimeType; ///< as written
    ezCString mProfile;  ///< the DLNA profile name, to the letter
    ezCString mDuration; ///< as written
    /// Without normal speed and without what is not a speed, where Set made it.
    ezCSVStringList mSupportedPlaySpeeds = ezCSVStringList::WithSeparator(',');
    ezCString mMandatoryBits; ///< eight of "0" and "1"
    uint32 mBitRate = 0;      ///< peak, in bits a second; 0 is not known
    /// @name Fields that are kept as written, for the mapper file alone: nothing here reads them
    /// @{
    ezCString mIFOFileName; ///< "IFO file"
    ezCString mLargest;     ///< "largest"
    ezCString mWidth;       ///< "width", a text too
    ezCString mHeight;      ///< "height", a text too
    ezCString mLPOptions;   ///< "LP options"
    /// @}
    ezCString m4thFieldPart;    ///< "name=value" separated by ";", the flag word among them
    ezCString mFullProfile;     ///< the protocolInfo
    uint32 mGoldenDMSFlags = 0; ///< the flag word: bits named kDLNAMediaMapper..., and any others
    ezDLNAProtocolInfo* mDLNAProtocolInfo = nullptr; ///< owned; null until computed
    bool mfMandatory = false;                        ///< character 7 of mMandatoryBits
    bool mfCVPNA1Mandatory = false;                  ///< character 6
    bool mfCVPEUMandatory = false;                   ///< character 5
};
