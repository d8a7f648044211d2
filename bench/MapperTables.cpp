#include "bench/MapperTables.h"

#include "bench/Require.h"

#include "ezPlatform/containers/Array.h"

namespace {

constexpr std::size_t kLargest = 100000;
constexpr std::size_t kProfiles = 60;
constexpr const char* kTypes = "[MimeTypes]\nclip=clip,mpg@video/mpeg@item.videoItem\n";

std::string TableText(std::size_t aSize) {
    std::string text = "# A table\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        const std::string profile = "PROFILE_" + std::to_string(100 + i % kProfiles);
        text += MapperTables_BaseName(i) + ".mpg,video/mpeg," + profile +
                ",0:45:00,-2\\,2\\,4,00000001,9800000,,,720,576,," +
                "DLNA.ORG_OP=01;VENDOR.COM_X=" + std::to_string(i % 7) + "\n";
    }
    return text;
}

} // namespace

MapperTables::MapperTables() {
    mFolder.Write("types/mediaCTRLMediaTypes.ini", kTypes);
    const ezCString types(mFolder.Path("types").c_str());
    mTypes = std::make_unique<ezMimeTypesDotIniParser>(types, types, "", 0);
}

void MapperTables::Write(std::size_t aSize) const {
    mFolder.Write(std::to_string(aSize) + "/_" + kFileName, TableText(aSize));
}

std::unique_ptr<DLNAMediaMapper> MapperTables::Load(std::size_t aSize) const {
    const ezCString folder(mFolder.Path(std::to_string(aSize)).c_str());
    auto mapper = std::make_unique<DLNAMediaMapper>(mTypes.get(), folder, folder, "", kFileName);
    Require(!mapper->Load().IsError(), "the table is loaded");
    return mapper;
}

std::string MapperTables_BaseName(std::size_t anEntry) {
    return "a recorded film number " + std::to_string(kLargest + anEntry);
}

const DLNAMediaMapperEntry& MapperTables_EntryAt(DLNAMediaMapper& aMapper, std::size_t anIndex) {
    return *static_cast<DLNAMediaMapperEntry*>(ezArray_At(aMapper.GetArray(), anIndex));
}
