#pragma once

#include "ezThumbnails/detail/Cover.h"

class OggPacketBytes;

/// Pictures as FLAC and Ogg have them: in blocks of their own, and in Vorbis comments.

/// Offers the picture of a block, which is all that aBlock has left.
/// @param aPacket  whose bytes these are; null: those of the file
void OfferPictureBlock(const ByteReader& aBlock, OggPacketBytes* aPacket, CoverChoice& aChoice);

/// The same of the pictures among comments, up to one after which nothing better can come. aComments stands
/// after what names them.
void OfferCommentPictures(const ByteReader& aComments, OggPacketBytes* aPacket, CoverChoice& aChoice);
