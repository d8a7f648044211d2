#pragma once

#include "ezBytes/ByteReader.h"
#include "ezBytes/Limits.h"

#include "ezPlatform/text/CString.h"

#include <array>
#include <cstdint>
#include <string_view>

/// What an ASF file says about itself in names and values (Advanced Systems Format 1.2, 3.10, 3.11, 4.7 and
/// 4.8). Texts are in UTF-16, the low byte first, and need not have an end.

/// Content Description: a reader each of title, author, copyright, description and rating. Those that are not
/// there are empty.
std::array<ByteReader, 5> ReadASFDescription(ByteReader aObject);

/// What kind of value an attribute has.
enum class ASFValue : std::uint32_t {
    Text = 0,
    Bytes = 1,
    Bool = 2,
    Number32 = 3,
    Number64 = 4,
    Number16 = 5,
    Guid = 6,
};

/// The attributes of an object, one after the other.
class ASFAttributes {
public:
    enum class Form {
        Content, ///< Extended Content Description
        Library, ///< Metadata, and Metadata Library
    };

    /// @param aReader  stands at the start of the object's content
    ASFAttributes(ByteReader aReader, Form aForm)
        : mReader(aReader), mLeft(mReader.ReadLittle(2)), mForm(aForm) {}

    /// The next one: its name, valid until the next call, and a reader of its value. The name is empty where
    /// it has more than kASF_MaxName bytes, or other letters than those of ASCII, as no known one has. False
    /// after the last one, and where one does not end in the object.
    bool Next(std::string_view* aName, ByteReader* aValue);

    /// Of the last one.
    /// @{
    ASFValue GetType() const { return mType; }
    unsigned GetStream() const { return mStream; } ///< the number of that it is about; 0: the whole file
    /// @}

private:
    std::string_view ReadName(ByteReader aName);

    ByteReader mReader;
    std::uint64_t mLeft;
    Form mForm;
    std::array<char, kASF_MaxName / 2> mName = {};
    ASFValue mType = ASFValue::Text;
    unsigned mStream = 0;
};

/// The number that a value of a bool or number is, whose bytes are all that is left.
std::uint64_t ReadASFNumber(ByteReader aValue);

/// What the value of "WM/Picture" says before the picture's data.
struct ASFPicture {
    std::uint32_t mType = 0; ///< kPictureType_...
    ezCString mMimeType;     ///< as it is stated
};

/// Reads it, up to the picture's data, which is what aValue has left then. False where that does not end in
/// aValue, or a text before it is of more than aMaxText bytes.
bool ReadASFPicture(ByteReader& aValue, std::uint32_t aMaxText, ASFPicture* aPicture);
