#include "MapperTable.h"

#include "ConfigFolders.h"
#include "Console.h"

#include "ezPlatform/containers/Array.h"

namespace {

constexpr const char* kFileName = "MediaMapper.txt";
constexpr const char* kWritableFileName = "_MediaMapper.txt";

ezPathName PathIn(const std::string& aFolder, const char* aName) {
    return ezPathName::MakeCombinedFilePath(ezPathName::MakeDirPath(ezCString(aFolder)), aName);
}

/// Loads a file that is never to be copied or saved.
class UncopiedMapper : public DLNAMediaMapper {
public:
    // An empty writable folder is the working one, so that none is made; nothing is written to it.
    UncopiedMapper(ezMimeTypesDotIniParser* anIniParser, const std::string& aFolder)
        : DLNAMediaMapper(anIniParser, ezCString(aFolder), "", "", kFileName) {}

    ezError LoadUncopied(const std::string& aPath) {
        return LoadFile(ezPathName::MakeFilePath(ezCString(aPath)));
    }
};

std::unique_ptr<DLNAMediaMapper> NewMapper(const ConfigFolders& aFolders,
                                           ezMimeTypesDotIniParser* anIniParser) {
    return std::make_unique<DLNAMediaMapper>(anIniParser, ezCString(aFolders.mReadOnly),
                                             ezCString(aFolders.mReadWrite), "", kFileName);
}

} // namespace

MapperFiles FindMapperFiles(const ConfigFolders& aFolders) {
    const ezPathName readOnly = PathIn(aFolders.mReadOnly, kFileName);
    const ezPathName writable = PathIn(aFolders.mReadWrite, kWritableFileName);
    return {readOnly.GetFullPath().c_str(), writable.GetFullPath().c_str(), readOnly.FileExists(),
            writable.FileExists()};
}

std::unique_ptr<DLNAMediaMapper> OpenMapper(const ConfigFolders& aFolders,
                                            ezMimeTypesDotIniParser* anIniParser, bool afNoCopy,
                                            Console& aConsole) {
    const MapperFiles files = FindMapperFiles(aFolders);
    if (!files.mfReadOnlyExists && !files.mfWritableExists) {
        aConsole.Error(kFileName, "no media mapper file: neither '" + files.mWritable + "' nor '" +
                                      files.mReadOnly + "'");
        return nullptr;
    }
    const bool fFirstLoad = !files.mfWritableExists;
    if (afNoCopy) {
        auto mapper = std::make_unique<UncopiedMapper>(anIniParser, aFolders.mReadOnly);
        const ezError error = mapper->LoadUncopied(fFirstLoad ? files.mReadOnly : files.mWritable);
        if (error.IsError()) {
            aConsole.Error(kFileName, OneLine(error));
            return nullptr;
        }
        return mapper;
    }
    if (fFirstLoad) {
        aConsole.Error("The first load copies '" + files.mReadOnly + "' to '" + files.mWritable + "'.");
    }
    std::unique_ptr<DLNAMediaMapper> mapper = NewMapper(aFolders, anIniParser);
    ezError error = mapper->Load();
    if (!error.IsError() && fFirstLoad) {
        // The table that made the copy holds every line twice, and a save of it would make that permanent. A
        // fresh one holds what the copy holds.
        mapper = NewMapper(aFolders, anIniParser);
        error = mapper->Load();
    }
    if (error.IsError()) {
        aConsole.Error(kFileName, OneLine(error));
        return nullptr;
    }
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
