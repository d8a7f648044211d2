#pragma once

#include "fuzz/support/Check.h"

#include <cstdint>
#include <string>
#include <string_view>

/// The form of JPEG and PNG, as far as the targets look at it.

struct PictureForm {
    std::uint32_t mWidth = 0;
    std::uint32_t mHeight = 0;
};

inline std::uint32_t PictureForm_Big(std::string_view aBytes, std::size_t anOffset, std::size_t aCount) {
    FuzzCheck(anOffset <= aBytes.size() && aCount <= aBytes.size() - anOffset);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < aCount; ++i) {
        value = value << 8 | static_cast<unsigned char>(aBytes[anOffset + i]);
    }
    return value;
}

/// The check sum of PNG (that of ISO 3309).
inline std::uint32_t PictureForm_CheckSum(std::string_view aBytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : aBytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~sum;
}

/// Checks that it is a whole baseline JPEG with 4:2:0 subsampling and no more than a JFIF header.
inline PictureForm PictureForm_OfJpeg(std::string_view aBytes) {
    FuzzCheck(aBytes.size() > 4 && PictureForm_Big(aBytes, 0, 4) == 0xFFD8FFE0);
    FuzzCheck(PictureForm_Big(aBytes, aBytes.size() - 2, 2) == 0xFFD9);
    PictureForm form;
    for (std::size_t at = 2; PictureForm_Big(aBytes, at, 2) != 0xFFDA;
         at += 2 + PictureForm_Big(aBytes, at + 2, 2)) {
        const std::uint32_t marker = PictureForm_Big(aBytes, at, 2);
        FuzzCheck(marker == 0xFFE0 || marker == 0xFFDB || marker == 0xFFC0 || marker == 0xFFC4);
        if (marker != 0xFFC0) {
            continue;
        }
        FuzzCheck(PictureForm_Big(aBytes, at + 4, 1) == 8 && PictureForm_Big(aBytes, at + 9, 1) == 3);
        FuzzCheck(PictureForm_Big(aBytes, at + 11, 1) == 0x22 &&
                  PictureForm_Big(aBytes, at + 14, 1) == 0x11 && PictureForm_Big(aBytes, at + 17, 1) == 0x11);
        form = {PictureForm_Big(aBytes, at + 7, 2), PictureForm_Big(aBytes, at + 5, 2)};
    }
    FuzzCheck(form.mWidth != 0 && form.mHeight != 0);
    return form;
}

/// Checks that it is a whole PNG of 8 bits a sample without interlace, and all of its check sums.
inline PictureForm PictureForm_OfPng(std::string_view aBytes) {
    FuzzCheck(aBytes.substr(0, 8) == "\x89PNG\r\n\x1A\n" && aBytes.substr(12, 4) == "IHDR");
    FuzzCheck(PictureForm_Big(aBytes, 24, 1) == 8 && PictureForm_Big(aBytes, 28, 1) == 0);
    for (std::size_t at = 8; at < aBytes.size();) {
        const std::size_t size = PictureForm_Big(aBytes, at, 4);
        const std::string_view checked = aBytes.substr(at + 4, size + 4);
        FuzzCheck(PictureForm_Big(aBytes, at + 8 + size, 4) == PictureForm_CheckSum(checked));
        at += size + 12;
        FuzzCheck((checked == "IEND") == (at == aBytes.size()));
    }
    return {PictureForm_Big(aBytes, 16, 4), PictureForm_Big(aBytes, 20, 4)};
}

/// Puts the check sums of a PNG right, as far as its chunks go.
inline void PictureForm_MendPng(std::string& aBytes) {
    for (std::size_t at = 8; aBytes.size() >= at + 12;) {
        const std::size_t size = PictureForm_Big(aBytes, at, 4);
        if (size > aBytes.size() - at - 12) {
            return;
        }
        const std::uint32_t sum = PictureForm_CheckSum(std::string_view(aBytes).substr(at + 4, size + 4));
        for (std::size_t i = 0; i < 4; ++i) {
            aBytes[at + 8 + size + i] = static_cast<char>(sum >> (24 - 8 * i) & 0xFF);
        }
        at += size + 12;
    }
}
