#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <vector>

/// Texts in the order added; a text may stand in it more than once.
class EZPLATFORM_API ezStringList {
public:
    /// Copies a text to the end; null is the empty text.
    void Add(const char* aText) { mItems.emplace_back(aText); }
    /// True if the text is in the list: to the letter with afExactCase, else with A to Z taken as a to z.
    bool Has(const char* aText, bool afExactCase) const;
    /// The number of texts, empty ones counted, and whether it is 0.
    /// @{
    std::size_t GetCount() const { return mItems.size(); }
    bool IsEmpty() const { return mItems.empty(); }
    /// @}
    /// The text at an index; the empty text past the end.
    ezCString GetAt(std::size_t anIndex) const;
    /// The text at an index as a signed decimal number, the whole text and no blank; aDefault when it
    /// is not one. *afOk, unless null, tells which.
    std::int32_t GetAtInt32(std::size_t anIndex, std::int32_t aDefault, bool* afOk) const;
    /// Takes every text that equals aText to the letter out.
    void Remove(const char* aText);
    /// Takes all texts out.
    void Reset() { mItems.clear(); }

protected:
    std::vector<ezCString> mItems; ///< in the order added; a derived list may fill and change it as it likes
};

/// A list that has a text form: its elements with one character between them.
class EZPLATFORM_API ezCSVStringList : public ezStringList {
public:
    /// Named constructors, so that nobody takes a separator for an escape character.
    /// An empty list whose elements are separated by aSeparator.
    static ezCSVStringList WithSeparator(char aSeparator);
    /// The elements of a text, separated by ","; "\," is a comma that belongs to the element and is handed
    /// out without the backslash, and every other backslash stays. The empty text has no elements. Costs one
    /// pass.
    static ezCSVStringList FromText(const ezCString& aText);

    /// The character that Join puts between elements. "," for a list of FromText.
    char GetSeparator() const { return mSeparator; }
    /// The elements as they are, with the separator between them.
    ezCString Join() const;
    /// The same with every comma inside an element written "\,", as FromText reads it. An element that ends
    /// in a backslash has no such form, unless it is the last one.
    ezCString JoinEscaped() const;

private:
    explicit ezCSVStringList(char aSeparator) : mSeparator(aSeparator) {}

    char mSeparator;
};
