#include "ez/ThumbnailProvider.h"

#include "ezPlatform/files/FileCacheManager.h"
#include "support/ScriptedParser.h"
#include "support/ScriptedThumbnails.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <vector>

// What hosts that derive from the thumbnail classes, and fill a request in by position, are compiled against.

namespace {

TEST(ThumbnailLayout, FieldsOfARequestStandInOrder) {
    const ThumbnailInfo info;
    EXPECT_TRUE(
        AreInOrder({&info.mfParentalLocked, &info.mWidth, &info.mHeight, &info.mWidthMax, &info.mHeightMax,
                    &info.mUniqueID, &info.mThumbnailID, &info.mMimeType, &info.mDLNAInfo, &info.mFilePath,
                    &info.mfFastRescale, &info.mPixelRatioHeight, &info.mPixelRatioWidth}));
    EXPECT_TRUE(std::is_aggregate_v<ThumbnailInfo>);
}

TEST(ThumbnailLayout, ARequestThatIsNotFilledInAsksForNothing) {
    const ThumbnailInfo info;
    EXPECT_FALSE(info.mfParentalLocked);
    EXPECT_FALSE(info.mfFastRescale);
    EXPECT_EQ(info.mThumbnailID, kNoThumbnailID);
    for (const uint32 side : {info.mWidth, info.mHeight, info.mWidthMax, info.mHeightMax,
                              info.mPixelRatioHeight, info.mPixelRatioWidth}) {
        EXPECT_EQ(side, 0U);
    }
}

/// Classes whose fields are looked at.
class OpenManager : public ezThumbnailProviderManager {
public:
    OpenManager() : ezThumbnailProviderManager(nullptr, nullptr) {}
    std::vector<const void*> Fields() const {
        return {&mThumbnailProviderList, &mThumbnailGenerator, &mFileCacheManager,
                &mDefaultThumbnailProvider};
    }
};

class OpenPart : public ezFilePartThumbnailSource {
public:
    OpenPart() : ezFilePartThumbnailSource("", ezPathName(), 0, 0, false, 0) {}
    std::vector<const void*> Fields() const {
        return {&mMimeType, &mFilePath, &mStartOffset, &mSize, &mfBase64, &mEncodedOffset};
    }
};

class OpenIndirect : public ezIndirectThumbnailProvider {
public:
    OpenIndirect() : ezIndirectThumbnailProvider("open", nullptr) {}
    void GetFirstPath(const ThumbnailInfo* /*anInfo*/) override {}
    void GetNextPath(const ThumbnailInfo* /*anInfo*/) override {}
    std::vector<const void*> Fields() const { return {&mName, &mThumbnailGenerator, &mTrySource}; }
};

TEST(ThumbnailLayout, FieldsOfClassesStandInOrder) {
    EXPECT_TRUE(AreInOrder(OpenManager().Fields()));
    EXPECT_TRUE(AreInOrder(OpenPart().Fields()));
    EXPECT_TRUE(AreInOrder(OpenIndirect().Fields()));
    EXPECT_FALSE(OpenIndirect().SourceToTry());
}

template <typename Class, typename Result>
std::size_t VirtualSlotOf(Result (Class::*anOperation)() const) {
    return VirtualSlotOf(reinterpret_cast<Result (Class::*)()>(anOperation));
}

// After the destructor's two.
TEST(ThumbnailLayout, OperationsStandInSlotOrder) {
    EXPECT_EQ(VirtualSlotOf(&ezThumbnailGenerator::CanConvert), 2U);
    EXPECT_EQ(VirtualSlotOf(&ezThumbnailGenerator::BuildThumbnail), 3U);
    EXPECT_EQ(VirtualSlotOf(&ezThumbnailProvider::GetPossibleThumbnailFor), 2U);
    EXPECT_EQ(VirtualSlotOf(&ezThumbnailProvider::BuildThumbnail), 3U);
    EXPECT_EQ(VirtualSlotOf(&ezIndirectThumbnailProvider::GetPossibleThumbnailFor), 2U);
    EXPECT_EQ(VirtualSlotOf(&ezIndirectThumbnailProvider::BuildThumbnail), 3U);
    EXPECT_EQ(VirtualSlotOf(&ezIndirectThumbnailProvider::GetFirstPath), 4U);
    EXPECT_EQ(VirtualSlotOf(&ezIndirectThumbnailProvider::GetNextPath), 5U);
    EXPECT_EQ(VirtualSlotOf(&ezIndirectThumbnailProvider::EndTries), 6U);
    EXPECT_EQ(VirtualSlotOf(&ezThumbnailSource::Exists), 2U);
    EXPECT_EQ(VirtualSlotOf(&ezThumbnailSource::GetStream), 3U);
}

TEST(ThumbnailLayout, OnlyTheDestructorOfTheManagerIsVirtual) {
    class WithOneMore : public ezThumbnailProviderManager {
    public:
        WithOneMore() : ezThumbnailProviderManager(nullptr, nullptr) {}
        virtual int First() { return 1; }
    };
    EXPECT_EQ(VirtualSlotOf(&WithOneMore::First), 2U);
    EXPECT_TRUE(std::has_virtual_destructor_v<ezThumbnailProviderManager>);
}

} // namespace
