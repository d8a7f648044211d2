#include "detail/MediaMapperName.h"

#include "ez/DLNAMediaMapperEntry.h"
#include "ez/MimeTypesDotIniParser.h"

namespace {

constexpr std::string_view kDTCPPrefix = "DTCP_";

std::string_view WithoutNumber(std::string_view aBase) {
    if (aBase.empty() || aBase.back() != ')') {
        return aBase;
    }
    const std::size_t open = aBase.rfind('(');
    uint32 number = 0;
    if (open == std::string_view::npos ||
        !ezReadDecimal32(aBase.substr(open + 1, aBase.size() - open - 2), &number)) {
        return aBase;
    }
    return aBase.substr(0, open);
}

} // namespace

MediaMapperName::MediaMapperName(std::string_view aName) {
    const std::size_t dot = aName.rfind('.');
    mBase = aName.substr(0, dot);
    mExtension = dot == std::string_view::npos ? std::string_view() : aName.substr(dot + 1);
}

std::string_view MediaMapperName_BaseToLookUp(std::string_view aBase) {
    const std::string_view base = WithoutNumber(aBase);
    const std::size_t prefix = base.find(kDTCPPrefix);
    return prefix == std::string_view::npos ? base : base.substr(prefix + kDTCPPrefix.size());
}

MediaMapperNameKey::MediaMapperNameKey(const DLNAMediaMapperSearchInfo& aSearchInfo)
    : mSearchInfo(aSearchInfo), mName(aSearchInfo.mFileName.View()) {}

bool MediaMapperNameKey::KnowsExtension() const {
    if (!mfKnowsExtension) {
        const ezCString extension = ezCString(mName.mExtension).Lower();
        ezMimeTypesDotIniParser* parser = mSearchInfo.mMimeTypesDotIniParser;
        mfKnowsExtension =
            parser != nullptr && parser->ExtensionToExtensionList(extension).Has(extension.c_str(), false);
    }
    return *mfKnowsExtension;
}

int MediaMapperNameKey::Search(const void* anEntry, const void* aKey) {
    const MediaMapperNameKey& key = *static_cast<const MediaMapperNameKey*>(aKey);
    const MediaMapperName name(static_cast<const DLNAMediaMapperEntry*>(anEntry)->mFileName.View());
    if (key.mName.mExtension.empty() || !ezIsEqualNoCase(name.mBase, key.mName.mBase)) {
        return 0;
    }
    if (ezIsEqualNoCase(name.mExtension, "pcm") && ezIsEqualNoCase(key.mName.mExtension, "wav")) {
        return 0;
    }
    // Whatever the entry's own extension is: any that the media types know finds the base name.
    return key.KnowsExtension() ? 1 : 0;
}
