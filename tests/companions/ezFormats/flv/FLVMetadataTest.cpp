#include "ezFormats/flv/FLVMetadata.h"

#include "companions/ezFormats/flv/FLVKit.h"

namespace {

const std::string kSize = Number("width", 64) + Number("height", 48);

/// The width that a script tag states; "" where it states none.
std::string Width(const std::string& aScript) {
    return Values(Header() + Script(aScript) + Video(0, "\x22"), {"wi"});
}
std::string WidthAfter(const std::string& aValue) {
    return Width(TextValue("onMetaData") + Array(Named("a", aValue) + kSize));
}

} // namespace

TEST(FLVMetadata, TextsAreThoseOfTheTags) {
    const std::string texts = Text("title", "Ebbe") + Text("artist", "Somebody") + Text("genre", "Drama") +
                              Text("date", "2001") + Text("metadatacreator", "writer");
    EXPECT_EQ(Values(Film(texts), {"title", "creator", "genre", kezInfo_Date}),
              "\"Ebbe\"|\"Somebody\"|\"Drama\"|\"2001\"");
    EXPECT_EQ(Values(Film(Text("Title", "Fl\xFCsse")), {"title"}), "\"Fl\xC3\xBCsse\"");
    EXPECT_EQ(Values(Film(Text("creationdate", "Sat Aug 17 10:01:29 2013")), {kezInfo_Date}), "");
    EXPECT_EQ(Values(Film(Number("title", 7)), {"title"}), "");
}

TEST(FLVMetadata, ReadingStandsWhatWritersDo) {
    const std::string name = TextValue("onMetaData");
    EXPECT_EQ(Width(name + Array(kSize, 0)), "64");
    EXPECT_EQ(Width(name + Array(kSize, 0xFFFFFFFF)), "64");
    EXPECT_EQ(Width(name + Object(kSize)), "64");
    EXPECT_EQ(Width(name + Hex({16, 0, 3}) + "Any" + kSize + End()), "64") << "an object of a type";
    EXPECT_EQ(Width(TextValue("@setDataFrame") + name + Array(kSize)), "64");
    EXPECT_EQ(Width(name + Big(8, 1) + Big(2, 4) + kSize), "64") << "no end";
    EXPECT_EQ(Width(name + Array(Named("a", Object(kSize)))), "") << "those of another";
    EXPECT_EQ(Width(TextValue("onCuePoint") + Array(kSize)), "");
    EXPECT_EQ(Width(name + kSize), "") << "nothing holds them";
    EXPECT_EQ(Width(name + Array(kSize.substr(0, 20))), "");
    EXPECT_EQ(Width(name + Array(Number("width", -1) + kSize)), "64") << "a better one follows";
    EXPECT_EQ(Width(name + Array("") + Array(kSize)), "64") << "after an end";
}

TEST(FLVMetadata, EveryKindOfValueIsSteppedOver) {
    const std::string nested = List(Object(Text("b", "c")) + Array(Number("d", 1)) + List("", 0), 3);
    const std::vector<std::string> values = {NumberValue(1),
                                             Hex({1, 1}),
                                             TextValue(""),
                                             Object(""),
                                             Hex({5}),
                                             Hex({6}),
                                             Hex({7, 0, 1}),
                                             Array(""),
                                             List("", 0),
                                             nested,
                                             Big(11, 1) + Big(0, 10),
                                             Big(12, 1) + Big(3, 4) + "xml",
                                             Hex({13}),
                                             Hex({15, 0, 0, 0, 1, 'x'})};
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(WidthAfter(values[i]), "64") << i;
    }
    EXPECT_EQ(WidthAfter(Hex({4})), "") << "a film clip, which has no form";
    EXPECT_EQ(WidthAfter(Hex({17})), "") << "of another format";
    EXPECT_EQ(WidthAfter(List(NumberValue(0), 0xFFFFFFFF)), "") << "more than there are";
}

TEST(FLVMetadata, DepthAndSizeAreBounded) {
    const auto nested = [](std::size_t aDepth) {
        std::string value = NumberValue(0);
        for (std::size_t i = 0; i < aDepth; ++i) {
            value = List(value, 1);
        }
        return WidthAfter(value);
    };
    EXPECT_EQ(nested(kAMF0_MaxDepth - 1), "64");
    EXPECT_EQ(nested(kAMF0_MaxDepth), "");
    const auto after = [](std::size_t aSize) {
        return WidthAfter(Big(12, 1) + Big(aSize, 4) + std::string(aSize, '-'));
    };
    const std::size_t rest = TextValue("onMetaData").size() + 5 + 3 + 5 + kSize.size();
    EXPECT_EQ(after(kFLV_MaxMetadata - rest), "64");
    EXPECT_EQ(after(kFLV_MaxMetadata - rest + 1), "");
}
