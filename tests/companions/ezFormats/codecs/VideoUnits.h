#pragma once

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <string>
#include <vector>

// Units of H.264 and of H.265, written bit by bit.

/// With an emulation prevention byte wherever one is needed.
inline std::string Escaped(const std::string& aBytes) {
    std::string escaped;
    std::size_t zeros = 0;
    for (const char byte : aBytes) {
        if (zeros >= 2 && static_cast<unsigned char>(byte) <= 3) {
            escaped += '\3';
            zeros = 0;
        }
        escaped += byte;
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return escaped;
}

/// As a byte stream has them.
inline std::string StartCoded(const std::vector<std::string>& aUnits) {
    std::string bytes;
    for (const std::string& unit : aUnits) {
        bytes += Hex({0, 0, 0, 1}) + unit;
    }
    return bytes;
}

/// Each after its size, a number of so many bytes.
inline std::string Sized(const std::vector<std::string>& aUnits, unsigned aSizeBytes) {
    std::string bytes;
    for (const std::string& unit : aUnits) {
        bytes += Bits().Put(unit.size(), 8 * aSizeBytes).Bytes() + unit;
    }
    return bytes;
}

/// A message of supplemental information; its type and size are below 255.
inline std::string Message(int aType, const std::string& aContent) {
    return Hex({aType, static_cast<int>(aContent.size())}) + aContent;
}

/// @name Messages of both codecs
/// @{
inline std::string MasteringDisplay() {
    return Message(137, Content(24));
}
inline std::string LightLevel() {
    return Message(144, Content(4));
}
inline std::string RegisteredData(int aCountry, int anApplication) {
    return Message(4, Hex({aCountry, 0, 0x3C, 0, 1, anApplication, 1}) + Content(9));
}
inline std::string AlternativeTransfer(int aTransfer) {
    return Message(147, Hex({aTransfer}));
}
/// @}

/// The part of the usability information that both codecs have. What is 0 is absent.
struct VideoSigns {
    unsigned mAspect = 0; ///< aspect_ratio_idc
    unsigned mAspectWidth = 0;
    unsigned mAspectHeight = 0;
    unsigned mTransfer = 0;
    unsigned mMatrix = 2;
    std::uint32_t mUnits = 0; ///< num_units_in_tick
    std::uint32_t mScale = 0;

    void Put(Bits& aBits) const {
        aBits.Put(mAspect != 0 ? 1 : 0, 1);
        if (mAspect != 0) {
            aBits.Put(mAspect, 8);
        }
        if (mAspect == 255) {
            aBits.Put(mAspectWidth, 16).Put(mAspectHeight, 16);
        }
        aBits.Put(1, 1).Put(0, 1).Put(1, 1).Put(5, 3).Put(0, 1); // overscan, signal
        aBits.Put(mTransfer != 0 ? 1 : 0, 1);
        if (mTransfer != 0) {
            aBits.Put(9, 8).Put(mTransfer, 8).Put(mMatrix, 8);
        }
        aBits.Put(1, 1).UE(0).UE(5); // places of chroma
    }
    void PutClock(Bits& aBits) const {
        aBits.Put(mUnits != 0 ? 1 : 0, 1);
        if (mUnits != 0) {
            aBits.Put(mUnits, 32).Put(mScale, 32);
        }
    }
};
