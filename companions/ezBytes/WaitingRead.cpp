#include "ezBytes/WaitingRead.h"

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
