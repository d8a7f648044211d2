#include "ezBytes/ASFAttributes.h"

#include "ezBytes/TextBytes.h"

#include <cstddef>
#include <string>

namespace {

/// Reads a text up to its end, a unit of 0; fails where none stands within so many bytes.
std::string ReadUnits(ByteReader& aReader, std::uint32_t aMaxText) {
    std::string units;
    while (aReader.Require(units.size() <= aMaxText)) {
        const std::uint64_t unit = aReader.ReadLittle(2);
        if (unit == 0) { // which a failed reader gives, too
            break;
        }
        units.push_back(static_cast<char>(unit & 0xFF));
        units.push_back(static_cast<char>(unit >> 8));
    }
    return units;
}

} // namespace

std::array<ByteReader, 5> ReadASFDescription(ByteReader aObject) {
    std::array<std::uint64_t, 5> sizes = {};
    for (std::uint64_t& size : sizes) {
        size = aObject.ReadLittle(2);
    }
    const ByteReader none = ByteReader(aObject).Take(0);
    std::array<ByteReader, 5> texts = {none, none, none, none, none};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts[i] = aObject.Take(sizes[i]);
    }
    return texts;
}

std::string_view ASFAttributes::ReadName(ByteReader aName) {
    std::size_t length = 0;
    if (aName.GetLeft() > kASF_MaxName) {
        return {};
    }
    while (aName.GetLeft() >= 2) {
        const std::uint64_t unit = aName.ReadLittle(2);
        if (unit == 0) { // the end, which need not be there; or nothing could be read
            break;
        }
        if (unit > '~') {
            return {};
        }
        mName[length++] = static_cast<char>(unit);
    }
    return {mName.data(), length};
}

bool ASFAttributes::Next(std::string_view* aName, ByteReader* aValue) {
    if (mLeft == 0) {
        return false;
    }
    --mLeft;
    const bool fLibrary = mForm == Form::Library;
    if (fLibrary) {
        mReader.Skip(2); // language
        mStream = static_cast<unsigned>(mReader.ReadLittle(2));
    }
    const std::uint64_t nameSize = mReader.ReadLittle(2);
    ByteReader name = mReader;
    if (!fLibrary) {
        name = mReader.Take(nameSize);
    }
    mType = static_cast<ASFValue>(mReader.ReadLittle(2));
    const std::uint64_t valueSize = mReader.ReadLittle(fLibrary ? 4 : 2);
    if (fLibrary) {
        name = mReader.Take(nameSize);
    }
    *aValue = mReader.Take(valueSize);
    if (mReader.HasFailed()) {
        mLeft = 0;
        return false;
    }
    *aName = ReadName(name);
    return true;
}

std::uint64_t ReadASFNumber(ByteReader aValue) {
    const std::uint64_t size = aValue.GetLeft();
    aValue.Require(size <= 8);
    const std::uint64_t number = aValue.HasFailed() ? 0 : aValue.ReadLittle(static_cast<unsigned>(size));
    return aValue.HasFailed() ? 0 : number;
}

bool ReadASFPicture(ByteReader& aValue, std::uint32_t aMaxText, ASFPicture* aPicture) {
    aPicture->mType = aValue.ReadByte();
    const std::uint32_t size = aValue.ReadLittle32();
    aPicture->mMimeType = CleanText(ReadUnits(aValue, aMaxText), TextEncoding::Utf16Little);
    ReadUnits(aValue, aMaxText); // the description
    aValue = aValue.Take(size);
    return !aValue.HasFailed();
}
