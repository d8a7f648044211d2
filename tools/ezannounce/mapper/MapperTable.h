#pragma once

#include "ez/DLNAMediaMapper.h"

#include <memory>
#include <string>
#include <vector>

class Console;
struct ezHostFolders;

/// The two files of the media mapper: the factory's, and the one that is read and saved from the first load
/// on.
struct MapperFiles {
    std::string mReadOnly;
    std::string mWritable;
    bool mfReadOnlyExists = false;
    bool mfWritableExists = false;
};

MapperFiles FindMapperFiles(const ezHostFolders& aFolders);

/// The table as a server with these folders has it from its second start on: every line once. Says beforehand
/// when the load will copy the read-only file. With afNoCopy nothing is copied and no folder made: where
/// there is no writable file yet, the read-only one itself is presented. Null, after an error line, when
/// there is no file or it cannot be read. Says which lines were skipped.
/// @param anIniParser  borrowed, outlives the table; may be null where no file is looked up
std::unique_ptr<DLNAMediaMapper> OpenMapper(const ezHostFolders& aFolders,
                                            ezMimeTypesDotIniParser* anIniParser, bool afNoCopy,
                                            Console& aConsole);

/// Says which lines the last save of a table made longer than can be read back.
/// @param aPath  of the file that it wrote
void TellTooLong(const DLNAMediaMapper& aMapper, const std::string& aPath, Console& aConsole);

/// The entries in table order, borrowed.
std::vector<DLNAMediaMapperEntry*> EntriesOf(DLNAMediaMapper& aMapper);

/// A message of the library on one line.
std::string OneLine(const ezError& anError);
