#include "ez/MediaParserTypes.h"

#include <gtest/gtest.h>

TEST(MediaParserTypes, ConstantsAreThoseThatHostsKnow) {
    EXPECT_STREQ(kProperty_Parser_SpecsLevel, "ParserSpecsLevel");
    EXPECT_EQ(kProperty_Parser_SpecsLevel_Normal, 0);
    EXPECT_EQ(kProperty_Parser_SpecsLevel_CVP2, 1);
    EXPECT_EQ(kProperty_Parser_SpecsLevel_Advanced, 2);
    EXPECT_EQ(kProperty_Parser_SpecsLevel_Development, 3);
    EXPECT_EQ(kProperty_Parser_SpecsLevel_Count, 4);
    EXPECT_EQ(kezMediaParser_DefaultBeginBufferSize, 32768U);
}

TEST(MediaParserTypes, ParseOptionsAreBits) {
    EXPECT_EQ(kParseOption_Default, 0);
    EXPECT_EQ(kParseOption_ParseWithAllParserIfNoExtension, 1);
    EXPECT_EQ(kParseOption_ParseWithAllParserIfFailed, 2);
    EXPECT_EQ(kParseOption_ParseWithAllParserEverytime, 4);
    EXPECT_EQ(kParseOption_ParseFullFileIfVBR, 8);
}
