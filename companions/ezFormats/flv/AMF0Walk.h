#pragma once

#include "ezBytes/ByteReader.h"

#include "ezFormats/flv/FLVLimits.h"

#include "ezPlatform/text/CString.h"

#include <array>
#include <cstddef>
#include <cstdint>

/// A value of a script tag.
struct AMF0Value {
    enum class Kind { Number, Boolean, Text, Container, Other };

    explicit AMF0Value(const ByteReader& aBytes) : mText(aBytes) {}

    ezCString mName;        ///< empty in a list, and where nothing holds the value
    std::size_t mDepth = 0; ///< containers that hold it
    Kind mKind = Kind::Other;
    double mNumber = 0; ///< of Number, as it stands there; of Boolean 0 or 1
    ByteReader mText;   ///< of Text
};

/// Walks over the values of a script tag (Action Message Format 0), those within others after what holds
/// them. How many a container says that it has counts in lists alone: writers of named values state anything.
/// The walk ends with the bytes, and before what is no value.
class AMF0Walk {
public:
    explicit AMF0Walk(const ByteReader& aBytes) : mReader(aBytes) {}

    /// False where there is none left.
    bool Next(AMF0Value* aValue);

private:
    struct Container {
        bool mfNamed = false;
        std::uint32_t mLeft = 0; ///< of a list
    };

    bool LeaveEnded();
    bool TakeName(AMF0Value& aValue);
    void Enter(bool afNamed, std::uint32_t aCount);
    void ReadContent(std::uint8_t aMarker, AMF0Value& aValue);

    ByteReader mReader;
    std::array<Container, kAMF0_MaxDepth> mContainers;
    std::size_t mDepth = 0;
};
