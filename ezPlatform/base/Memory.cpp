#include "ezPlatform/base/Memory.h"

#include "ezPlatform/base/System.h"

#include <cstdlib>
#include <cstring>

void* ezMalloc(std::size_t aSize) {
    return ezSystem().mAllocate(aSize);
}

void* ezRealloc(void* aBlock, std::size_t aSize) {
    return ezSystem().mReallocate(aBlock, aSize);
}

void ezFree(void* aBlock) {
    std::free(aBlock);
}

char* ezStrdup(const char* aText) {
    if (aText == nullptr) {
        return nullptr;
    }
    const std::size_t size = std::strlen(aText) + 1;
    char* copy = static_cast<char*>(std::malloc(size));
    if (copy == nullptr) {
        std::abort();
    }
    std::memcpy(copy, aText, size);
    return copy;
}
