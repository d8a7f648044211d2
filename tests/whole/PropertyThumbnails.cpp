#include "PropertyThumbnails.h"

#include "support/Str.h"

#include "ezPlatform/files/FileCacheManager.h"

#include <algorithm>
#include <iterator>
#include <sys/stat.h>
#include <utility>

namespace {

struct Bounds {
    std::size_t mBytes;
    std::size_t mFiles;
};
const Bounds kBounds[] = {{1000000, 1000}, {1000000, 2}, {1000000, 1}, {60, 1000}, {25, 3},
                          {0, 5},          {1000, 0},    {300, 1000},  {200, 1000}};

static_assert(std::size(kBounds) == ThumbnailsSubject::kBoundsOfCache, "each can be chosen");

const char* const kIdentities[] = {"one", "two", "three", "four", "a/../b"};
const char* const kClasses[] = {"Video/mpeg", "audio/mpeg", "image/png"};
const std::size_t kLengths[] = {10, 30, 1, 0, 61};
const unsigned kMasks[] = {kJPEGThumbnailID, kPNGThumbnailID, kJPEGThumbnailID | kPNGThumbnailID, 0};
constexpr std::size_t kMostProviders = 5;

/// A content that tells who made it, of a length.
std::string ContentOf(const std::string& aMaker, std::size_t aLength) {
    std::string content;
    while (content.size() < aLength) {
        content += aMaker + " ";
    }
    return content.substr(0, aLength);
}

/// All of a file, from where it stands, which must be its start.
std::string ContentOf(ezFile* aFile) {
    if (aFile == nullptr) {
        return "<null>";
    }
    std::string content(static_cast<std::size_t>(aFile->Length()), '\0');
    const int count = aFile->Read(content.data(), content.size());
    return count == static_cast<int>(content.size()) ? content : "<not at its start>";
}

/// The name in the cache, by the rules told again.
std::string NameOf(const ThumbnailInfo& anInfo, bool afDefault) {
    const std::string type = Str(ezCString(anInfo.mMimeType).Lower());
    std::string name = "thumb_" + (afDefault ? type.substr(0, type.find('/')) : Str(anInfo.mUniqueID));
    for (const uint32 number : {anInfo.mWidth, anInfo.mHeight, anInfo.mWidthMax, anInfo.mHeightMax,
                                anInfo.mPixelRatioHeight, anInfo.mPixelRatioWidth}) {
        name += "_" + std::to_string(number);
    }
    name += anInfo.mfParentalLocked ? "_1" : "_0";
    return name + ((anInfo.mThumbnailID & kJPEGThumbnailID) != 0 ? ".jpg" : ".png");
}

} // namespace

// ---- the model of the cache ----

std::optional<std::string> CacheModel::Use(const std::string& aName) {
    const auto found =
        std::find_if(mFiles.begin(), mFiles.end(), [&](const File& aFile) { return aFile.mName == aName; });
    if (found == mFiles.end()) {
        return std::nullopt;
    }
    std::rotate(found, found + 1, mFiles.end());
    return mFiles.back().mContent;
}

void CacheModel::Keep(const std::string& aName, const std::string& aContent) {
    if (aContent.size() > mMaximumBytes || mMaximumFiles == 0) {
        Met("a thumbnail is too large for the cache");
        return;
    }
    Forget(aName);
    mFiles.push_back({aName, aContent});
    std::size_t bytes = 0;
    for (const File& file : mFiles) {
        bytes += file.mContent.size();
    }
    while (mFiles.size() > mMaximumFiles || bytes > mMaximumBytes) {
        bytes -= mFiles.front().mContent.size();
        mFiles.erase(mFiles.begin());
        Met("the cache gives up a thumbnail");
    }
}

void CacheModel::Forget(const std::string& aName) {
    mFiles.erase(
        std::remove_if(mFiles.begin(), mFiles.end(), [&](const File& aFile) { return aFile.mName == aName; }),
        mFiles.end());
}

bool CacheModel::Has(const std::string& aName) const {
    return std::any_of(mFiles.begin(), mFiles.end(), [&](const File& aFile) { return aFile.mName == aName; });
}

// ---- the host's ----

ThumbnailsSubject::ThumbnailsSubject(const TemporaryFolder& aFolder, unsigned aBounds)
    : mFolder(aFolder),
      mMaximumBytes(Chosen(kBounds, aBounds).mBytes),
      mMaximumFiles(Chosen(kBounds, aBounds).mFiles),
      mModel(mMaximumBytes, mMaximumFiles) {
    Start();
}

ThumbnailsSubject::~ThumbnailsSubject() = default;

void ThumbnailsSubject::Start() {
    mManager.reset();
    mCache =
        std::make_unique<ezFileCacheManager>(mFolder.Path("cache").c_str(), mMaximumBytes, mMaximumFiles);
    mManager = std::make_unique<ezThumbnailProviderManager>(mCache.get(), nullptr);
    mTrace.clear();
    mProviders.clear();
    mDefault.reset();
}

std::string ThumbnailsSubject::DescribeBounds(unsigned aBounds) {
    const Bounds& bounds = Chosen(kBounds, aBounds);
    return std::to_string(bounds.mBytes) + " bytes, " + std::to_string(bounds.mFiles) + " files";
}

ThumbnailsSubject::Provider ThumbnailsSubject::ProviderOf(const Operation& anOperation) {
    static const char* const kNames[] = {"Ann", "Bob", "Cid", "Dot", "Eve", "Fay"};
    Provider provider;
    provider.mName = Chosen(kNames, anOperation.mA);
    provider.mPossible = Chosen(kMasks, anOperation.mB);
    provider.mLength = Chosen(kLengths, anOperation.mC);
    provider.mfFails = anOperation.mD % 4 == 3;
    return provider;
}

ThumbnailInfo ThumbnailsSubject::RequestOf(const Operation& anOperation) {
    ThumbnailInfo info;
    info.mUniqueID = Chosen(kIdentities, anOperation.mA);
    info.mThumbnailID = kMasks[anOperation.mB % 3];
    info.mMimeType = Chosen(kClasses, anOperation.mA / 5);
    info.mWidthMax = 160;
    info.mHeightMax = anOperation.mB / 3 % 3 == 2 ? 120 : 160;
    info.mPixelRatioHeight = 1;
    info.mPixelRatioWidth = 1;
    info.mfParentalLocked = anOperation.mD % 8 == 7;
    info.mFilePath = ezPathName::MakeFilePath("/films/a film.mpg");
    return info;
}

std::string ThumbnailsSubject::Describe(const Operation& anOperation) {
    const Provider provider = ProviderOf(anOperation);
    const std::string makes = provider.mName + " of thumbnails (formats " +
                              std::to_string(provider.mPossible) + ", " + std::to_string(provider.mLength) +
                              " bytes" + (provider.mfFails ? ", fails)" : ")");
    const std::string name = NameOf(RequestOf(anOperation), false);
    switch (anOperation.mVerb) {
    case Verb::AddProvider:
        return "add the provider " + makes;
    case Verb::SetDefaultProvider:
        return anOperation.mD % 5 == 4 ? "have no default provider" : "make default the provider " + makes;
    case Verb::RequestThumbnail:
        return "ask for the thumbnail " + name + (anOperation.mC % 2 != 0 ? " or the generic one" : "");
    case Verb::FillTwice:
        return "fill the thumbnail " + name + " by two at once";
    case Verb::ForgetThumbnail:
        return "find the thumbnail " + name + " worth nothing";
    default:
        return "begin again with the same thumbnails";
    }
}

ezThumbnailProvider* ThumbnailsSubject::NewProvider(const Provider& aProvider) {
    static const char* const kNames[] = {"Ann", "Bob", "Cid", "Dot", "Eve", "Fay"};
    const auto* name = std::find(std::begin(kNames), std::end(kNames), aProvider.mName);
    return new ScriptedProvider(mTrace, *name, aProvider.mPossible, [aProvider](ezFile* aFile) {
        return WriteText(aFile, ContentOf(aProvider.mName, aProvider.mLength)) && !aProvider.mfFails;
    });
}

void ThumbnailsSubject::Apply(const Operation& anOperation) {
    switch (anOperation.mVerb) {
    case Verb::AddProvider:
        if (mProviders.size() < kMostProviders) {
            mProviders.push_back(ProviderOf(anOperation));
            mManager->Add(NewProvider(mProviders.back()));
        }
        break;
    case Verb::SetDefaultProvider:
        mDefault.reset();
        if (anOperation.mD % 5 != 4) {
            mDefault = ProviderOf(anOperation);
        }
        mManager->SetDefaultProvider(mDefault ? NewProvider(*mDefault) : nullptr);
        break;
    case Verb::RequestThumbnail:
        Request(anOperation);
        break;
    case Verb::FillTwice:
        FillTwice(anOperation);
        break;
    case Verb::ForgetThumbnail:
        ForgetOne(anOperation);
        break;
    default:
        Start();
        break;
    }
    CompareFiles();
}

bool ThumbnailsSubject::Build(const ThumbnailInfo& anInfo, bool afDefault, std::string* aContent) {
    if (afDefault && mDefault) {
        mModelTrace.push_back("build " + mDefault->mName);
        *aContent = ContentOf(mDefault->mName, mDefault->mLength);
        return !mDefault->mfFails;
    }
    bool fGood = true; // also when nobody is able
    for (const Provider& provider : mProviders) {
        mModelTrace.push_back("possible " + provider.mName);
        if ((provider.mPossible & anInfo.mThumbnailID) != 0) {
            mModelTrace.push_back("build " + provider.mName);
            *aContent = ContentOf(provider.mName, provider.mLength);
            fGood = !provider.mfFails;
            if (fGood) {
                break;
            }
        }
    }
    return fGood;
}

std::optional<std::string> ThumbnailsSubject::Cached(const ThumbnailInfo& anInfo, bool afDefault) {
    const std::string name = NameOf(anInfo, afDefault);
    mNames.push_back(name);
    std::optional<std::string> content = mModel.Use(name);
    if (content) {
        Met(content->empty() ? "a thumbnail is refused at once" : "a thumbnail comes from the cache");
    } else {
        std::string built;
        if (!Build(anInfo, afDefault, &built)) {
            Met("a thumbnail cannot be built");
            return std::nullopt;
        }
        Met(built.empty() ? "nobody is able to build a thumbnail" : "a thumbnail is built");
        mModel.Keep(name, built);
        content = built;
    }
    return content->empty() ? std::nullopt : content;
}

void ThumbnailsSubject::Request(const Operation& anOperation) {
    const ThumbnailInfo info = RequestOf(anOperation);
    // Without a default provider a generic one would be made by the list, of whichever item comes first.
    const bool fGeneric = anOperation.mC % 2 != 0;
    Agree("the possible formats", static_cast<unsigned>(mManager->GetPossibleThumbnailFor(&info)),
          Possible());
    mTrace.clear();
    mModelTrace.clear();
    std::unique_ptr<ezFile> file(mManager->GetThumbnail(&info, fGeneric));
    const std::string content = ContentOf(file.get());
    std::optional<std::string> expected = Cached(info, false);
    if (!expected && fGeneric) {
        expected = Cached(info, true);
        Met(expected ? "a generic thumbnail is given" : "there is no generic thumbnail");
    }
    Agree("the thumbnail", content, expected.value_or("<null>"));
    Agree("what was asked of the providers", mTrace, mModelTrace);
    if (file != nullptr) {
        mServed = std::move(file);
        mServedContent = content;
    }
}

unsigned ThumbnailsSubject::Possible() const {
    if (mDefault && mDefault->mPossible != 0) {
        return mDefault->mPossible;
    }
    for (const Provider& provider : mProviders) {
        if (provider.mPossible != 0) {
            return provider.mPossible;
        }
    }
    return 0;
}

void ThumbnailsSubject::FillTwice(const Operation& anOperation) {
    const std::string name = NameOf(RequestOf(anOperation), false);
    mNames.push_back(name);
    bool fFirstNew = false;
    bool fSecondNew = false;
    const std::unique_ptr<ezFile> first(mCache->OpenCachedFile(name.c_str(), &fFirstNew, 0));
    const std::unique_ptr<ezFile> second(mCache->OpenCachedFile(name.c_str(), &fSecondNew, 0));
    const bool fNew = !mModel.Use(name);
    Agree("the first of two files is new", fFirstNew, fNew);
    Agree("the second of two files is new", fSecondNew, fNew);
    if (!fNew || first == nullptr || second == nullptr) {
        return;
    }
    const bool fGood = anOperation.mC % 4 != 3;
    const std::string firstText = ContentOf("first", Chosen(kLengths, anOperation.mC));
    const std::string secondText = ContentOf("second", Chosen(kLengths, anOperation.mD));
    WriteText(first.get(), firstText);
    WriteText(second.get(), secondText);
    mCache->SetCachedFileState(name.c_str(), first.get(), true);
    mModel.Keep(name, firstText);
    CompareFiles();
    mCache->SetCachedFileState(name.c_str(), second.get(), fGood);
    if (fGood) {
        mModel.Keep(name, secondText);
    }
    Met("two fill a thumbnail at once");
}

void ThumbnailsSubject::ForgetOne(const Operation& anOperation) {
    const std::string name = NameOf(RequestOf(anOperation), false);
    mNames.push_back(name);
    bool fNew = false;
    const std::unique_ptr<ezFile> file(mCache->OpenCachedFile(name.c_str(), &fNew, 0));
    Agree("the file to be forgotten is new", fNew, !mModel.Use(name));
    mCache->SetCachedFileState(name.c_str(), file.get(), false);
    mModel.Forget(name);
    Met(fNew ? "a new thumbnail is given up" : "a thumbnail is forgotten");
}

void ThumbnailsSubject::CompareFiles() {
    if (mServed != nullptr) {
        Agree("where it is read again", mServed->Seek(0, ezFileSeekMode_Begin), ezFileOffset{0});
        Agree("the thumbnail that is being served", ContentOf(mServed.get()), mServedContent);
    }
    std::sort(mNames.begin(), mNames.end());
    mNames.erase(std::unique(mNames.begin(), mNames.end()), mNames.end());
    std::vector<std::string> there;
    std::vector<std::string> expected;
    for (const std::string& name : mNames) {
        struct stat status = {};
        if (stat(mCache->GetFullPath(name.c_str()).c_str(), &status) == 0) {
            there.push_back(name);
        }
        if (mModel.Has(name)) {
            expected.push_back(name);
        }
    }
    Agree("the names in the cache", there, expected);
}
