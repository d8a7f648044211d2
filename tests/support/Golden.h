#pragma once

#include <set>
#include <string>

/// Expects a text to be what a file holds that was recorded before. With EZ_UPDATE_GOLDEN in the environment
/// the text is recorded first, and the file's folder made: a person then reads the difference.
void ExpectRecorded(const std::string& aPath, const std::string& aFound);

/// Expects every "*.expected" of a folder to be one of these paths: what nobody asks for is held by nothing.
void ExpectNoOtherRecords(const std::string& aFolder, const std::set<std::string>& aPaths);
