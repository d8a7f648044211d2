#include "ezPlatform/base/Condition.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

TEST(Condition, ASignalBeforeTheWaitIsKept) {
    ezCondition condition;
    condition.Signal();
    condition.Wait(); // a signal that is lost fails by the time limit of the test
}

TEST(Condition, EveryWaitTakesOneSignal) {
    ezCondition condition;
    for (int i = 0; i < 1000; ++i) {
        condition.Signal();
        condition.Wait(); // a signal that is lost fails by the time limit of the test
    }
}

TEST(Condition, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<ezCondition>);
    EXPECT_FALSE(std::is_copy_assignable_v<ezCondition>);
}

TEST(ConditionThreads, AWaitReturnsOnlyForASignal) {
    ezCondition condition;
    std::atomic<bool> fSignalled{false};
    bool fSignalledAtReturn = false;
    std::thread waiter([&] {
        condition.Wait();
        fSignalledAtReturn = fSignalled;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(30)); // time in which it would return wrongly
    fSignalled = true;
    condition.Signal();
    waiter.join();
    EXPECT_TRUE(fSignalledAtReturn);
}

TEST(ConditionThreads, SignalsBeforeAWaitDoNotAddUp) {
    ezCondition condition;
    condition.Signal();
    condition.Signal();
    condition.Signal();
    condition.Wait();
    std::atomic<bool> fSignalled{false};
    bool fSignalledAtReturn = false;
    std::thread waiter([&] {
        condition.Wait();
        fSignalledAtReturn = fSignalled;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    fSignalled = true;
    condition.Signal();
    waiter.join();
    EXPECT_TRUE(fSignalledAtReturn);
}

TEST(ConditionThreads, WhatWasWrittenBeforeTheSignalIsSeenAfterTheWait) {
    ezCondition toOther;
    ezCondition toUs;
    int ball = 0; // no atomic: the conditions alone order the two threads
    std::thread other([&] {
        for (int i = 0; i < 1000; ++i) {
            toOther.Wait();
            ++ball;
            toUs.Signal();
        }
    });
    for (int i = 0; i < 1000; ++i) {
        ++ball;
        toOther.Signal();
        toUs.Wait();
        ASSERT_EQ(ball, 2 * (i + 1));
    }
    other.join();
}

TEST(ConditionThreads, ASignalWakesOneOfManyWaiters) {
    constexpr int kWaiters = 4;
    ezCondition condition;
    ezCondition awake;
    std::atomic<int> woken{0};
    std::vector<std::thread> waiters;
    waiters.reserve(kWaiters);
    for (int i = 0; i < kWaiters; ++i) {
        waiters.emplace_back([&] {
            condition.Wait();
            ++woken;
            awake.Signal();
        });
    }
    for (int i = 1; i <= kWaiters; ++i) {
        condition.Signal();
        awake.Wait();
        std::this_thread::sleep_for(
            std::chrono::milliseconds(10)); // time in which another would wake wrongly
        EXPECT_EQ(woken, i);
    }
    for (std::thread& waiter : waiters) {
        waiter.join();
    }
}

TEST(ConditionThreads, AWaiterThatWokeMayDestroyIt) {
    for (int i = 0; i < 1000; ++i) {
        auto condition = std::make_unique<ezCondition>();
        std::thread signaller([it = condition.get()] { it->Signal(); });
        condition->Wait();
        condition.reset(); // a signaller that still needs it hangs, or is seen by the sanitizers
        signaller.join();
    }
}
