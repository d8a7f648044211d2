// The door: the heads of an HTTP server's answers. The input is their lines.

#include "fuzz/support/Check.h"
#include "fuzz/support/HeapBound.h"

#include "ezLiveStreams/detail/HttpResponse.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

/// The fields that a file can be told by.
constexpr std::array<const char*, 9> kFields = {"accept-ranges", "content-encoding", "content-length",
                                                "content-range", "content-type",     "etag",
                                                "last-modified", "location",         "transfer-encoding"};

/// What a response may take that keeps one value of each field: it and as much to grow into, what stands
/// around it, and a line that is looked at.
constexpr std::size_t kBoundPerLineByte = 3 * kFields.size();
constexpr std::size_t kBoundBesides = 4096;

char Lower(char aByte) {
    return aByte >= 'A' && aByte <= 'Z' ? static_cast<char>(aByte + 32) : aByte;
}

std::string Lower(std::string_view aText) {
    std::string text(aText);
    for (char& byte : text) {
        byte = Lower(byte);
    }
    return text;
}

bool IsBlank(char aByte) {
    return aByte == ' ' || aByte == '\t' || aByte == '\r';
}

std::string_view Trimmed(std::string_view aText) {
    while (!aText.empty() && IsBlank(aText.front())) {
        aText.remove_prefix(1);
    }
    while (!aText.empty() && IsBlank(aText.back())) {
        aText.remove_suffix(1);
    }
    return aText;
}

/// The lines without their ends.
std::vector<std::string_view> LinesOf(std::string_view anInput) {
    std::vector<std::string_view> lines;
    while (!anInput.empty()) {
        const std::size_t end = std::min(anInput.find('\n'), anInput.size());
        const std::string_view line = anInput.substr(0, end);
        lines.push_back(!line.empty() && line.back() == '\r' ? line.substr(0, end - 1) : line);
        anInput.remove_prefix(std::min(end + 1, anInput.size()));
    }
    return lines;
}

std::optional<std::uint64_t> NumberOf(std::string_view aText) {
    std::uint64_t number = 0;
    const char* end = aText.data() + aText.size();
    const std::from_chars_result result = std::from_chars(aText.data(), end, number);
    return !aText.empty() && result.ec == std::errc() && result.ptr == end
               ? std::optional<std::uint64_t>(number)
               : std::nullopt;
}

/// "bytes WHAT/SIZE"; none where the text is not of that form.
struct Parts {
    std::string_view mWhat;
    std::string_view mSize;
};

std::optional<Parts> PartsOf(std::string_view aRange) {
    const std::size_t slash = aRange.find('/');
    if (Lower(aRange.substr(0, 6)) != "bytes " || slash == std::string_view::npos) {
        return std::nullopt;
    }
    return Parts{aRange.substr(6, slash - 6), aRange.substr(slash + 1)};
}

std::optional<ezContentRange> RangeOf(const Parts& aParts) {
    const std::size_t dash = aParts.mWhat.find('-');
    const std::optional<std::uint64_t> total = NumberOf(aParts.mSize);
    if (dash == std::string_view::npos || (!total && aParts.mSize != "*")) {
        return std::nullopt;
    }
    const std::optional<std::uint64_t> first = NumberOf(aParts.mWhat.substr(0, dash));
    const std::optional<std::uint64_t> last = NumberOf(aParts.mWhat.substr(dash + 1));
    // After the last byte there is a next one, and the total can tell it.
    if (!first || !last || *first > *last || *last >= total.value_or(UINT64_MAX)) {
        return std::nullopt;
    }
    return ezContentRange{*first, *last, total};
}

bool IsSame(const std::optional<ezContentRange>& aLeft, const std::optional<ezContentRange>& aRight) {
    if (!aLeft || !aRight) {
        return !aLeft == !aRight;
    }
    return aLeft->mFirst == aRight->mFirst && aLeft->mLast == aRight->mLast &&
           aLeft->mTotal == aRight->mTotal;
}

void CheckSame(const ezHttpResponse& aLeft, const ezHttpResponse& aRight) {
    FuzzCheck(aLeft.GetStatus() == aRight.GetStatus() && aLeft.IsInterim() == aRight.IsInterim());
    for (const char* field : kFields) {
        FuzzCheck(aLeft.Get(field) == aRight.Get(field));
    }
    FuzzCheck(aLeft.GetLength() == aRight.GetLength() && IsSame(aLeft.GetRange(), aRight.GetRange()));
    FuzzCheck(aLeft.AcceptsRanges() == aRight.AcceptsRanges() && aLeft.IsEncoded() == aRight.IsEncoded());
    FuzzCheck(aLeft.GetTag() == aRight.GetTag() && aLeft.GetMimeType() == aRight.GetMimeType());
    FuzzCheck(aLeft.GetSizeOfUnsatisfied() == aRight.GetSizeOfUnsatisfied());
}

void CheckNumbers(const ezHttpResponse& aResponse) {
    const bool fCounted = aResponse.Get("transfer-encoding").empty();
    FuzzCheck(aResponse.GetLength() == (fCounted ? NumberOf(aResponse.Get("content-length")) : std::nullopt));
    const std::optional<ezContentRange> range = aResponse.GetRange();
    FuzzCheck(!range || (range->mFirst <= range->mLast && range->mLast < UINT64_MAX &&
                         (!range->mTotal || range->mLast < *range->mTotal)));
    const std::string field = aResponse.Get("content-range");
    const std::optional<Parts> parts = PartsOf(field);
    FuzzCheck(IsSame(range, parts ? RangeOf(*parts) : std::nullopt));
    FuzzCheck(aResponse.GetSizeOfUnsatisfied() ==
              (parts && parts->mWhat == "*" ? NumberOf(parts->mSize) : std::nullopt));
}

void CheckTexts(const ezHttpResponse& aResponse) {
    FuzzCheck(aResponse.AcceptsRanges() == (Lower(aResponse.Get("accept-ranges")) == "bytes"));
    const std::string coding = Lower(aResponse.Get("content-encoding"));
    FuzzCheck(aResponse.IsEncoded() == (!coding.empty() && coding != "identity"));
    const std::string tag = aResponse.Get("etag");
    FuzzCheck((tag.rfind("W/", 0) == 0 ? "W/" : "") + aResponse.GetTag() == tag);
    const std::string field = aResponse.Get("content-type");
    const std::string type(Trimmed(std::string_view(field).substr(0, field.find(';'))));
    const bool fTells = type.find('/') != std::string::npos && Lower(type) != "application/octet-stream";
    FuzzCheck(aResponse.GetMimeType() == (fTells ? type : ""));
}

/// What the lines of one answer say.
class Answer {
public:
    /// After the end of a head nothing belongs to it.
    void Take(std::string_view aLine) {
        const std::size_t colon = aLine.find(':');
        if (mfHead && colon != std::string_view::npos) {
            mFields[Lower(aLine.substr(0, colon))] = Trimmed(aLine.substr(colon + 1));
        }
    }

    /// True for the line that ends the head, which it does once.
    bool End() {
        const bool fEnd = mfHead;
        mfHead = false;
        return fEnd;
    }

    void Check(const ezHttpResponse& aResponse) const {
        for (const char* field : kFields) {
            const auto found = mFields.find(field);
            FuzzCheck(aResponse.Get(field) == (found != mFields.end() ? found->second : ""));
        }
        const int status = aResponse.GetStatus();
        FuzzCheck(status >= 0 && status <= 999);
        const bool fMoved = status / 100 == 3 && !aResponse.Get("location").empty();
        FuzzCheck(aResponse.IsInterim() == (fMoved || (status / 100 == 1 && status != 101)));
        CheckNumbers(aResponse);
        CheckTexts(aResponse);
    }

private:
    bool mfHead = true;
    std::map<std::string, std::string> mFields;
};

/// A status of three digits is taken as it is.
void CheckStatus(const ezHttpResponse& aResponse, std::string_view aLine) {
    const std::string_view status = aLine.substr(std::min(aLine.find(' '), aLine.size()));
    const std::string_view digits = status.substr(std::min<std::size_t>(1, status.size()), 3);
    const bool fThree = digits.size() == 3 && digits.find_first_not_of("0123456789") == std::string::npos;
    FuzzCheck(!fThree || NumberOf(digits) == static_cast<std::uint64_t>(aResponse.GetStatus()));
    FuzzCheck(digits.find_first_of("0123456789") != std::string::npos || aResponse.GetStatus() == 0);
}

/// However the lines end, and whatever came before the answer, the response is that of the answer's lines.
void CheckAnswers(const std::vector<std::string_view>& aLines) {
    ezHttpResponse bare;
    ezHttpResponse withLF;
    ezHttpResponse withCRLF;
    ezHttpResponse alone;
    Answer answer;
    for (const std::string_view text : aLines) {
        const std::string_view line = Trimmed(text);
        const bool fBegin = line.substr(0, 5) == "HTTP/";
        if (fBegin) {
            answer = Answer();
            alone = ezHttpResponse();
        }
        const bool fEnd = bare.AddLine(text);
        FuzzCheck(fEnd == (line.empty() && answer.End()));
        FuzzCheck(withLF.AddLine(std::string(text) + "\n") == fEnd);
        FuzzCheck(withCRLF.AddLine(std::string(text) + "\r\n") == fEnd);
        FuzzCheck(alone.AddLine(text) == fEnd);
        if (fBegin) {
            CheckStatus(bare, line);
        } else {
            answer.Take(line);
        }
        if (fBegin || fEnd) {
            answer.Check(bare);
        }
    }
    answer.Check(bare);
    CheckSame(withLF, bare);
    CheckSame(withCRLF, bare);
    CheckSame(alone, bare);
}

/// However many fields there are, and however often, the response takes little.
void CheckMemory(const std::vector<std::string_view>& aLines) {
    std::size_t longest = 0;
    for (const std::string_view line : aLines) {
        longest = std::max(longest, line.size());
    }
    const HeapBound bound(kBoundBesides + kBoundPerLineByte * longest);
    ezHttpResponse response;
    for (const std::string_view line : aLines) {
        response.AddLine(line);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    const std::string input(aData, aData + aSize);
    const std::vector<std::string_view> lines = LinesOf(input);
    CheckAnswers(lines);
    CheckMemory(lines);
    return 0;
}
