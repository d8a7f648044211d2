#include "ezPlatform/base/Assert.h"

#include "ezPlatform/base/Log.h"

#include <cstdlib>

namespace {

ezAssertHandler gHandler = nullptr;
void* gHandlerUserData = nullptr;

} // namespace

void ezAssert_SetHandler(ezAssertHandler aHandler, void* aUserData) {
    gHandler = aHandler;
    gHandlerUserData = aUserData;
}

void _ezAssert(const char* anExpression, const char* aSource, int aLine, const char* aMessage) {
    if (_ezLog_Level > EZLOGLEVEL_ERROR) {
        ezLog_BeginAt(EZLOGLEVEL_ERROR, EZLOG_M_PARSERS, aSource, aLine);
        ezLog_Append_F("Assertion failed: %s, %s, line %d\n", anExpression, aSource, aLine);
        ezLog_End();
    }
    if (gHandler == nullptr) {
        std::abort();
    }
    gHandler(aMessage, aSource, aLine, gHandlerUserData);
}
