#include "ez/ExtensionMimeTypeMatcherEntry.h"

#include "detail/FirstString.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/containers/PtrList.h"

#include <array>
#include <string_view>

namespace {

ezPtrList* NewStringList() {
    ezPtrList* list = ezPtrList_New();
    ezPtrList_SetFreeFunc(list, ezPtrList_DefaultFreeFunc);
    return list;
}

/// Appends the pieces of a text, trimmed, without the empty ones.
void SplitAndStrip(ezPtrList* aDest, const ezCString& aSrc, char aSeparator, bool afLower) {
    std::string_view rest = aSrc.View();
    while (!rest.empty()) {
        const std::size_t end = rest.find(aSeparator);
        const ezCString piece(ezTrimmed(rest.substr(0, end)));
        if (!piece.IsEmpty()) {
            ezPtrList_Append(aDest, ezStrdup(afLower ? piece.Lower().c_str() : piece.c_str()));
        }
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
}

} // namespace

void ExtensionMimeTypeMatcherEntry::Init() {
    mExtensions = NewStringList();
    mMimeTypes = NewStringList();
    mUPnPClasses = NewStringList();
    mTypes = NewStringList();
}

ExtensionMimeTypeMatcherEntry::ExtensionMimeTypeMatcherEntry(const ezCString& aKey,
                                                             const ezCString& anEntry) {
    Init();
    ezPtrList_Append(mTypes, ezStrdup(aKey.c_str()));

    const ezOwned<ezPtrList_Delete> fields(NewStringList());
    // Empty fields are dropped, so what follows them moves up.
    SplitAndStrip(fields.get(), anEntry, '@', false);
    struct Field {
        ezPtrList* mDest;
        bool mfLower;
    };
    const std::array<Field, 4> destinations = {
        {{mExtensions, true}, {mMimeTypes, true}, {mUPnPClasses, false}, {mTypes, true}}};
    for (std::size_t i = 0; i < destinations.size() && i < ezPtrList_GetCount(fields.get()); ++i) {
        const ezCString text(static_cast<const char*>(*ezPtrList_GetAt(fields.get(), i)));
        SplitAndStrip(destinations[i].mDest, text, ',', destinations[i].mfLower);
    }
}

bool ExtensionMimeTypeMatcherEntry::IsOfClass(const char* aClass) const {
    const char* const first = FirstString(mUPnPClasses);
    const std::string_view asked(aClass);
    const std::string_view own(first != nullptr ? first : "");
    return !asked.empty() && own.substr(0, asked.size()) == asked &&
           (own.size() == asked.size() || own[asked.size()] == '.');
}

ExtensionMimeTypeMatcherEntry::~ExtensionMimeTypeMatcherEntry() {
    ezPtrList_Delete(mExtensions);
    ezPtrList_Delete(mMimeTypes);
    ezPtrList_Delete(mUPnPClasses);
    ezPtrList_Delete(mTypes);
}
