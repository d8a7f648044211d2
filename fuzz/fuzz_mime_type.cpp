// The door: a MIME type with its parameters, as a server, a file or a playlist states it. The first line of
// the input is the text; the second is the name of a parameter and the rest its value, which are put after a
// type of our own.

#include "fuzz/support/Check.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/text/MimeTypeInfo.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace {

using Info = ezOwned<ezMimeTypeInfo_Delete>;
using Values = std::map<std::string, std::string>;

std::optional<std::string> ValueOf(const Info& anInfo, const std::string& aName) {
    const char* value = ezMimeTypeInfo_GetPartValueByName(anInfo.get(), aName.c_str());
    FuzzCheck(value ==
              ezMimeTypeInfo_GetPartValueByName(anInfo.get(), aName.c_str())); // borrowed, and the same again
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

std::string Lower(std::string aText) {
    std::transform(aText.begin(), aText.end(), aText.begin(), [](char aByte) {
        return aByte >= 'A' && aByte <= 'Z' ? static_cast<char>(aByte - 'A' + 'a') : aByte;
    });
    return aText;
}

bool IsBlank(char aByte) {
    return aByte == ' ' || (aByte >= '\t' && aByte <= '\r');
}

std::string Trimmed(std::string aText) {
    while (!aText.empty() && IsBlank(aText.back())) {
        aText.pop_back();
    }
    aText.erase(aText.begin(), std::find_if_not(aText.begin(), aText.end(), IsBlank));
    return aText;
}

/// Reads a MIME type byte by byte, by states: a second opinion on what it says.
class Reader {
public:
    explicit Reader(const std::string& aText) {
        bool fEscaped = false;
        for (const char byte : aText) {
            if (byte == ';' && !mfQuoted) {
                EndPart();
                continue;
            }
            mPart += byte;
            if (fEscaped) {
                fEscaped = false;
            } else if (byte == '"') {
                mfQuoted = !mfQuoted;
            } else {
                fEscaped = mfQuoted && byte == '\\';
            }
        }
        EndPart();
    }

    const Values& GetValues() const { return mValues; }

private:
    void EndPart() {
        const std::string part = std::move(mPart);
        mPart.clear();
        if (mfAtType) {
            mfAtType = false;
            const std::string type = Trimmed(part);
            const std::size_t slash = type.find('/');
            mfType = slash != std::string::npos && slash > 0 && slash < type.size() - 1;
            return;
        }
        const std::size_t equals = part.find('=');
        if (!mfType || equals == std::string::npos) {
            return;
        }
        const std::string name = Lower(Trimmed(part.substr(0, equals)));
        const std::optional<std::string> value = WithoutQuotes(Trimmed(part.substr(equals + 1)));
        if (!name.empty() && value) {
            mValues.emplace(name, *value); // the first of a name stays
        }
    }

    static std::optional<std::string> WithoutQuotes(const std::string& aText) {
        if (aText.empty() || aText[0] != '"') {
            return aText;
        }
        std::string value;
        bool fEscaped = false;
        for (std::size_t i = 1; i < aText.size(); ++i) {
            const bool fLast = i + 1 == aText.size();
            if (!fEscaped && aText[i] == '"') {
                return value;
            }
            fEscaped = !fEscaped && aText[i] == '\\' && !fLast;
            value += fEscaped ? "" : std::string(1, aText[i]);
        }
        return std::nullopt;
    }

    bool mfAtType = true;
    bool mfType = false;
    bool mfQuoted = false;
    std::string mPart;
    Values mValues;
};

void CheckText(const std::string& aText, const std::string& aName) {
    const Info info(ezMimeTypeInfo_New(aText.c_str()));
    FuzzCheck(info != nullptr);
    const Values expected = Reader(aText.c_str()).GetValues();
    for (const auto& [name, value] : expected) {
        FuzzCheck(ValueOf(info, name) == value);
    }
    const auto found = expected.find(Lower(Trimmed(aName).c_str()));
    const std::optional<std::string> asked = ValueOf(info, Trimmed(aName));
    FuzzCheck(asked.has_value() == (found != expected.end()));
    FuzzCheck(!asked || *asked == found->second);
}

/// What is put into quotes comes out of them, and what follows is still read.
void CheckQuoting(const std::string& aName, const std::string& aValue) {
    std::string name;
    std::copy_if(aName.begin(), aName.end(), std::back_inserter(name),
                 [](unsigned char aByte) { return std::isalnum(aByte) != 0; });
    std::string quoted;
    std::string value;
    for (const char byte : aValue) {
        if (byte != '\0') {
            quoted += byte == '"' || byte == '\\' ? std::string("\\") + byte : std::string(1, byte);
            value += byte;
        }
    }
    name.insert(0, 1, 'x');
    const Info info(ezMimeTypeInfo_New(("a/b; " + name + "=\"" + quoted + "\" ;last=1").c_str()));
    FuzzCheck(ValueOf(info, Lower(name)) == value);
    FuzzCheck(ValueOf(info, "last") == "1");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    std::string input(aSize, '\0');
    std::copy_n(aData, aSize, input.begin());
    const std::size_t endOfText = std::min(input.find('\n'), input.size());
    const std::size_t endOfName = std::min(input.find('\n', endOfText + 1), input.size());
    const std::string name =
        endOfText < input.size() ? input.substr(endOfText + 1, endOfName - endOfText - 1) : std::string();

    CheckText(input.substr(0, endOfText), name);
    CheckQuoting(name, endOfName < input.size() ? input.substr(endOfName + 1) : std::string());

    FuzzCheck(ezMimeTypeInfo_GetPartValueByName(nullptr, name.c_str()) == nullptr);
    ezMimeTypeInfo_Delete(nullptr);
    return 0;
}
