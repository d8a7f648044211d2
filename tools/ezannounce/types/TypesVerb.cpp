#include "types/TypesVerb.h"

#include "arguments/Arguments.h"
#include "host/Host.h"
#include "output/Console.h"
#include "output/SafeText.h"

#include "ez/ExtensionMimeTypeMatcher.h"
#include "ezPlatform/containers/Items.h"

#include <algorithm>

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;

std::string Joined(const ezPtrList* aTexts) {
    std::string joined;
    for (const char* text : ezItems<const char>(aTexts)) {
        joined += joined.empty() ? "" : ", ";
        joined += text;
    }
    return joined.empty() ? "-" : joined;
}

std::string Joined(const ezStringList& aTexts) {
    std::string joined;
    for (std::size_t i = 0; i < aTexts.GetCount(); ++i) {
        joined += joined.empty() ? "" : ", ";
        joined += aTexts.GetAt(i).c_str();
    }
    return joined.empty() ? "-" : joined;
}

std::string Line(const char* anIndent, const std::string& aLabel, const std::string& aText) {
    constexpr std::size_t kLabelWidth = 14;
    std::string label = aLabel;
    label.resize(std::max(label.size(), kLabelWidth), ' ');
    return anIndent + label + ForTerminal(aText) + "\n";
}

std::string BlockOf(Entry* anEntry, bool afExcluded) {
    std::string text = Line("  ", "entry",
                            *ezItems<const char>(anEntry->mTypes).begin() +
                                std::string(afExcluded ? " (excluded: not published)" : ""));
    text += Line("    ", "extensions", Joined(anEntry->mExtensions));
    text += Line("    ", "MIME types", Joined(anEntry->mMimeTypes));
    text += Line("    ", "classes", Joined(anEntry->mUPnPClasses));
    text += Line("    ", "parser types", Joined(anEntry->mTypes));
    return text;
}

/// What the table says about one word; "" when it does not know it.
std::string Describe(ExtensionMimeTypeMatcher& aMatcher, const std::string& aWord) {
    const bool fMimeType = aWord.find('/') != std::string::npos;
    // People write ".mp3" as well as "mp3"; the table has no dot.
    const ezCString asked(!fMimeType && aWord[0] == '.' ? aWord.substr(1) : aWord);
    const ezPtrList* entries =
        fMimeType ? aMatcher.EntriesFromMimeType(asked) : aMatcher.EntriesFromExtension(asked);
    if (ezPtrList_GetCount(entries) == 0) {
        return {};
    }
    std::string text = ForTerminal(aWord) + "\n";
    if (fMimeType) {
        text += Line("  ", "extension", aMatcher.MimeTypeToFileExtension(asked).c_str());
        text += Line("  ", "of entries", Joined(aMatcher.MimeTypeToFileExtensionList(asked)));
    } else {
        text += Line("  ", "MIME type", aMatcher.FileExtensionToMimeType(asked).c_str());
        text += Line("  ", "siblings", Joined(aMatcher.ExtensionToExtensionList(asked.Lower())));
    }
    for (Entry* entry : ezItems<Entry>(entries)) {
        text += BlockOf(entry, aMatcher.IsExcludedEntry(entry));
    }
    return text;
}

} // namespace

int RunTypes(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    int status = kExitSuccess;
    for (const std::string& word : anArguments.mOperands) {
        const std::string answer = Describe(aHost.Get().GetMediaTypes(), word);
        if (answer.empty()) {
            aConsole.Error(word, "not in the media types file");
            status = kExitSomeFailed;
        }
        aConsole.Print(answer);
    }
    return status;
}
