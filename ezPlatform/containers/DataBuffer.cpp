#include "ezPlatform/containers/DataBuffer.h"

#include "ezPlatform/base/Memory.h"

ezDataBuffer::ezDataBuffer(std::size_t aSize) : mData(aSize != 0 ? ezMalloc(aSize) : nullptr) {
    mSize = mData != nullptr ? aSize : 0;
}

ezDataBuffer::~ezDataBuffer() {
    ezFree(mData);
}
