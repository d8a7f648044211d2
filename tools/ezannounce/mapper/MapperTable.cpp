#include "mapper/MapperTable.h"

#include "output/Console.h"

#include "ezHosting/HostFolders.h"
#include "ezPlatform/containers/Array.h"
#include "mapper/Limits.h"

namespace {

ezPathName PathIn(const std::string& aFolder, const char* aName) {
    return ezPathName::MakeCombinedFilePath(ezPathName::MakeDirPath(ezCString(aFolder)), aName);
}

/// Loads a file that is never to be copied or saved.
class UncopiedMapper : public DLNAMediaMapper {
public:
    // An empty writable folder is the working one, so that none is made; nothing is written to it.
    UncopiedMapper(ezMimeTypesDotIniParser* anIniParser, const std::string& aFolder)
        : DLNAMediaMapper(anIniParser, ezCString(aFolder), "", "", kezMediaMapperFileName) {}

    ezError LoadUncopied(const std::string& aPath) {
        return LoadFile(ezPathName::MakeFilePath(ezCString(aPath)));
    }
};

std::unique_ptr<DLNAMediaMapper> NewMapper(const ezHostFolders& aFolders,
                                           ezMimeTypesDotIniParser* anIniParser) {
    return std::make_unique<DLNAMediaMapper>(anIniParser, ezCString(aFolders.mReadOnly),
                                             ezCString(aFolders.mWritable), "", kezMediaMapperFileName);
}

/// Says which lines do not count, and why: those of the read-only file, or those of the other.
void TellLines(const DLNAMediaMapperBadLines& aLines, bool afReadOnly, const std::string& aPath,
               const char* aWhat, Console& aConsole) {
    std::size_t told = 0;
    for (const DLNAMediaMapperBadLine& line : aLines.mLines) {
        if (line.mfReadOnlyFile == afReadOnly && told++ < kMapperTable_MaxTold) {
            aConsole.Error(aPath + ":" + std::to_string(line.mNumber), std::string(line.mReason) + aWhat);
        }
    }
    if (told > kMapperTable_MaxTold) {
        aConsole.Error(aPath, "more such lines; \"mapper check\" names them");
    }
}

void TellSkipped(const DLNAMediaMapper& aMapper, bool afReadOnly, const std::string& aPath,
                 Console& aConsole) {
    TellLines(aMapper.GetSkippedLines(), afReadOnly, aPath, ": skipped", aConsole);
}

} // namespace

void TellTooLong(const DLNAMediaMapper& aMapper, const std::string& aPath, Console& aConsole) {
    TellLines(aMapper.GetTooLongLines(), false, aPath, " as it is saved: skipped from the next load on",
              aConsole);
}

MapperFiles FindMapperFiles(const ezHostFolders& aFolders) {
    const ezPathName readOnly = PathIn(aFolders.mReadOnly, kezMediaMapperFileName);
    const ezPathName writable = PathIn(aFolders.mWritable, kezMediaMapperCopyFileName);
    return {readOnly.GetFullPath().c_str(), writable.GetFullPath().c_str(), readOnly.FileExists(),
            writable.FileExists()};
}

std::unique_ptr<DLNAMediaMapper> OpenMapper(const ezHostFolders& aFolders,
                                            ezMimeTypesDotIniParser* anIniParser, bool afNoCopy,
                                            Console& aConsole) {
    const MapperFiles files = FindMapperFiles(aFolders);
    if (!files.mfReadOnlyExists && !files.mfWritableExists) {
        aConsole.Error(kezMediaMapperFileName, "no media mapper file: neither '" + files.mWritable +
                                                   "' nor '" + files.mReadOnly + "'");
        return nullptr;
    }
    const bool fFirstLoad = !files.mfWritableExists;
    if (afNoCopy) {
        auto mapper = std::make_unique<UncopiedMapper>(anIniParser, aFolders.mReadOnly);
        const ezError error = mapper->LoadUncopied(fFirstLoad ? files.mReadOnly : files.mWritable);
        if (error.IsError()) {
            aConsole.Error(kezMediaMapperFileName, OneLine(error));
            return nullptr;
        }
        TellSkipped(*mapper, false, fFirstLoad ? files.mReadOnly : files.mWritable, aConsole);
        return mapper;
    }
    if (fFirstLoad) {
        aConsole.Error("The first load copies '" + files.mReadOnly + "' to '" + files.mWritable + "'.");
    }
    std::unique_ptr<DLNAMediaMapper> mapper = NewMapper(aFolders, anIniParser);
    ezError error = mapper->Load();
    if (!error.IsError() && fFirstLoad) {
        TellSkipped(*mapper, true, files.mReadOnly, aConsole); // which are not in the copy
        // The table that made the copy holds every line twice, and a save of it would make that permanent. A
        // fresh one holds what the copy holds.
        mapper = NewMapper(aFolders, anIniParser);
        error = mapper->Load();
    }
    if (error.IsError()) {
        aConsole.Error(kezMediaMapperFileName, OneLine(error));
        return nullptr;
    }
    TellSkipped(*mapper, false, files.mWritable, aConsole);
    return mapper;
}

std::vector<DLNAMediaMapperEntry*> EntriesOf(DLNAMediaMapper& aMapper) {
    std::vector<DLNAMediaMapperEntry*> entries;
    for (std::size_t i = 0; i < ezArray_GetCount(aMapper.GetArray()); ++i) {
        entries.push_back(static_cast<DLNAMediaMapperEntry*>(ezArray_At(aMapper.GetArray(), i)));
    }
    return entries;
}

std::string OneLine(const ezError& anError) {
    return ezCString(anError.ToString()).Replace(" :\n", ": ", true).c_str();
}
