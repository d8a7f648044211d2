#include "host/Host.h"

#include "host/Explanation.h"
#include "host/MapperAnswer.h"
#include "host/RefusalLog.h"
#include "host/Unreadable.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ezFormats/FormatParsers.h"
#include "ezHosting/ProtocolInfos.h"
#include "ezHosting/TypesTableParser.h"
#include "ezPlatform/containers/PtrList.h"

namespace {

/// The record of the last request before the media mapper was asked; null where no parser answered.
const ezMediaInfo* RecordOfParsers(const HostManager& aManager) {
    for (const Answer& answer : aManager.GetAnswers()) {
        if (answer.mDepth == 0) {
            return answer.mInfo.get();
        }
    }
    return nullptr;
}

} // namespace

Announcement::Announcement() = default;
Announcement::Announcement(Announcement&&) noexcept = default;
Announcement& Announcement::operator=(Announcement&&) noexcept = default;
Announcement::~Announcement() = default;

Host::Host(const Arguments& anArguments, const ConfigFolders& aFolders,
           std::shared_ptr<const ProfileRules> aRules, Console* aConsole)
    : mEnvironment(aFolders.mReadOnly, aFolders.mReadWrite),
      mfExplain(anArguments.mfExplain),
      mParseOptions(anArguments.mParseOptions) {
    mEnvironment.SetCTTContext(anArguments.mCTTContext);
    if (anArguments.mCodePage) {
        mEnvironment.SetTextCodePage(*anArguments.mCodePage);
    }

    mMatcher = std::make_unique<ExtensionMimeTypeMatcher>(aFolders.mReadOnly.c_str(),
                                                          aFolders.mReadWrite.c_str(), kezMediaTypesFileName);
    mMatcher->Load();

    mManager = std::make_unique<HostManager>(mEnvironment.Get());
    mManager->SetTracing(mfExplain);
    mManager->AddStandardParsers(mParseOptions);
    RegisterFormatParsers(*mManager, std::move(aRules));
    mManager->Add(new TypesTableParser(*mMatcher, ProtocolInfosOf(mManager->GetDLNAInfo().View())));
    if (mfExplain) {
        mRefusals = std::make_unique<RefusalLog>(aConsole);
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
    mManager->SetTracing(true); // what the table replaces is found in what the parsers answered
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
        std::optional<MapperAnswer> answer =
            FindMapperAnswer(*mMapper, aStream, RecordOfParsers(*mManager), *anAnnouncement.mInfo);
        if (answer) {
            anAnnouncement.mMapperAnswer = std::make_unique<MapperAnswer>(std::move(*answer));
        }
    }
    if (mfExplain) {
        Explainer explainer(*mManager, *mMatcher, mEnvironment.Get(), mParseOptions, mRefusals->Take());
        anAnnouncement.mExplanation = std::make_unique<Explanation>(explainer.Explain(
            aStream, *anAnnouncement.mInfo, anAnnouncement.mfRecognised, anAnnouncement.mMapperAnswer.get()));
    }
}
