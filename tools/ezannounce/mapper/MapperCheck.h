#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Something in a media mapper file that does not do what whoever wrote it meant.
struct MapperFinding {
    std::size_t mLine; ///< from 1
    std::string mText;
};

struct MapperCheck {
    std::size_t mEntryCount = 0;          ///< lines that the library takes
    std::vector<MapperFinding> mFindings; ///< by line, at most kMapperCheck_MaxFindings
    std::size_t mUnnamedCount = 0;        ///< findings beyond those
    std::size_t mLostLineCount = 0;       ///< lines of which a save loses something, without comments
};

/// Reads a media mapper file line by line, the way the library does, at a cost that follows its length. A
/// finding in the first line that is not checked tells that kMapperCheck_MaxLines end it. False when it
/// cannot be opened, or is larger than kMapperCheck_MaxBytes.
bool CheckMapperFile(const std::string& aPath, MapperCheck& aCheck);
