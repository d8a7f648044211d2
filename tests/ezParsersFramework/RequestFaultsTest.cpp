#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"

#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Every system call of a server's start and of a request goes wrong once, and for good.

namespace {

constexpr std::size_t kMediaSize = 20000;

/// Reads a block of the beginning and one of the end, as most formats' parsers do.
class EndsParser : public ezMediaParser {
public:
    EndsParser() : ezMediaParser("ends", nullptr, false) {}

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        return ParseFromStream(aStream, 9000, 3000, true);
    }

protected:
    ezMediaInfo* Read(const char* aBegin, std::size_t aBeginSize, const char* anEnd, std::size_t anEndSize,
                      const ezuint64& /*aMediaSize*/) override {
        if (aBeginSize != 9000 || anEndSize != 3000 || aBegin[8999] != 'b' || anEnd[2999] != 'e') {
            return nullptr;
        }
        ezMediaInfo* info = new ezMediaInfo;
        info->Set(kezInfo_MimeType, "video/ends", true);
        return info;
    }
};

} // namespace
