#pragma once

#include <memory>
#include <string>

class ezMediaInfo;

/// The whole record, a line "key=value" each in key order (texts in quotes, with "\n" as a backslash and an
/// "n"; numbers bare), then the members of their own that are set: "path", "modified", "title", "creator",
/// "genre", "album". "null\n" for no record.
std::string DumpRecord(const ezMediaInfo* anInfo);

/// What a parse returned, deleted in the end.
using Record = std::unique_ptr<ezMediaInfo>;
