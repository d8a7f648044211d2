#pragma once

#include "ezPlatform/base/Export.h"

/// Levels of a log line. A line of level L is written when _ezLog_Level is above L.
enum ezLogLevel : int {
    EZLOGLEVEL_ERROR = 1,
    EZLOGLEVEL_WARNING = 2,
    EZLOGLEVEL_INFO = 3,
    EZLOGLEVEL_DEBUG = 4
};

/// Modules that log. Code without a module of its own logs as parsers.
enum ezLogModule : int { EZLOG_M_PARSERS = 10, EZLOG_M_THUMBNAIL = 37 };

/// The process-wide level: 2 (errors only) until a host sets another; 5 lets everything through.
/// Set it before other threads use the libraries.
extern EZPLATFORM_API int _ezLog_Level;

/// One finished line as a sink receives it; its texts are valid during the call only.
struct ezLogLine {
    int mLevel;          ///< ezLogLevel
    int mModule;         ///< ezLogModule
    const char* mSource; ///< name of the source that logs, or null where the line carries none
    int mLine;           ///< line in that source, or 0
    const char* mText;   ///< the message, with its line end
};

/// Receives the lines in place of standard error, on the thread that logs.
using ezLogSink = void (*)(const ezLogLine& aLine, void* aUserData);

/// Installs the process-wide sink; null brings standard error back. aUserData is borrowed.
/// Set it before other threads use the libraries.
EZPLATFORM_API void ezLog_SetSink(ezLogSink aSink, void* aUserData);

/// Begins a line on the calling thread; a line begun and not ended is dropped.
/// Whoever calls has tested _ezLog_Level, so that nothing is formatted for a line that the level drops.
EZPLATFORM_API void ezLog_Begin(int aLevel, int aModule);

/// The same, carrying the name of a source and a line in it. aSource must live as long as the program.
EZPLATFORM_API void ezLog_BeginAt(int aLevel, int aModule, const char* aSource, int aLine);

/// Appends printf-formatted text to the line begun on the calling thread.
EZPLATFORM_API void ezLog_Append_F(const char* aFormat, ...) __attribute__((format(printf, 1, 2)));

/// Hands the line to the sink.
EZPLATFORM_API void ezLog_End();

/// Begins, formats and ends a line at once. The level has been tested; aSource may be null.
EZPLATFORM_API void ezLog_Line_F(int aLevel, int aModule, const char* aSource, int aLine, const char* aFormat,
                                 ...) __attribute__((format(printf, 5, 6)));

/// Writes one line of the parsers module, if the level lets it through: `ezLog_F(EZLOGLEVEL_DEBUG, "x %s\n",
/// text)`. The arguments are not evaluated for a line that is dropped.
#define ezLog_F(aLevel, ...)                                                                                 \
    do {                                                                                                     \
        if (_ezLog_Level > (aLevel)) {                                                                       \
            ezLog_Line_F(aLevel, EZLOG_M_PARSERS, nullptr, 0, __VA_ARGS__);                                  \
        }                                                                                                    \
    } while (false)
