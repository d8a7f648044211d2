#pragma once

#include "ez/Environment.h"
#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <memory>

/// A host with a number of parsers of one type, none of which knows any media.
class DecliningHost {
public:
    explicit DecliningHost(std::size_t aParserCount);
    ~DecliningHost();
    DecliningHost(const DecliningHost&) = delete;
    DecliningHost& operator=(const DecliningHost&) = delete;

    /// Tries every parser once.
    void Request();

private:
    TemporaryFolder mFolder;
    std::size_t mParserCount;
    std::size_t mTries = 0;
    ezEnvironment mEnvironment;
    std::unique_ptr<ezMediaParserManager> mManager;
    std::unique_ptr<ezMediaParserStream> mStream; ///< of media without content
};
