#pragma once

#include "ezHosting/HostFolders.h"

#include <string>
#include <string_view>

/// A path as a message of one line shows it: "?" for each control character, as a stranger's name may hold
/// ends of lines; and cut, with "..." after it, where it is too long.
std::string ShownPath(std::string_view aPath);

/// What is met where a regular file is looked for: "" for one, else in words why there is none.
std::string WhyNoFile(const std::string& aPath);

/// Why a regular file cannot be read; "" where it can.
std::string WhyNotRead(const std::string& aPath);

/// Of a file that could not be opened: its path and why.
std::string WhyNotOpened(std::string_view aPath);

/// The path of a file in a folder.
std::string FileIn(const std::string& aFolder, const char* aName);

/// Says of each place why nothing came of it, in one line. That a table could be read and names nothing is
/// found out here.
std::string WhyNoTable(const ezHostFolders& aFolders);
