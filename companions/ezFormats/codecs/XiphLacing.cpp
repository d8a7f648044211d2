#include "ezFormats/codecs/XiphLacing.h"

std::size_t XiphLacing_FirstAt(const unsigned char* aBytes, std::size_t aSize) {
    constexpr unsigned kHeaders = 3;
    constexpr unsigned char kGoesOn = 0xFF;
    if (aSize == 0 || aBytes[0] != kHeaders - 1) {
        return 0;
    }
    std::size_t at = 1;
    for (unsigned header = 1; header < kHeaders; ++header) {
        while (at < aSize && aBytes[at] == kGoesOn) {
            ++at;
        }
        ++at; // the size's last byte
    }
    return at <= aSize ? at : 0;
}
