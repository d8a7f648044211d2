#pragma once

#include <string_view>

/// The items of a text, separated by ",", as they stand: empty ones too, and one of an empty text.
class ListItems {
public:
    constexpr explicit ListItems(std::string_view aText) : mRest(aText) {}

    /// False after the last one.
    constexpr bool Next(std::string_view* anItem) {
        if (mfDone) {
            return false;
        }
        const std::string_view::size_type comma = mRest.find(',');
        *anItem = mRest.substr(0, comma);
        mfDone = comma == std::string_view::npos;
        mRest = mfDone ? std::string_view() : mRest.substr(comma + 1);
        return true;
    }

private:
    std::string_view mRest;
    bool mfDone = false;
};
