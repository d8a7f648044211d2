#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/text/CString.h"

#include <array>
#include <cstddef>
#include <string>

/// A text file, read line by line at a cost that does not depend on how long its lines are. "\n" and "\r\n"
/// end a line; a UTF-8 byte order mark at the start is dropped.
class EZPLATFORM_API ezTextFile {
public:
    /// Opens a file. Lines of more than aMaximumLineLength bytes (line end not counted) are cut to that
    /// length.
    ezTextFile(const ezCString& aPath, std::size_t aMaximumLineLength);

    /// False when the constructor could not open the file, which then has no lines.
    bool IsOpened() const { return mFile.IsOpened(); }
    /// The next line without its end; false after the last one. *afCut, unless null, tells that the line was
    /// longer than the limit and is not whole: its rest has been skipped. A file that cannot be read on ends
    /// there: ask HasFailed.
    bool NextLine(ezCString* aLine, bool* afCut);

    /// True when the last line came because the file could not be read on, and not because it ended.
    bool HasFailed() const { return mfFailed; }

private:
    bool NextCharacter(char* aCharacter);

    ezFile mFile;
    std::size_t mMaximumLineLength;
    std::array<char, 4096> mBuffer;
    std::size_t mBufferLength = 0;
    std::size_t mBufferPosition = 0;
    bool mfAtStart = true;
    bool mfFailed = false;
};
