#include "ez/BaseParser.h"

#include "support/AwkwardStream.h"
#include "support/ScriptedParser.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

class PlainParser : public ezBaseParser {
public:
    using ezBaseParser::ezBaseParser;

    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

    using ezBaseParser::GetCTTContext;
    using ezBaseParser::GetSpecsLevel;
    using ezBaseParser::mCanExtractCoverArt;
    using ezBaseParser::mEnvironmentInfo;
    using ezBaseParser::mType;
};

} // namespace

static_assert(std::is_abstract<ezBaseParser>::value, "AdjustDLNAInfo is left to every parser");
static_assert(std::has_virtual_destructor<ezBaseParser>::value, "deleted through the base");
static_assert(std::is_same<decltype(std::declval<ezBaseParser&>().GetType()), ezCString>::value, "a copy");

TEST(BaseParser, KeepsTypeEnvironmentAndCoverArtFlag) {
    const ezEnvironment environment;
    for (const bool fCoverArt : {false, true}) {
        PlainParser parser("Mp3", environment.Get(), fCoverArt);
        EXPECT_STREQ(parser.GetType().c_str(), "Mp3"); // case kept: the manager folds it
        EXPECT_EQ(parser.CanExtractCoverArt(), fCoverArt);
        EXPECT_EQ(parser.mEnvironmentInfo, environment.Get());
    }
}

TEST(BaseParser, FieldsAndOperationsStandInOrder) {
    const PlainParser parser("mp3", nullptr, false);
    EXPECT_TRUE(AreInOrder({&parser.mEnvironmentInfo, &parser.mType, &parser.mCanExtractCoverArt}));
    EXPECT_EQ(VirtualSlotOf(&ezBaseParser::Parse), 2U); // after the destructor's two
    EXPECT_EQ(VirtualSlotOf(&ezBaseParser::AdjustDLNAInfo), 3U);
    EXPECT_EQ(VirtualSlotOf(&ezBaseParser::GetDLNAInfo), 4U);
}

TEST(BaseParser, TypeIsHandedOutAsACopy) {
    const PlainParser parser("mp3", nullptr, false);
    ezCString type = parser.GetType();
    type += "x";
    EXPECT_STREQ(parser.GetType().c_str(), "mp3");
}

TEST(BaseParser, EnvironmentIsReplaced) {
    const ezEnvironment first;
    const ezEnvironment second;
    PlainParser parser("mp3", first.Get(), false);
    parser.SetEnvironmentInfo(second.Get());
    EXPECT_EQ(parser.mEnvironmentInfo, second.Get());
    parser.SetEnvironmentInfo(nullptr);
    EXPECT_EQ(parser.mEnvironmentInfo, nullptr);
}

TEST(BaseParser, RecognisesAndDeclaresNothing) {
    PlainParser parser("mp3", nullptr, true);
    AwkwardStream stream("content");
    EXPECT_EQ(parser.Parse(stream), nullptr);
    EXPECT_EQ(stream.GetCosts().mReads, 0U);
    EXPECT_TRUE(parser.GetDLNAInfo().IsEmpty());
}

TEST(BaseParser, LevelAndContextAreZeroWithoutAnEnvironment) {
    const PlainParser parser("mp3", nullptr, false);
    EXPECT_EQ(parser.GetSpecsLevel(), 0U);
    EXPECT_EQ(parser.GetCTTContext(), 0U);
}

TEST(BaseParser, LevelAndContextAreZeroWhenTheEnvironmentLacksThem) {
    ezEnvironment environment;
    environment.Set("parserspecslevel", 3).Set("cttcontext", 3).Set("SpecsLevel", 3).Set("CTT", 3);
    const PlainParser parser("mp3", environment.Get(), false);
    EXPECT_EQ(parser.GetSpecsLevel(), 0U);
    EXPECT_EQ(parser.GetCTTContext(), 0U);
}

TEST(BaseParser, LevelAndContextComeFromTheEnvironmentWheneverAsked) {
    ezEnvironment environment;
    environment.Set("ParserSpecsLevel", 2).Set("CTTContext", 4294967295U);
    PlainParser parser("mp3", environment.Get(), false);
    EXPECT_EQ(parser.GetSpecsLevel(), 2U);
    EXPECT_EQ(parser.GetCTTContext(), 4294967295U);
    environment.Set("ParserSpecsLevel", 3).Set("CTTContext", 1);
    EXPECT_EQ(parser.GetSpecsLevel(), 3U);
    EXPECT_EQ(parser.GetCTTContext(), 1U);
    parser.SetEnvironmentInfo(nullptr);
    EXPECT_EQ(parser.GetSpecsLevel(), 0U);
    EXPECT_EQ(parser.GetCTTContext(), 0U);
}
