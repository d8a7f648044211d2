#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstddef>
#include <optional>

// What VP8 and VP9 tell of their pictures, in whatever holds them: size, bit depth, colours and, of VP9, the
// profile ("0" to "3") and what tells of a high dynamic range. Both have no fields, no frame rate, and pixels
// without a shape of their own.

/// From a coded frame of VP8, of which the first bytes are enough (RFC 6386, 9.1). None where it is no key
/// frame; a stream begins with one.
std::optional<VideoFacts> VP8Video_Read(const unsigned char* aBytes, std::size_t aSize);

/// The same of VP9 (VP9 Bitstream & Decoding Process, 6.2). It tells no level.
std::optional<VideoFacts> VP9Video_Read(const unsigned char* aBytes, std::size_t aSize);

/// From "vpcC" (VP Codec ISO Media File Format Binding), its version and flags included: all but the size,
/// and the level. Nothing where it is damaged.
std::optional<VideoFacts> VP9Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize);

/// From the features that Matroska and WebM have in place of it (WebM container guidelines, VP9 codec feature
/// metadata): each an identifier, a size, a value. Nothing where there is none that is whole.
std::optional<VideoFacts> VP9Video_ReadFeatures(const unsigned char* aBytes, std::size_t aSize);
