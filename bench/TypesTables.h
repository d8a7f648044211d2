#pragma once

#include "ez/ExtensionMimeTypeMatcher.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <memory>
#include <string>

/// Media types tables of a number of sizes, each in a folder of its own.
class TypesTables {
public:
    void Write(std::size_t aSize) const;
    std::unique_ptr<ExtensionMimeTypeMatcher> Load(std::size_t aSize) const;

private:
    TemporaryFolder mFolder;
};

/// What the key of a number names, 100,000 at most. One length for all, so that no key is cheaper than
/// another.
std::string TypesTables_Extension(std::size_t aKey);
std::string TypesTables_MimeType(std::size_t aKey);
