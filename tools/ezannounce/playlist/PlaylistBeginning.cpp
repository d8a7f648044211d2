#include "playlist/PlaylistBeginning.h"

#include "playlist/Limits.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

struct Beginning {
    std::string_view mText; ///< lower case
    const char* mExtension;
};

/// How the formats begin, after a byte order mark, blanks and the XML declaration.
constexpr std::array<Beginning, 6> kBeginnings = {{{"[playlist]", "pls"},
                                                   {"[reference]", "asx"},
                                                   {"<asx", "asx"},
                                                   {"<?wpl", "wpl"},
                                                   {"<smil", "wpl"},
                                                   {"<playlist", "xspf"}}};

/// The first letters of a document in any encoding of a home: lower case, without NULs and byte order marks.
std::string Letters(std::string_view aBytes) {
    std::string letters;
    for (const char byte : aBytes.substr(0, kPlaylistBeginning_Looked)) {
        const bool fMark =
            byte == '\xEF' || byte == '\xBB' || byte == '\xBF' || byte == '\xFE' || byte == '\xFF';
        if (byte != '\0' && !(fMark && letters.empty())) {
            letters += ezLower(byte);
        }
    }
    return letters;
}

} // namespace

std::string ExtensionOfPlaylist(std::string_view aBytes) {
    const std::string letters = Letters(aBytes);
    std::string_view rest = ezTrimmed(letters);
    for (const char* head : {"<?xml", "<!--"}) {
        const std::string_view end = head[1] == '?' ? "?>" : "-->";
        const std::size_t at = rest.find(end);
        if (rest.substr(0, std::strlen(head)) == head && at != std::string_view::npos) {
            rest = ezTrimmed(rest.substr(at + end.size()));
        }
    }
    const auto* found =
        std::find_if(kBeginnings.begin(), kBeginnings.end(), [&](const Beginning& aBeginning) {
            return rest.substr(0, aBeginning.mText.size()) == aBeginning.mText;
        });
    return found != kBeginnings.end() ? found->mExtension : "m3u";
}
