#include "ezLiveStreams/detail/DescriptorCalls.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

const DescriptorCalls kReal = {
    [](int aDescriptor) { return fcntl(aDescriptor, F_GETFL); },
    [](int* anEnds, int aFlags) { return pipe2(anEnds, aFlags); },
    [](int aDescriptor, struct stat* aStatus) { return fstat(aDescriptor, aStatus); },
    [](int aDescriptor) { return lseek(aDescriptor, 0, SEEK_CUR); },
    [](pollfd* aDescriptors, nfds_t aCount) { return poll(aDescriptors, aCount, -1); },
    [](int aDescriptor, void* aBuffer, std::size_t aSize) { return read(aDescriptor, aBuffer, aSize); },
    [](int aDescriptor, void* aBuffer, std::size_t aSize, off_t anOffset) {
        return pread(aDescriptor, aBuffer, aSize, anOffset);
    },
    [](int aDescriptor, const void* aBuffer, std::size_t aSize) {
        return write(aDescriptor, aBuffer, aSize);
    },
};

const DescriptorCalls* gCalls = &kReal;

} // namespace

const DescriptorCalls& DescriptorCalls_InForce() {
    return *gCalls;
}

const DescriptorCalls& DescriptorCalls_Real() {
    return kReal;
}

void DescriptorCalls_Replace(const DescriptorCalls* aCalls) {
    gCalls = aCalls != nullptr ? aCalls : &kReal;
}
