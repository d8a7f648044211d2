#include "ezPlaylists/M3UPlaylistParser.h"

#include "PlaylistKit.h"

#include <rapidcheck/gtest.h>

#include <regex>

// Playlists of random pieces, read by a second statement of the rules: the whole text is cut into lines at
// once.

namespace {

struct PlainEntry {
    std::string mURI;
    std::uint64_t mPos;
};

struct PlainLine {
    std::string mText;
    std::uint64_t mPos;
};

std::vector<PlainLine> LinesOf(const std::string& aText) {
    std::vector<PlainLine> lines;
    PlainLine line = {"", 0};
    for (std::size_t i = 0; i < aText.size(); ++i) {
        if (aText[i] != '\n' && aText[i] != '\r') {
            line.mText += aText[i];
            continue;
        }
        i += aText[i] == '\r' && i + 1 < aText.size() && aText[i + 1] == '\n' ? 1 : 0;
        lines.push_back(line);
        line = {"", i + 1};
    }
    lines.push_back(line);
    return lines;
}

/// A URL without the blanks around it, a name with them.
std::string LocationOf(const std::string& aLine) {
    static const std::regex url("[ \t]*([A-Za-z][A-Za-z0-9+.-]+://.*[^ \t])[ \t]*");
    std::smatch match;
    return std::regex_match(aLine, match, url) ? match[1].str() : aLine;
}

std::vector<PlainEntry> EntriesOf(const std::string& aText) {
    std::vector<PlainEntry> entries;
    std::uint64_t start = UINT64_MAX;
    for (const PlainLine& line : LinesOf(aText)) {
        const std::size_t first = line.mText.find_first_not_of(" \t\v\f");
        if (first == std::string::npos) {
            continue;
        }
        const std::string text = line.mText.substr(first);
        if (text[0] != '#') {
            entries.push_back({LocationOf(line.mText), std::min(start, line.mPos)});
            start = UINT64_MAX;
        } else if (text.rfind("#EXT", 0) == 0 && text.rfind("#EXTM3U", 0) != 0) {
            start = std::min(start, line.mPos);
        }
    }
    return entries;
}

std::string RandomText() {
    const auto piece = rc::gen::element<std::string>(
        "\n", "\r", "\r\n", "#", "#EXTINF:", "#EXTINF:12,", "#EXTM3U", "#EXTGRP:", "12", "-1", ",", "\"", " ",
        "\t", "a", "song.mp3", "http://h/x", "\xC3\xA9", "\xE9", "=", "\n#EXTINF:3,T\ns.mp3\n");
    std::string text;
    for (const std::string& next : *rc::gen::container<std::vector<std::string>>(piece)) {
        text += next;
    }
    return text;
}

} // namespace

RC_GTEST_PROP(M3URandom, EntriesAreThoseOfAPlainReadingAndEveryFetchAgrees, ()) {
    const std::string text = RandomText();
    const std::size_t maximum = *rc::gen::inRange<std::size_t>(1, 40);
    const ezStreamOwner stream(new ScriptedStream(text, maximum));
    M3UPlaylistParser reader(stream.get());
    const PlaylistEntries entries = CheckAgreement(reader, text.size());
    const std::vector<PlainEntry> expected = EntriesOf(text);
    RC_ASSERT(!testing::Test::HasFailure());
    RC_ASSERT(entries.size() == expected.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        RC_ASSERT(Str(entries[i].mURI) == expected[i].mURI);
        RC_ASSERT(entries[i].mStreamPos == expected[i].mPos);
    }
}
