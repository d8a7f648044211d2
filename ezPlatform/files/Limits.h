#pragma once

#include <cstddef>
#include <cstdint>

/// What keeping files safe may cost, and how far the times of a file system are trusted.

/// Nanoseconds that a stamp may be older than the change that it tells, twice over: a tick of the slowest
/// kernels takes 10 ms. A file whose stamp is not older than this and a step may still change unseen.
inline constexpr std::int64_t kFileState_LongestTick = 20'000'000;

/// Nanoseconds between two stamps of a file system that keeps no fraction of a second: those of FAT are the
/// longest.
inline constexpr std::int64_t kFileState_LongestStep = 2'000'000'000;

/// Seconds from a stamp to now, either way, that are compared to the nanosecond: far more than any step, and
/// so few that they fit into 64 bits as nanoseconds. A stamp that is farther away is settled.
inline constexpr std::int64_t kFileState_FarSeconds = 1'000;

/// Seconds without a change after which a file that somebody left half written is removed: no save or fill
/// pauses for a day.
inline constexpr std::int64_t kHeldFile_StaleSeconds = 86'400;

/// Bytes of a target's name that the name of the file beside it repeats: with its digits and suffix it stays
/// below 255, the usual limit of a name. What is longer is cut.
inline constexpr std::size_t kFileSaver_MaxBesideName = 230;

/// Names of a file beside the target that are tried: they are random, so that a second one is hardly ever
/// needed. After the last the save fails, and the old file stays.
inline constexpr int kFileSaver_MaxTries = 8;

/// Looks for the file that a save is to replace: others may replace it over and over. After the last the save
/// fails.
inline constexpr int kFileSaver_MaxFinds = 100;

/// Bytes of a name in the cache: file systems that encrypt names take no longer ones. A longer name is cut,
/// and a digest of all of it makes it distinct.
inline constexpr std::size_t kCacheName_MaxSize = 143;

/// Bytes that are kept of a name that is cut: the rest is the mark and the digest.
inline constexpr std::size_t kCacheName_KeptOfLong = 70;

/// Parts of a bound of the cache, of bytes or of files, of which one may be added until the folder is scanned
/// again: what other processes added since is noticed then.
inline constexpr std::size_t kFileCache_ScanShare = 8;

/// Files that a scan remembers as the first to go, where more are there: in a small cache too they last until
/// the next scan.
inline constexpr std::size_t kFileCache_MinCandidates = 1'024;

/// Files that a scan remembers as the first to go, at most: the memory for them is bounded, however large the
/// cache is.
inline constexpr std::size_t kFileCache_MaxCandidates = 16'384;

/// Tries to make a file in the cache while another process removes its folder or takes the name. After the
/// last there is no file, as when the disk is full.
inline constexpr int kFileCache_MaxTries = 8;
