#include "mapper/MapperLookup.h"

#include "mapper/MapperTable.h"

#include <string_view>

namespace {

constexpr std::string_view kDTCPPrefix = "DTCP_";

ezCString ExtensionOf(const ezCString& aFileName) {
    const bool fDot = aFileName.View().find('.') != std::string_view::npos;
    return fDot ? aFileName.AfterLast('.').Lower() : ezCString();
}

} // namespace

std::string SearchedBaseName(const ezCString& aFileName) {
    const ezCString whole = aFileName.BeforeLast('.');
    std::string_view base = whole.View();
    const std::size_t open = base.rfind('(');
    uint32 number = 0;
    if (!base.empty() && base.back() == ')' && open != std::string_view::npos &&
        ezReadDecimal32(base.substr(open + 1, base.size() - open - 2), &number)) {
        base = base.substr(0, open);
    }
    const std::size_t prefix = base.find(kDTCPPrefix);
    if (prefix != std::string_view::npos) {
        base.remove_prefix(prefix + kDTCPPrefix.size());
    }
    return std::string(ezCString(base).Lower().View());
}

NoEntry WhyNoEntry(DLNAMediaMapper& aMapper, const ezCString& aFileName) {
    const ezCString extension = ExtensionOf(aFileName);
    if (extension.IsEmpty()) {
        return NoEntry::NoExtension;
    }
    const std::string base = SearchedBaseName(aFileName);
    bool fKnown = false;
    bool fAllPcm = true;
    for (const DLNAMediaMapperEntry* entry : EntriesOf(aMapper)) {
        if (entry->mFileName.BeforeLast('.').Lower().View() == base) {
            fKnown = true;
            fAllPcm = fAllPcm && ExtensionOf(entry->mFileName) == "pcm";
        }
    }
    if (!fKnown) {
        return NoEntry::UnknownBaseName;
    }
    return fAllPcm && extension == "wav" ? NoEntry::PcmForWav : NoEntry::UnknownExtension;
}

const char* CodeOf(NoEntry aReason) {
    switch (aReason) {
    case NoEntry::NoExtension:
        return "no-extension";
    case NoEntry::UnknownBaseName:
        return "unknown-base-name";
    case NoEntry::PcmForWav:
        return "pcm-for-wav";
    case NoEntry::UnknownExtension:
        break;
    }
    return "unknown-extension";
}

std::string InWords(NoEntry aReason, const ezCString& aFileName) {
    switch (aReason) {
    case NoEntry::NoExtension:
        return "finds no entry: a name without an extension finds none";
    case NoEntry::UnknownBaseName:
        return "finds no entry: none has the base name '" + SearchedBaseName(aFileName) + "'";
    case NoEntry::PcmForWav:
        return "finds no entry: a .wav does not find a .pcm";
    case NoEntry::UnknownExtension:
        break;
    }
    return std::string("finds no entry: the media types file does not publish the extension '") +
           ExtensionOf(aFileName).c_str() + "'";
}
