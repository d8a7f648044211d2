#include "ezLiveStreams/detail/HttpResponse.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <array>

namespace {

/// The fields that are asked for.
constexpr std::array<std::string_view, 9> kFields = {
    "accept-ranges", "content-encoding", "content-length", "content-range",    "content-type",
    "etag",          "last-modified",    "location",       "transfer-encoding"};

std::string_view Trimmed(std::string_view aText) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = aText.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return aText.substr(first, aText.find_last_not_of(kBlanks) - first + 1);
}

std::string Lower(std::string_view aText) {
    return std::string(ezCString(aText).Lower().View()); // a NUL in it does not end it
}

std::optional<std::uint64_t> Number(std::string_view aText) {
    std::uint64_t value = 0;
    return ezReadDecimal(aText, &value) ? std::optional<std::uint64_t>(value) : std::nullopt;
}

/// What follows "bytes " in a content range.
std::string_view BytesOf(std::string_view aRange) {
    constexpr std::string_view kUnit = "bytes ";
    return ezStartsWithNoCase(aRange, kUnit) ? aRange.substr(kUnit.size()) : std::string_view();
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
    if (mfHead && colon != std::string_view::npos) {
        const std::string name = Lower(line.substr(0, colon));
        if (std::find(kFields.begin(), kFields.end(), name) != kFields.end()) {
            mFields[name] = Trimmed(line.substr(colon + 1));
        }
    }
    return false;
}

bool ezHttpResponse::IsInterim() const {
    return (mStatus >= 100 && mStatus < 200 && mStatus != 101) ||
           (mStatus >= 300 && mStatus < 400 && !Get("location").empty());
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
    if (slash == std::string_view::npos || dash > slash) {
        return std::nullopt;
    }
    const std::optional<std::uint64_t> first = Number(bytes.substr(0, dash));
    const std::optional<std::uint64_t> last = Number(bytes.substr(dash + 1, slash - dash - 1));
    const std::string_view size = bytes.substr(slash + 1);
    const std::optional<std::uint64_t> total = Number(size);
    const bool fOrdered = first && last && *first <= *last && *last < UINT64_MAX;
    if (!fOrdered || (total ? *last >= *total : size != "*")) {
        return std::nullopt;
    }
    return ezContentRange{*first, *last, total};
}

bool ezHttpResponse::AcceptsRanges() const {
    return Lower(Get("accept-ranges")) == "bytes";
}

bool ezHttpResponse::IsEncoded() const {
    const std::string coding = Lower(Get("content-encoding"));
    return !coding.empty() && coding != "identity";
}

std::string ezHttpResponse::GetTag() const {
    const std::string tag = Get("etag");
    return tag.substr(0, 2) == "W/" ? tag.substr(2) : tag;
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
