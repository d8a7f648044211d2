#include "ezBytes/ReadShare.h"

ReadShare::~ReadShare() = default;

std::size_t ReadShare::Borrow(std::uint64_t aPosition, const unsigned char** aBytes) {
    if (!mBytes.HasBuffered(aPosition) && !mShare.TakeRead(0)) {
        return 0;
    }
    return mBytes.Borrow(aPosition, aBytes);
}
