#pragma once

#include <string>

/// The folder of the data that were installed with this library, relative to where it really is; "" where
/// that cannot be told. Absolute, and need not exist.
std::string InstalledFolder();

/// The same for a file that was met as the home of this code.
/// @param aHome     what the loader calls the file
/// @param aProgram  the program that runs; "" where that is not known
std::string InstalledFolderOf(const std::string& aHome, const std::string& aProgram);
