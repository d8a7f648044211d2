#pragma once

#include "ezFormats/codecs/VideoFacts.h"

#include <cstdint>
#include <optional>

class ByteReader;

/// The head of a file of VC-1 whose frames each come after their size and time (SMPTE ST 421, annex L): the
/// sequence layer. Files of the simple and the main profile need one, since their frames have no start codes.
struct RCVHeader {
    VideoFacts mVideo;            ///< of the advanced profile only that, the size and the rates
    std::uint32_t mFrames = 0;    ///< 0: not told
    std::uint32_t mFrameRate = 0; ///< frames a second; 0: not told, or it varies
    std::uint64_t mLeastSize = 0; ///< bytes that a file of so many frames has at the least
};

/// None where no such head stands.
std::optional<RCVHeader> RCVHeader_Read(ByteReader aBytes);
