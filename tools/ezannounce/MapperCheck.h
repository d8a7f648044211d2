#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Something in a media mapper file that does not do what whoever wrote it meant.
struct MapperFinding {
    std::size_t mLine; ///< from 1
    std::string mText;
    bool mfLost; ///< a save does not keep it
};

struct MapperCheck {
    std::size_t mEntryCount = 0;          ///< lines that the library takes
    std::vector<MapperFinding> mFindings; ///< by line
    /// Lines of which a save loses something, comments not counted.
    std::size_t CountLostLines() const;
};

/// Reads a media mapper file line by line, the way the library does. False when it cannot be opened.
bool CheckMapperFile(const std::string& aPath, MapperCheck& aCheck);
