#pragma once

#include "ez/Environment.h"
#include "ez/MediaParserManager.h"
#include "ezPlatform/text/CString.h"

#include <memory>

/// A host with the standard parsers and, where asked for, those of the formats.
class BenchHost {
public:
    enum class Parsers { Standard, Formats };

    /// @param aConfig  the folder of its media types table
    BenchHost(const ezCString& aConfig, Parsers aParsers);
    ~BenchHost();
    BenchHost(const BenchHost&) = delete;
    BenchHost& operator=(const BenchHost&) = delete;

    ezMediaParserManager& GetManager() const { return *mManager; }
    /// Opens a file as a stream and parses it. The format's parser must know it.
    void Parse(const ezCString& aPath) const;

private:
    ezEnvironment mEnvironment;
    std::unique_ptr<ezMediaParserManager> mManager;
};
