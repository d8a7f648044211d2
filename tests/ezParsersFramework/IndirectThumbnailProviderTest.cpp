#include "ez/IndirectThumbnailProvider.h"

#include "ez/FileThumbnailSource.h"

#include "ThumbnailProviderKit.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace {

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

class IndirectThumbnailProvider : public ThumbnailProviderKit {
protected:
    TriedProvider Tried(TriedProvider::Candidates aCandidates) {
        for (auto& [path, type] : aCandidates) {
            path = mFolder.Path(path);
        }
        return {&mGenerator, std::move(aCandidates)};
    }
};

TEST_F(IndirectThumbnailProvider, TheNameIsTheOneGiven) {
    EXPECT_STREQ(Tried({}).GetName(), "tried");
}

TEST_F(IndirectThumbnailProvider, WithoutACandidateNothingIsPossible) {
    TriedProvider provider = Tried({});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), 0U);
    EXPECT_EQ(Built(provider), "<failed>");
    EXPECT_FALSE(provider.SourceToTry());
}

TEST_F(IndirectThumbnailProvider, TheFirstCandidateThatExistsAndConvertsIsPossible) {
    mFolder.Write("second", "2");
    mFolder.Write("third", "3");
    TriedProvider provider =
        Tried({{"first", "image/png"}, {"second", "image/jpeg"}, {"third", "image/both"}});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), kJPEGThumbnailID);
    EXPECT_EQ(mTrace, (Trace{"convert image/jpeg"})); // a missing one is not asked about
}

TEST_F(IndirectThumbnailProvider, WhatExistsAndDoesNotConvertIsPassedOver) {
    mFolder.Write("first", "1");
    mFolder.Write("second", "2");
    TriedProvider provider = Tried({{"first", "image/unknown"}, {"second", "image/png"}});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), kPNGThumbnailID);
    EXPECT_EQ(provider.Left(), "image/png");
}

TEST_F(IndirectThumbnailProvider, AnyFormatIsPossibleButAllWantedOnesAreBuilt) {
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

TEST_F(IndirectThumbnailProvider, PossibleIsAlsoAFormatThatIsNotWanted) {
    mFolder.Write("first", "1");
    mFolder.Write("second", "2");
    TriedProvider provider = Tried({{"first", "image/png"}, {"second", "image/jpeg"}});
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), kPNGThumbnailID); // the first, not the wanted one
    EXPECT_EQ(Built(provider), "thumbnail of 2");
}

TEST_F(IndirectThumbnailProvider, AFailedCandidateLeavesNothingForTheNext) {
    mFolder.Write("first", "corrupt and long");
    mFolder.Write("second", "2");
    TriedProvider provider = Tried({{"first", "image/jpeg"}, {"second", "image/jpeg"}});
    EXPECT_EQ(Built(provider), "thumbnail of 2");
    EXPECT_EQ(mTrace,
              (Trace{"convert image/jpeg", "build corrupt and long", "convert image/jpeg", "build 2"}));
}

TEST_F(IndirectThumbnailProvider, WithNoWantedFormatAnyExistingCandidateIsBuilt) {
    mFolder.Write("first", "1");
    TriedProvider provider = Tried({{"first", "image/unknown"}});
    mInfo.mThumbnailID = kNoThumbnailID;
    EXPECT_EQ(Built(provider), "thumbnail of 1");
}

TEST_F(IndirectThumbnailProvider, WhatSucceededStaysUntilTheNextFirstPathOrTheEndOfTries) {
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
    } // and the one left is deleted with the provider, which the leak check sees
}

TEST_F(IndirectThumbnailProvider, WhoeverReplacesACandidateDisposesOfItAlsoInTheMiddle) {
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
    provider.GetNextPath(&mInfo); // past the end
    EXPECT_FALSE(provider.SourceToTry());
    EXPECT_EQ(provider.mLiving, 0);
}

TEST_F(IndirectThumbnailProvider, AFileThatCannotBeEmptiedIsNotBuiltInto) {
    mFolder.Write("first", "1");
    TriedProvider provider = Tried({{"first", "image/jpeg"}});
    ezFile closed;
    EXPECT_FALSE(provider.BuildThumbnail(&mInfo, &closed));
    EXPECT_EQ(mTrace, (Trace{"convert image/jpeg"}));
}

TEST_F(IndirectThumbnailProvider, WithoutRequestGeneratorOrFileNothingIsTried) {
    mFolder.Write("first", "1");
    const TriedProvider::Candidates candidates = {{mFolder.Path("first"), "image/jpeg"}};
    TriedProvider tried(&mGenerator, candidates);
    TriedProvider orphan(nullptr, candidates);
    ExpectNothingOf(tried, orphan);
    EXPECT_FALSE(tried.SourceToTry());
}

} // namespace
