#include "ezLiveStreams/detail/HttpPatience.h"

#include "ezLiveStreams/detail/Limits.h"

#include <algorithm>

namespace {

using std::chrono::milliseconds;

std::string Seconds(milliseconds aTime) {
    std::string text = std::to_string(aTime.count() / 1000);
    if (aTime.count() % 1000 != 0) {
        text += "." + std::to_string(aTime.count() % 1000 + 1000).substr(1);
    }
    return text;
}

milliseconds Milliseconds(ezHttpPatience::Clock::duration aTime) {
    return std::chrono::duration_cast<milliseconds>(aTime);
}

} // namespace

void ezHttpPatience::Ask(Clock::time_point aNow) {
    mReason.clear();
    mLastProgress = aNow;
    mHeadBegin = aNow;
    mHeadTime = Clock::duration(0);
    mfInHead = true;
    mfAccepted = false;
    mLines = 0;
    mBytes = 0;
}

bool ezHttpPatience::TakeLine(std::size_t aSize, Clock::time_point aNow) {
    if (!mfAccepted) {
        mLastProgress = aNow;
    } else if (!mfInHead) {
        mfInHead = true;
        mHeadBegin = aNow;
    }
    ++mLines;
    mBytes += std::min(aSize, kHttp_MaxHeadBytes + 1); // the sum cannot wrap
    if (mLines <= kHttp_MaxHeadLines && mBytes <= kHttp_MaxHeadBytes) {
        return true;
    }
    mReason = mLines > kHttp_MaxHeadLines
                  ? "the server sent more than " + std::to_string(kHttp_MaxHeadLines) + " lines of fields"
                  : "the server sent more than " + std::to_string(kHttp_MaxHeadBytes) + " bytes of fields";
    return false;
}

void ezHttpPatience::Accept(Clock::time_point aNow) {
    mHeadTime += aNow - mHeadBegin;
    mfInHead = false;
    mfAccepted = true;
}

milliseconds ezHttpPatience::TimeLeft(Clock::time_point aNow) {
    const milliseconds idle = Milliseconds(aNow - mLastProgress);
    if (idle >= mStallTime) {
        mReason = "the server sent nothing for " + Seconds(mStallTime) + " seconds";
        return milliseconds(0);
    }
    const milliseconds left = mStallTime - idle;
    if (!mfInHead) {
        return left;
    }
    // Divided instead of multiplied: the host's time may be the largest there is.
    const milliseconds share = Milliseconds(mHeadTime + (aNow - mHeadBegin)) / kHttp_StallTimesToHead;
    if (share >= mStallTime) {
        mReason =
            "the server did not answer within " + Seconds(mStallTime * kHttp_StallTimesToHead) + " seconds";
        return milliseconds(0);
    }
    return std::min(left, std::min(mStallTime - share, kHttp_LongestShare) * kHttp_StallTimesToHead);
}

bool ezHttpPatience::MayContinue(std::uint64_t aPartSize) {
    if (aPartSize >= kHttp_SmallPart) {
        mSmallParts = 0;
        return true;
    }
    if (mSmallParts < kHttp_MaxSmallParts) {
        ++mSmallParts;
        return true;
    }
    mReason = "the server sends too little at a time";
    return false;
}
