#pragma once

#include "ezFormats/mpegsystem/StreamCodec.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

struct PSPacket;

/// What a packet belongs to: a stream, or a substream of private stream 1 or of an extended stream.
struct PSTrackID {
    std::uint8_t mStream = 0;
    std::uint8_t mSubstream = 0;

    bool operator==(const PSTrackID& anOther) const {
        return mStream == anOther.mStream && mSubstream == anOther.mSubstream;
    }
    /// The number among the tracks of its kind: 1 for 0xC1, 0xE1 and substream 0x81.
    unsigned GetNumber() const;
};

/// An elementary stream.
struct PSTrack {
    PSTrackID mID;
    StreamCodec mCodec = StreamCodec::Unknown;
    bool mfScrambled = false;

    StreamKind GetKind() const;
};

/// The packet of an elementary stream: whose it is, and what it carries.
struct PSContent {
    PSTrackID mID;
    StreamCodec mCodec = StreamCodec::Unknown; ///< as far as the packet tells
    bool mfScrambled = false;
    std::optional<std::uint64_t> mPTS;
    const unsigned char* mBytes = nullptr; ///< without heads
    std::size_t mSize = 0;
};

/// The elementary streams of a file, as its packets show them.
class PSTracks {
public:
    /// What a packet of the block carries. False for one that belongs to no track.
    bool Read(const unsigned char* aBlock, const PSPacket& aPacket, PSContent& aContent) const;
    /// Takes what a packet tells. Null where there are too many tracks.
    const PSTrack* Add(const PSContent& aContent);
    /// Takes what a program stream map tells of the streams (ISO/IEC 13818-1, 2.5.4).
    void AddMap(const PSPacket& aPacket);

    /// The track of a kind that plays first: of the lowest number. Null where there is none.
    const PSTrack* GetFirst(StreamKind aKind) const;
    std::uint32_t Count(StreamKind aKind) const;

private:
    bool ReadSubstream(PSContent& aContent) const;
    static StreamCodec LookAt(const PSContent& aContent);

    std::vector<PSTrack> mTracks;
    std::array<StreamCodec, 256> mMap = {}; ///< by stream_id
};
