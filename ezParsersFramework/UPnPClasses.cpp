#include "ez/UPnPClasses.h"

#include "ezPlatform/text/Case.h"

namespace {

struct Kind {
    std::string_view mType; ///< of MIME types, in lower case
    const char* mClass;
};

constexpr Kind kKinds[] = {
    {"audio", kezUPnPClass_AudioItem}, {"video", kezUPnPClass_VideoItem}, {"image", kezUPnPClass_ImageItem}};

} // namespace

const char* ezUPnPClass_OfMimeType(std::string_view aMimeType, bool afMatchCase) {
    const std::string_view type = aMimeType.substr(0, aMimeType.find('/'));
    for (const Kind& kind : kKinds) {
        if (afMatchCase ? type == kind.mType : ezIsEqualNoCase(type, kind.mType)) {
            return kind.mClass;
        }
    }
    return "";
}
