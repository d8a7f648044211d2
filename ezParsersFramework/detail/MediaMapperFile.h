#pragma once

#include "ez/DLNAMediaMapperBadLines.h"
#include "ez/DLNAMediaMapperEntry.h"

#include "ezPlatform/base/Error.h"
#include "ezPlatform/files/PathName.h"

#include <memory>
#include <vector>

struct ezArray;

/// Appends the entries of a media mapper file, in its order, and notes the lines that it skips. Code -3 when
/// the file cannot be opened or read to its end; then no entry is appended.
ezError MediaMapperFile_Read(const ezPathName& aPath, bool afReadOnly,
                             std::vector<std::unique_ptr<DLNAMediaMapperEntry>>& anEntries,
                             DLNAMediaMapperBadLines& aSkippedLines);

/// Writes the head that every media mapper file has, and the line of each DLNAMediaMapperEntry of an array.
/// Notes the lines that a reader will find too long. Code -1 when the file cannot be made or written.
ezError MediaMapperFile_Write(const ezPathName& aPath, const ezArray* anEntries,
                              DLNAMediaMapperBadLines& aTooLongLines);

/// The error of a file that was not written to its end.
ezError MediaMapperFile_WriteError(const ezPathName& aPath);
