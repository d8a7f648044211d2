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

/// What a check reads of a file at most, so that the check of one without end ends: ten times a table of
/// 100,000 lines.
inline constexpr std::uint64_t kMapperCheck_MaxBytes = std::uint64_t{64} << 20;
/// Lines that it checks. Of each it keeps at most a few hundred bytes.
inline constexpr std::size_t kMapperCheck_MaxLines = 250'000;
/// Findings that it names; a line may have some thirty. The others are counted.
inline constexpr std::size_t kMapperCheck_MaxFindings = 250'000;

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
