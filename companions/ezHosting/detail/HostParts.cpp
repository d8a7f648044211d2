#include "ezHosting/detail/HostParts.h"

#include "ezHosting/ProtocolInfos.h"
#include "ezHosting/TypesTableParser.h"
#include "ezHosting/detail/HostPlaylists.h"
#include "ezHosting/detail/Places.h"

#include "ez/MimeTypesDotIniParser.h"
#include "ezFormats/FormatParsers.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/containers/PtrList.h"

#include <utility>

namespace {

/// A message of the library on one line.
std::string OneLine(const ezError& anError) {
    return ezCString(anError.ToString()).Replace(" :\n", ": ", true).c_str();
}

/// Whether the parser knows every extension as the table does.
bool AreAlike(ExtensionMimeTypeMatcher& aTable, ezMimeTypesDotIniParser& aParser) {
    for (ExtensionMimeTypeMatcherEntry* entry : ezItems<ExtensionMimeTypeMatcherEntry>(aTable.AllEntries())) {
        for (const char* extension : ezItems<const char>(entry->mExtensions)) {
            if (aTable.FileExtensionToMimeType(extension) != aParser.FileExtensionToMimeType(extension)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

HostParts::HostParts(std::string_view aConfigFolder, const ezHostOptions& anOptions)
    : mFolders(FindHostFolders(aConfigFolder, anOptions.mStateFolder)),
      mEnvironment(mFolders.mReadOnly, mFolders.mWritable),
      mMediaTypes(ezCString(mFolders.mReadOnly), ezCString(mFolders.mWritable), kezMediaTypesFileName),
      mManager(mEnvironment.Get()) {
    mEnvironment.SetSpecsLevel(anOptions.mSpecsLevel);
    mEnvironment.SetCTTContext(anOptions.mCTTContext);
    if (!anOptions.mTextCodePage.empty()) {
        mEnvironment.SetTextCodePage(anOptions.mTextCodePage);
    }
    mMediaTypes.Load();
    AddParsers(anOptions);
    mfReady =
        CheckTable(anOptions) && AddMapper(anOptions) && AddPlaylists(anOptions) && AddThumbnails(anOptions);
}

HostParts::~HostParts() = default;

void HostParts::AddParsers(const ezHostOptions& anOptions) {
    mManager.AddStandardParsers(anOptions.mParseOptions);
    if (anOptions.mAddParsers) {
        anOptions.mAddParsers(mManager);
    }
    if (anOptions.mfFormats) {
        RegisterFormatParsers(mManager, anOptions.mProfileRules);
    }
    mManager.Add(new TypesTableParser(mMediaTypes, ProtocolInfosOf(mManager.GetDLNAInfo().View())));
}

bool HostParts::Fail(const std::string& anError) {
    mError = anError;
    return false;
}

bool HostParts::CheckTable(const ezHostOptions& anOptions) {
    const bool fTable = ezPtrList_GetCount(mMediaTypes.AllEntries()) > 0;
    if (!fTable && anOptions.mfTableRequired) {
        return Fail(WhyNoTable(mFolders));
    }
    // It is read twice, and a host whose parser got nothing would recognise nothing without a word.
    const bool fAlike = AreAlike(mMediaTypes, *mManager.GetMimeTypesDotIniParser());
    return fAlike || Fail("no media types: two reads of the table gave two tables");
}

std::unique_ptr<DLNAMediaMapper> HostParts::NewMapper() {
    return std::make_unique<DLNAMediaMapper>(mManager.GetMimeTypesDotIniParser(),
                                             ezCString(mFolders.mReadOnly), ezCString(mFolders.mWritable), "",
                                             kezMediaMapperFileName);
}

bool HostParts::AddMapper(const ezHostOptions& anOptions) {
    if (!anOptions.mfMediaMapper) {
        return true;
    }
    const std::string readOnly = FileIn(mFolders.mReadOnly, kezMediaMapperFileName);
    const std::string writable = FileIn(mFolders.mWritable, kezMediaMapperCopyFileName);
    const std::string why = WhyNoFile(writable);
    if (!why.empty() && !WhyNoFile(readOnly).empty()) {
        return Fail("no media mapper: " + ShownPath(writable) + ": " + why + "; " + ShownPath(readOnly) +
                    ": " + WhyNoFile(readOnly));
    }
    std::unique_ptr<DLNAMediaMapper> mapper = NewMapper();
    ezError error = mapper->Load();
    if (!why.empty() && !error.IsError()) {
        // The table that made the copy holds every line twice; a new one has what the next start will have.
        mapper = NewMapper();
        error = mapper->Load();
    }
    return error.IsError() ? Fail("no media mapper: " + OneLine(error)) : UseMapper(std::move(mapper));
}

bool HostParts::AddPlaylists(const ezHostOptions& anOptions) {
    if (!anOptions.mfPlaylists) {
        return true;
    }
    mPlaylists = NewHostPlaylists();
    return mPlaylists != nullptr || Fail("no playlists: this library was built without ezPlaylists");
}

bool HostParts::AddThumbnails(const ezHostOptions& anOptions) {
    if (!anOptions.mfThumbnails) {
        return true;
    }
    if (anOptions.mThumbnailFolder.empty()) {
        return Fail("no thumbnails: no folder for their cache is named");
    }
    mThumbnails = HostThumbnails::New(anOptions);
    return mThumbnails != nullptr || Fail("no thumbnails: this library was built without ezThumbnails");
}

bool HostParts::UseMapper(std::unique_ptr<DLNAMediaMapper> aMapper) {
    if (aMapper == nullptr || mMapper != nullptr) {
        return false;
    }
    mMapper = std::move(aMapper);
    mManager.AddDLNAMediaMapperParser(mMapper.get());
    return true;
}
