#pragma once

#include "support/NumberBytes.h"

#include <cstddef>
#include <string>

/// The first sequence of a frame of DV: of 625 lines and 16:9, with sound of 16 bits at 48 kHz, unless it is
/// said otherwise.
struct DVSequence {
    bool mf625 = true;
    unsigned mApplication = 0;   ///< APT: 0 of consumers, 1 of others
    unsigned mSignal = 0;        ///< STYPE of the pictures: 0 of 25 Mbit/s
    unsigned mDisplay = 2;       ///< DISP
    std::size_t mSoundBlock = 0; ///< of nine
    unsigned mTwoInBlock = 0;    ///< CHN
    unsigned mMode = 0;          ///< AUDIO MODE
    unsigned mRate = 0;          ///< SMP: 48 kHz
    unsigned mQuantisation = 0;  ///< QU: 16 bits

    std::string Bytes() const {
        std::string bytes(12000, '\xFF');
        const std::string application = Big(0x78 | mApplication, 1);
        bytes.replace(0, 8,
                      "\x1F\x07" + std::string(1, '\0') + Big(mf625 ? 0xBF : 0x3F, 1) + application +
                          application + application + application);
        bytes.replace(3 * 80 + 3 + 9 * 5, 5, "\x60\xFF\xFF" + Big((mf625 ? 0x20 : 0) | mSignal, 1) + "\xFF");
        bytes.replace(5 * 80 + 3 + 14 * 5, 5, "\x61\x3F" + Big(0xC8 | mDisplay, 1) + "\xFC\xFF");
        bytes.replace((6 + 16 * mSoundBlock) * 80 + 3, 5,
                      "\x50\xD7" + Big(mTwoInBlock << 5 | mMode, 1) + "\xC0" +
                          Big(0xC0 | mRate << 3 | mQuantisation, 1));
        return bytes;
    }
};
