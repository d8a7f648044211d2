#pragma once

#include "ezFormats/detail/FormatDescription.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What the tests of a format give to those that hold of every format (EveryFormatTest.cpp): files that lead
/// where no sample does, written byte by byte. A constant of the format's test source is all that it takes.
class FormatFiles {
public:
    using Files = std::vector<std::string>;

    /// @param aType    the name of the format's parser in the media types file
    /// @param aBudget  what one parse may cost, as the header of the parser promises
    /// @param aFacts   keys that every record of the format has, beside those of every record
    /// @param aUsual   makes files that are read, small ones: each of their bytes is going to be wrong
    /// @param aCostly  makes files that are built to cost the most, whether they are read or refused
    FormatFiles(const char* aType, const FormatBudget& aBudget, std::vector<std::string> aFacts,
                Files (*aUsual)(), Files (*aCostly)()) {
        All()[aType] = {aBudget, std::move(aFacts), aUsual, aCostly};
    }

    struct Set {
        FormatBudget mBudget = {0, 0};
        std::vector<std::string> mFacts;
        Files (*mUsual)() = [] { return Files(); };
        Files (*mCostly)() = [] { return Files(); };
    };
    /// Those of a format; none where its test has none.
    static Set Of(const std::string& aType) { return All()[aType]; }

private:
    static std::map<std::string, Set>& All() {
        static std::map<std::string, Set> sAll;
        return sAll;
    }
};
