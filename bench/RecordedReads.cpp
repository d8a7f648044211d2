#include "bench/RecordedReads.h"

namespace {

std::vector<RecordedRead>& Reads() {
    static std::vector<RecordedRead> sReads;
    return sReads;
}

} // namespace

RecordedReads::RecordedReads() : mCalls(ezSystem_Real()) {
    Reads().clear();
    mCalls.mPRead = [](int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
        Reads().push_back({anOffset, aSize});
        return ezSystem_Real().mPRead(aFile, aBuffer, aSize, anOffset);
    };
    ezSystem_Replace(&mCalls);
}

RecordedReads::~RecordedReads() {
    ezSystem_Replace(nullptr);
}

const std::vector<RecordedRead>& RecordedReads::Get() const {
    return Reads();
}
