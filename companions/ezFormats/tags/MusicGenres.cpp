#include "ezFormats/tags/MusicTexts.h"

#include <array>
#include <cstdint>
#include <string>

namespace {

/// By their numbers in ID3v1: the first 80 are those of its inventor, players agreed on the others.
// clang-format off
constexpr std::array<std::string_view, 192> kNames = {
    "Blues", "Classic Rock", "Country", "Dance", "Disco", "Funk", "Grunge", "Hip-Hop",
    "Jazz", "Metal", "New Age", "Oldies", "Other", "Pop", "R&B", "Rap",
    "Reggae", "Rock", "Techno", "Industrial", "Alternative", "Ska", "Death Metal", "Pranks",
    "Soundtrack", "Euro-Techno", "Ambient", "Trip-Hop", "Vocal", "Jazz+Funk", "Fusion", "Trance",
    "Classical", "Instrumental", "Acid", "House", "Game", "Sound Clip", "Gospel", "Noise",
    "Alternative Rock", "Bass", "Soul", "Punk", "Space", "Meditative", "Instrumental Pop", "Instrumental Rock",
    "Ethnic", "Gothic", "Darkwave", "Techno-Industrial", "Electronic", "Pop-Folk", "Eurodance", "Dream",
    "Southern Rock", "Comedy", "Cult", "Gangsta", "Top 40", "Christian Rap", "Pop/Funk", "Jungle",
    "Native American", "Cabaret", "New Wave", "Psychedelic", "Rave", "Showtunes", "Trailer", "Lo-Fi",
    "Tribal", "Acid Punk", "Acid Jazz", "Polka", "Retro", "Musical", "Rock & Roll", "Hard Rock",
    "Folk", "Folk-Rock", "National Folk", "Swing", "Fast Fusion", "Bebop", "Latin", "Revival",
    "Celtic", "Bluegrass", "Avantgarde", "Gothic Rock", "Progressive Rock", "Psychedelic Rock", "Symphonic Rock", "Slow Rock",
    "Big Band", "Chorus", "Easy Listening", "Acoustic", "Humour", "Speech", "Chanson", "Opera",
    "Chamber Music", "Sonata", "Symphony", "Booty Bass", "Primus", "Porn Groove", "Satire", "Slow Jam",
    "Club", "Tango", "Samba", "Folklore", "Ballad", "Power Ballad", "Rhythmic Soul", "Freestyle",
    "Duet", "Punk Rock", "Drum Solo", "A Cappella", "Euro-House", "Dance Hall", "Goa", "Drum & Bass",
    "Club-House", "Hardcore", "Terror", "Indie", "BritPop", "Afro-Punk", "Polsk Punk", "Beat",
    "Christian Gangsta Rap", "Heavy Metal", "Black Metal", "Crossover", "Contemporary Christian", "Christian Rock", "Merengue", "Salsa",
    "Thrash Metal", "Anime", "JPop", "Synthpop", "Abstract", "Art Rock", "Baroque", "Bhangra",
    "Big Beat", "Breakbeat", "Chillout", "Downtempo", "Dub", "EBM", "Eclectic", "Electro",
    "Electroclash", "Emo", "Experimental", "Garage", "Global", "IDM", "Illbient", "Industro-Goth",
    "Jam Band", "Krautrock", "Leftfield", "Lounge", "Math Rock", "New Romantic", "Nu-Breakz", "Post-Punk",
    "Post-Rock", "Psytrance", "Shoegaze", "Space Rock", "Trop Rock", "World Music", "Neoclassical", "Audiobook",
    "Audio Theatre", "Neue Deutsche Welle", "Podcast", "Indie Rock", "G-Funk", "Dubstep", "Garage Rock", "Psybient",
};
// clang-format on

/// The genre that a reference means; false for a text that is not one. A number without a name means no
/// genre.
bool FindReference(std::string_view aText, std::string_view* aName) {
    if (aText == "RX" || aText == "CR") {
        *aName = aText == "RX" ? "Remix" : "Cover";
        return true;
    }
    std::uint64_t number = 0;
    if (aText.size() > 3 || !ezReadDecimal(aText, &number) || number > 255) {
        return false;
    }
    *aName = MusicGenreName(static_cast<unsigned>(number));
    return true;
}

/// Takes a "(17)" from the front (ID3v2.3.0, 4.2.1, TCON).
bool TakeReference(std::string_view& aText, std::string_view* aName) {
    const std::size_t end = aText.find(')');
    if (aText.empty() || aText[0] != '(' || end == std::string_view::npos ||
        !FindReference(aText.substr(1, end - 1), aName)) {
        return false;
    }
    aText.remove_prefix(end + 1);
    return true;
}

constexpr std::string_view kSeparator = ", ";

/// True when a name stands in a list between separators or its ends.
bool IsAmong(std::string_view aList, std::string_view aName) {
    const std::size_t width = kSeparator.size();
    for (std::size_t at = aList.find(aName); at != std::string_view::npos; at = aList.find(aName, at + 1)) {
        const std::size_t end = at + aName.size();
        const bool fStart = at == 0 || (at >= width && aList.substr(at - width, width) == kSeparator);
        if (fStart && (end == aList.size() || aList.substr(end, width) == kSeparator)) {
            return true;
        }
    }
    return false;
}

} // namespace

void AddMusicName(std::string& aList, std::string_view aName) {
    if (!aName.empty() && !IsAmong(aList, aName)) {
        aList.append(aList.empty() ? "" : kSeparator).append(aName);
    }
}

std::string_view MusicGenreName(unsigned aNumber) {
    return aNumber < kNames.size() ? kNames[aNumber] : std::string_view();
}

bool TakeMusicGenre(std::string_view& aText, std::string_view* aName) {
    if (aText.empty()) {
        return false;
    }
    if (TakeReference(aText, aName)) {
        return true;
    }
    aText = ezTrimmed(aText);
    if (aText.substr(0, 2) == "((") {
        aText.remove_prefix(1); // a word that begins with a bracket
    }
    *aName = FindReference(aText, aName) ? *aName : aText;
    aText = {};
    return true;
}
