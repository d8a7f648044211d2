#pragma once

#include "ezPlatform/base/Export.h"

#include <condition_variable>
#include <mutex>

/// Lets one thread wait for a sign of another.
///
/// Latched: a signal that comes while nobody waits makes the next wait return at once, so that no wake-up is
/// lost between a look that found nothing and the wait for more. Signals do not add up: any number of them
/// before a wait is one. Both operations may be called from any thread; a signal wakes one waiter.
class EZPLATFORM_API ezCondition {
public:
    ezCondition() = default;
    ezCondition(const ezCondition&) = delete;
    ezCondition& operator=(const ezCondition&) = delete;

    /// Returns when a signal has come since the last wait returned.
    void Wait();
    /// Makes one Wait return: one that is under way, else the next. Whoever waited may destroy the condition
    /// as soon as that Wait has returned.
    void Signal();

private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mfSignalled = false;
};
