#pragma once

#include <cstddef>
#include <poll.h>
#include <sys/stat.h>
#include <sys/types.h>

/// The calls by which a stream of a descriptor reaches the operating system. One place, so that a test can
/// make each of them fail, be interrupted or come short. Not installed.
struct DescriptorCalls {
    int (*mGetFlags)(int aDescriptor); ///< those of its open file
    int (*mPipe)(int* anEnds, int aFlags);
    int (*mFStat)(int aDescriptor, struct stat* aStatus);
    off_t (*mGetOffset)(int aDescriptor);
    int (*mPoll)(pollfd* aDescriptors, nfds_t aCount);
    ssize_t (*mRead)(int aDescriptor, void* aBuffer, std::size_t aSize);
    ssize_t (*mPRead)(int aDescriptor, void* aBuffer, std::size_t aSize, off_t anOffset);
    ssize_t (*mWrite)(int aDescriptor, const void* aBuffer, std::size_t aSize); ///< into its own pipe
};

/// The calls in force.
const DescriptorCalls& DescriptorCalls_InForce();

/// The real calls, for a replacement to fall back on.
const DescriptorCalls& DescriptorCalls_Real();

/// Puts other calls in force; null brings the real ones back. Borrowed. For tests, which do it while no
/// stream lives: its thread makes calls too.
void DescriptorCalls_Replace(const DescriptorCalls* aCalls);
