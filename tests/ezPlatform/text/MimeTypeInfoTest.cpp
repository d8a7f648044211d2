#include "ezPlatform/text/MimeTypeInfo.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>

namespace {

class MimeType {
public:
    explicit MimeType(const char* aText) : mInfo(ezMimeTypeInfo_New(aText)) {}
    ~MimeType() { ezMimeTypeInfo_Delete(mInfo); }
    MimeType(const MimeType&) = delete;
    MimeType& operator=(const MimeType&) = delete;

    const char* Lent(const char* aName) const { return ezMimeTypeInfo_GetPartValueByName(mInfo, aName); }
    std::string Value(const char* aName) const {
        const char* value = Lent(aName);
        return value != nullptr ? value : "<none>";
    }

private:
    ezMimeTypeInfo* mInfo;
};

/// The value of one parameter of a MIME type.
std::string ValueOf(const char* aText, const char* aName) {
    return MimeType(aText).Value(aName);
}

} // namespace

TEST(MimeTypeInfo, FindsParametersByNameInAnyOrder) {
    for (const char* text : {"audio/L16;rate=44100;channels=2", "audio/L16;channels=2;rate=44100",
                             "audio/l16;x=1;channels=2;y=2;rate=44100"}) {
        const MimeType type(text);
        EXPECT_EQ(type.Value("rate"), "44100") << text;
        EXPECT_EQ(type.Value("channels"), "2") << text;
        EXPECT_EQ(type.Value("rat"), "<none>") << text;
        EXPECT_EQ(type.Value("rates"), "<none>") << text;
        EXPECT_EQ(type.Value("audio/L16"), "<none>") << text;
    }
}

TEST(MimeTypeInfo, TheCaseOfANameDoesNotCountAndThatOfAValueIsKept) {
    EXPECT_EQ(ValueOf("text/html;charset=utf-8", "charset"), "utf-8");
    EXPECT_EQ(ValueOf("text/html;charset=UTF-8", "charset"), "UTF-8");
    EXPECT_EQ(ValueOf("Text/HTML;Charset=\"utf-8\"", "CHARSET"), "utf-8");
}

TEST(MimeTypeInfo, BlanksAroundASemicolonAreNoPartOfNameOrValue) {
    EXPECT_EQ(ValueOf("text/html; charset=\"utf-8\"", "charset"), "utf-8");
    EXPECT_EQ(ValueOf("audio/L16 ;\trate=44100 ;\t channels=2 ", "rate"), "44100");
    EXPECT_EQ(ValueOf("audio/L16 ;\trate=44100 ;\t channels=2 ", "channels"), "2");
}

TEST(MimeTypeInfo, QuotesAreTakenOffAndWhatTheyHoldIsNoSeparator) {
    EXPECT_EQ(ValueOf("a/b;x=\"1;y=2\";z=3", "x"), "1;y=2");
    EXPECT_EQ(ValueOf("a/b;x=\"1;y=2\";z=3", "y"), "<none>");
    EXPECT_EQ(ValueOf("a/b;x=\"1;y=2\";z=3", "z"), "3");
    EXPECT_EQ(ValueOf("a/b;x=\"\";z=3", "x"), "");
    EXPECT_EQ(ValueOf("a/b;x=\" 1 \"", "x"), " 1 ") << "blanks inside quotes belong to the value";
    EXPECT_EQ(
        ValueOf(R"(application/x-dtcp1;CONTENTFORMAT="audio/L16;rate=44100;channels=2")", "contentformat"),
        "audio/L16;rate=44100;channels=2");
}

TEST(MimeTypeInfo, ABackslashInQuotesStandsForTheCharacterAfterIt) {
    EXPECT_EQ(ValueOf(R"(a/b;x="1\"2";y=3)", "x"), "1\"2");
    EXPECT_EQ(ValueOf(R"(a/b;x="1\"2";y=3)", "y"), "3");
    EXPECT_EQ(ValueOf(R"(a/b;x="1\\";y=3)", "x"), "1\\");
    EXPECT_EQ(ValueOf(R"(a/b;x="1\\";y=3)", "y"), "3");
    EXPECT_EQ(ValueOf(R"(a/b;x="\a\;")", "x"), "a;");
    EXPECT_EQ(ValueOf(R"(a/b;x=1\2)", "x"), R"(1\2)") << "outside quotes it is a character like any other";
}

TEST(MimeTypeInfo, AnEqualsSignMayStandInAValue) {
    EXPECT_EQ(ValueOf("a/b;x=1=2", "x"), "1=2");
    EXPECT_EQ(ValueOf("a/b;x==", "x"), "=");
    EXPECT_EQ(ValueOf("a/b;x=", "x"), "");
}

TEST(MimeTypeInfo, OfTwoParametersOfANameTheFirstCounts) {
    EXPECT_EQ(ValueOf("a/b;x=1;X=2", "x"), "1");
    EXPECT_EQ(ValueOf("a/b;x;x=2", "x"), "2") << "what is no parameter does not count";
}

TEST(MimeTypeInfo, WhatIsNoParameterIsSkipped) {
    EXPECT_EQ(ValueOf("a/b;;c=d", "c"), "d");
    EXPECT_EQ(ValueOf("a/b;", ""), "<none>");
    EXPECT_EQ(ValueOf("a/b;x;c=d", "x"), "<none>");
    EXPECT_EQ(ValueOf("a/b;x;c=d", "c"), "d");
    EXPECT_EQ(ValueOf("a/b;=1;c=d", ""), "<none>");
    EXPECT_EQ(ValueOf("a/b;=1;c=d", "c"), "d");
}

TEST(MimeTypeInfo, AQuoteThatIsNeverClosedSpoilsItsParameterAlone) {
    const MimeType type(R"(a/b;x=1;y="2;z=3)");
    EXPECT_EQ(type.Value("x"), "1");
    EXPECT_EQ(type.Value("y"), "<none>");
    EXPECT_EQ(type.Value("z"), "<none>") << "it stands inside the quote";
    EXPECT_EQ(ValueOf(R"(a/b;y="2\)", "y"), "<none>") << "nothing after the backslash";
    EXPECT_EQ(ValueOf("a/b;y=\"", "y"), "<none>");
    EXPECT_EQ(ValueOf(R"(a/b;y="2\")", "y"), "<none>") << "an escaped quote closes nothing";
}

TEST(MimeTypeInfo, ATextThatIsNoMimeTypeHasNoParameters) {
    for (const char* text : {"", "*", ";rate=1", "rate=1", "audio;rate=1", "/L16;rate=1", "audio/;rate=1",
                             "audio/ ;rate=1", " /L16;rate=1", "x=a/b;rate"}) {
        EXPECT_EQ(ValueOf(text, "rate"), "<none>") << text;
    }
    EXPECT_EQ(ValueOf(nullptr, "rate"), "<none>");
    EXPECT_EQ(ValueOf("audio/*;rate=1", "rate"), "1");
}

TEST(MimeTypeInfo, ANullObjectOrNameHasNoValue) {
    EXPECT_EQ(ezMimeTypeInfo_GetPartValueByName(nullptr, "rate"), nullptr);
    EXPECT_EQ(MimeType("a/b;x=1").Lent(nullptr), nullptr);
    EXPECT_EQ(MimeType("a/b;=1").Lent(nullptr), nullptr);
    ezMimeTypeInfo_Delete(nullptr);
}

TEST(MimeTypeInfo, AValueIsLentUntilTheObjectIsDeleted) {
    const MimeType type("audio/L16;rate=44100;channels=2");
    const char* rate = type.Lent("rate");
    type.Lent("channels");
    EXPECT_STREQ(rate, "44100");
    EXPECT_EQ(type.Lent("rate"), rate);
}

TEST(MimeTypeInfo, MegabytesCostOnePass) {
    for (const std::string piece : {";x=1", ";x=\"1\"", "\\\";", ";\"", ";=;"}) {
        std::string text = "a/b";
        while (text.size() < 1000000) {
            text += piece;
        }
        const std::clock_t start = std::clock();
        const MimeType type(text.c_str());
        EXPECT_EQ(type.Value("y"), "<none>");
        EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 20.0) << piece;
    }
}
