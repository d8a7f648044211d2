#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

/// What checking and editing a media mapper file may cost. The length of its lines is the library's.

/// Bytes of a file that is checked: ten times a table of 100,000 lines. A larger one is refused, so that the
/// check of one without end ends.
inline constexpr std::uint64_t kMapperCheck_MaxBytes = std::uint64_t{64} << 20;

/// Lines that a check looks at: of each it keeps a few hundred bytes at most. That it ended is its last
/// finding.
inline constexpr std::size_t kMapperCheck_MaxLines = 250'000;

/// Findings that a check names: a line may have some thirty. The others are counted.
inline constexpr std::size_t kMapperCheck_MaxFindings = 250'000;

/// Dropped play speeds of a line that are named: it may have hundreds. The others are counted.
inline constexpr std::size_t kMapperCheck_NamedSpeeds = 16;

/// Bytes of a name that a finding about another line repeats: enough to find it by. A longer one ends in
/// dots.
inline constexpr std::size_t kMapperCheck_RepeatedBytes = 100;

/// Bad lines that the other verbs name on standard error: they do their work in spite of them. "mapper check"
/// names the others.
inline constexpr std::size_t kMapperTable_MaxTold = 10;

/// Tries of an edit on a fresh load: somebody who writes the file again and again is another program gone
/// wrong, a person does it once. After the last the edit fails, and nothing is saved.
inline constexpr int kMapperEdit_MaxTries = 10;

/// Milliseconds that an edit waits for the one before it: that takes a moment. Then it fails.
inline constexpr std::chrono::milliseconds kMapperLock_Patience{10'000};

/// Milliseconds between two tries to be the one that edits: nobody notices them.
inline constexpr std::chrono::milliseconds kMapperLock_Pause{10};
