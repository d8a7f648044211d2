#include "ez/SubtitleParser.h"

#include "support/AwkwardStream.h"
#include "support/ScriptedParser.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace {

// What other components implement: the whole interface, with exactly these arguments.
class CountingSubtitleParser : public ezBaseSubtitleParser {
public:
    CountingSubtitleParser(const ezCString& aType, ezPropertyList* anEnvironmentInfo, int* aDeleted = nullptr)
        : ezBaseSubtitleParser(aType, anEnvironmentInfo), mDeleted(aDeleted) {}
    ~CountingSubtitleParser() override {
        if (mDeleted != nullptr) {
            ++*mDeleted;
        }
    }

    bool HasData() override { return mfData; }
    void Clear() override { mfData = false; }
    ParsingStatus Parse(ezMediaParserStream& aStream) override {
        char byte = 0;
        if (!aStream.Read(1, &byte)) {
            return kParsingStatusReadError;
        }
        mfData = byte == 'S';
        return mfData ? kParsingStatusSuccess : kParsingStatusUnknownFormat;
    }
    bool Step(unsigned long aFirst, long aSecond) override { return aFirst == 7 && aSecond == -7; }
    bool GetSubtitleInfo(bool* aFlag, unsigned long* aFirst, unsigned long* aSecond) override {
        *aFlag = mfData;
        *aFirst = 1;
        *aSecond = 2;
        return true;
    }
    bool GetSubtitleText(ezCString& aText) override {
        aText = "text";
        return mfData;
    }

    ezPropertyList* EnvironmentInfo() const { return mEnvironmentInfo; }
    bool FieldsAreInOrder() const { return AreInOrder({&mType, &mEnvironmentInfo}); }

private:
    int* mDeleted;
    bool mfData = false;
};

} // namespace

static_assert(std::is_abstract<ezBaseSubtitleParser>::value, "every operation is left to the parsers");
static_assert(std::has_virtual_destructor<ezBaseSubtitleParser>::value, "deleted through the base");
static_assert(std::is_same<decltype(&ezBaseSubtitleParser::HasData), bool (ezBaseSubtitleParser::*)()>::value,
              "HasData");
static_assert(std::is_same<decltype(&ezBaseSubtitleParser::Clear), void (ezBaseSubtitleParser::*)()>::value,
              "Clear");
static_assert(std::is_same<decltype(&ezBaseSubtitleParser::Parse),
                           ParsingStatus (ezBaseSubtitleParser::*)(ezMediaParserStream&)>::value,
              "Parse");
static_assert(std::is_same<decltype(&ezBaseSubtitleParser::Step),
                           bool (ezBaseSubtitleParser::*)(unsigned long, long)>::value,
              "Step");
static_assert(std::is_same<decltype(&ezBaseSubtitleParser::GetSubtitleInfo),
                           bool (ezBaseSubtitleParser::*)(bool*, unsigned long*, unsigned long*)>::value,
              "GetSubtitleInfo");
static_assert(std::is_same<decltype(&ezBaseSubtitleParser::GetSubtitleText),
                           bool (ezBaseSubtitleParser::*)(ezCString&)>::value,
              "GetSubtitleText");

TEST(SubtitleParser, StatusValuesAreThoseThatOtherComponentsKnow) {
    EXPECT_EQ(kParsingStatusSuccess, 0);
    EXPECT_EQ(kParsingStatusInternalError, 1);
    EXPECT_EQ(kParsingStatusReadError, 2);
    EXPECT_EQ(kParsingStatusUnknownFormat, 3);
    EXPECT_EQ(kParsingStatusInvalidFormat, 4);
    EXPECT_EQ(kParsingStatusMax, 5);
}

TEST(SubtitleParser, OperationsStandInSlotOrder) {
    EXPECT_EQ(VirtualSlotOf(&ezBaseSubtitleParser::HasData), 2U); // after the destructor's two
    EXPECT_EQ(VirtualSlotOf(&ezBaseSubtitleParser::Clear), 3U);
    EXPECT_EQ(VirtualSlotOf(&ezBaseSubtitleParser::Parse), 4U);
    EXPECT_EQ(VirtualSlotOf(&ezBaseSubtitleParser::Step), 5U);
    EXPECT_EQ(VirtualSlotOf(&ezBaseSubtitleParser::GetSubtitleInfo), 6U);
    EXPECT_EQ(VirtualSlotOf(&ezBaseSubtitleParser::GetSubtitleText), 7U);
}

TEST(SubtitleParser, KeepsTypeAndEnvironment) {
    const ezEnvironment first;
    const ezEnvironment second;
    CountingSubtitleParser parser("srt", first.Get());
    EXPECT_STREQ(parser.GetType().c_str(), "srt");
    EXPECT_EQ(parser.EnvironmentInfo(), first.Get());
    parser.SetEnvironmentInfo(second.Get());
    EXPECT_EQ(parser.EnvironmentInfo(), second.Get());
    parser.SetEnvironmentInfo(nullptr);
    EXPECT_EQ(parser.EnvironmentInfo(), nullptr);
    EXPECT_TRUE(parser.FieldsAreInOrder());
}

TEST(SubtitleParser, IsUsedAndDeletedThroughItsBase) {
    int deleted = 0;
    {
        const std::unique_ptr<ezBaseSubtitleParser> parser =
            std::make_unique<CountingSubtitleParser>("srt", nullptr, &deleted);
        AwkwardStream good("S");
        AwkwardStream other("x");
        AwkwardStream empty("");
        EXPECT_EQ(parser->Parse(empty), kParsingStatusReadError);
        EXPECT_EQ(parser->Parse(other), kParsingStatusUnknownFormat);
        EXPECT_FALSE(parser->HasData());
        EXPECT_EQ(parser->Parse(good), kParsingStatusSuccess);
        EXPECT_TRUE(parser->HasData());
        EXPECT_TRUE(parser->Step(7, -7));
        EXPECT_FALSE(parser->Step(7, 7));
        bool fFlag = false;
        unsigned long first = 0;
        unsigned long second = 0;
        EXPECT_TRUE(parser->GetSubtitleInfo(&fFlag, &first, &second));
        EXPECT_TRUE(fFlag);
        EXPECT_EQ(first, 1UL);
        EXPECT_EQ(second, 2UL);
        ezCString text;
        EXPECT_TRUE(parser->GetSubtitleText(text));
        EXPECT_STREQ(text.c_str(), "text");
        parser->Clear();
        EXPECT_FALSE(parser->HasData());
        EXPECT_EQ(deleted, 0);
    }
    EXPECT_EQ(deleted, 1);
}
