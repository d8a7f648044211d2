#include "ezPlatform/base/Condition.h"

void ezCondition::Wait() {
    std::unique_lock<std::mutex> lock(mMutex);
    mChanged.wait(lock, [this] { return mfSignalled; });
    mfSignalled = false;
}

void ezCondition::Signal() {
    // Told with the lock held: a waiter that wakes may destroy the condition as soon as it has the lock.
    const std::lock_guard<std::mutex> lock(mMutex);
    mfSignalled = true;
    mChanged.notify_one();
}
