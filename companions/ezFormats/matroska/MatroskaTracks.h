#pragma once

#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

enum class MatroskaKind {
    Video,
    Sound,
    Subtitles,
    Other, ///< buttons, controls, metadata ...
};

/// How a track's frames and what sets its decoder up are wrapped (RFC 9559, 5.1.4.1.31).
struct MatroskaEncoding {
    enum class Method {
        None,
        Zlib,
        Stripped, ///< bytes that all frames begin with were cut off
        Other,    ///< nothing can be told of what is wrapped so
    };

    Method mMethod = Method::None;
    bool mfFrames = false; ///< they are wrapped
    bool mfPrivate = false;
    bool mfEncrypted = false;
    std::vector<unsigned char> mStripped;
};

/// What the entry of a track says (RFC 9559, 5.1.4.1). What is 0 or empty is not stated.
struct MatroskaTrack {
    std::uint64_t mNumber = 0;
    std::uint64_t mUID = 0; ///< which tags name it by
    MatroskaKind mKind = MatroskaKind::Other;
    bool mfEnabled = true;
    bool mfDefault = true; ///< one that players begin with
    ezCString mCodecId;
    std::optional<ByteReader> mPrivate; ///< what sets the decoder up
    std::uint64_t mFrameTime = 0;       ///< nanoseconds of a frame
    ezCString mLanguage = "eng";        ///< as RFC 5646 has it, or else ISO 639-2
    MatroskaEncoding mEncoding;
    VideoFacts mVideo; ///< of video, what the container says of it
    AudioFacts mSound; ///< of sound, likewise

    /// What the frame (kMatroska_MaxFrame bytes at most) or the private data (kMatroska_MaxPrivate) begin
    /// with as the codec has them; empty where nobody can tell.
    std::vector<unsigned char> ReadFrame(ByteReader aFrame) const;
    std::vector<unsigned char> ReadPrivate() const;

private:
    std::vector<unsigned char> Unwrap(ByteReader aBytes, bool afWrapped, std::size_t aMaximum) const;
};

/// The tracks of a file.
struct MatroskaTracks {
    std::vector<MatroskaTrack> mTracks;

    /// The one of a kind that plays first: one that is marked so, of several the one of the lowest number;
    /// null where there is none of that kind. Tracks that are not enabled count where no other is there.
    const MatroskaTrack* Find(MatroskaKind aKind) const;
    std::uint32_t Count(MatroskaKind aKind) const;
    /// The languages of a kind, as a record has them: those of the one that plays first, then the others'.
    std::string GetLanguages(MatroskaKind aKind) const;

    const MatroskaTrack* OfNumber(std::uint64_t aNumber) const;
};

/// Reads them. An entry that is not whole is left out.
/// @param aBudget  borrowed, counts down the elements
MatroskaTracks ReadMatroskaTracks(const ByteReader& aContent, std::uint32_t& aBudget);
