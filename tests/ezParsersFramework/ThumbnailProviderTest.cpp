#include "ez/ThumbnailProvider.h"

#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Trace = ThumbnailTrace;

/// Sources of one test, as names of files with their MIME types, and how many of them live.
class TriedProvider : public ezIndirectThumbnailProvider {
public:
    using Candidates = std::vector<std::pair<std::string, const char*>>;

    TriedProvider(ezThumbnailGenerator* aGenerator, Candidates aCandidates)
        : ezIndirectThumbnailProvider("tried", aGenerator), mCandidates(std::move(aCandidates)) {}

    void GetFirstPath(const ThumbnailInfo* anInfo) override {
        mNext = 0;
        GetNextPath(anInfo);
    }
    void GetNextPath(const ThumbnailInfo* anInfo) override {
        EndTries();
        if (mNext == mCandidates.size()) {
            return;
        }
        ezFileThumbnailSource* source = new Counted(anInfo, mLiving);
        source->SetPath(ezPathName::MakeFilePath(mCandidates[mNext].first.c_str()));
        source->SetMimeType(mCandidates[mNext].second);
        mTrySource = source;
        ++mNext;
    }
    std::string Left() const { return SourceToTry() ? Str(mTrySource->GetMimeType()) : "<none>"; }

    int mLiving = 0;

private:
    class Counted : public ezFileThumbnailSource {
    public:
        Counted(const ThumbnailInfo* anInfo, int& aLiving) : ezFileThumbnailSource(anInfo), mLiving(aLiving) {
            ++mLiving;
        }
        ~Counted() override { --mLiving; }

    private:
        int& mLiving;
    };

    Candidates mCandidates;
    std::size_t mNext = 0;
};

class ThumbnailProvider : public testing::Test {
protected:
    ThumbnailProvider() {
        mInfo.mThumbnailID = kJPEGThumbnailID;
        mInfo.mMimeType = "image/jpeg";
        mInfo.mFilePath = ezPathName::MakeFilePath(mFolder.Write("own.jpg", "own").c_str());
    }

    /// What a provider builds: the content of the file, or "<failed>".
    std::string Built(ezThumbnailProvider& aProvider) {
        ezFile file;
        EXPECT_TRUE(file.Create(mFolder.Path("out").c_str(), true, ezFileAccessMode_ReadWrite));
        const bool fBuilt = aProvider.BuildThumbnail(&mInfo, &file);
        EXPECT_TRUE(file.Close());
        return fBuilt ? ContentAt(mFolder.Path("out")) : "<failed>";
    }
    TriedProvider Tried(TriedProvider::Candidates aCandidates) {
        for (auto& [path, type] : aCandidates) {
            path = mFolder.Path(path);
        }
        return {&mGenerator, std::move(aCandidates)};
    }

    TemporaryFolder mFolder;
    ThumbnailInfo mInfo;
    Trace mTrace;
    ScriptedGenerator mGenerator{mTrace};
};

TEST_F(ThumbnailProvider, TheIdentifiersAreBits) {
    EXPECT_EQ(kNoThumbnailID, 0U);
    EXPECT_EQ(kJPEGThumbnailID, 1U);
    EXPECT_EQ(kPNGThumbnailID, 2U);
}

TEST_F(ThumbnailProvider, CanProvideWhenAWantedFormatIsPossible) {
    for (uint32 wanted = 0; wanted < 4; ++wanted) {
        for (uint32 possible = 0; possible < 4; ++possible) {
            ScriptedProvider provider(mTrace, "p", possible);
            mInfo.mThumbnailID = wanted;
            EXPECT_EQ(provider.CanProvideThumbnailFor(&mInfo), (wanted & possible) != 0);
        }
    }
}

TEST_F(ThumbnailProvider, NamesAreThoseGiven) {
    EXPECT_STREQ(mGenerator.GetName(), "scripted");
    EXPECT_STREQ(ezPictureThumbnailProvider(&mGenerator, "pictures").GetName(), "pictures");
    EXPECT_STREQ(Tried({}).GetName(), "tried");
}

// ---- pictures ----

TEST_F(ThumbnailProvider, APictureIsPossibleAsTheGeneratorConvertsItsType) {
    ezPictureThumbnailProvider provider(&mGenerator, "pictures");
    mInfo.mMimeType = "image/both";
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), 3U);
    mInfo.mMimeType = "image/unknown";
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), 0U);
    EXPECT_FALSE(provider.CanProvideThumbnailFor(&mInfo));
}

TEST_F(ThumbnailProvider, APictureIsBuiltFromTheItemsOwnFile) {
    ezPictureThumbnailProvider provider(&mGenerator, "pictures");
    EXPECT_EQ(Built(provider), "thumbnail of own");
    mInfo.mFilePath = ezPathName::MakeFilePath(mFolder.Write("bad.jpg", "corrupt").c_str());
    EXPECT_EQ(Built(provider), "<failed>");
    EXPECT_EQ(mTrace, (Trace{"build own", "build corrupt"})); // the type is not asked for again
}

// ---- candidates ----

TEST_F(ThumbnailProvider, WithoutACandidateNothingIsPossible) {
    TriedProvider provider = Tried({});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), 0U);
    EXPECT_EQ(Built(provider), "<failed>");
    EXPECT_FALSE(provider.SourceToTry());
}

TEST_F(ThumbnailProvider, TheFirstCandidateThatExistsAndConvertsIsPossible) {
    mFolder.Write("second", "2");
    mFolder.Write("third", "3");
    TriedProvider provider =
        Tried({{"first", "image/png"}, {"second", "image/jpeg"}, {"third", "image/both"}});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), kJPEGThumbnailID);
    EXPECT_EQ(mTrace, (Trace{"convert image/jpeg"})); // a missing one is not asked about
}

TEST_F(ThumbnailProvider, WhatExistsAndDoesNotConvertIsPassedOver) {
    mFolder.Write("first", "1");
    mFolder.Write("second", "2");
    TriedProvider provider = Tried({{"first", "image/unknown"}, {"second", "image/png"}});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), kPNGThumbnailID);
    EXPECT_EQ(provider.Left(), "image/png");
}

TEST_F(ThumbnailProvider, AnyFormatIsPossibleButAllWantedOnesAreBuilt) {
    mFolder.Write("second", "2");
    mFolder.Write("third", "3");
    TriedProvider provider =
        Tried({{"first", "image/both"}, {"second", "image/jpeg"}, {"third", "image/both"}});
    mInfo.mThumbnailID = kJPEGThumbnailID | kPNGThumbnailID;
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), kJPEGThumbnailID);
    EXPECT_EQ(Built(provider), "thumbnail of 3");
    TriedProvider jpegOnly = Tried({{"second", "image/jpeg"}});
    EXPECT_TRUE(jpegOnly.CanProvideThumbnailFor(&mInfo));
    EXPECT_EQ(Built(jpegOnly), "<failed>");
    EXPECT_FALSE(jpegOnly.SourceToTry());
}

TEST_F(ThumbnailProvider, PossibleIsAlsoAFormatThatIsNotWanted) {
    mFolder.Write("first", "1");
    mFolder.Write("second", "2");
    TriedProvider provider = Tried({{"first", "image/png"}, {"second", "image/jpeg"}});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), kPNGThumbnailID); // the first, not the wanted one
    EXPECT_EQ(Built(provider), "thumbnail of 2");
}

TEST_F(ThumbnailProvider, AFailedCandidateLeavesNothingForTheNext) {
    mFolder.Write("first", "corrupt and long");
    mFolder.Write("second", "2");
    TriedProvider provider = Tried({{"first", "image/jpeg"}, {"second", "image/jpeg"}});
    EXPECT_EQ(Built(provider), "thumbnail of 2");
    EXPECT_EQ(mTrace,
              (Trace{"convert image/jpeg", "build corrupt and long", "convert image/jpeg", "build 2"}));
}

TEST_F(ThumbnailProvider, WithNoWantedFormatAnyExistingCandidateIsBuilt) {
    mFolder.Write("first", "1");
    TriedProvider provider = Tried({{"first", "image/unknown"}});
    mInfo.mThumbnailID = kNoThumbnailID;
    EXPECT_EQ(Built(provider), "thumbnail of 1");
}

TEST_F(ThumbnailProvider, WhatSucceededStaysUntilTheNextFirstPathOrTheEndOfTries) {
    mFolder.Write("first", "1");
    mFolder.Write("second", "2");
    {
        TriedProvider provider = Tried({{"first", "image/png"}, {"second", "image/jpeg"}});
        EXPECT_NE(provider.GetPossibleThumbnailFor(&mInfo), 0U);
        EXPECT_EQ(provider.Left(), "image/png");
        EXPECT_EQ(provider.mLiving, 1);
        EXPECT_NE(Built(provider), "<failed>");
        EXPECT_EQ(provider.Left(), "image/jpeg");
        EXPECT_EQ(provider.mLiving, 1); // never more than one
        provider.EndTries();
        EXPECT_FALSE(provider.SourceToTry());
        EXPECT_EQ(provider.mLiving, 0);
        provider.EndTries();
        EXPECT_NE(provider.GetPossibleThumbnailFor(&mInfo), 0U);
    } // and the one left goes with the provider, which the leak check sees
}

TEST_F(ThumbnailProvider, WhoeverReplacesACandidateDisposesOfItAlsoInTheMiddle) {
    mFolder.Write("first", "1");
    mFolder.Write("second", "2");
    TriedProvider provider = Tried({{"first", "image/jpeg"}, {"second", "image/jpeg"}});
    provider.GetFirstPath(&mInfo);
    provider.GetFirstPath(&mInfo);
    EXPECT_EQ(provider.mLiving, 1);
    provider.GetNextPath(&mInfo);
    EXPECT_EQ(provider.mLiving, 1);
    EXPECT_TRUE(provider.SourceToTry());
    EXPECT_EQ(Built(provider), "thumbnail of 1"); // from the first one again
    provider.GetNextPath(&mInfo);
    provider.GetNextPath(&mInfo);
    provider.GetNextPath(&mInfo); // behind the end
    EXPECT_FALSE(provider.SourceToTry());
    EXPECT_EQ(provider.mLiving, 0);
}

TEST_F(ThumbnailProvider, WithoutRequestGeneratorOrFileNothingIsTried) {
    mFolder.Write("first", "1");
    const TriedProvider::Candidates candidates = {{mFolder.Path("first"), "image/jpeg"}};
    TriedProvider tried(&mGenerator, candidates);
    TriedProvider orphan(nullptr, candidates);
    ezPictureThumbnailProvider pictures(&mGenerator, "pictures");
    ezPictureThumbnailProvider idle(nullptr, "idle");
    ezFile file;
    EXPECT_TRUE(file.Create(mFolder.Path("out").c_str(), true, ezFileAccessMode_ReadWrite));
    for (ezThumbnailProvider* provider :
         {static_cast<ezThumbnailProvider*>(&tried), static_cast<ezThumbnailProvider*>(&pictures)}) {
        EXPECT_EQ(provider->GetPossibleThumbnailFor(nullptr), 0U);
        EXPECT_FALSE(provider->BuildThumbnail(nullptr, &file));
        EXPECT_FALSE(provider->BuildThumbnail(&mInfo, nullptr));
    }
    for (ezThumbnailProvider* provider :
         {static_cast<ezThumbnailProvider*>(&orphan), static_cast<ezThumbnailProvider*>(&idle)}) {
        EXPECT_EQ(provider->GetPossibleThumbnailFor(&mInfo), 0U);
        EXPECT_FALSE(provider->BuildThumbnail(&mInfo, &file));
    }
    EXPECT_EQ(mTrace, (Trace{}));
    EXPECT_FALSE(tried.SourceToTry());
}

TEST_F(ThumbnailProvider, AFileThatCannotBeEmptiedIsNotBuiltInto) {
    mFolder.Write("first", "1");
    TriedProvider provider = Tried({{"first", "image/jpeg"}});
    ezFile closed;
    EXPECT_FALSE(provider.BuildThumbnail(&mInfo, &closed));
    EXPECT_EQ(mTrace, (Trace{"convert image/jpeg"}));
}

} // namespace
