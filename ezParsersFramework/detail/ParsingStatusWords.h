#pragma once

#include "ez/ElementaryStreamParserBase.h"

/// What log lines call the status of a decided parser.
inline const char* InWords(ezElementaryStreamParser::parsing_status_t aStatus) {
    return aStatus == ezElementaryStreamParser::MSS_UNRECOVERABLE_ERROR ? "failed" : "completed";
}
