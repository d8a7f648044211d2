#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>
#include <optional>

/// The objects of an ASF file (Advanced Systems Format 1.2, 2.1), and what those of its header say of its
/// streams. Numbers are 0 where they are not stated.

/// What names an object or a kind of streams: a GUID, as it is stored.
struct ASFGuid {
    std::uint64_t mFirst = 0; ///< eight bytes, the first of them on top; as is the rest
    std::uint64_t mLast = 0;

    static ASFGuid Read(ByteReader& aReader);

    friend constexpr bool operator==(const ASFGuid& aLeft, const ASFGuid& aRight) {
        return aLeft.mFirst == aRight.mFirst && aLeft.mLast == aRight.mLast;
    }
};

/// @name Objects of the file (10.1)
/// @{
inline constexpr ASFGuid kASF_Header = {0x3026B2758E66CF11, 0xA6D900AA0062CE6C};
inline constexpr ASFGuid kASF_Data = {0x3626B2758E66CF11, 0xA6D900AA0062CE6C};
/// @}

/// @name Objects of the header (10.2), and of the extension within it (10.3)
/// @{
inline constexpr ASFGuid kASF_FileProperties = {0xA1DCAB8C47A9CF11, 0x8EE400C00C205365};
inline constexpr ASFGuid kASF_StreamProperties = {0x9107DCB7B7A9CF11, 0x8EE600C00C205365};
inline constexpr ASFGuid kASF_HeaderExtension = {0xB503BF5F2EA9CF11, 0x8EE300C00C205365};
inline constexpr ASFGuid kASF_ContentDescription = {0x3326B2758E66CF11, 0xA6D900AA0062CE6C};
inline constexpr ASFGuid kASF_ExtendedContent = {0x40A4D0D207E3D211, 0x97F000A0C95EA850};
inline constexpr ASFGuid kASF_StreamBitRates = {0xCE75F87B8D46D111, 0x8D82006097C9A2B2};
inline constexpr ASFGuid kASF_ContentEncryption = {0xFBB3112223BDD211, 0xB4B700A0C955FC6E};
inline constexpr ASFGuid kASF_ExtendedContentEncryption = {0x14E68A292226174C, 0xB935DAE07EE9289C};
inline constexpr ASFGuid kASF_ExtendedStreamProperties = {0xCBA5E61472C63243, 0x8399A96952065B5A};
inline constexpr ASFGuid kASF_AdvancedContentEncryption = {0x338505438169E649, 0x9B74AD12CB86D58C};
inline constexpr ASFGuid kASF_Metadata = {0xEACBF8C5AF5B7748, 0x8467AA8C44FA4CCA};
inline constexpr ASFGuid kASF_MetadataLibrary = {0x941C23449894D149, 0xA1411D134E457054};
inline constexpr ASFGuid kASF_LanguageList = {0xA946437CE0EFFC4B, 0xB229393EDE415C85};
inline constexpr ASFGuid kASF_BitRateExclusion = {0xDC29E2D6DA35D111, 0x903400A0C90349BE};
inline constexpr ASFGuid kASF_AdvancedExclusion = {0xCF4986A075477046, 0x8A166E35357566CD};
/// @}

/// Objects, one after the other. A size may lie: one that reaches beyond the end gives what there is, and one
/// that is smaller than an object's head ends the walk.
class ASFWalk {
public:
    /// @param aReader  stands at the first object
    /// @param aBudget  borrowed, counts down the objects of all walks
    ASFWalk(const ByteReader& aReader, std::uint32_t& aBudget) : mReader(aReader), mBudget(&aBudget) {}

    /// The next object, and a reader of what it holds. False after the last one, where one is damaged, and
    /// when the budget is used up.
    bool Next(ASFGuid* aKind, ByteReader* aContent);

private:
    ByteReader mReader;
    std::uint32_t* mBudget;
};

/// The objects of a header, and in their place those of its extension.
class ASFHeaderWalk {
public:
    /// @param aObjects  as ReadASFHeader has them
    ASFHeaderWalk(const ByteReader& aObjects, std::uint32_t& aBudget)
        : mHeader(aObjects, aBudget), mExtension(ByteReader(aObjects).Take(0), aBudget), mBudget(&aBudget) {}

    /// As that of ASFWalk.
    bool Next(ASFGuid* aKind, ByteReader* aContent);

private:
    ASFWalk mHeader;
    ASFWalk mExtension;
    std::uint32_t* mBudget;
};

/// Whether a file begins there.
bool IsASFHeader(ByteReader aReader);

/// Steps over the header that a file begins with. False where none stands.
/// @param aObjects  set to a reader of its objects, as far as they are there
bool ReadASFHeader(ByteReader& aReader, ByteReader* aObjects);

/// How many of the units of 100 ns that a header states times in are a second.
inline constexpr std::uint32_t kASF_TicksPerSecond = 10'000'000;

/// File Properties (3.2).
struct ASFFileProperties {
    std::uint64_t mPackets = 0;
    std::uint64_t mPlayDuration = 0; ///< 100 ns, the preroll in it
    std::uint64_t mPreroll = 0;      ///< milliseconds
    bool mfBroadcast = false;        ///< it was being made when this was written: sizes and times are void
    std::uint32_t mPacketSize = 0;   ///< bytes of each packet; 0 where they are not of one size
    std::uint32_t mMaxBitRate = 0;   ///< of all streams together

    /// Milliseconds of what plays; 0 where that is not stated.
    std::uint64_t GetMilliseconds() const;
};

/// False for what is shorter than these.
bool ReadASFFileProperties(ByteReader aObject, ASFFileProperties* aFile);

/// The highest number of a stream, and the mask of its seven bits (3.3).
inline constexpr unsigned kASF_MaxStreamNumber = 127;

enum class ASFStreamKind {
    Sound,
    Video,
    Other, ///< commands, texts, single pictures ...
};

/// How the format of a stream is laid.
enum class ASFForm {
    Own,        ///< of sound a WAVEFORMATEX; of video sizes, and a BITMAPINFOHEADER from byte 11 on
    Wave,       ///< a WAVEFORMATEX; this and those below are of streams in another file's form
    Video,      ///< VIDEOINFOHEADER
    Video2,     ///< VIDEOINFOHEADER2
    MPEG2Video, ///< MPEG2VIDEOINFO
    Unknown,
};

/// Stream Properties (3.3).
struct ASFStream {
    ASFStreamKind mKind;
    unsigned mNumber;
    bool mfEncrypted;
    ByteReader mFormat;
    ASFForm mForm = ASFForm::Own;
    std::uint32_t mSubtype = 0; ///< of one in another file's form: how the GUID of its codec begins
};

/// @name Codecs of streams in another file's form, as their subtypes begin; others are those of a
/// WAVEFORMATEX
/// @{
inline constexpr std::uint32_t kASF_SubtypeMPEG2Video = 0xE06D8026;
inline constexpr std::uint32_t kASF_SubtypeMPEG2Audio = 0xE06D802B;
inline constexpr std::uint32_t kASF_SubtypeAC3 = 0xE06D802C;
/// @}

/// Nothing for what is shorter than these. A stream within another file's form, as recorders of television
/// write them, is one of sound or video by what that says it holds.
std::optional<ASFStream> ReadASFStream(ByteReader aObject);

/// Extended Stream Properties (4.1).
struct ASFExtendedStream {
    unsigned mNumber;
    std::uint32_t mBitRate;   ///< bits a second that it never exceeds for long
    unsigned mLanguage;       ///< its place in the list of languages
    std::uint64_t mFrameTime; ///< 100 ns that a picture is shown; of sound anything
    ByteReader mObjects;      ///< the stream's only Stream Properties, where they are here
};

/// Nothing for what is shorter than these.
std::optional<ASFExtendedStream> ReadASFExtendedStream(ByteReader aObject);

/// A line of Stream Bitrate Properties (3.12).
struct ASFBitRate {
    unsigned mNumber = 0; ///< of the stream
    std::uint32_t mBitRate = 0;
};

/// Takes the next one of those. aObject stands at the start of the object's content, or where the last call
/// left it.
class ASFBitRates {
public:
    explicit ASFBitRates(ByteReader aObject) : mReader(aObject), mLeft(mReader.ReadLittle(2)) {}
    /// False after the last one.
    bool Next(ASFBitRate* aRate);

private:
    ByteReader mReader;
    std::uint64_t mLeft;
};

/// The names of the languages of streams (4.6), by their places: readers of UTF-16.
class ASFLanguages {
public:
    explicit ASFLanguages(ByteReader aObject) : mReader(aObject), mLeft(mReader.ReadLittle(2)) {}
    /// False after the last one.
    bool Next(ByteReader* aName);

private:
    ByteReader mReader;
    std::uint64_t mLeft;
};

/// Streams of which only one is played (3.8, 4.2).
class ASFExclusion {
public:
    explicit ASFExclusion(ByteReader aObject);

    /// They are the same at different rates; or else in different languages, or who knows why.
    bool IsByBitRate() const { return mfByBitRate; }
    /// The number of the next one. False after the last one.
    bool Next(unsigned* aNumber);

private:
    ByteReader mReader;
    bool mfByBitRate;
    std::uint64_t mLeft;
};
