#pragma once

#include <fstream>
#include <iterator>
#include <string>

/// The bytes of a file; "" where there is none.
inline std::string ReadWholeFile(const std::string& aPath) {
    std::ifstream file(aPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The same, and "<none>" where there is none: a missing file is told apart from an empty one.
inline std::string ContentAt(const std::string& aPath) {
    const std::ifstream file(aPath, std::ios::binary);
    return file ? ReadWholeFile(aPath) : "<none>";
}
