#pragma once

#include <cstddef>

/// What the look for subtitles next to a film may cost, whatever its folder holds.

/// Entries of a folder that are listed: a library in one folder has ten thousand, and so many take a tenth of
/// a second. What the system lists after them is not seen.
inline constexpr std::size_t kSubtitles_MaxEntries = 131'072;

/// Bytes of names that are kept of a folder, of subtitles, films and folders: those of ten thousand films
/// with ten subtitles each. The listing ends there.
inline constexpr std::size_t kSubtitles_MaxNameBytes = std::size_t{8} * 1024 * 1024;

/// Folders for subtitles next to a film that are looked into, and in each of them folders of the film's name:
/// there are two names, which some write in capitals.
inline constexpr std::size_t kSubtitles_MaxFolders = 4;

/// Different extensions in a folder whose kind is remembered while it is listed: there are some hundred. That
/// of others is looked up each time.
inline constexpr std::size_t kSubtitles_MaxExtensions = 1024;

/// Names in a folder that go on after the film's and are held against those of the other films: each costs
/// more the longer it is. Further ones are not looked at.
inline constexpr std::size_t kSubtitles_MaxNames = 2048;

/// Files for one film that are opened, pictures of an index left aside: a film with sixty languages has some
/// hundred. Those after them, in the order of what is told, are not looked at.
inline constexpr std::size_t kSubtitles_MaxTried = 256;

/// Bytes of the start of a file that are read: nearly all subtitles of a film as text, so that the guess of
/// their encoding sees every letter.
inline constexpr std::size_t kSubtitle_HeadSize = std::size_t{128} * 1024;

/// Lines of the start of a text in which its first cue is looked for: some begin with a line of their maker.
inline constexpr std::size_t kSubtitle_MaxLines = 16;

/// Bytes of a name without its extension that are read as words: no file system has longer names.
inline constexpr std::size_t kSubtitle_MaxName = 1024;
