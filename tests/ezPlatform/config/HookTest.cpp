#include "ezPlatform/config/Hook.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <string>

namespace {

/// What the callback was given.
struct Received {
    int mCalls = 0;
    ezHook* mHook = nullptr;
    std::string mName;
    void* mFirst = nullptr;
    int mInt = 0;
    std::int64_t mWide = 0;
    double mReal = 0;
    void* mLast = nullptr;
};

Received* Of(ezHook* aHook) {
    return static_cast<Received*>(ezHook_GetVoidPtrProperty(aHook, "received"));
}

void sNote(ezHook* aHook, const char* aName, va_list /*anArguments*/) {
    Received* received = Of(aHook);
    ++received->mCalls;
    received->mHook = aHook;
    received->mName = aName;
}

void sTakeAll(ezHook* aHook, const char* aName, va_list anArguments) {
    sNote(aHook, aName, anArguments);
    Received* received = Of(aHook);
    received->mFirst = va_arg(anArguments, void*);
    received->mInt = va_arg(anArguments, int);
    received->mWide = va_arg(anArguments, std::int64_t);
    received->mReal = va_arg(anArguments, double);
    received->mLast = va_arg(anArguments, void*);
}

class Hook : public testing::Test {
protected:
    Hook() { ezHook_SetVoidPtrProperty(mHook, "received", &mReceived); }
    ~Hook() override { ezHook_Delete(mHook); }

    ezHook* mHook = ezHook_New();
    Received mReceived;
};

} // namespace

TEST_F(Hook, CallsTheCallbackWithItselfAndTheName) {
    ezHook_SetCallback(mHook, sNote);
    ezHook_Call(mHook, "AdjustProtocolInfo");
    EXPECT_EQ(mReceived.mCalls, 1);
    EXPECT_EQ(mReceived.mHook, mHook);
    EXPECT_EQ(mReceived.mName, "AdjustProtocolInfo");
}

TEST_F(Hook, HandsOutEveryArgumentWhateverItsSize) {
    ezHook_SetCallback(mHook, sTakeAll);
    int first = 0;
    int last = 0;
    ezHook_Call(mHook, "all", static_cast<void*>(&first), -7, std::int64_t{INT64_MIN}, 2.5,
                static_cast<void*>(&last));
    EXPECT_EQ(mReceived.mFirst, &first);
    EXPECT_EQ(mReceived.mInt, -7);
    EXPECT_EQ(mReceived.mWide, INT64_MIN);
    EXPECT_EQ(mReceived.mReal, 2.5);
    EXPECT_EQ(mReceived.mLast, &last);
}

TEST_F(Hook, EveryCallReadsItsArgumentsFromTheFirst) {
    ezHook_SetCallback(mHook, sTakeAll);
    int one = 0;
    int two = 0;
    for (int* pointer : {&one, &two}) {
        ezHook_Call(mHook, "all", static_cast<void*>(pointer), 0, std::int64_t{0}, 0.0,
                    static_cast<void*>(nullptr));
        EXPECT_EQ(mReceived.mFirst, pointer);
    }
    EXPECT_EQ(mReceived.mCalls, 2);
}

TEST_F(Hook, WithoutACallbackACallDoesNothing) {
    ezHook_Call(mHook, "before");
    ezHook_SetCallback(mHook, sNote);
    ezHook_SetCallback(mHook, nullptr);
    ezHook_Call(mHook, "after");
    EXPECT_EQ(mReceived.mCalls, 0);
}

TEST_F(Hook, FindsAPointerByItsWholeNameOnly) {
    int first = 0;
    int second = 0;
    ezHook_SetVoidPtrProperty(mHook, "DLNAMediaMapper", &first);
    ezHook_SetVoidPtrProperty(mHook, "Other", &second);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "DLNAMediaMapper"), &first);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "Other"), &second);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "DLNAMediaMappe"), nullptr);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "DLNAMediaMapperX"), nullptr);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "dlnamediamapper"), nullptr);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, ""), nullptr);
}

TEST_F(Hook, ALaterPointerReplacesAndNullTakesAway) {
    int first = 0;
    int second = 0;
    ezHook_SetVoidPtrProperty(mHook, "p", &first);
    ezHook_SetVoidPtrProperty(mHook, "p", &second);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "p"), &second);
    ezHook_SetVoidPtrProperty(mHook, "p", nullptr);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "p"), nullptr);
}

TEST_F(Hook, CopiesTheNamesOfPointers) {
    int target = 0;
    std::string name = "name";
    ezHook_SetVoidPtrProperty(mHook, name.c_str(), &target);
    name = "other";
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, "name"), &target);
}

TEST_F(Hook, ANullHookOrNameFindsAndFilesNothing) {
    int target = 0;
    ezHook_SetVoidPtrProperty(mHook, nullptr, &target);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, nullptr), nullptr);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(mHook, ""), nullptr);
    ezHook_SetVoidPtrProperty(nullptr, "p", &target);
    EXPECT_EQ(ezHook_GetVoidPtrProperty(nullptr, "p"), nullptr);
    ezHook_SetCallback(nullptr, sNote);
    ezHook_Call(nullptr, "nothing", 1);
    ezHook_Delete(nullptr);
    EXPECT_EQ(mReceived.mCalls, 0);
}
