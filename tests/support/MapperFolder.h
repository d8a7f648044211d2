#pragma once

#include "ez/DLNAMediaMapper.h"
#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/containers/Array.h"

#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// What every protocolInfo of a media mapper's line states.
inline constexpr const char* kVersionFlags = "DLNA.ORG_FLAGS=00100000000000000000000000000000";

/// Takes an allocated text over.
inline std::string Taken(char* aText) {
    return Str(ezCString::FromAllocatedString(aText));
}

/// A media mapper with its protected operations opened.
class OpenMapper : public DLNAMediaMapper {
public:
    using DLNAMediaMapper::DLNAMediaMapper;
    using DLNAMediaMapper::GetPath;
    using DLNAMediaMapper::LoadFile;
    using DLNAMediaMapper::SaveFile;

    std::size_t GetCount() { return ezArray_GetCount(GetArray()); }
    DLNAMediaMapperEntry* At(std::size_t anIndex) {
        return static_cast<DLNAMediaMapperEntry*>(ezArray_At(GetArray(), anIndex));
    }
    /// The file names of the entries, in array order.
    std::vector<std::string> Names() {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < GetCount(); ++i) {
            names.push_back(Str(At(i)->mFileName));
        }
        return names;
    }
};

/// The folders of a media mapper, with a media types table that knows mpg, mpeg, mp3, wav, pcm and jpg.
class MapperFolder {
public:
    MapperFolder() {
        mFolder.Write("types/mediaCTRLMediaTypes.ini", "[MimeTypes]\n"
                                                       "mpg=mpg,mpeg@video/mpeg@item.videoItem\n"
                                                       "mp3=mp3@audio/mpeg@item.audioItem\n"
                                                       "wav=wav@audio/wav@item.audioItem\n"
                                                       "pcm=pcm@audio/L16@item.audioItem\n"
                                                       "jpg=jpg@image/jpeg@item.imageItem\n");
        const ezCString types = mFolder.Path("types").c_str();
        mTypes = std::make_unique<ezMimeTypesDotIniParser>(types, types, "", 0);
    }

    const TemporaryFolder& Folder() const { return mFolder; }
    ezMimeTypesDotIniParser* Types() const { return mTypes.get(); }
    std::string ReadOnlyPath() const { return mFolder.Path("ro/MediaMapper.txt"); }
    std::string WritablePath() const { return mFolder.Path("rw/_MediaMapper.txt"); }

    void WriteReadOnly(const std::string& aContent) const { mFolder.Write("ro/MediaMapper.txt", aContent); }
    void WriteWritable(const std::string& aContent) const { mFolder.Write("rw/_MediaMapper.txt", aContent); }
    std::string ReadWritable() const { return ReadFile(WritablePath()); }

    /// A mapper that has loaded nothing.
    std::unique_ptr<OpenMapper> New() const {
        return std::make_unique<OpenMapper>(Types(), mFolder.Path("ro").c_str(), mFolder.Path("rw").c_str(),
                                            "", "MediaMapper.txt");
    }
    /// A mapper that has loaded a writable file of this content.
    std::unique_ptr<OpenMapper> Loaded(const std::string& aContent) const {
        WriteWritable(aContent);
        std::unique_ptr<OpenMapper> mapper = New();
        const ezError error = mapper->Load();
        if (error.IsError()) {
            throw std::runtime_error(error.ToString());
        }
        return mapper;
    }

    static std::string ReadFile(const std::string& aPath) {
        std::ifstream file(aPath, std::ios::binary);
        if (!file) {
            throw std::runtime_error("cannot read " + aPath);
        }
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

private:
    TemporaryFolder mFolder;
    std::unique_ptr<ezMimeTypesDotIniParser> mTypes;
};
