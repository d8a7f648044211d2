#include "bench/TypesTables.h"

namespace {

constexpr std::size_t kLargest = 100000;
constexpr const char* kFileName = "types.ini";

std::string Number(std::size_t aNumber) {
    return std::to_string(kLargest + aNumber);
}

std::string TableText(std::size_t aSize) {
    std::string text = "[MimeTypes]\n";
    for (std::size_t i = 0; i < aSize; ++i) {
        text += "k" + Number(i) + "=" + TypesTables_Extension(i) + ",f" + Number(i) + "@" +
                TypesTables_MimeType(i) + ",audio/x-type-" + Number(i) + "@item.videoItem@other\n";
    }
    return text;
}

} // namespace

std::string TypesTables_Extension(std::size_t aKey) {
    return "e" + Number(aKey);
}

std::string TypesTables_MimeType(std::size_t aKey) {
    return "video/x-type-" + Number(aKey);
}

void TypesTables::Write(std::size_t aSize) const {
    mFolder.Write(std::to_string(aSize) + "/" + kFileName, TableText(aSize));
}

std::unique_ptr<ExtensionMimeTypeMatcher> TypesTables::Load(std::size_t aSize) const {
    const ezCString folder(mFolder.Path(std::to_string(aSize)).c_str());
    auto matcher = std::make_unique<ExtensionMimeTypeMatcher>(folder, folder, kFileName);
    matcher->Load();
    return matcher;
}
