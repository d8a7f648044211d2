#include "ezBytes/WaitingRead.h"

#include <algorithm>

namespace {

void sDataArrived(void* aCondition) {
    static_cast<ezCondition*>(aCondition)->Signal();
}

bool IsWaiting(ezStreamingStatus aStatus, std::size_t aCount) {
    return aStatus == ezStreamingStatus_NoError && aCount == 0;
}

} // namespace

ezStreamingStatus WaitingRead(ezStream& aStream, ezCondition& anArrived, void* aBuffer, std::size_t* aSize) {
    const std::size_t asked = *aSize;
    ezStreamingStatus status = aStream.Read(aBuffer, aSize, 0);
    if (!IsWaiting(status, *aSize)) {
        return status;
    }
    aStream.RegisterThresholdCallBack(sDataArrived, &anArrived);
    while (true) { // looks again first: what came before the callback was registered fires no more
        *aSize = asked;
        status = aStream.Read(aBuffer, aSize, 0);
        if (!IsWaiting(status, *aSize)) {
            break;
        }
        anArrived.Wait();
    }
    aStream.UnregisterThresholdCallBack(sDataArrived);
    return status;
}

LimitedRead WaitingReadWithin(ezStream& aStream, ezCondition& anArrived, void* aBuffer, std::size_t aSize,
                              std::uint64_t aLeft) {
    const auto asked =
        static_cast<std::size_t>(std::min<std::uint64_t>(aSize - 1, aLeft)) + 1; // cannot pass 2^64
    std::size_t count = asked;
    const ezStreamingStatus status = WaitingRead(aStream, anArrived, aBuffer, &count);
    if (status != ezStreamingStatus_NoError && status != ezStreamingStatus_EOS) {
        return {0, ReadEnding::Failed};
    }
    count = std::min(count, asked); // a stream of the host's may be wrong
    if (count > aLeft) {
        return {count - 1, ReadEnding::Limit};
    }
    return {count, status == ezStreamingStatus_EOS ? ReadEnding::End : ReadEnding::None};
}
