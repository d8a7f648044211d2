#pragma once

#include "ezBytes/ByteReader.h"

/// The blocks of metadata of FLAC, in a file of its own and in packets of Ogg (RFC 9639, 8.1).

/// Types of those that anybody reads.
/// @{
inline constexpr unsigned kFLACBlock_StreamInfo = 0;
inline constexpr unsigned kFLACBlock_VorbisComment = 4;
inline constexpr unsigned kFLACBlock_Picture = 6;
/// @}

/// What the header of a block says.
struct FLACBlock {
    unsigned mType = 0;
    bool mfLast = false; ///< the frames follow
};

/// Reads a block, and steps over it. False where it is not all there, and where it is of the type that none
/// may have, so that a frame is not taken for one.
/// @param aBody  set to a reader of what the block holds
bool ReadFLACBlock(ByteReader& aReader, FLACBlock* aBlock, ByteReader* aBody);
