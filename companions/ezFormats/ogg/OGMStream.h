#pragma once

class ByteReader;
struct OggStream;

// Streams of OGM, which have headers as DirectShow has them, little-endian: what a stream is, a codec, and
// how many samples take how many units of 100 ns. A position is that of the start of the last packet that
// ends on the page, and a packet begins with a byte of flags.

/// Reads the first packet of a stream of sound or of video.
/// @{
void OGMSound_Read(ByteReader aPacket, OggStream& aStream);
void OGMVideo_Read(ByteReader aPacket, OggStream& aStream);
/// @}

/// True for a packet that holds a frame, and is no header.
bool OGMPacket_IsFrame(ByteReader aPacket);

/// Takes what the first frame of a stream tells, which the header may have wrong or leave out.
/// @param aPacket  of a frame, or the start of one
void OGMPacket_ReadFrame(ByteReader aPacket, OggStream& aStream);
