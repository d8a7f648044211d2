// The door: a picture within a file, as base64 text or as it is. The input says where it lies, and is the
// file.

#include "fuzz/support/Check.h"
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/WriteFile.h"

#include "ez/ThumbnailProvider.h"
#include "ezPlatform/streams/Stream.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace {

/// Where the picture lies.
struct Place {
    std::int64_t mStart = 0;
    std::uint32_t mSize = 0;
    std::uint32_t mEncodedOffset = 0;
    bool mfBase64 = false;
};

/// A small number, or one at the edges of its type.
template <typename Number>
Number Decode(FuzzInput& anInput) {
    constexpr std::array<std::uint64_t, 8> kEdges = {
        UINT64_MAX, UINT64_MAX - 1, INT64_MAX, INT64_MAX - 1, INT64_MAX + std::uint64_t{1},
        UINT32_MAX, UINT32_MAX - 1, INT32_MAX};
    const std::uint8_t kind = anInput.Byte();
    return static_cast<Number>(kind < 248 ? kind : kEdges[kind - 248]);
}

Place DecodePlace(FuzzInput& anInput) {
    Place place;
    place.mfBase64 = !anInput.Flag();
    place.mStart = Decode<std::int64_t>(anInput);
    place.mSize = Decode<std::uint32_t>(anInput);
    place.mEncodedOffset = Decode<std::uint32_t>(anInput);
    return place;
}

/// What the text decodes to: its bits are those of its characters, six each, up to the end of the data.
std::string DecodedBits(std::string_view aText) {
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bits;
    for (const char character : aText.substr(0, std::min(aText.find('='), aText.find('\0')))) {
        const std::size_t value = kAlphabet.find(character);
        for (unsigned bit = 6; value != std::string_view::npos && bit-- > 0;) {
            bits.push_back((value >> bit & 1) != 0 ? '1' : '0');
        }
    }
    std::string bytes;
    for (std::size_t i = 0; i + 8 <= bits.size(); i += 8) {
        bytes.push_back(static_cast<char>(std::stoi(bits.substr(i, 8), nullptr, 2)));
    }
    return bytes;
}

/// What the stream holds; nothing where there is none.
std::optional<std::string> Expected(const Place& aPlace, const std::string& aFile) {
    if (aPlace.mStart < 0) {
        return std::nullopt;
    }
    const auto start = static_cast<std::uint64_t>(aPlace.mStart);
    const std::string part =
        start < aFile.size() ? aFile.substr(static_cast<std::size_t>(start), aPlace.mSize) : "";
    if (!aPlace.mfBase64) {
        return part;
    }
    const std::string decoded = DecodedBits(part);
    if (part.empty() || aPlace.mEncodedOffset > decoded.size()) {
        return std::nullopt;
    }
    return decoded.substr(aPlace.mEncodedOffset);
}

/// All that a stream gives, asked for in pieces.
std::string ReadAll(ezStream& aStream) {
    std::string bytes;
    std::array<char, 100> piece = {};
    for (ezStreamingStatus status = ezStreamingStatus_NoError; status == ezStreamingStatus_NoError;) {
        std::size_t count = piece.size();
        status = aStream.Read(piece.data(), &count, ezStreamReadFlag_Whole);
        FuzzCheck(count == piece.size() || status == ezStreamingStatus_EOS);
        bytes.append(piece.data(), count);
    }
    return bytes;
}

void CheckStream(ezStream& aStream, const std::string& anExpected) {
    FuzzCheck(aStream.IsOpened());
    FuzzCheck(aStream.GetSize() == anExpected.size());
    FuzzCheck(ReadAll(aStream) == anExpected);
    FuzzCheck(aStream.Seek(0) == ezStreamingStatus_NoError);
    FuzzCheck(ReadAll(aStream) == anExpected);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const MemoryFolder folder;
    const FuzzHouse house;
    FuzzInput input(aData, aSize);
    const Place place = DecodePlace(input);
    std::string file;
    while (!input.IsEmpty()) {
        file.push_back(static_cast<char>(input.Byte()));
    }
    const std::string path = folder.Path("media");
    WriteFile(path, file);
    const auto source = std::make_unique<ezFilePartThumbnailSource>(
        "image/jpeg", ezPathName::MakeFilePath(ezCString(path.c_str())), place.mStart, place.mSize,
        place.mfBase64, place.mEncodedOffset);
    FuzzCheck(source->Exists());
    const std::optional<std::string> expected = Expected(place, file);
    for (int i = 0; i < 2; ++i) { // every stream is one of its own
        const ezStreamOwner stream(source->GetStream());
        FuzzCheck((stream != nullptr) == expected.has_value());
        if (stream != nullptr) {
            CheckStream(*stream, *expected);
        }
    }
    return 0;
}
