#include "arguments/PlaylistOptions.h"

#include "ezPlatform/text/CString.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>

namespace {

constexpr int kServeLinesWords = 3;
constexpr uint32 kMaximumPort = 65535;

/// It stands as it is in the path of a URL, between two slashes, and in a line.
bool IsIdentifier(const std::string& aText) {
    return !aText.empty() && std::all_of(aText.begin(), aText.end(), [](char aCharacter) {
        return aCharacter > ' ' && aCharacter < '\x7F' && std::strchr("/?#%", aCharacter) == nullptr;
    });
}

/// Of words that were given more than once the last three count.
std::string ReadServedAt(const std::vector<std::string>& aWords, ServedAt& aServedAt) {
    if (aWords.size() % kServeLinesWords != 0) {
        return "--serve-lines takes three words: IP PORT ID";
    }
    const std::string& host = aWords[aWords.size() - 3];
    const std::string& portText = aWords[aWords.size() - 2];
    const std::string& id = aWords[aWords.size() - 1];
    in_addr address = {};
    if (inet_pton(AF_INET, host.c_str(), &address) != 1) {
        return "--serve-lines: not an IPv4 address: " + host;
    }
    uint32 port = 0;
    if (!ezReadDecimal32(portText, &port) || port > kMaximumPort) {
        return "--serve-lines: not a port: " + portText;
    }
    if (!IsIdentifier(id)) {
        return "--serve-lines: not an identifier: " + id;
    }
    aServedAt.mAddress = address.s_addr;
    aServedAt.mPort = static_cast<std::uint16_t>(port);
    aServedAt.mID = id;
    return {};
}

} // namespace

void DeclarePlaylistOptions(CLI::App& anApp, PlaylistOptions& anOptions, PlaylistTexts& aTexts) {
    const auto addText = [&](const char* aName, std::optional<std::string>& aText, const char* aValue,
                             const char* aHelp) {
        anApp.add_option(aName, aText, aHelp)->type_name(aValue)->take_last();
    };
    addText("--index", aTexts.mIndex, "N", "playlist: only the entry of this index, counted from 0");
    addText("--at", aTexts.mAt, "POS", "playlist: only the entry that begins at this byte");
    anApp.add_flag("--next", anOptions.mfNext, "With --index and --at: the entry after that one");
    anApp
        .add_option("--serve-lines", aTexts.mServeLines,
                    "playlist: the lines of equal length by which a server serves it again")
        ->type_name("IP PORT ID")
        // Fewer are taken, too, so that neither an option nor the playlist is taken for one of them
        // unnoticed.
        ->expected(0, kServeLinesWords)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

std::string ReadPlaylistTexts(const PlaylistTexts& aTexts, PlaylistOptions& anOptions) {
    uint32 index = 0;
    if (aTexts.mIndex && !ezReadDecimal32(*aTexts.mIndex, &index)) {
        return "--index: not a number: " + *aTexts.mIndex;
    }
    std::uint64_t position = 0;
    if (aTexts.mAt && !ezReadDecimal(*aTexts.mAt, &position)) {
        return "--at: not a number: " + *aTexts.mAt;
    }
    if (aTexts.mIndex) {
        anOptions.mIndex = index;
    }
    if (aTexts.mAt) {
        anOptions.mAt = position;
    }
    return aTexts.mServeLines.empty() ? std::string()
                                      : ReadServedAt(aTexts.mServeLines, anOptions.mServedAt.emplace());
}

std::string CheckPlaylistOptions(const PlaylistOptions& anOptions, std::size_t anOperandCount, bool afJson) {
    if (anOperandCount != 1) {
        return anOperandCount == 0 ? "playlist: no playlist given" : "playlist takes one operand";
    }
    if (anOptions.mIndex && anOptions.mAt) {
        return "--index and --at do not go together";
    }
    if (anOptions.mfNext && !anOptions.mIndex && !anOptions.mAt) {
        return "--next goes with --index or --at only";
    }
    if (anOptions.mServedAt && (anOptions.mIndex || anOptions.mAt || afJson)) {
        return "--serve-lines does not go with --index, --at and --json";
    }
    return {};
}
