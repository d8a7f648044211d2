#include "arguments/Arguments.h"

#include "arguments/Limits.h"
#include "arguments/MapperWords.h"
#include "arguments/Operands.h"

#include "ez/MediaParserTypes.h"
#include "ezFormats/FormatParsers.h"
#include "ezPlatform/text/CString.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

struct NamedNumber {
    std::string_view mName;
    int mNumber;
};

constexpr std::array<NamedNumber, 4> kParseOptions = {{
    {"if-no-extension", kParseOption_ParseWithAllParserIfNoExtension},
    {"if-failed", kParseOption_ParseWithAllParserIfFailed},
    {"everytime", kParseOption_ParseWithAllParserEverytime},
    {"vbr-full", kParseOption_ParseFullFileIfVBR},
}};
constexpr unsigned kAllParseOptions = 15;

/// Lines of a level are written while _ezLog_Level is above it.
constexpr std::array<NamedNumber, 4> kLogLevels = {{{"error", 2}, {"warning", 3}, {"info", 4}, {"debug", 5}}};

struct NamedVerb {
    std::string_view mName;
    Verb mVerb;
};

constexpr std::array<NamedVerb, 8> kVerbs = {{{"parse", Verb::Parse},
                                              {"capabilities", Verb::Capabilities},
                                              {"types", Verb::Types},
                                              {"mapper", Verb::Mapper},
                                              {"playlist", Verb::Playlist},
                                              {"profiles", Verb::Profiles},
                                              {"thumbnail", Verb::Thumbnail},
                                              {"contact-sheet", Verb::ContactSheet}}};

constexpr const char* kUsage = "Usage: ezannounce [OPTIONS] [parse] PATH...\n"
                               "       ezannounce [OPTIONS] capabilities\n"
                               "       ezannounce [OPTIONS] types EXT|MIME...\n"
                               "       ezannounce [OPTIONS] mapper VERB [NAME...]\n"
                               "       ezannounce [OPTIONS] playlist FILE|URL|-\n"
                               "       ezannounce [OPTIONS] profiles [FILE...]\n"
                               "       ezannounce [OPTIONS] thumbnail FILE -o OUT\n"
                               "       ezannounce [OPTIONS] contact-sheet DIR -o OUT\n";

constexpr const char* kFooter =
    "Verbs:\n"
    "  parse PATH...               what each file is and how it is announced; folders are walked,\n"
    "                              - is standard input, and http:// and https:// URLs are fetched\n"
    "  capabilities                the protocolInfo list that a server with this configuration advertises\n"
    "  types EXT|MIME...           look extensions and MIME types up in the media types file\n"
    "  mapper list                 the entries of the media mapper, the operator's table\n"
    "  mapper show NAME...         which entry a file name finds, or why none\n"
    "  mapper profiles             the profiles of the table and what is switched on for them\n"
    "  mapper check [FILE]         what in a table is skipped, dropped or never answers, by line\n"
    "  mapper enable PROFILE...    switch profiles on, and save\n"
    "  mapper disable PROFILE...   switch profiles off, and save\n"
    "  mapper speeds on|off PROFILE...\n"
    "                              switch play speeds of profiles on or off, and save\n"
    "  mapper save                 write the table again\n"
    "  playlist FILE|URL|-         the entries of a playlist and their URLs; - is standard input\n"
    "  profiles [FILE...]          the built-in table of profile rules, or what is wrong with others, by "
    "line\n"
    "  thumbnail FILE -o OUT       a small picture of a file: of itself, the cover in it, or a picture\n"
    "                              beside it\n"
    "  contact-sheet DIR -o OUT    the thumbnails of a folder's media on one JPEG page\n"
    "\n"
    "The first word that is no option is the verb if it names one, else a path; \"--\" ends the options and\n"
    "makes all that follows a path.\n"
    "\n"
    "Exit status: 0 all went well; 1 something could not be read or looked up, or a file that was named\n"
    "itself (not found in a folder) was not recognised, or a check found something, or a playlist has no "
    "such\n"
    "entry, or there is no thumbnail, its cache cannot be used, or a file could not be written; 2 wrong "
    "usage.";

class HelpFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override { return kUsage; }
};

template <typename Table>
auto Find(const Table& aTable, std::string_view aName) {
    return std::find_if(aTable.begin(), aTable.end(),
                        [&](const auto& anItem) { return anItem.mName == aName; });
}

/// The texts of options whose values are looked at here and not by the command-line library.
struct OptionTexts {
    std::optional<std::string> mCTTContext;
    std::optional<std::string> mParseOptions;
    std::optional<std::string> mLogLevel;
    std::optional<std::string> mTimeout;
    std::optional<std::string> mPacketSize;
    PlaylistTexts mPlaylist;
    ThumbnailTexts mThumbnail;
};

void DeclareOptions(CLI::App& anApp, Arguments& anArguments, OptionTexts& aTexts) {
    anApp.set_help_flag("--help", "Show this help and exit");
    anApp.set_version_flag("--version", "ezannounce " EZANNOUNCE_VERSION, "Show the version and exit");
    anApp.add_flag("--json", anArguments.mfJson,
                   "parse, playlist, and mapper list, show, profiles: one JSON object a line");
    anApp.add_flag(
        "--explain", anArguments.mfExplain,
        "parse: where each fact comes from, which parsers were tried, and the subtitles next to films");
    anApp.add_flag("--wide", anArguments.mfWide,
                   "parse: all that is known in one row, however long; not cut to the terminal");
    anApp.add_flag("--mapper", anArguments.mfMapper, "parse, capabilities: with the media mapper in force");
    anApp.add_flag("--no-copy", anArguments.mfNoCopy,
                   "With the media mapper: the first load copies no file, nothing is written");
    anApp.add_flag("--dtcp", anArguments.mfDTCP, "capabilities: in their link-protected form");
    const auto addText = [&](const char* aName, std::optional<std::string>& aText, const char* aValue,
                             const char* aHelp) {
        anApp.add_option(aName, aText, aHelp)->type_name(aValue)->take_last();
    };
    addText("--ctt", aTexts.mCTTContext, "N",
            "Conformance-test context: 0 none, 2 file names always decide, any other: "
            "they decide where no parser does");
    addText("--parse-options", aTexts.mParseOptions, "LIST",
            "parse: if-no-extension, if-failed, everytime, vbr-full, separated by commas, or a number");
    addText("--code-page", anArguments.mCodePage, "NAME",
            "parse: of texts that state no encoding and are no UTF-8 (default windows-1252)");
    addText("--name", anArguments.mName, "NAME", "parse: the name, and so the extension, of standard input");
    addText("--timeout", aTexts.mTimeout, "SECONDS",
            "parse: how long a web server may send nothing (default 30)");
    anApp.add_flag("--es", anArguments.mfElementary,
                   "parse: the operands are elementary streams, and all formats race on them");
    addText("--packet", aTexts.mPacketSize, "SIZE",
            "With --es: bytes that are pushed at once (default 188), or the word odd");
    DeclarePlaylistOptions(anApp, anArguments.mPlaylist, aTexts.mPlaylist);
    DeclareThumbnailOptions(anApp, anArguments.mThumbnail, aTexts.mThumbnail);
    addText("--profiles", anArguments.mProfiles, "FILE",
            "parse, capabilities: the profile rules of this file in place of the built-in ones");
    addText("--config", anArguments.mConfigFolder, "DIR", "Folder of the read-only configuration");
    addText("--state", anArguments.mStateFolder, "DIR", "Folder of the configuration that lies over it");
    addText("--log", aTexts.mLogLevel, "LEVEL", "Messages of the library: error, warning, info or debug");
}

std::string ReadStreamTexts(const OptionTexts& aTexts, Arguments& anArguments) {
    uint32 timeout = 0;
    if (aTexts.mTimeout) {
        if (!ezReadDecimal32(*aTexts.mTimeout, &timeout) || timeout == 0 || timeout > kArguments_MaxTimeout) {
            return "--timeout: not a number from 1 to " + std::to_string(kArguments_MaxTimeout) + ": " +
                   *aTexts.mTimeout;
        }
        anArguments.mTimeout = timeout;
    }
    uint32 packetSize = 0;
    if (aTexts.mPacketSize && *aTexts.mPacketSize != "odd" &&
        (!ezReadDecimal32(*aTexts.mPacketSize, &packetSize) || packetSize == 0 ||
         packetSize > kArguments_MaxPacketSize)) {
        return "--packet: neither odd nor a number from 1 to " + std::to_string(kArguments_MaxPacketSize) +
               ": " + *aTexts.mPacketSize;
    }
    anArguments.mPacketSize = aTexts.mPacketSize ? packetSize : anArguments.mPacketSize;
    return {};
}

std::string ReadTexts(const OptionTexts& aTexts, Arguments& anArguments) {
    uint32 context = 0;
    if (aTexts.mCTTContext && !ezReadDecimal32(*aTexts.mCTTContext, &context)) {
        return "--ctt: not a number: " + *aTexts.mCTTContext;
    }
    anArguments.mCTTContext = context;
    if (aTexts.mParseOptions && !ReadParseOptions(*aTexts.mParseOptions, anArguments.mParseOptions)) {
        return "--parse-options: not a list of options: " + *aTexts.mParseOptions;
    }
    if (anArguments.mCodePage && !IsKnownTextCodePage(anArguments.mCodePage->c_str())) {
        return "--code-page: this system knows none of the name: " + *anArguments.mCodePage;
    }
    if (aTexts.mLogLevel) {
        const auto* level = Find(kLogLevels, *aTexts.mLogLevel);
        if (level == kLogLevels.end()) {
            return "--log: not a level: " + *aTexts.mLogLevel;
        }
        anArguments.mLogLevel = level->mNumber;
    }
    std::string error = ReadStreamTexts(aTexts, anArguments);
    if (error.empty()) {
        error = ReadPlaylistTexts(aTexts.mPlaylist, anArguments.mPlaylist);
    }
    return error.empty() ? ReadThumbnailTexts(aTexts.mThumbnail, anArguments.mThumbnail) : error;
}

/// Takes the verb off the words that are no options; an option among them is one that nobody knows.
std::string TakeWords(std::vector<std::string> aWords, Arguments& anArguments) {
    for (const std::string& word : aWords) {
        if (word.size() > 1 && word[0] == '-') {
            return "unknown option: " + word;
        }
    }
    if (!aWords.empty()) {
        const auto* verb = Find(kVerbs, aWords.front());
        if (verb != kVerbs.end()) {
            anArguments.mVerb = verb->mVerb;
            aWords.erase(aWords.begin());
        }
    }
    std::string error = anArguments.mVerb == Verb::Mapper ? TakeMapperVerb(aWords, anArguments) : "";
    if (!error.empty()) {
        return error;
    }
    anArguments.mOperands.insert(anArguments.mOperands.begin(), aWords.begin(), aWords.end());
    return {};
}

/// What of the options about the media mapper, link protection and profile rules does not go with the verb.
std::string CheckTableOptions(const Arguments& anArguments) {
    const bool fAnnounces = anArguments.mVerb == Verb::Parse || anArguments.mVerb == Verb::Capabilities;
    if (anArguments.mfDTCP && anArguments.mVerb != Verb::Capabilities) {
        return "--dtcp goes with capabilities only";
    }
    if (anArguments.mfMapper && !fAnnounces) {
        return "--mapper goes with parse and capabilities only";
    }
    if (anArguments.mCodePage && anArguments.mVerb != Verb::Parse) {
        return "--code-page goes with parse only";
    }
    if (anArguments.mProfiles && !fAnnounces) {
        return "--profiles goes with parse and capabilities only";
    }
    if (anArguments.mfNoCopy && !anArguments.mfMapper && anArguments.mVerb != Verb::Mapper) {
        return "--no-copy goes with --mapper and with the verb mapper only";
    }
    return {};
}

/// What of the ways to show media does not go with the rest.
std::string CheckWide(const Arguments& anArguments) {
    if (!anArguments.mfWide) {
        return {};
    }
    if (anArguments.mVerb != Verb::Parse) {
        return "--wide goes with parse only";
    }
    const bool fNoTable = anArguments.mfJson || anArguments.mfExplain || anArguments.mfElementary;
    return fNoTable ? "--wide does not go with --json, --explain and --es" : "";
}

/// What of the options about streams does not go with the rest.
std::string CheckStreamOptions(const Arguments& anArguments, const OptionTexts& aTexts) {
    const bool fAny = anArguments.mName || aTexts.mTimeout || anArguments.mfElementary || aTexts.mPacketSize;
    if (fAny && anArguments.mVerb != Verb::Parse) {
        return "--name, --timeout, --es and --packet go with parse only";
    }
    if (anArguments.mVerb != Verb::Parse) {
        return {};
    }
    const auto count =
        std::count(anArguments.mOperands.begin(), anArguments.mOperands.end(), std::string(kStandardInput));
    if (count > 1) {
        return "standard input can be read only once";
    }
    if (anArguments.mName && count == 0) {
        return "--name goes with - (standard input) only";
    }
    if (aTexts.mPacketSize && !anArguments.mfElementary) {
        return "--packet goes with --es only";
    }
    const bool fAnnouncement = anArguments.mfExplain || anArguments.mfMapper || anArguments.mProfiles ||
                               anArguments.mCodePage || aTexts.mParseOptions;
    if (anArguments.mfElementary && fAnnouncement) {
        return "--explain, --mapper, --profiles, --parse-options and --code-page do not go with --es";
    }
    return {};
}

/// What of the options of one verb, or of two, does not go with another.
std::string CheckForeignOptions(const Arguments& anArguments) {
    const Verb verb = anArguments.mVerb;
    const ThumbnailOptions& thumbnail = anArguments.mThumbnail;
    if (anArguments.mPlaylist.HasAny() && verb != Verb::Playlist) {
        return "--index, --at, --next and --serve-lines go with playlist only";
    }
    if (verb == Verb::Thumbnail || verb == Verb::ContactSheet) {
        return {};
    }
    if (thumbnail.HasAnyOfThumbnail()) {
        return "--size, --box, --png and --default go with thumbnail only";
    }
    return thumbnail.HasAnyOfBoth() ? "-o, --fast and --cache go with thumbnail and contact-sheet only" : "";
}

/// What of the operands does not go with the verb.
std::string CheckOperands(const Arguments& anArguments) {
    const std::vector<std::string>& operands = anArguments.mOperands;
    switch (anArguments.mVerb) {
    case Verb::Parse:
        return operands.empty() ? "no path given" : "";
    case Verb::Capabilities:
        return operands.empty() ? "" : "capabilities takes no operand";
    case Verb::Types:
        return operands.empty() ? "no extension or MIME type given" : "";
    case Verb::Thumbnail:
        return CheckThumbnail(anArguments.mThumbnail, operands);
    case Verb::ContactSheet:
        return CheckContactSheet(anArguments.mThumbnail, operands);
    case Verb::Mapper:
    case Verb::Playlist:
    case Verb::Profiles:
        break;
    }
    return {};
}

/// What of the arguments does not go together.
std::string CheckTogether(const Arguments& anArguments, const OptionTexts& aTexts) {
    std::string error = CheckTableOptions(anArguments);
    if (error.empty()) {
        error = CheckWide(anArguments);
    }
    if (error.empty()) {
        error = CheckStreamOptions(anArguments, aTexts);
    }
    if (error.empty()) {
        error = CheckForeignOptions(anArguments);
    }
    if (!error.empty()) {
        return error;
    }
    const bool fExplains = anArguments.mfExplain || aTexts.mParseOptions;
    if (anArguments.mVerb == Verb::Mapper || anArguments.mVerb == Verb::Playlist) {
        if (fExplains) {
            return "--explain and --parse-options go with parse only";
        }
        return anArguments.mVerb == Verb::Mapper
                   ? CheckMapperVerb(anArguments)
                   : CheckPlaylistOptions(anArguments.mPlaylist, anArguments.mOperands.size(),
                                          anArguments.mfJson);
    }
    if (anArguments.mVerb != Verb::Parse) {
        if (anArguments.mfJson || fExplains) {
            return "--json, --explain and --parse-options go with parse only";
        }
    }
    return CheckOperands(anArguments);
}

} // namespace

bool ReadParseOptions(const std::string& aText, int& anOptions) {
    uint32 number = 0;
    if (ezReadDecimal32(aText, &number)) {
        anOptions = static_cast<int>(number);
        return number <= kAllParseOptions;
    }
    anOptions = 0;
    std::string_view rest = aText;
    while (true) {
        const std::size_t comma = rest.find(',');
        const auto* option = Find(kParseOptions, rest.substr(0, comma));
        if (option == kParseOptions.end()) {
            return false;
        }
        anOptions |= option->mNumber;
        if (comma == std::string_view::npos) {
            return true;
        }
        rest.remove_prefix(comma + 1);
    }
}

ArgumentsResult ReadArguments(int anArgCount, const char* const* anArgs, Arguments& anArguments) {
    // What stands after "--" never meets the command-line library, so that no name can be taken for anything
    // else than a name.
    int optionCount = 1;
    while (optionCount < anArgCount && std::string_view(anArgs[optionCount]) != "--") {
        ++optionCount;
    }
    for (int i = optionCount + 1; i < anArgCount; ++i) {
        anArguments.mOperands.emplace_back(anArgs[i]);
    }

    CLI::App app("Tells what media are and how a DLNA media server announces them.", "ezannounce");
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(kFooter);
    app.allow_extras();
    OptionTexts texts;
    DeclareOptions(app, anArguments, texts);

    ArgumentsResult result;
    try {
        app.parse(optionCount, anArgs);
    } catch (const CLI::CallForHelp&) {
        result.mText = app.help();
        return result;
    } catch (const CLI::CallForVersion& version) {
        result.mText = std::string(version.what()) + "\n";
        return result;
    } catch (const CLI::ParseError& error) {
        result.mError = error.what();
    }
    if (result.mError.empty()) {
        result.mError = TakeWords(app.remaining(), anArguments);
    }
    if (result.mError.empty()) {
        result.mError = ReadTexts(texts, anArguments);
    }
    if (result.mError.empty()) {
        result.mError = CheckTogether(anArguments, texts);
    }
    result.mfRun = result.mError.empty();
    result.mStatus = result.mfRun ? kExitSuccess : kExitWrongUsage;
    return result;
}
