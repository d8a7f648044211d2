#pragma once

#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/codecs/WaveFormat.h"

#include "ezBytes/ASFObjects.h"
#include "ezBytes/ByteReader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the objects of a header tell of one stream. What is 0 is not known.
struct ASFStreamFacts {
    static constexpr unsigned kNoLanguage = UINT32_MAX;

    unsigned mNumber = 0;
    bool mfDescribed = false; ///< by Stream Properties, of which the first count
    ASFStreamKind mKind = ASFStreamKind::Other;
    bool mfEncrypted = false;
    WaveFormat mSound;                ///< of sound
    VideoFacts mVideo;                ///< of video, but for what its first frame tells
    bool mfRecorded = false;          ///< its format is laid as recorders of television do
    std::uint32_t mMeanBitRate = 0;   ///< bits a second, with what packets add
    std::uint32_t mHighBitRate = 0;   ///< bits a second that it never exceeds for long
    std::uint64_t mFrameTime = 0;     ///< 100 ns; of sound anything
    unsigned mLanguage = kNoLanguage; ///< its place in the list of languages
    unsigned mFirstRival = 0;         ///< number of the first of those that are the same at other rates

    bool IsOf(ASFStreamKind aKind) const { return mfDescribed && mKind == aKind; }
    /// The best that is told of its rate.
    std::uint32_t GetBitRate() const;
};

/// What the header of a file tells, but for its texts, which are read when the rest is known.
struct ASFHeader {
    ASFFileProperties mFile;
    std::vector<ASFStreamFacts> mStreams;
    bool mfEncrypted = false; ///< somebody's key is needed for all of it

    // Objects of texts, the first of each kind
    std::optional<ByteReader> mDescription;
    std::optional<ByteReader> mContent;
    std::optional<ByteReader> mMetadata;
    std::optional<ByteReader> mLibrary;
    std::vector<std::string> mLanguages; ///< tags of RFC 5646, by their places

    /// The one of its kind that plays first: of the same language as the one of the lowest number the one
    /// with the highest rate, of several of that the first; null where there is none.
    const ASFStreamFacts* Find(ASFStreamKind aKind) const;
    /// How many there are; those that are the same at different rates are one.
    std::uint32_t Count(ASFStreamKind aKind) const;
    /// Their languages, as a record has them: that of the one that plays first before the others.
    std::string GetLanguages(ASFStreamKind aKind) const;

private:
    const ASFStreamFacts* FindLowest(ASFStreamKind aKind) const;
};

/// Reads the objects of a header. aObjects stands at the first of them.
/// @param aBudget  borrowed, counts down the objects
ASFHeader ReadASFHeaderObjects(const ByteReader& aObjects, std::uint32_t& aBudget);
