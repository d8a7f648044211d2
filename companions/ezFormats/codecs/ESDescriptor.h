#pragma once

#include "ezBytes/ByteReader.h"

#include "ezFormats/codecs/ESDescriptorLimits.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// What the descriptor of an elementary stream tells (ISO/IEC 14496-1, 7.2.6.5 to 7.2.6.7).
struct ESDescriptor {
    std::uint32_t mObjectType = 0; ///< what the samples are (object type indication)
    std::uint32_t mMaxBitRate = 0; ///< bits a second; 0: not told
    std::uint32_t mBitRate = 0;    ///< average
    std::array<unsigned char, kESDescriptor_MaxConfig> mConfig = {}; ///< of the decoder, its start
    std::size_t mConfigSize = 0;
};

/// Reads the content of an "esds" box. False when no decoder is described in it.
bool ReadESDescriptor(ByteReader aBox, ESDescriptor& aDescriptor);

/// The same of what stands within a stream's descriptor, or alone: the first decoder from there on.
bool ReadDecoderDescriptor(ByteReader aReader, ESDescriptor& aDescriptor);
