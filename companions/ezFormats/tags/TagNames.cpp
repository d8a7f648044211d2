#include "ezFormats/tags/TagNames.h"

#include "ezPlatform/text/Case.h"

namespace {

struct LettersRow {
    constexpr LettersRow(const char* aName, MusicField aField, bool afSecond = false)
        : mLetters(TagLettersOf(aName)), mField{aField, afSecond} {}

    std::uint32_t mLetters;
    TagField mField;
};

struct WordRow {
    constexpr WordRow(std::string_view aWord, MusicField aField, bool afSecond = false)
        : mWord(aWord), mField{aField, afSecond} {}

    std::string_view mWord;
    TagField mField;
};

/// The names of one vocabulary.
template <class Row>
struct Names {
    template <std::size_t Count>
    constexpr Names(const Row (&aRows)[Count]) : mBegin(aRows), mEnd(aRows + Count) {} // implicit: a list

    const Row* mBegin;
    const Row* mEnd;
};

constexpr bool kSecond = true;

constexpr LettersRow kID3[] = {
    {"TIT2", MusicField::Title},      {"TPE1", MusicField::Creator},     {"TALB", MusicField::Album},
    {"TCON", MusicField::Genre},      {"TPE2", MusicField::AlbumArtist}, {"TCOM", MusicField::Composer},
    {"TRCK", MusicField::Track},      {"TPOS", MusicField::Disc},        {"TCMP", MusicField::Compilation},
    {"TLAN", MusicField::Languages},  {"TT2", MusicField::Title},        {"TP1", MusicField::Creator},
    {"TAL", MusicField::Album},       {"TCO", MusicField::Genre},        {"TP2", MusicField::AlbumArtist},
    {"TCM", MusicField::Composer},    {"TRK", MusicField::Track},        {"TPA", MusicField::Disc},
    {"TCP", MusicField::Compilation}, {"TLA", MusicField::Languages}};

constexpr LettersRow kLyrics3[] = {
    {"ETT", MusicField::Title}, {"EAR", MusicField::Creator}, {"EAL", MusicField::Album}};

constexpr LettersRow kRIFF[] = {
    {"INAM", MusicField::Title}, {"IART", MusicField::Creator},        {"IPRD", MusicField::Album},
    {"IGNR", MusicField::Genre}, {"IMUS", MusicField::Composer},       {"ICRD", MusicField::Date},
    {"IPRT", MusicField::Track}, {"ITRK", MusicField::Track, kSecond}, {"ILNG", MusicField::Languages}};

constexpr LettersRow kAIFF[] = {{"NAME", MusicField::Title}, {"AUTH", MusicField::Creator}};

constexpr LettersRow kDSDIFF[] = {{"DITI", MusicField::Title}, {"DIAR", MusicField::Creator}};

// 251, octal, is the copyright sign of Mac Roman.
constexpr LettersRow kISOItem[] = {{"\251nam", MusicField::Title},    {"\251ART", MusicField::Creator},
                                   {"\251alb", MusicField::Album},    {"\251gen", MusicField::Genre},
                                   {"aART", MusicField::AlbumArtist}, {"\251wrt", MusicField::Composer},
                                   {"\251day", MusicField::Date}};

constexpr LettersRow kISOAsset[] = {{"titl", MusicField::Title},
                                    {"perf", MusicField::Creator},
                                    {"auth", MusicField::Creator, kSecond},
                                    {"albm", MusicField::Album},
                                    {"gnre", MusicField::Genre}};

constexpr LettersRow kISOPhrase[] = {{"\251nam", MusicField::Title},
                                     {"\251ART", MusicField::Creator},
                                     {"\251aut", MusicField::Creator, kSecond},
                                     {"\251alb", MusicField::Album},
                                     {"\251gen", MusicField::Genre},
                                     {"\251wrt", MusicField::Composer},
                                     {"\251com", MusicField::Composer, kSecond},
                                     {"\251day", MusicField::Date}};

constexpr WordRow kAPE[] = {{"title", MusicField::Title},
                            {"artist", MusicField::Creator},
                            {"album", MusicField::Album},
                            {"genre", MusicField::Genre},
                            {"album artist", MusicField::AlbumArtist},
                            {"albumartist", MusicField::AlbumArtist},
                            {"composer", MusicField::Composer},
                            {"year", MusicField::Date},
                            {"date", MusicField::Date}, // of converters that know no keys of this tag
                            {"track", MusicField::Track},
                            {"disc", MusicField::Disc},
                            {"discnumber", MusicField::Disc},
                            {"compilation", MusicField::Compilation},
                            {"language", MusicField::Languages}};

constexpr WordRow kVorbis[] = {{"title", MusicField::Title},
                               {"artist", MusicField::Creator},
                               {"performer", MusicField::Creator, kSecond},
                               {"album", MusicField::Album},
                               {"genre", MusicField::Genre},
                               {"albumartist", MusicField::AlbumArtist},
                               {"album artist", MusicField::AlbumArtist, kSecond},
                               {"composer", MusicField::Composer},
                               {"date", MusicField::Date},
                               {"year", MusicField::Date, kSecond},
                               {"tracknumber", MusicField::Track},
                               {"track", MusicField::Track, kSecond},
                               {"discnumber", MusicField::Disc},
                               {"disc", MusicField::Disc, kSecond},
                               {"compilation", MusicField::Compilation},
                               {"language", MusicField::Languages}};

constexpr WordRow kASF[] = {{"Title", MusicField::Title},
                            {"Author", MusicField::Creator},
                            {"WM/AlbumTitle", MusicField::Album},
                            {"WM/Genre", MusicField::Genre},
                            {"WM/AlbumArtist", MusicField::AlbumArtist},
                            {"WM/Composer", MusicField::Composer},
                            {"WM/Year", MusicField::Date},
                            {"date", MusicField::Date, kSecond},
                            {"WM/MediaOriginalBroadcastDateTime", MusicField::Date, kSecond},
                            {"WM/TrackNumber", MusicField::Track},
                            {"WM/Track", MusicField::Track, kSecond}, // counts from 0
                            {"WM/PartOfSet", MusicField::Disc},
                            {"WM/IsCompilation", MusicField::Compilation},
                            {"WM/Language", MusicField::Languages}};

constexpr WordRow kCAF[] = {{"title", MusicField::Title},        {"artist", MusicField::Creator},
                            {"album", MusicField::Album},        {"genre", MusicField::Genre},
                            {"composer", MusicField::Composer},  {"recorded date", MusicField::Date},
                            {"year", MusicField::Date, kSecond}, {"track number", MusicField::Track}};

constexpr WordRow kQuickTimeItem[] = {{"title", MusicField::Title},
                                      {"artist", MusicField::Creator},
                                      {"author", MusicField::Creator, kSecond},
                                      {"album", MusicField::Album},
                                      {"genre", MusicField::Genre},
                                      {"creationdate", MusicField::Date},
                                      {"year", MusicField::Date, kSecond}};

// The official names, and after them those of writers of flat tags.
constexpr WordRow kMatroska[] = {{"TITLE", MusicField::Title},
                                 {"ARTIST", MusicField::Creator},
                                 {"LEAD_PERFORMER", MusicField::Creator, kSecond},
                                 {"PERFORMER", MusicField::Creator, kSecond},
                                 {"GENRE", MusicField::Genre},
                                 {"COMPOSER", MusicField::Composer},
                                 {"DATE_RELEASED", MusicField::Date},
                                 {"DATE_RECORDED", MusicField::Date, kSecond},
                                 {"PART_NUMBER", MusicField::Track},
                                 {"ALBUM", MusicField::Album},
                                 {"ALBUM_ARTIST", MusicField::AlbumArtist},
                                 {"ALBUMARTIST", MusicField::AlbumArtist, kSecond},
                                 {"DATE", MusicField::Date, kSecond},
                                 {"YEAR", MusicField::Date, kSecond},
                                 {"TRACK", MusicField::Track, kSecond},
                                 {"TRACKNUMBER", MusicField::Track, kSecond},
                                 {"DISC", MusicField::Disc},
                                 {"DISCNUMBER", MusicField::Disc, kSecond},
                                 {"COMPILATION", MusicField::Compilation}};

// What recorders of live streams put there, and what converters keep of the tags of other files.
constexpr WordRow kFlash[] = {{"title", MusicField::Title},
                              {"artist", MusicField::Creator},
                              {"author", MusicField::Creator, kSecond},
                              {"album", MusicField::Album},
                              {"album_artist", MusicField::AlbumArtist},
                              {"composer", MusicField::Composer},
                              {"genre", MusicField::Genre},
                              {"date", MusicField::Date},
                              {"creation_time", MusicField::Date, kSecond},
                              {"creationdate", MusicField::Date, kSecond},
                              {"track", MusicField::Track},
                              {"disc", MusicField::Disc},
                              {"compilation", MusicField::Compilation}};

/// In the order of TagLetters and TagWords.
constexpr Names<LettersRow> kLetters[] = {kID3,    kLyrics3, kRIFF,     kAIFF,
                                          kDSDIFF, kISOItem, kISOAsset, kISOPhrase};
constexpr Names<WordRow> kWords[] = {kAPE, kVorbis, kASF, kCAF, kQuickTimeItem, kMatroska, kFlash};

} // namespace

const TagField* FindTagField(TagLetters aVocabulary, std::uint32_t aLetters) {
    const Names<LettersRow>& names = kLetters[static_cast<std::size_t>(aVocabulary)];
    for (const LettersRow* row = names.mBegin; row != names.mEnd; ++row) {
        if (row->mLetters == aLetters) {
            return &row->mField;
        }
    }
    return nullptr;
}

const TagField* FindTagField(TagWords aVocabulary, std::string_view aWord) {
    const Names<WordRow>& names = kWords[static_cast<std::size_t>(aVocabulary)];
    for (const WordRow* row = names.mBegin; row != names.mEnd; ++row) {
        if (ezIsEqualNoCase(row->mWord, aWord)) {
            return &row->mField;
        }
    }
    return nullptr;
}
