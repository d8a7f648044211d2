#include "host/Host.h"

#include "host/Explanation.h"
#include "host/MapperAnswer.h"
#include "host/RequestNotes.h"
#include "host/Unreadable.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ezFormats/FormatParsers.h"
#include "ezHosting/ProtocolInfos.h"
#include "ezHosting/TypesTableParser.h"
#include "ezPlatform/containers/PtrList.h"

Announcement::Announcement() = default;
Announcement::Announcement(Announcement&&) noexcept = default;
Announcement& Announcement::operator=(Announcement&&) noexcept = default;
Announcement::~Announcement() = default;

Host::Host(const Arguments& anArguments, const ConfigFolders& aFolders,
           std::shared_ptr<const ProfileRules> aRules)
    : mEnvironment(aFolders.mReadOnly, aFolders.mReadWrite), mfExplain(anArguments.mfExplain) {
    mEnvironment.SetCTTContext(anArguments.mCTTContext);
    if (anArguments.mCodePage) {
        mEnvironment.SetTextCodePage(*anArguments.mCodePage);
    }

    mMatcher = std::make_unique<ExtensionMimeTypeMatcher>(aFolders.mReadOnly.c_str(),
                                                          aFolders.mReadWrite.c_str(), kezMediaTypesFileName);
    mMatcher->Load();

    mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
    mManager->AddStandardParsers(anArguments.mParseOptions);
    RegisterFormatParsers(*mManager, std::move(aRules));
    mManager->Add(new TypesTableParser(*mMatcher, ProtocolInfosOf(mManager->GetDLNAInfo().View())));
    if (mfExplain) {
        TakeNotes();
    }
}

Host::~Host() {
    // The parsers use environment and table to the end.
    mManager.reset();
    mMapper.reset();
    mMatcher.reset();
}

void Host::Use(std::unique_ptr<DLNAMediaMapper> aMapper) {
    mMapper = std::move(aMapper);
    mManager->AddDLNAMediaMapperParser(mMapper.get());
    TakeNotes(); // what the table replaces
}

void Host::TakeNotes() {
    mNotes = std::make_unique<RequestNotes>();
    mManager->SetObserver(mNotes.get());
}

bool Host::HasMediaTypes() const {
    return ezPtrList_GetCount(mMatcher->AllEntries()) > 0;
}

bool Host::Announce(const std::string& aPath, Announcement& anAnnouncement, std::string& aReason) {
    ezFileMediaParserStream stream{ezCString(aPath)};
    if (!stream.Open()) {
        aReason = WhyUnreadable(aPath);
        return false;
    }
    Announce(stream, aPath, anAnnouncement);
    return true;
}

void Host::Announce(ezMediaParserStream& aStream, const std::string& aName, Announcement& anAnnouncement) {
    anAnnouncement.mPath = aName;
    anAnnouncement.mInfo.reset(mManager->Parse(aStream));
    anAnnouncement.mfRecognised = anAnnouncement.mInfo != nullptr;
    if (!anAnnouncement.mfRecognised) {
        anAnnouncement.mInfo = std::make_unique<ezMediaInfo>();
        aStream.CopyInfo(anAnnouncement.mInfo.get());
        anAnnouncement.mInfo->Set(kezInfo_MimeType, "", true); // what a server says of it is not what it is
    }
    anAnnouncement.mfMapperInForce = mMapper != nullptr;
    if (mMapper != nullptr && anAnnouncement.mfRecognised) {
        if (std::optional<MapperAnswer> answer = mNotes->GetMapperAnswer(*anAnnouncement.mInfo)) {
            anAnnouncement.mMapperAnswer = std::make_unique<MapperAnswer>(std::move(*answer));
        }
    }
    if (mfExplain) {
        anAnnouncement.mExplanation = std::make_unique<Explanation>(
            mNotes->Explain(anAnnouncement.mfRecognised ? anAnnouncement.mInfo.get() : nullptr));
    }
}
