#include "Host.h"

#include "Explanation.h"
#include "TypesTableParser.h"

#include "ez/FileMediaParserStream.h"
#include "ezPlatform/containers/PtrList.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Why a file that did not open does not.
std::string WhyUnreadable(const std::string& aPath) {
    struct stat status = {};
    if (stat(aPath.c_str(), &status) != 0) {
        return std::strerror(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return "not a regular file";
    }
    if (faccessat(AT_FDCWD, aPath.c_str(), R_OK, AT_EACCESS) != 0) {
        return std::strerror(errno);
    }
    return "cannot be opened";
}

} // namespace

Announcement::Announcement() = default;
Announcement::Announcement(Announcement&&) noexcept = default;
Announcement& Announcement::operator=(Announcement&&) noexcept = default;
Announcement::~Announcement() = default;

Host::Host(const Arguments& anArguments, const ConfigFolders& aFolders)
    : mEnvironment(ezPropertyList_New()),
      mfExplain(anArguments.mfExplain),
      mParseOptions(anArguments.mParseOptions) {
    ezPropertyList_Set_charPtr(mEnvironment, "ReadOnlyConfigPath", aFolders.mReadOnly.c_str());
    ezPropertyList_Set_charPtr(mEnvironment, "ReadWriteConfigPath", aFolders.mReadWrite.c_str());
    ezPropertyList_Set_uint32(mEnvironment, "CTTContext", anArguments.mCTTContext);

    mMatcher = std::make_unique<ExtensionMimeTypeMatcher>(aFolders.mReadOnly.c_str(),
                                                          aFolders.mReadWrite.c_str(), kMediaTypesFileName);
    mMatcher->Load();

    mManager = std::make_unique<HostManager>(mEnvironment);
    mManager->SetTracing(mfExplain);
    mManager->AddStandardParsers(mParseOptions);
    mManager->Add(new TypesTableParser(*mMatcher));
}

Host::~Host() {
    // The parsers use environment and table to the end.
    mManager.reset();
    mMatcher.reset();
    ezPropertyList_Delete(mEnvironment);
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
    anAnnouncement.mPath = aPath;
    anAnnouncement.mInfo.reset(mManager->Parse(stream));
    anAnnouncement.mfRecognised = anAnnouncement.mInfo != nullptr;
    if (!anAnnouncement.mfRecognised) {
        anAnnouncement.mInfo = std::make_unique<ezMediaInfo>();
        stream.CopyInfo(anAnnouncement.mInfo.get());
    }
    if (mfExplain) {
        Explainer explainer(*mManager, *mMatcher, mEnvironment, mParseOptions);
        anAnnouncement.mExplanation = std::make_unique<Explanation>(
            explainer.Explain(stream, *anAnnouncement.mInfo, anAnnouncement.mfRecognised));
    }
    return true;
}
