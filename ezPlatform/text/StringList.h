#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <vector>

/// Texts in the order added; a text may stand in it more than once.
class EZPLATFORM_API ezStringList {
public:
    void Add(const char* aText) { mItems.emplace_back(aText); }
    /// True if the text is in the list: to the letter with afExactCase, else with A to Z taken as a to z.
    bool Has(const char* aText, bool afExactCase) const;
    std::size_t GetCount() const { return mItems.size(); }
    bool IsEmpty() const { return mItems.empty(); }
    /// The text at an index; the empty text behind the end.
    ezCString GetAt(std::size_t anIndex) const;

protected:
    std::vector<ezCString> mItems;
};

/// A list whose text form puts one character between the elements.
class EZPLATFORM_API ezCSVStringList : public ezStringList {
public:
    /// An empty list whose elements are parted by aSeparator. Named, so that nobody takes it for an escape
    /// character.
    static ezCSVStringList WithSeparator(char aSeparator);

    char GetSeparator() const { return mSeparator; }
    /// The elements as they are, with the separator between them.
    ezCString Join() const;

private:
    explicit ezCSVStringList(char aSeparator) : mSeparator(aSeparator) {}

    char mSeparator;
};
