#pragma once

#include "ezPlatform/base/System.h"

#include <cstddef>
#include <vector>

/// A read of a file.
struct RecordedRead {
    ezFileOffset mOffset;
    std::size_t mSize; ///< asked for
};

/// Writes down where the libraries read while it lives, so that the same can be read without them. One at a
/// time, and not beside a CountedSystem.
class RecordedReads {
public:
    RecordedReads();
    ~RecordedReads();
    RecordedReads(const RecordedReads&) = delete;
    RecordedReads& operator=(const RecordedReads&) = delete;

    const std::vector<RecordedRead>& Get() const;

private:
    ezSystemCalls mCalls;
};
