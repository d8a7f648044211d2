#include "host/Host.h"

#include "host/Explanation.h"
#include "host/MapperAnswer.h"
#include "host/RequestNotes.h"
#include "host/Unreadable.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/UPnPClasses.h"
#include "ezHosting/Subtitles.h"

namespace {

ezHostOptions OptionsOf(const Arguments& anArguments, std::shared_ptr<const ProfileRules> aRules) {
    ezHostOptions options;
    options.mParseOptions = anArguments.mParseOptions;
    options.mCTTContext = anArguments.mCTTContext;
    options.mTextCodePage = anArguments.mCodePage.value_or("");
    options.mProfileRules = std::move(aRules);
    options.mStateFolder = anArguments.mStateFolder.value_or("");
    options.mfTableRequired = false; // what formats declare can be shown without
    return options;
}

/// Whether a record is one of moving pictures.
bool IsFilm(const ezMediaInfo& anInfo) {
    return anInfo.GetCString(kezInfo_ClassName, "").StartsWith(kezUPnPClass_VideoItem);
}

} // namespace

Announcement::Announcement() = default;
Announcement::Announcement(Announcement&&) noexcept = default;
Announcement& Announcement::operator=(Announcement&&) noexcept = default;
Announcement::~Announcement() = default;

Host::Host(const Arguments& anArguments, std::shared_ptr<const ProfileRules> aRules)
    : mHost(anArguments.mConfigFolder.value_or(""), OptionsOf(anArguments, std::move(aRules))),
      mfExplain(anArguments.mfExplain) {
    if (mfExplain) {
        TakeNotes();
    }
    if (anArguments.mVerb == Verb::Parse && (anArguments.mfJson || mfExplain)) {
        mSubtitles =
            std::make_unique<ezSubtitleFinder>(mHost.GetMediaTypes(), anArguments.mCodePage.value_or(""));
    }
}

Host::~Host() = default;

void Host::Use(std::unique_ptr<DLNAMediaMapper> aMapper) {
    mHost.UseMediaMapper(std::move(aMapper));
    TakeNotes(); // what the table replaces
}

void Host::TakeNotes() {
    mNotes = std::make_unique<RequestNotes>();
    mHost.GetManager().SetObserver(mNotes.get());
}

bool Host::Announce(const std::string& aPath, Announcement& anAnnouncement, std::string& aReason) {
    ezFileMediaParserStream stream{ezCString(aPath)};
    if (!Announce(stream, aPath, anAnnouncement)) {
        aReason = WhyUnreadable(aPath);
        return false;
    }
    if (mSubtitles != nullptr && anAnnouncement.mfRecognised && IsFilm(*anAnnouncement.mInfo)) {
        anAnnouncement.mSubtitles = std::make_unique<ezSubtitles>(mSubtitles->Find(aPath));
    }
    return true;
}

bool Host::Announce(ezMediaParserStream& aStream, const std::string& aName, Announcement& anAnnouncement) {
    anAnnouncement.mPath = aName;
    anAnnouncement.mInfo = mHost.Identify(aStream);
    if (!mHost.GetError().empty()) {
        return false;
    }
    anAnnouncement.mfRecognised = anAnnouncement.mInfo != nullptr;
    if (!anAnnouncement.mfRecognised) {
        anAnnouncement.mInfo = std::make_unique<ezMediaInfo>();
        aStream.CopyInfo(anAnnouncement.mInfo.get());
        anAnnouncement.mInfo->Set(kezInfo_MimeType, "", true); // what a server says of it is not what it is
    }
    anAnnouncement.mfMapperInForce = mHost.GetMediaMapper() != nullptr;
    if (anAnnouncement.mfMapperInForce && anAnnouncement.mfRecognised) {
        if (std::optional<MapperAnswer> answer = mNotes->GetMapperAnswer(*anAnnouncement.mInfo)) {
            anAnnouncement.mMapperAnswer = std::make_unique<MapperAnswer>(std::move(*answer));
        }
    }
    if (mfExplain) {
        anAnnouncement.mExplanation = std::make_unique<Explanation>(
            mNotes->Explain(anAnnouncement.mfRecognised ? anAnnouncement.mInfo.get() : nullptr));
    }
    return true;
}
