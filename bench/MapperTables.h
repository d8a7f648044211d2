#pragma once

#include "ez/DLNAMediaMapper.h"
#include "ez/MimeTypesDotIniParser.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <memory>
#include <string>

/// Media mapper tables of a number of sizes, each already copied to its writable place: no line is held
/// twice.
class MapperTables {
public:
    static constexpr const char* kFileName = "MediaMapper.txt";

    MapperTables();
    void Write(std::size_t aSize) const;
    std::unique_ptr<DLNAMediaMapper> Load(std::size_t aSize) const;

    const TemporaryFolder& GetFolder() const { return mFolder; }
    ezMimeTypesDotIniParser& GetTypes() const { return *mTypes; }

private:
    TemporaryFolder mFolder;
    std::unique_ptr<ezMimeTypesDotIniParser> mTypes;
};

/// The name of an entry without its extension, "mpg". One length for all, so that no name is cheaper than
/// another. Longer than a text holds in itself. There are 100,000 entries at most.
std::string MapperTables_BaseName(std::size_t anEntry);

const DLNAMediaMapperEntry& MapperTables_EntryAt(DLNAMediaMapper& aMapper, std::size_t anIndex);
