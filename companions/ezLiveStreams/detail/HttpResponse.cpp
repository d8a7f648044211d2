#include "ezLiveStreams/detail/HttpResponse.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>

namespace {

constexpr std::size_t kMaxFields = 100; ///< of them a few are asked for; a server may send any number

std::string_view Trimmed(std::string_view aText) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = aText.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return aText.substr(first, aText.find_last_not_of(kBlanks) - first + 1);
}

std::string Lower(std::string_view aText) {
    return ezCString(aText).Lower().c_str();
}

std::optional<std::uint64_t> Number(std::string_view aText) {
    std::uint64_t value = 0;
    return ezReadDecimal(aText, &value) ? std::optional<std::uint64_t>(value) : std::nullopt;
}

/// What stands behind "bytes " in a content range.
std::string_view BytesOf(std::string_view aRange) {
    constexpr std::string_view kUnit = "bytes ";
    return aRange.substr(0, kUnit.size()) == kUnit ? aRange.substr(kUnit.size()) : std::string_view();
}

} // namespace

bool ezHttpResponse::AddLine(std::string_view aLine) {
    const std::string_view line = Trimmed(aLine);
    if (line.substr(0, 5) == "HTTP/") {
        const std::size_t blank = std::min(line.find(' '), line.size());
        const std::optional<std::uint64_t> status = Number(Trimmed(line.substr(blank).substr(0, 4)));
        mStatus = status ? static_cast<int>(*status) : 0;
        mFields.clear();
        mfHead = true;
        return false;
    }
    if (line.empty()) {
        const bool fEnd = mfHead;
        mfHead = false;
        return fEnd;
    }
    const std::size_t colon = line.find(':');
    if (mfHead && colon != std::string_view::npos && mFields.size() < kMaxFields) {
        mFields[Lower(line.substr(0, colon))] = Trimmed(line.substr(colon + 1));
    }
    return false;
}

bool ezHttpResponse::IsInterim() const {
    return mStatus < 200 || (mStatus >= 300 && mStatus < 400 && !Get("location").empty());
}

std::string ezHttpResponse::Get(const char* aName) const {
    const auto field = mFields.find(aName);
    return field != mFields.end() ? field->second : std::string();
}

std::optional<std::uint64_t> ezHttpResponse::GetLength() const {
    return Get("transfer-encoding").empty() ? Number(Get("content-length")) : std::nullopt;
}

std::optional<ezContentRange> ezHttpResponse::GetRange() const {
    const std::string field = Get("content-range");
    const std::string_view bytes = BytesOf(field);
    const std::size_t dash = std::min(bytes.find('-'), bytes.size());
    const std::size_t slash = bytes.find('/');
    const std::optional<std::uint64_t> first = Number(bytes.substr(0, dash));
    if (!first || slash == std::string_view::npos) {
        return std::nullopt;
    }
    return ezContentRange{*first, Number(bytes.substr(slash + 1))};
}

std::optional<std::uint64_t> ezHttpResponse::GetSizeOfUnsatisfied() const {
    const std::string field = Get("content-range");
    const std::string_view bytes = BytesOf(field);
    return bytes.substr(0, 2) == "*/" ? Number(bytes.substr(2)) : std::nullopt;
}

std::string ezHttpResponse::GetMimeType() const {
    const std::string field = Get("content-type");
    const std::string type(Trimmed(std::string_view(field).substr(0, field.find(';'))));
    const bool fTells = type.find('/') != std::string::npos && Lower(type) != "application/octet-stream";
    return fTells ? type : std::string();
}
