#include "ezLiveStreams/detail/DescriptorCalls.h"

#include "ezPlatform/base/Descriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

int Pipe(int* anEnds, int aFlags) {
    if (pipe2(anEnds, aFlags) != 0) {
        return -1;
    }
    anEnds[0] = ezDescriptor_AboveStandard(anEnds[0]);
    anEnds[1] = ezDescriptor_AboveStandard(anEnds[1]);
    if (anEnds[0] >= 0 && anEnds[1] >= 0) {
        return 0;
    }
    const int error = errno;
    for (int i = 0; i < 2; ++i) {
        if (anEnds[i] >= 0) {
            close(anEnds[i]);
        }
    }
    errno = error;
    return -1;
}

const DescriptorCalls kReal = {
    [](int aDescriptor) { return fcntl(aDescriptor, F_GETFL); },
    Pipe,
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
