#include "ezPlaylists/detail/MarkupScanner.h"

#include "ezBytes/Utf8.h"
#include "ezPlaylists/detail/DocumentText.h"
#include "ezPlaylists/detail/EntryText.h"
#include "ezPlaylists/detail/Limits.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// Everything that a scan gives, one piece a line.
std::string Scanned(std::string_view aText) {
    MarkupScanner scanner(aText);
    MarkupPiece piece;
    std::string text;
    while (scanner.Next(piece)) {
        text += std::to_string(piece.mOffset);
        if (piece.mKind == MarkupPiece::Kind::Text) {
            text += " text '" + piece.mText + "'\n";
            continue;
        }
        text += (piece.mKind == MarkupPiece::Kind::EndTag ? " /" : " ") + piece.mName;
        for (const MarkupPiece::Attribute& attribute : piece.mAttributes) {
            text += " " + attribute.mName + "='" + attribute.mValue + "'";
        }
        text += piece.mfEmptyElement ? " /\n" : "\n";
    }
    return text;
}

GrowingText TextOf(std::string_view aBytes) {
    GrowingText text;
    EXPECT_TRUE(text.Append(aBytes));
    return text;
}

} // namespace

TEST(MarkupScanner, NamesAreLowerCaseAndValuesNeedNoQuotes) {
    EXPECT_EQ(Scanned("<Ref HREF = http://h/a?b=1&c=2 X='y \"z' Alone/>"),
              "0 ref href='http://h/a?b=1&c=2' x='y \"z' alone='' /\n");
    EXPECT_EQ(Scanned("<a b=http://h/x/><c d=e>"), "0 a b='http://h/x/' /\n17 c d='e'\n");
    EXPECT_EQ(Scanned("<a b=\"1>2\"></A >"), "0 a b='1>2'\n11 /a\n");
}

TEST(MarkupScanner, StrayCharactersAreText) {
    EXPECT_EQ(Scanned("1 < 2 & 3 > 2"), "0 text '1 '\n2 text '< 2 & 3 > 2'\n");
    EXPECT_EQ(Scanned("<"), "0 text '<'\n");
    EXPECT_EQ(Scanned("<1>"), "0 text '<1>'\n");
    EXPECT_EQ(Scanned("<a !! b=c ;>"), "0 a b='c'\n");
}

TEST(MarkupScanner, CommentsDeclarationsAndInstructionsArePassedOver) {
    EXPECT_EQ(Scanned("<?xml version='1.0'?><!DOCTYPE a><!-- <b> --><c>"), "45 c\n");
    EXPECT_EQ(Scanned("<!-- open <b>"), "");
    EXPECT_EQ(Scanned("<![CDATA[<b> &amp; ]]>x"), "0 text '<b> &amp; '\n22 text 'x'\n");
    EXPECT_EQ(Scanned("<![CDATA[ open"), "");
}

TEST(MarkupScanner, DocumentTypeEndsAfterItsBracketsWhateverStandsInThem) {
    for (const std::string type :
         {" a SYSTEM 'x>y.dtd'", " a PUBLIC \"-//a\" \"b>\"", " a [<!ENTITY e \"<b>\">\n] ",
          " a [<!-- ]> ' <b> --> <!ATTLIST b c CDATA ']>'> <?d ]> <b> ?>]", ""}) {
        const std::string text = "<!DOCTYPE" + type + ">";
        EXPECT_EQ(Scanned(text + "<c>"), std::to_string(text.size()) + " c\n") << text;
    }
    // One that does not end, and every further one, ends like any declaration.
    EXPECT_EQ(Scanned("<!DOCTYPE a [><c>"), "14 c\n");
    EXPECT_EQ(Scanned("<!DOCTYPE a 'b><c>"), "15 c\n");
    EXPECT_EQ(Scanned("<!DOCTYPE a><!DOCTYPE b [><c>]>"), "26 c\n29 text ']>'\n");
}

TEST(MarkupScanner, NamesMayHoldMoreThanLettersOfASCII) {
    EXPECT_EQ(Scanned("<_a :b='1' \xC3\xA9='2'/><\xC3\xA9></\xC3\xA9>"),
              "0 _a :b='1' \xC3\xA9='2' /\n19 \xC3\xA9\n23 /\xC3\xA9\n");
    EXPECT_EQ(Scanned("<title\xC3\xA9 x-1.2=3>"), "0 title\xC3\xA9 x-1.2='3'\n");
    for (const char* none : {"<-a>", "<.a>", "<1a>", "< a>"}) {
        EXPECT_EQ(Scanned(none), "0 text '" + std::string(none) + "'\n");
    }
}

TEST(MarkupScanner, WhatDoesNotEndIsTheEnd) {
    for (const char* text : {"<a", "<a ", "<a b", "<a b=", "<a b='c", "<a b=c", "</a", "<a /"}) {
        EXPECT_EQ(Scanned(std::string("<x>") + text), "0 x\n") << text;
    }
}

TEST(MarkupScanner, FurtherAttributesAreDropped) {
    std::string tag = "<a";
    for (int i = 0; i < 1000; ++i) {
        tag += " b" + std::to_string(i);
    }
    const std::string tags = tag + "><c>";
    MarkupScanner scanner(tags);
    MarkupPiece piece;
    ASSERT_TRUE(scanner.Next(piece));
    EXPECT_EQ(piece.mAttributes.size(), 32U);
    ASSERT_TRUE(scanner.Next(piece));
    EXPECT_EQ(piece.mName, "c");
}

TEST(MarkupScanner, BoundsHoldWhatIsAtThemAndNothingMore) {
    const std::string name(64, 'x');
    EXPECT_EQ(Scanned("<" + name + " " + name + "=1>"), "0 " + name + " " + name + "='1'\n");
    EXPECT_EQ(Scanned("<" + name + "y " + name + "y=1>"), "0 " + name + " " + name + "='1'\n");
    std::string tag = "<a";
    for (int i = 1; i < 32; ++i) {
        tag += " b" + std::to_string(i);
    }
    const auto has = [](const std::string& aText, const char* aName) {
        MarkupScanner scanner(aText);
        MarkupPiece piece;
        return scanner.Next(piece) && piece.FindAttribute(aName) != nullptr;
    };
    EXPECT_TRUE(has(tag + " last>", "last"));
    EXPECT_FALSE(has(tag + " b32 last>", "last"));
    EXPECT_EQ(WithoutEntities("&#000000065;"), "A"); // 12 characters
    EXPECT_EQ(WithoutEntities("&#0000000065;"), "&#0000000065;");
    EXPECT_EQ(WithoutEntities("&#1114111;&#1114112;"), "\xF4\x8F\xBF\xBF&#1114112;");
}

TEST(DocumentText, ADeclarationIsLookedForUpToItsBound) {
    const auto decoded = [](std::size_t aBlanks) {
        const std::string declaration = "<?xml" + std::string(aBlanks, ' ') + "encoding='latin1'";
        GrowingText text;
        text.Append(std::string_view(declaration + "?><a>\xC3\xA9</a>"));
        return std::string(DocumentText(std::move(text)).Text());
    };
    const std::size_t fits = 256 - std::string("<?xmlencoding='latin1'").size();
    EXPECT_NE(decoded(fits).find("\xC3\x83\xC2\xA9"), std::string::npos);
    EXPECT_NE(decoded(fits + 30).find(">\xC3\xA9<"), std::string::npos);
}

TEST(DocumentText, ATextThatGrowsBeyondTheDocumentsBoundIsTooLong) {
    for (const std::size_t more : {0U, 1U}) {
        GrowingText text; // of letters that take two bytes each in UTF-8
        text.Append(std::string_view(std::string(kPlaylist_MaxDocument / 2 + more, '\xE9')));
        EXPECT_EQ(DocumentText(std::move(text)).IsTooLong(), more == 1);
    }
}

TEST(MarkupScanner, TextsAndValuesThatAreTooLongAreEmpty) {
    const std::string most(kPlaylist_MaxText, 'x');
    for (const bool fFits : {true, false}) {
        const std::string text = most + (fFits ? "" : "x");
        const std::string given = fFits ? text : "";
        EXPECT_EQ(Scanned(text), "0 text '" + given + "'\n");
        EXPECT_EQ(Scanned("<![CDATA[" + text + "]]>"), "0 text '" + given + "'\n");
        EXPECT_EQ(Scanned("<a b='" + text + "' c=" + text + ">"),
                  "0 a b='" + given + "' c='" + given + "'\n");
    }
    // No reader knows a name of so many letters, cut or not.
    EXPECT_EQ(Scanned("<" + most + ">").size(), std::string("0 \n").size() + 64);
}

TEST(WithoutEntities, OnlyTheFiveOfXmlAndNumbersMeanSomething) {
    EXPECT_EQ(WithoutEntities("&lt;&gt;&amp;&quot;&apos;"), "<>&\"'");
    EXPECT_EQ(WithoutEntities("&#65;&#x42;&#X43;&#233;&#x1F3B5;"), "ABC\xC3\xA9\xF0\x9F\x8E\xB5");
    EXPECT_EQ(WithoutEntities("&amp;lt;"), "&lt;"); // once
    for (const char* text : {"&", "&&", "& ;", "&lol;", "&#;", "&#x;", "&#0;", "&#x110000;", "&#-5;",
                             "&#99999999999999999999;", "a&b=c&d=e;", "&AMP;", "&amp"}) {
        EXPECT_EQ(WithoutEntities(text), text);
    }
    EXPECT_EQ(WithoutEntities("&#xD800;"), "\xEF\xBF\xBD");
}

TEST(DocumentText, PositionsAreThoseOfTheDocument) {
    using namespace std::string_literals;
    struct Case {
        std::string mDocument;
        std::string mText;
        std::vector<std::uint64_t> mPositions; ///< of each byte of the text, and of its end
    };
    const std::vector<Case> cases = {
        {"<a", "<a", {0, 1, 2}},
        {"\xEF\xBB\xBF<a", "<a", {3, 4, 5}},
        {"<\xE9>", "<\xC3\xA9>", {0, 1, 1, 2, 3}},
        {"\xFF\xFE<\0\xE9\0\x3C\xD8\xB5\xDF>\0"s,
         "<\xC3\xA9\xF0\x9F\x8E\xB5>",
         {2, 4, 4, 6, 6, 6, 6, 10, 12}},
        {"\xFE\xFF\0<\0a"s, "<a", {2, 4, 6}},
        {"<\0a\0"s, "<a", {0, 2, 4}},
        {"\0<\0a"s, "<a", {0, 2, 4}},
        {"\xFF\xFE<\0a"s, "<", {2, 4}}, // half a character in the end
        {"\xFF\xFE\x3C\xD8<\0"s, "\xEF\xBF\xBD<", {2, 2, 2, 4, 6}},
        {"", "", {0}},
    };
    for (const Case& one : cases) {
        DocumentText document(TextOf(one.mDocument));
        EXPECT_EQ(document.Text(), one.mText);
        std::vector<std::uint64_t> rising;
        for (std::size_t i = 0; i <= document.Text().size(); ++i) {
            rising.push_back(document.PositionOf(i));
        }
        EXPECT_EQ(rising, one.mPositions) << one.mText;
        EXPECT_EQ(document.PositionOf(0), one.mPositions.front()); // back again
    }
}

TEST(DocumentText, DeclarationTellsTheEncoding) {
    const auto textOf = [](const char* aDocument) {
        return std::string(DocumentText(TextOf(aDocument)).Text());
    };
    EXPECT_EQ(textOf("<?xml encoding='ISO-8859-1'?>\xC3\xA9"),
              "<?xml encoding='ISO-8859-1'?>\xC3\x83\xC2\xA9");
    EXPECT_EQ(textOf("<?xml encoding=\"windows-1252\"?>\x80\x99\x81"),
              "<?xml encoding=\"windows-1252\"?>\xE2\x82\xAC\xE2\x84\xA2\xC2\x81");
    EXPECT_EQ(textOf("<?xml encoding='utf-8'?>\xE9"), "<?xml encoding='utf-8'?>\xE9"); // as it says
    EXPECT_EQ(textOf("<?xml encoding='klingon'?>\xC3\xA9"), "<?xml encoding='klingon'?>\xC3\xA9");
    EXPECT_EQ(textOf("<?xml encoding='klingon'?>\xE9"), "<?xml encoding='klingon'?>\xC3\xA9");
    EXPECT_EQ(textOf("<?xml encoding='latin1"), "<?xml encoding='latin1");
    EXPECT_EQ(textOf("encoding='latin1'\xC3\xA9"), "encoding='latin1'\xC3\xA9"); // no declaration
}

TEST(Utf8, CharactersThatAreNoneAreReplacedOrRefused) {
    std::string text;
    for (const char32_t character : {0x24U, 0xA2U, 0x20ACU, 0x10FFFFU, 0xDFFFU, 0x110000U}) {
        AppendUtf8(text, character);
    }
    EXPECT_EQ(text, "$\xC2\xA2\xE2\x82\xAC\xF4\x8F\xBF\xBF\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_TRUE(IsWholeUtf8(text));
    for (const char* broken :
         {"\x80", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xFF", "\xE2\x82x"}) {
        EXPECT_FALSE(IsWholeUtf8(broken));
    }
}

TEST(EntryText, ClockTakesOneToThreeParts) {
    EXPECT_EQ(SecondsOfClock("1:02:03.5"), 3723U);
    EXPECT_EQ(SecondsOfClock("1:01.5"), 61U);
    EXPECT_EQ(SecondsOfClock(" 90 "), 90U);
    EXPECT_EQ(SecondsOfClock("00:00:10."), 10U);
    EXPECT_EQ(SecondsOfClock("0:90"), 90U);
    EXPECT_EQ(SecondsOfClock("4294967295:59:59"), 4294967295U);
    for (const char* text : {"", ":", "1:", ":1", "1:2:3:4", "-1", "1.x", "a", "1 2", "99999999999"}) {
        EXPECT_EQ(SecondsOfClock(text), 0U) << text;
    }
}

TEST(EntryText, TagIsOneLineWithAValue) {
    PlaylistParserEntry entry;
    AddTag(entry, "creator", " A\n  B  C\t");
    AddTag(entry, "album", " \n ");
    AddTag(entry, "image", "x");
    EXPECT_EQ(Str(entry.mSpecificTags), "creator=A B  C\nimage=x");
}
