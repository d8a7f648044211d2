#include "ez/ThumbnailProvider.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "support/Catchers.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Trace = ThumbnailTrace;

const char* const kUnknown = "ezThumbnailProviderManager: Unknown thumbnail ID @ ThumbnailProviderManager";

class ThumbnailProviderManager : public testing::Test {
protected:
    ThumbnailProviderManager()
        : mCache(mFolder.Path("cache").c_str(), 1000000, 1000),
          mGenerator(new ScriptedGenerator(mTrace)),
          mManager(std::make_unique<ezThumbnailProviderManager>(&mCache, mGenerator)) {
        mInfo.mWidth = 160;
        mInfo.mHeight = 160;
        mInfo.mWidthMax = 160;
        mInfo.mHeightMax = 160;
        mInfo.mPixelRatioHeight = 1;
        mInfo.mPixelRatioWidth = 1;
        mInfo.mUniqueID = "id";
        mInfo.mThumbnailID = kJPEGThumbnailID;
        mInfo.mMimeType = "Video/MPEG";
        mInfo.mFilePath = ezPathName::MakeFilePath("/films/a film.mpg");
    }

    static std::string Content(ezFile* aFile) {
        if (aFile == nullptr) {
            return "<null>";
        }
        const std::unique_ptr<ezFile> file(aFile);
        std::string content(static_cast<std::size_t>(file->Length()), '\0');
        EXPECT_EQ(file->Seek(0, ezFileSeekMode_Current), 0); // handed out at its start
        EXPECT_EQ(file->Read(content.data(), content.size()), static_cast<int>(content.size()));
        return content;
    }
    std::string Cached(bool afDefault = false) {
        return Content(mManager->GetCachedThumbnail(&mInfo, afDefault));
    }
    std::string Thumbnail(bool afDefault = false) {
        return Content(mManager->GetThumbnail(&mInfo, afDefault));
    }
    std::string Name(bool afDefault = false) {
        return Str(mManager->GetThumbnailFileName(&mInfo, afDefault));
    }

    void Add(const char* aName, uint32 aPossible, std::function<bool(ezFile*)> aBuild = nullptr) {
        mManager->Add(new ScriptedProvider(mTrace, aName, aPossible, std::move(aBuild)));
    }
    void SetDefault(const char* aName, uint32 aPossible, std::function<bool(ezFile*)> aBuild = nullptr) {
        mManager->SetDefaultProvider(new ScriptedProvider(mTrace, aName, aPossible, std::move(aBuild)));
    }

    Trace TakeTrace() { return std::exchange(mTrace, Trace()); }

    TemporaryFolder mFolder;
    Trace mTrace;
    ezFileCacheManager mCache;
    ScriptedGenerator* mGenerator;
    ThumbnailInfo mInfo;
    std::unique_ptr<ezThumbnailProviderManager> mManager;
};

// ---- what is owned ----

TEST_F(ThumbnailProviderManager, ProvidersGoBeforeTheGeneratorAndTheDefaultProviderAfterIt) {
    EXPECT_EQ(mManager->GetThumbnailGenerator(), mGenerator);
    SetDefault("default", 0);
    Add("a", 0);
    Add("b", 0);
    mManager.reset();
    EXPECT_EQ(mTrace, (Trace{"delete a", "delete b", "delete generator", "delete default"}));
}

TEST_F(ThumbnailProviderManager, ADefaultProviderReplacesTheOneBefore) {
    SetDefault("first", 0);
    SetDefault("second", 0);
    EXPECT_EQ(TakeTrace(), (Trace{"delete first"}));
    mManager->SetDefaultProvider(nullptr);
    EXPECT_EQ(TakeTrace(), (Trace{"delete second"}));
    ScriptedProvider* same = new ScriptedProvider(mTrace, "same", 0);
    mManager->SetDefaultProvider(same);
    mManager->SetDefaultProvider(same);
    EXPECT_EQ(TakeTrace(), (Trace{}));
}

TEST_F(ThumbnailProviderManager, AddingIsLoggedWithNameAndManager) {
    const LogCatcher log;
    Add("pictures", 0);
    mManager->Add(nullptr);
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].mText,
              Str(ezCString::Format("Added thumbnail provider 'pictures' to thumbnail provider manager %p\n",
                                    static_cast<void*>(mManager.get()))));
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_THUMBNAIL);
}

// ---- what is possible ----

TEST_F(ThumbnailProviderManager, TheFirstAnswerThatIsNotZeroIsWhatIsPossible) {
    EXPECT_EQ(mManager->GetPossibleThumbnailFor(&mInfo), 0U);
    Add("a", 0);
    Add("b", kPNGThumbnailID);
    Add("c", kJPEGThumbnailID);
    EXPECT_EQ(mManager->GetPossibleThumbnailFor(&mInfo), kPNGThumbnailID);
    EXPECT_EQ(mTrace, (Trace{"possible a", "possible b"}));
}

TEST_F(ThumbnailProviderManager, TheDefaultProviderIsAskedFirst) {
    Add("a", kPNGThumbnailID);
    SetDefault("default", kJPEGThumbnailID);
    EXPECT_EQ(mManager->GetPossibleThumbnailFor(&mInfo), kJPEGThumbnailID);
    EXPECT_EQ(TakeTrace(), (Trace{"possible default"}));
    SetDefault("none", 0);
    EXPECT_EQ(mManager->GetPossibleThumbnailFor(&mInfo), kPNGThumbnailID);
    EXPECT_EQ(mTrace, (Trace{"delete default", "possible none", "possible a"}));
}

// ---- names ----

TEST_F(ThumbnailProviderManager, TheNameHoldsIdentityGeometryRatioAndLock) {
    EXPECT_EQ(Name(), "thumb_id_160_160_160_160_1_1_0.jpg");
    mInfo.mWidth = 1;
    mInfo.mHeight = 2;
    mInfo.mWidthMax = 3;
    mInfo.mHeightMax = 4;
    mInfo.mPixelRatioHeight = 5;
    mInfo.mPixelRatioWidth = 4294967295U;
    mInfo.mfParentalLocked = true;
    EXPECT_EQ(Name(), "thumb_id_1_2_3_4_5_4294967295_1.jpg");
    EXPECT_STREQ(kThumbnail_TempFileName, "thumb_%s_%lu_%lu_%lu_%lu_%lu_%lu_%c");
}

TEST_F(ThumbnailProviderManager, AnyGeometryRatioAndLockStandInTheNameInTheirOrder) {
    std::mt19937 random(5);
    for (int i = 0; i < 2000; ++i) {
        std::string expected = "id";
        for (uint32 ThumbnailInfo::*field :
             {&ThumbnailInfo::mWidth, &ThumbnailInfo::mHeight, &ThumbnailInfo::mWidthMax,
              &ThumbnailInfo::mHeightMax, &ThumbnailInfo::mPixelRatioHeight,
              &ThumbnailInfo::mPixelRatioWidth}) {
            mInfo.*field = static_cast<uint32>(random()) >> random() % 32;
            expected += "_" + std::to_string(mInfo.*field);
        }
        mInfo.mfParentalLocked = random() % 2 == 0;
        mInfo.mThumbnailID = 1 + static_cast<uint32>(random()) % 3;
        expected += mInfo.mfParentalLocked ? "_1" : "_0";
        expected += mInfo.mThumbnailID == kPNGThumbnailID ? ".png" : ".jpg";
        ASSERT_EQ(Name(), "thumb_" + expected);
        ASSERT_EQ(Name(true), "thumb_video" + expected.substr(2));
    }
}

TEST_F(ThumbnailProviderManager, WhatDoesNotShapeThePictureIsNotInTheName) {
    const std::string before = Name();
    mInfo.mMimeType = "audio/mpeg";
    mInfo.mDLNAInfo = "DLNA.ORG_PN=JPEG_SM";
    mInfo.mFilePath = ezPathName::MakeFilePath("other");
    mInfo.mfFastRescale = true;
    EXPECT_EQ(Name(), before);
}

TEST_F(ThumbnailProviderManager, TheLockAloneMakesAnotherName) {
    mInfo.mfParentalLocked = true;
    EXPECT_EQ(Name(), "thumb_id_160_160_160_160_1_1_1.jpg");
    EXPECT_EQ(Name(true), "thumb_video_160_160_160_160_1_1_1.jpg");
}

TEST_F(ThumbnailProviderManager, JPEGWinsOverPNG) {
    mInfo.mThumbnailID = kPNGThumbnailID;
    EXPECT_EQ(Name(), "thumb_id_160_160_160_160_1_1_0.png");
    mInfo.mThumbnailID = kPNGThumbnailID | kJPEGThumbnailID;
    EXPECT_EQ(Name(), "thumb_id_160_160_160_160_1_1_0.jpg");
    mInfo.mThumbnailID = kPNGThumbnailID | 4;
    EXPECT_EQ(Name(), "thumb_id_160_160_160_160_1_1_0.png");
}

TEST_F(ThumbnailProviderManager, TheIdentityOfADefaultThumbnailIsTheMediaClass) {
    EXPECT_EQ(Name(true), "thumb_video_160_160_160_160_1_1_0.jpg");
    mInfo.mMimeType = "AUDIO";
    EXPECT_EQ(Name(true), "thumb_audio_160_160_160_160_1_1_0.jpg");
    mInfo.mMimeType = "Image/x/y";
    EXPECT_EQ(Name(true), "thumb_image_160_160_160_160_1_1_0.jpg");
    mInfo.mMimeType = "";
    EXPECT_EQ(Name(true), "thumb__160_160_160_160_1_1_0.jpg");
}

TEST_F(ThumbnailProviderManager, AnyBytesOfAnIdentityStandInTheName) {
    mInfo.mUniqueID = Bytes(std::string("a/../%s\0%n\xff", 11));
    EXPECT_EQ(Name(), std::string("thumb_a/../%s\0%n\xff_160_160_160_160_1_1_0.jpg", 43));
    mInfo.mUniqueID = Bytes(std::string(5000, 'i'));
    EXPECT_EQ(Name(), "thumb_" + std::string(5000, 'i') + "_160_160_160_160_1_1_0.jpg");
}

TEST_F(ThumbnailProviderManager, NoKnownFormatIsAMistakeOfTheCaller) {
    Add("a", 7);
    SetDefault("default", 7);
    for (const uint32 wanted : {0U, 4U}) {
        const AssertCatcher assertions;
        mInfo.mThumbnailID = wanted;
        EXPECT_EQ(Name(), "");
        EXPECT_EQ(Cached(), "<null>");
        EXPECT_EQ(Thumbnail(true), "<null>");
        EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({kUnknown, kUnknown, kUnknown, kUnknown}));
    }
    EXPECT_EQ(mTrace, (Trace{})); // nobody was asked
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("cache")));
}

// ---- building and keeping ----

TEST_F(ThumbnailProviderManager, TheFirstRequestBuildsAndTheNextComeFromTheCache) {
    Add("a", kJPEGThumbnailID);
    EXPECT_EQ(Cached(), "by a");
    EXPECT_EQ(TakeTrace(), (Trace{"possible a", "build a"}));
    EXPECT_EQ(Cached(), "by a");
    EXPECT_EQ(Thumbnail(), "by a");
    EXPECT_EQ(mTrace, (Trace{}));
}

TEST_F(ThumbnailProviderManager, ABuiltThumbnailKnowsItsLength) {
    Add("a", kJPEGThumbnailID);
    const std::unique_ptr<ezFile> built(mManager->GetCachedThumbnail(&mInfo, false));
    ASSERT_NE(built, nullptr);
    EXPECT_EQ(built->LengthAtOpen(), 4);
    EXPECT_EQ(built->Write("x", 1), -1);
}

TEST_F(ThumbnailProviderManager, EveryRequestThatNamesAnotherPictureIsBuilt) {
    Add("a", 3);
    std::set<std::string> names;
    for (uint32 ThumbnailInfo::*field :
         {&ThumbnailInfo::mWidth, &ThumbnailInfo::mHeight, &ThumbnailInfo::mWidthMax,
          &ThumbnailInfo::mHeightMax, &ThumbnailInfo::mPixelRatioHeight, &ThumbnailInfo::mPixelRatioWidth}) {
        mInfo.*field += 7;
        EXPECT_EQ(Cached(), "by a");
        names.insert(Name());
    }
    mInfo.mfParentalLocked = true;
    EXPECT_EQ(Cached(), "by a");
    mInfo.mThumbnailID = kPNGThumbnailID;
    EXPECT_EQ(Cached(), "by a");
    mInfo.mUniqueID = "ID"; // which a file system may take for "id"
    EXPECT_EQ(Cached(), "by a");
    EXPECT_EQ(names.size(), 6U);
    EXPECT_EQ(std::count(mTrace.begin(), mTrace.end(), "build a"), 9);
}

TEST_F(ThumbnailProviderManager, IdentitiesThatDifferInAwkwardCharactersHaveTheirOwnThumbnailsInTheCache) {
    std::string content;
    Add("a", kJPEGThumbnailID, [&](ezFile* aFile) { return WriteText(aFile, content); });
    const std::string longID(300, 'x');
    const std::set<std::string> identities = {"a/b",
                                              "a\\b",
                                              "a_b",
                                              "a.b",
                                              "a..b",
                                              "../a",
                                              "../../a",
                                              "..",
                                              "/a",
                                              "a",
                                              "",
                                              std::string("a\0b", 3),
                                              std::string("a\0c", 3),
                                              longID,
                                              longID + "/",
                                              "/" + longID,
                                              "a%2fb",
                                              "A/b"};
    for (const std::string& identity : identities) {
        mInfo.mUniqueID = Bytes(identity);
        content = "of " + identity;
        EXPECT_EQ(Cached(), "of " + identity);
    }
    content = "again";
    for (const std::string& identity : identities) {
        mInfo.mUniqueID = Bytes(identity);
        EXPECT_EQ(Cached(), "of " + identity);
    }
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(mFolder.GetPath())) {
        count += entry.is_regular_file() ? 1 : 0;
    }
    EXPECT_EQ(count, identities.size());
}

TEST_F(ThumbnailProviderManager, ProvidersAreVisitedInOrderUntilOneSucceeds) {
    Add("unable", kPNGThumbnailID);
    Add("fails", kJPEGThumbnailID, [](ezFile*) { return false; });
    Add("builds", 3);
    Add("never", kJPEGThumbnailID);
    EXPECT_EQ(Cached(), "by builds");
    EXPECT_EQ(mTrace,
              (Trace{"possible unable", "possible fails", "build fails", "possible builds", "build builds"}));
}

TEST_F(ThumbnailProviderManager, WhoFailsAfterWritingLeavesNothingForTheNext) {
    Add("careless", kJPEGThumbnailID, [](ezFile* aFile) {
        WriteText(aFile, "a very long beginning of something");
        aFile->Seek(5, ezFileSeekMode_Begin);
        return false;
    });
    Add("builds", kJPEGThumbnailID, [](ezFile* aFile) {
        EXPECT_EQ(aFile->Length(), 0);
        EXPECT_EQ(aFile->Seek(0, ezFileSeekMode_Current), 0);
        return WriteText(aFile, "picture");
    });
    EXPECT_EQ(Cached(), "picture");
    EXPECT_EQ(Cached(), "picture");
}

TEST_F(ThumbnailProviderManager, WithoutAnAbleProviderTheEmptyAnswerIsRemembered) {
    Add("unable", kPNGThumbnailID);
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(TakeTrace(), (Trace{"possible unable"}));
    Add("able", kJPEGThumbnailID); // comes too late for this name
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(Thumbnail(), "<null>");
    EXPECT_EQ(TakeTrace(), (Trace{}));
    mInfo.mUniqueID = "another";
    EXPECT_EQ(Cached(), "by able");
}

TEST_F(ThumbnailProviderManager, AProviderThatFailsIsAskedAgainAtTheNextRequest) {
    bool fBuilds = false;
    Add("a", kJPEGThumbnailID, [&](ezFile* aFile) { return WriteText(aFile, "picture") && fBuilds; });
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(Cached(), "<null>");
    fBuilds = true;
    EXPECT_EQ(Cached(), "picture");
    EXPECT_EQ(std::count(mTrace.begin(), mTrace.end(), "build a"), 3);
}

TEST_F(ThumbnailProviderManager, TheLastAnswerCountsAlsoWhenUnableProvidersFollow) {
    Add("fails", kJPEGThumbnailID, [](ezFile*) { return false; });
    Add("unable", 0);
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(std::count(mTrace.begin(), mTrace.end(), "build fails"), 2); // not remembered as good
}

TEST_F(ThumbnailProviderManager, WhoTellsSuccessWithoutWritingIsRememberedAsEmpty) {
    Add("a", kJPEGThumbnailID, [](ezFile*) { return true; });
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(mTrace, (Trace{"possible a", "build a"}));
}

TEST_F(ThumbnailProviderManager, WhoClosesTheFileHasBuiltNothing) {
    Add("a", kJPEGThumbnailID, [](ezFile* aFile) {
        WriteText(aFile, "picture");
        aFile->Close();
        return true;
    });
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(Cached(), "<null>");
    EXPECT_EQ(std::count(mTrace.begin(), mTrace.end(), "build a"), 2);
}

// ---- generic thumbnails ----

TEST_F(ThumbnailProviderManager, TheDefaultProviderBuildsWithoutBeingAskedWhatItCan) {
    Add("a", kJPEGThumbnailID);
    SetDefault("default", 0);
    EXPECT_EQ(Cached(true), "by default");
    EXPECT_EQ(TakeTrace(), (Trace{"build default"}));
    mInfo.mUniqueID = "another item of the class";
    EXPECT_EQ(Cached(true), "by default");
    EXPECT_EQ(TakeTrace(), (Trace{}));
    EXPECT_EQ(Cached(), "by a"); // its own picture is another matter
}

TEST_F(ThumbnailProviderManager, ADefaultProviderThatFailsIsNotFollowedByTheList) {
    Add("a", kJPEGThumbnailID);
    SetDefault("default", 3, [](ezFile* aFile) {
        WriteText(aFile, "half");
        return false;
    });
    EXPECT_EQ(Cached(true), "<null>");
    EXPECT_EQ(Cached(true), "<null>");
    EXPECT_EQ(mTrace, (Trace{"build default", "build default"}));
}

TEST_F(ThumbnailProviderManager, AGenericThumbnailWithoutADefaultProviderIsFilledByTheList) {
    Add("a", kJPEGThumbnailID);
    EXPECT_EQ(Cached(true), "by a");
    EXPECT_EQ(TakeTrace(), (Trace{"possible a", "build a"}));
    SetDefault("default", 3); // too late: the class has its picture
    mInfo.mUniqueID = "another";
    EXPECT_EQ(Cached(true), "by a");
    EXPECT_EQ(mTrace, (Trace{}));
}

TEST_F(ThumbnailProviderManager, TheGenericOneIsUsedOnlyWhereTheItemHasNoneAndItIsWanted) {
    SetDefault("default", 3);
    EXPECT_EQ(Thumbnail(false), "<null>");
    EXPECT_EQ(Thumbnail(true), "by default");
    mInfo.mUniqueID = "another";
    Add("a", kJPEGThumbnailID);
    EXPECT_EQ(Thumbnail(true), "by a");
}

TEST_F(ThumbnailProviderManager, AnItemNamedAsAClassSharesItsThumbnail) {
    Add("a", kJPEGThumbnailID);
    SetDefault("default", 3);
    mInfo.mUniqueID = "video";
    EXPECT_EQ(Cached(false), "by a");
    EXPECT_EQ(Cached(true), "by a");
}

// ---- the log ----

TEST_F(ThumbnailProviderManager, ARequestIsLoggedStepByStep) {
    SetDefault("default", 3);
    const LogCatcher log;
    EXPECT_EQ(Thumbnail(true), "by default");
    ASSERT_EQ(log.Lines().size(), 4U);
    const std::string folder = mFolder.Path("cache/ezcache/");
    EXPECT_EQ(log.Texts()[0], "GetCachedThumbnail: " + folder + "thumb_id_160_160_160_160_1_1_0.jpg\n");
    EXPECT_EQ(log.Texts()[1], "GetCachedThumbnail: " + folder + "thumb_video_160_160_160_160_1_1_0.jpg\n");
    EXPECT_EQ(log.Texts()[2], "Was able to retrieve thumbnail for 'a film.mpg'\n");
    EXPECT_TRUE(std::regex_match(log.Texts()[3],
                                 std::regex(R"(Retrieving thumbnail for 'a film\.mpg' \(\d+\.\d{3} ms\)\n)")))
        << log.Texts()[3];
    const int levels[] = {EZLOGLEVEL_DEBUG, EZLOGLEVEL_DEBUG, EZLOGLEVEL_WARNING, EZLOGLEVEL_DEBUG};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(log.Lines()[i].mLevel, levels[i]);
        EXPECT_EQ(log.Lines()[i].mModule, EZLOG_M_THUMBNAIL);
    }
}

TEST_F(ThumbnailProviderManager, WhatCannotBeRetrievedIsAWarning) {
    const LogCatcher log(3);
    EXPECT_EQ(Thumbnail(true), "<null>");
    EXPECT_EQ(log.Texts(), (std::vector<std::string>{"NOT able to retrieve thumbnail for 'a film.mpg'\n"}));
}

TEST_F(ThumbnailProviderManager, TheProfilesAreThoseOfBothFormats) {
    EXPECT_EQ(Str(mManager->GetThumbnailDLNAProfiles()),
              "image/jpeg:DLNA.ORG_PN=JPEG_TN;DLNA.ORG_OP=01;DLNA.ORG_CI=1;DLNA.ORG_FLAGS="
              "04F00000000000000000000000000000,image/png:DLNA.ORG_PN=PNG_TN;DLNA.ORG_OP=01;DLNA.ORG_CI=1;"
              "DLNA.ORG_FLAGS=04F00000000000000000000000000000");
    EXPECT_STREQ(kezDLNAORG_FLAGS_ThumbnailImage, ";DLNA.ORG_FLAGS=04F00000000000000000000000000000");
    EXPECT_EQ(std::string(kezThumbnailDLNAFlags),
              std::string(";DLNA.ORG_OP=01;DLNA.ORG_CI=1") + kezDLNAORG_FLAGS_ThumbnailImage);
}

// ---- failures of the system, and other processes ----

TEST_F(ThumbnailProviderManager, ACacheThatCannotBeOpenedGivesNull) {
    mFolder.Write("cache", "a file where the folder should be");
    Add("a", kJPEGThumbnailID);
    EXPECT_EQ(Thumbnail(true), "<null>");
    EXPECT_EQ(mTrace, (Trace{}));
}

TEST_F(ThumbnailProviderManager, AFullDiskGivesNullAndLeavesNothing) {
    Add("careless", kJPEGThumbnailID, [](ezFile* aFile) {
        WriteText(aFile, "picture");
        return true; // without having looked
    });
    ezSystemCalls calls = ezSystem_Real();
    calls.mPWrite = [](int aFile, const void* aBuffer, std::size_t, ezFileOffset anOffset) -> ssize_t {
        if (anOffset == 0) {
            return ezSystem_Real().mPWrite(aFile, aBuffer, 3, anOffset);
        }
        errno = ENOSPC;
        return -1;
    };
    ezSystem_Replace(&calls);
    const std::string full = Cached();
    ezSystem_Replace(nullptr);
    EXPECT_EQ(full, "<null>");
    EXPECT_TRUE(std::filesystem::is_empty(mFolder.Path("cache/ezcache")));
    EXPECT_EQ(Cached(), "picture");
}

TEST_F(ThumbnailProviderManager, AFileThatCannotBeEmptiedIsAFailedAttempt) {
    Add("fails", kJPEGThumbnailID, [](ezFile* aFile) {
        WriteText(aFile, "half");
        return false;
    });
    Add("builds", kJPEGThumbnailID);
    Add("comes next", kJPEGThumbnailID);
    static int sCalls = 0;
    static int sRefused = 0;
    ezSystemCalls calls = ezSystem_Real();
    calls.mFTruncate = [](int aFile, ezFileOffset aLength) {
        errno = EIO;
        const bool fRefused = ++sCalls > 1 && sCalls <= 1 + sRefused;
        return fRefused ? -1 : ezSystem_Real().mFTruncate(aFile, aLength);
    };
    for (const int refused : {100, 1}) {
        sCalls = 0;
        sRefused = refused;
        mTrace.clear();
        ezSystem_Replace(&calls);
        EXPECT_EQ(Cached(), "<null>") << refused;
        ezSystem_Replace(nullptr);
        EXPECT_EQ(std::count(mTrace.begin(), mTrace.end(), "build builds"), 0) << refused;
        EXPECT_EQ(std::count(mTrace.begin(), mTrace.end(), "build comes next"), 0)
            << "it would stand for the better one from then on";
    }
    EXPECT_EQ(Cached(), "by builds");
}

TEST_F(ThumbnailProviderManager, AKillInTheMiddleOfABuildIsForgottenAfterARestart) {
    Add("a", kJPEGThumbnailID, [](ezFile* aFile) {
        WriteText(aFile, "half a pic");
        kill(getpid(), SIGKILL);
        return true;
    });
    const pid_t child = fork();
    if (child == 0) {
        mManager->GetThumbnail(&mInfo, true);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    ezFileCacheManager cache(mFolder.Path("cache").c_str(), 1000000, 1000);
    mManager = std::make_unique<ezThumbnailProviderManager>(&cache, new ScriptedGenerator(mTrace));
    Add("restarted", kJPEGThumbnailID);
    EXPECT_EQ(Cached(), "by restarted");
    const std::filesystem::directory_iterator entries(mFolder.Path("cache/ezcache"));
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
    mManager.reset(); // before its cache
}

TEST_F(ThumbnailProviderManager, TwoProcessesThatAskAtOnceBothReceiveAWholeThumbnail) {
    const std::string whole(30000, 'p');
    Add("a", kJPEGThumbnailID, [&](ezFile* aFile) {
        for (std::size_t i = 0; i < whole.size(); i += 1000) {
            if (!WriteText(aFile, whole.substr(i, 1000))) {
                return false;
            }
        }
        return true;
    });
    pid_t children[2] = {};
    for (pid_t& child : children) {
        child = fork();
        if (child == 0) {
            bool fWhole = true;
            for (int i = 0; i < 20; ++i) {
                mInfo.mUniqueID = std::to_string(i).c_str();
                fWhole = fWhole && Cached() == whole;
            }
            _exit(fWhole ? 0 : 1);
        }
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    mInfo.mUniqueID = "7";
    EXPECT_EQ(Cached(), whole);
    EXPECT_EQ(mTrace, (Trace{})); // from the cache
}

// ---- with the providers of the library ----

TEST_F(ThumbnailProviderManager, APictureGoesThroughProviderAndGeneratorIntoTheCache) {
    mManager->Add(new ezPictureThumbnailProvider(mManager->GetThumbnailGenerator(), "pictures"));
    mInfo.mMimeType = "image/jpeg";
    mInfo.mFilePath = ezPathName::MakeFilePath(mFolder.Write("a.jpg", "holiday").c_str());
    EXPECT_EQ(Thumbnail(), "thumbnail of holiday");
    EXPECT_EQ(TakeTrace(), (Trace{"convert image/jpeg", "build holiday"}));
    EXPECT_EQ(Thumbnail(), "thumbnail of holiday");
    EXPECT_EQ(mTrace, (Trace{}));
}

TEST_F(ThumbnailProviderManager, APictureOfAnUnknownTypeIsNeverBuilt) {
    mManager->Add(new ezPictureThumbnailProvider(mManager->GetThumbnailGenerator(), "pictures"));
    mInfo.mMimeType = "image/unknown";
    EXPECT_EQ(Thumbnail(), "<null>");
    EXPECT_EQ(mTrace, (Trace{"convert image/unknown"}));
}

} // namespace
