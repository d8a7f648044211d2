#pragma once

#include "ezBytes/ByteSource.h"
#include "ezBytes/ID3Tag.h"

#include <cstdint>

/// A tag that stands before the sound: ID3v2, or APE with its header. Any audio format may follow one.
///
/// Who only looks for what follows asks EndOfLeadingTags, for instance before it compares a format's magic;
/// who reads the tags, or is pushed bytes of which it has no more than the header, asks ReadLeadingTag for
/// each.
struct LeadingTag {
    std::uint64_t mSize = 0; ///< bytes of all of it, header and footer included; 0: no tag stands there
    std::uint32_t mHeaderSize = 0;
    bool mfID3 = false;
    ID3Tag mID3; ///< of one
};

/// The tag at a position. Its header, of 10 bytes for ID3v2 and 32 for APE, must be there whole; what follows
/// need not, so the size is a claim.
LeadingTag ReadLeadingTag(ByteSource& aBytes, std::uint64_t aPosition);

/// Where the tags end that stand at a position, one after the other; the position itself where there is
/// none. One that claims to reach the end of the bytes, or beyond, is not believed: the end is then that of
/// its header. Only the headers are read.
std::uint64_t EndOfLeadingTags(ByteSource& aBytes, std::uint64_t aPosition);
