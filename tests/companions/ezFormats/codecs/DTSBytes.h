#pragma once

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include "support/NumberBytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

/// Streams of DTS as bytes.
namespace dts {

/// The header of a core frame: of five channels and LFE, 48 kHz, unless it is said otherwise.
struct Core {
    unsigned mBlocks = 16;
    unsigned mSize = 1024;
    unsigned mLayout = 9;
    unsigned mRate = 13;
    unsigned mLow = 2;
    unsigned mExtension = 7; ///< none that there is
    std::uint32_t mSync = 0x7FFE8001;

    std::string Header() const {
        return Bits()
            .Put(mSync, 32)
            .Put(0x7C, 7) // a normal frame, whole, without a check sum
            .Put(mBlocks - 1, 7)
            .Put(mSize - 1, 14)
            .Put(mLayout, 6)
            .Put(mRate, 4)
            .Put(24, 5)
            .Put(0, 5)
            .Put(mExtension == 7 ? 0 : mExtension, 3)
            .Put(mExtension == 7 ? 0 : 1, 1)
            .Put(0, 1)
            .Put(mLow, 2)
            .Put(0, 16)
            .Bytes();
    }
    std::string Bytes() const {
        const std::string header = Header();
        return header + std::string(mSize - header.size(), '\x55');
    }
};

inline std::string Swapped(std::string aBytes) {
    for (std::size_t i = 0; i + 1 < aBytes.size(); i += 2) {
        std::swap(aBytes[i], aBytes[i + 1]);
    }
    return aBytes;
}

/// A stream as words of 14 bits in two bytes each.
inline std::string Words14(const std::string& aStream) {
    std::string words;
    std::uint32_t pending = 0;
    unsigned bits = 0;
    const auto put = [&](std::uint32_t aWord) {
        words += Big(aWord | ((aWord & 0x2000) != 0 ? 0xC000U : 0U), 2); // the sign goes on
    };
    for (const char byte : aStream) {
        pending = pending << 8 | static_cast<unsigned char>(byte);
        for (bits += 8; bits >= 14; bits -= 14) {
            put(pending >> (bits - 14) & 0x3FFF);
        }
    }
    if (bits != 0) {
        put(pending << (14 - bits) & 0x3FFF);
    }
    return words;
}

/// An extension substream: of one asset of six channels at 48 kHz in 24 bits, unless it is said otherwise.
struct Extension {
    unsigned mIndex = 0;
    unsigned mSize = 512;
    bool mfLong = false;  ///< sizes are told in more bits
    bool mfStatic = true; ///< what is the same in all frames is there
    unsigned mClock = 2;  ///< 48 kHz
    unsigned mFrames = 1; ///< times 512 ticks
    bool mfTexts = false; ///< time, kind, language, and texts
    bool mfRange = false; ///< control of dynamics and of loudness
    unsigned mMixing = 0; ///< 1: a mixer may be told something; 2: and it is
    unsigned mAssets = 1;
    unsigned mBits = 24;
    unsigned mRate = 12;
    unsigned mChannels = 6;
    bool mfPlaced = true;   ///< each channel has a loudspeaker
    unsigned mRemapped = 0; ///< for how many sets of others it is told how to get there
    unsigned mMode = 0;
    unsigned mMask = 0x200;
    std::uint32_t mAssetSync = 0;

    std::string Header() const {
        const unsigned sizeBits = mfLong ? 20 : 16;
        Bits bits;
        bits.Put(0x64582025, 32).Put(0, 8).Put(mIndex, 2).Put(mfLong ? 1 : 0, 1);
        bits.Put(kHeaderSize - 1, mfLong ? 12 : 8).Put(mSize - 1, sizeBits).Put(mfStatic ? 1 : 0, 1);
        if (mfStatic) {
            bits.Put(mClock, 2).Put(mFrames - 1, 3).Put(mfTexts ? 1 : 0, 1).Put(0, mfTexts ? 36 : 0);
            bits.Put(1, 3).Put(mAssets - 1, 3);         // two presentations
            bits.Put(1, mIndex + 1).Put(0, mIndex + 1); // the first is in one substream
            bits.Put(1, 8);
            bits.Put(mMixing != 0 ? 1 : 0, 1);
            if (mMixing != 0) {
                bits.Put(0, 2).Put(1, 2).Put(1, 2).Put(0xFFFF, 16); // two masks of eight bits
            }
        }
        for (unsigned i = 0; i < mAssets; ++i) {
            bits.Put(mSize - kHeaderSize - 1, sizeBits);
        }
        PutAsset(bits);
        std::string bytes = bits.Bytes();
        bytes.resize(kHeaderSize, '\0');
        return bytes;
    }
    std::string Bytes() const {
        const std::string start = Header() + Big(mAssetSync, 4);
        return start + std::string(mSize - start.size(), '\x66');
    }

    static constexpr unsigned kHeaderSize = 90;

private:
    void PutAsset(Bits& aBits) const {
        aBits.Put(70, 9).Put(0, 3);
        if (mfStatic) {
            const unsigned flag = mfTexts ? 1 : 0;
            aBits.Put(flag, 1).Put(0, mfTexts ? 4 : 0);
            aBits.Put(flag, 1).Put(0x656E67, mfTexts ? 24 : 0);
            aBits.Put(flag, 1).Put(2, mfTexts ? 10 : 0).Put(0x616263, mfTexts ? 24 : 0);
            aBits.Put(mBits - 1, 5).Put(mRate, 4).Put(mChannels - 1, 8).Put(mfPlaced ? 1 : 0, 1);
            if (mfPlaced) {
                aBits.Put(1, mChannels > 2 ? 1 : 0).Put(0, mChannels > 6 ? 1 : 0);
                aBits.Put(1, 1).Put(1, 2).Put(0x0F, 8).Put(mRemapped, 3);
                for (unsigned i = 0; i < mRemapped; ++i) {
                    aBits.Put(3, 8); // a middle and a pair
                }
                for (unsigned i = 0; i < mRemapped; ++i) { // each made of two of four channels
                    aBits.Put(3, 5).Put(5, 4).Put(0, 10).Put(6, 4).Put(0, 10).Put(3, 4).Put(0, 10);
                }
            } else {
                aBits.Put(2, 3);
            }
        }
        const unsigned range = mfRange ? 1 : 0;
        const bool fStereo = mfStatic && mfPlaced && mChannels > 2;
        aBits.Put(range, 1).Put(9, mfRange ? 8 : 0).Put(range, 1).Put(9, mfRange ? 5 : 0);
        aBits.Put(9, mfRange && fStereo ? 8 : 0);
        aBits.Put(mMixing == 2 ? 1 : 0, mMixing != 0 && mfStatic ? 1 : 0);
        aBits.Put(mMode, 2).Put(mMask, 12);
    }
};

} // namespace dts
