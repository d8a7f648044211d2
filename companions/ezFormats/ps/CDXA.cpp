#include "ezFormats/ps/CDXA.h"

bool IsCDXA(ByteReader aBytes) {
    const bool fRiff = aBytes.ReadBig32() == 0x52494646; // "RIFF"
    aBytes.Skip(4);
    return fRiff && aBytes.ReadBig32() == 0x43445841; // "CDXA"
}
