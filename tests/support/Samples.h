#pragma once

#include "support/Folders.h"
#include "support/WholeFile.h"

#include <stdexcept>
#include <string>

/// The bytes of a file below samples.
inline std::string ReadSample(const std::string& aName) {
    const std::string bytes = ReadWholeFile(EZ_SAMPLES "/" + aName);
    if (bytes.empty()) {
        throw std::runtime_error("no sample " + aName);
    }
    return bytes;
}
