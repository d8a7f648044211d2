#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// @name The flags of DLNA.ORG_FLAGS that the library knows, as its first eight digits have them
/// DLNA guidelines 7.4.1.3.24.
/// @{
inline constexpr uint32 kezDLNAFlag_StreamingTransfer = 0x01000000;   ///< tm-s: sent at the rate of playing
inline constexpr uint32 kezDLNAFlag_InteractiveTransfer = 0x00800000; ///< tm-i: sent while a user waits
inline constexpr uint32 kezDLNAFlag_BackgroundTransfer = 0x00400000;  ///< tm-b: sent while nobody waits
inline constexpr uint32 kezDLNAFlag_HTTPStalling = 0x00200000;  ///< a client may pause by not reading on
inline constexpr uint32 kezDLNAFlag_DLNAVersion15 = 0x00100000; ///< of version 1.5 or later
inline constexpr uint32 kezDLNAFlag_LinkProtected = 0x00010000; ///< content goes out link-protected
/// @}

/// @name The parameters that the library knows
/// DLNA guidelines 7.4.1.3.
/// @{
inline constexpr std::string_view kezDLNAParameter_Profile = "DLNA.ORG_PN";    ///< the profile's name
inline constexpr std::string_view kezDLNAParameter_Operations = "DLNA.ORG_OP"; ///< seeks, as two digits
inline constexpr std::string_view kezDLNAParameter_PlaySpeeds = "DLNA.ORG_PS"; ///< a comma list
inline constexpr std::string_view kezDLNAParameter_Conversion = "DLNA.ORG_CI"; ///< 1: of converted content
inline constexpr std::string_view kezDLNAParameter_Flags = "DLNA.ORG_FLAGS";   ///< kezDLNAFlag_... and zeros
/// @}

/// The 4th field of a protocolInfo as a value: profile in, profile out, and its other parameters (DLNA
/// guidelines 7.4.1.3). Records hold it as text under kezInfo_DLNA: `ezDLNAField(text)` reads one, leniently
/// and in any order, and GetText writes it in the mandatory order. What was stated is written, also where it
/// is 0.
///
/// Values of parameters are written as they are: one that was set and holds a ";" would be read as two
/// parameters. A plain value: copied and moved freely, not locked.
class EZPLATFORM_API ezDLNAField {
public:
    /// Without a parameter: "*".
    ezDLNAField() = default;
    /// Reads a text; never fails. A NUL ends it. A parameter is found by its whole name, to the letter; where
    /// one stands twice the first counts. What is malformed is dropped: an OP that is not two bits, a play
    /// speed that is not a number, a FLAGS of fewer than eight hexadecimal digits. Of FLAGS the first eight
    /// digits are read.
    explicit ezDLNAField(std::string_view aText);
    /// Of a profile and nothing else; "*" of an empty one.
    static ezDLNAField OfProfile(ezCString aProfile);

    /// What a parser announces that knows a profile and nothing else, as text: "DLNA.ORG_PN=MP3". Of an empty
    /// one the parameter without a value, which states no profile.
    static ezCString TextOfProfile(std::string_view aProfile);
    /// The profile that the text of a field states, a part of that text; "" where it states none.
    static std::string_view ProfileIn(std::string_view aText);
    /// The value of a parameter in the text of a field, a part of that text; nothing where it is absent.
    static std::optional<std::string_view> ValueIn(std::string_view aText, std::string_view aName);

    /// The field as it is announced: DLNA.ORG_PN, OP, PS, CI, FLAGS, then unknown parameters in the order met
    /// with their values unchanged. FLAGS is eight upper-case hexadecimal digits and 24 zeros. "*" without a
    /// parameter.
    ezCString GetText() const;

    /// The profile name, DLNA.ORG_PN; "" when it is not stated, and "" takes it away.
    /// @{
    const ezCString& GetProfile() const { return mProfile; }
    void SetProfile(ezCString aProfile) { mProfile = std::move(aProfile); }
    /// @}

    /// Whether a client may seek by time and by bytes: first and second digit of DLNA.ORG_OP. False when it
    /// is not stated, and then setting to false states nothing.
    /// @{
    bool GetTimeSeek() const { return mOperations.value_or(Operations()).mfTimeSeek; }
    bool GetByteSeek() const { return mOperations.value_or(Operations()).mfByteSeek; }
    void SetTimeSeek(bool afSeek);
    void SetByteSeek(bool afSeek);
    /// @}

    /// The play speeds, DLNA.ORG_PS, as a comma list; "" when there are none. A play speed is a non-zero
    /// integer or fraction ("-1/2"), kept as written; one equal to 1 is always supported and never listed,
    /// and of two that are the same number the first stays. What is not a speed is dropped from a list; its
    /// commas may be written "\,". Adding, of a list or of those of another field, skips speeds that are
    /// there.
    /// @{
    ezCString GetPlaySpeeds() const;
    void SetPlaySpeeds(std::string_view aList);
    void AddPlaySpeeds(std::string_view aList);
    void AddPlaySpeeds(const ezDLNAField& aFieldWithSpeeds) { AddSpeeds(aFieldWithSpeeds.mSpeeds); }
    void RemovePlaySpeeds() { mSpeeds.clear(); }
    /// @}

    /// The first 32 bits of DLNA.ORG_FLAGS (kezDLNAFlag_...); 0 when it is not stated. SetFlags and AddFlags
    /// state it, also with 0.
    /// @{
    uint32 GetFlags() const { return mFlags.value_or(0); }
    void SetFlags(uint32 aFlags) { mFlags = aFlags; }
    void AddFlags(uint32 aFlags) { mFlags = GetFlags() | aFlags; }
    /// @}
    /// Sets or clears kezDLNAFlag_HTTPStalling alone; clearing it where no flags are stated states nothing.
    void SetHTTPStalling(bool afStalling);

    /// Any other parameter; for the five known names these do what the functions of their own do.
    /// @{
    void Set(std::string_view aName, std::string_view aValue);
    void Remove(std::string_view aName);
    /// @}

    /// Unites another field into this one: what this one lacks is taken, seeks, flags and play speeds of both
    /// are kept.
    void Merge(const ezDLNAField& anOther);
    /// Takes play speeds and seeks from an operator's table where it states them, and http-stalling where its
    /// flags state more than the version. Every other flag stays.
    void MergeWithMediaMapper(const ezDLNAField& aTableField);
    /// Makes it the field of link-protected content (DTCP-IP): profile prefix "DTCP_", and the
    /// link-protection flag where flags are stated. Called again it changes nothing.
    void SetLinkProtected();

private:
    struct Operations {
        bool mfTimeSeek = false;
        bool mfByteSeek = false;
    };
    struct Speed {
        std::string mText; ///< as written
        bool mfNegative;
        std::uint64_t mNumerator; ///< this and the next in lowest terms
        std::uint64_t mDenominator;
    };
    using Parameter = std::pair<std::string, std::string>; ///< name and value

    static std::optional<Speed> ReadSpeed(std::string_view aText);
    static std::vector<Speed> ReadSpeeds(std::string_view aList);
    static bool IsBefore(const Speed& aLeft, const Speed& aRight);
    void AddSpeeds(const std::vector<Speed>& aSpeeds);
    /// False for a name that has no member of its own.
    bool SetKnown(std::string_view aName, std::string_view aValue);
    /// Those whose names are not there yet.
    void AddOthers(const std::vector<Parameter>& anOthers);

    ezCString mProfile; ///< empty when not stated
    std::optional<Operations> mOperations;
    std::vector<Speed> mSpeeds;
    std::optional<bool> mfConverted;
    std::optional<uint32> mFlags;
    std::vector<Parameter> mOthers;
};
