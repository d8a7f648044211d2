#pragma once

#include "ezPlatform/base/Export.h"

/// Receives a failed assertion instead of the process being aborted.
/// @param anExpression  the text of the expression that did not hold
/// @param aSource       name of the source that asserts, without a folder or suffix
/// @param aLine         line in that source
/// @param aUserData     what was given to ezAssert_SetHandler
/// A handler that returns lets the operation go on: it then ends safely and reports failure.
using ezAssertHandler = void (*)(const char* anExpression, const char* aSource, int aLine, void* aUserData);

/// Installs the process-wide handler; null brings the default (abort) back.
/// Set it before other threads use the libraries. aUserData is borrowed.
EZPLATFORM_API void ezAssert_SetHandler(ezAssertHandler aHandler, void* aUserData);

/// Reports a failed assertion: logs expression, source and line at error level, then calls the handler, or
/// aborts where there is none. The expression text comes twice; the second is what a handler is shown.
EZPLATFORM_API void _ezAssert(const char* anExpression, const char* aSource, int aLine, const char* aMessage);

/// Asserts that a caller kept its side of a contract, and yields whether it did, so that the code after a
/// handler that returns (or a build without assertions) can refuse: `if (!ezAssert(...)) return false;`.
/// The text and the source name are reported as they stand here; they are part of the behaviour.
/// Never used on the content of a file.
#ifdef EZ_NO_ASSERTIONS
inline bool ezAssert_Holds(bool afHolds, const char* /*aText*/, const char* /*aSource*/) {
    return afHolds;
}
#define ezAssert(aCondition, aText, aSource) ezAssert_Holds(static_cast<bool>(aCondition), aText, aSource)
#else
#define ezAssert(aCondition, aText, aSource)                                                                 \
    (static_cast<bool>(aCondition) ? true : (_ezAssert(aText, aSource, __LINE__, aText), false))
#endif
