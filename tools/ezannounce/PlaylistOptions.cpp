#include "PlaylistOptions.h"

#include "ezPlatform/text/CString.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <arpa/inet.h>

namespace {

constexpr std::size_t kServeLinesWords = 3;
constexpr uint32 kMaximumPort = 65535;

/// It stands in a URL, between two slashes, and in a line.
bool IsIdentifier(const std::string& aText) {
    return !aText.empty() && std::all_of(aText.begin(), aText.end(), [](char aCharacter) {
        return aCharacter > ' ' && aCharacter < '\x7F' && aCharacter != '/';
    });
}

std::string ReadServedAt(const std::vector<std::string>& aWords, ServedAt& aServedAt) {
    in_addr address = {};
    if (aWords.size() != kServeLinesWords || inet_pton(AF_INET, aWords[0].c_str(), &address) != 1) {
        return "--serve-lines: not an IPv4 address: " + aWords[0];
    }
    uint32 port = 0;
    if (!ezReadDecimal32(aWords[1], &port) || port > kMaximumPort) {
        return "--serve-lines: not a port: " + aWords[1];
    }
    if (!IsIdentifier(aWords[2])) {
        return "--serve-lines: not an identifier: " + aWords[2];
    }
    aServedAt.mAddress = address.s_addr;
    aServedAt.mPort = static_cast<std::uint16_t>(port);
    aServedAt.mID = aWords[2];
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
    anApp.add_flag("--next", anOptions.mfNext, "With --index and --at: the entry behind that one");
    anApp
        .add_option("--serve-lines", aTexts.mServeLines,
                    "playlist: the lines of equal length by which a server serves it again")
        ->type_name("IP PORT ID")
        ->type_size(kServeLinesWords)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
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
