#pragma once

#include "ezThumbnails/detail/Cover.h"

#include <initializer_list>

class ezStream;

/// The cover of a file, by its container. A stream that is no such container, is damaged before the
/// cover, or has none, gives a cover that is not found. All sizes are held against what they lie in; a tag or
/// box that claims more is not looked into. The stream is left anywhere.
///
/// Tags at the start of the stream, the first with a cover; versions 2.2 to 2.4, from APIC and PIC frames. Of
/// a compressed frame only the head is inflated, so damage after it is found by the source. Encrypted frames,
/// compressed ones where zlib is missing, and those inside other frames (chapters), are passed over.
Cover FindID3Cover(ezStream& aStream);

/// FLAC, from its PICTURE blocks and Vorbis comments, as Ogg has them; tags before it are passed over.
Cover FindFLACCover(ezStream& aStream);

/// MP4 and its kin, from moov/udta/meta/ilst/covr, wherever moov lies. The first picture is the cover, as
/// they have no types.
Cover FindMP4Cover(ezStream& aStream);

/// Ogg, from METADATA_BLOCK_PICTURE and COVERART comments of the first stream of sound (Vorbis, Opus, FLAC,
/// Speex, and that of OGM) and of the first of video, and from the PICTURE blocks of FLAC. What goes across
/// pages, as most covers do, comes in several pieces, with the page headers left out.
Cover FindOggCover(ezStream& aStream);

/// WAV and its kin, and AIFF, from the ID3v2 tag in a chunk of theirs, before the sound or after it. Of
/// several tags the first with a cover counts; those before a WAV are passed over.
/// @{
Cover FindWAVCover(ezStream& aStream);
Cover FindAIFFCover(ezStream& aStream);
/// @}

/// DSD, from the ID3v2 tag: of DSF where its head says that it stands, of DSDIFF in a chunk.
/// @{
Cover FindDSFCover(ezStream& aStream);
Cover FindDSDIFFCover(ezStream& aStream);
/// @}

/// Any file, from the binary items of an APE tag at its end, also one that ID3v1 or Lyrics3 follows.
Cover FindAPECover(ezStream& aStream);

/// ASF, from the attributes "WM/Picture" of Extended Content, then of Metadata and the Metadata Library.
Cover FindASFCover(ezStream& aStream);

/// Matroska and WebM, from the attached files that are called covers; of sound, else from a track of video
/// with one picture.
Cover FindMatroskaCover(ezStream& aStream);

/// A finder, and the formats of ezFormats whose covers it finds, by the names of their parsers in the media
/// types file.
struct FormatCoverFinder {
    Cover (*mFind)(ezStream& aStream);
    std::initializer_list<const char*> mFormats;
};

/// Formats of sound that tags stand around, before it and after it.
inline constexpr std::initializer_list<const char*> kTaggedFormats = {"mp3",  "tta", "mpc", "ape", "wv",
                                                                      "adts", "ac3", "dts", "mlp"};

/// All of them, in the order in which they look. FLAC comes before the tag that may stand before it, which
/// others put there; the end of a file, which costs a read of its own, comes last.
inline constexpr FormatCoverFinder kCoverFinders[] = {
    {FindFLACCover, {"flac"}},    {FindID3Cover, kTaggedFormats}, {FindMP4Cover, {"mp4"}},
    {FindOggCover, {"ogg"}},      {FindWAVCover, {"wav"}},        {FindAIFFCover, {"aiff"}},
    {FindDSFCover, {"dsf"}},      {FindDSDIFFCover, {"dff"}},     {FindASFCover, {"wma"}},
    {FindMatroskaCover, {"mkv"}}, {FindAPECover, kTaggedFormats},
};
