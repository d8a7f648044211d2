#pragma once

#include <cstddef>
#include <cstdint>

/// What the headers of MPEG-4 video (part 2) tell (ISO/IEC 14496-2). Numbers are 0 where they do not.
struct MPEG4Visual {
    static constexpr std::uint32_t kNoLevel = UINT32_MAX;

    const char* mProfile = nullptr;  ///< "Simple", "AdvancedSimple" and so on
    std::uint32_t mLevel = kNoLevel; ///< ten times the level; of Simple 0b 9, of Advanced Simple 3b 39
    std::uint32_t mWidth = 0;        ///< pixels
    std::uint32_t mHeight = 0;
    bool mfLayer = false; ///< size and interlacing are told
    bool mfInterlaced = false;
};

/// Reads the headers that set a decoder up, up to the first video object layer.
MPEG4Visual MPEG4Visual_Read(const unsigned char* aBytes, std::size_t aSize);
