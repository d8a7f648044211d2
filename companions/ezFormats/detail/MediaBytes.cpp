#include "ezFormats/detail/MediaBytes.h"

#include "ez/MediaParserStream.h"
#include "ez/MediaParserTypes.h"

#include "ezFormats/detail/Limits.h"
#include "ezPlatform/base/KnownSize.h"
#include "ezPlatform/files/PathName.h"

#include <algorithm>
#include <optional>
#include <utility>

MediaBytes::MediaBytes(ezMediaParserStream& aStream, std::uint32_t aMaxReads, std::uint64_t aMaxBytes)
    : BudgetedBytes(std::nullopt, ReadBudget(aMaxReads, aMaxBytes)), mStream(aStream) {
    TakeSize();
}

MediaBytes::~MediaBytes() = default;

void MediaBytes::Bring(std::uint64_t aPosition) {
    const bool fStraightOn = GetBlockLength() != 0 && aPosition == GetBlockStart() + GetBlockLength();
    const std::size_t size =
        fStraightOn ? std::min(2 * mLastSize, kMediaBytes_LargestBlock) : kMediaBytes_LeastBlock;
    if (ReadStart(aPosition) && !HasBuffered(aPosition)) {
        Fetch(aPosition, size);
    }
}

bool MediaBytes::Load(std::uint64_t aPosition, std::size_t aSize) {
    return LoadBlock(aPosition, std::min(aSize, kMediaBytes_LargestBlock));
}

bool MediaBytes::LoadWindow(std::uint64_t aPosition, std::size_t aSize) {
    return LoadBlock(aPosition, std::min(aSize, kMediaBytes_LargestWindow));
}

bool MediaBytes::LoadBlock(std::uint64_t aPosition, std::size_t aSize) {
    if (aPosition >= GetEnd()) {
        return false;
    }
    if (HasBuffered(aPosition, aSize)) {
        return true;
    }
    if (!HasBuffered(aPosition) && !ReadStart(aPosition)) {
        return false;
    }
    return HasBuffered(aPosition, aSize) || Fetch(aPosition, aSize);
}

/// The stream takes its first read for the start of the media, and answers later ones from it: reads that
/// where it is the first read, or holds the position.
bool MediaBytes::ReadStart(std::uint64_t aPosition) {
    if (mfStarted && aPosition >= kezMediaParserStreamBufferSize) {
        return true;
    }
    const bool fFirst = !mfStarted;
    mfStarted = true;
    const bool fRead = Fetch(0, kezMediaParserStreamBufferSize);
    if (fFirst && !GetSize()) {
        TakeSize();
    }
    return fRead;
}

/// A stream that opens itself with its first read knows its size from then on.
void MediaBytes::TakeSize() {
    SetSize(ezKnownSize(mStream.GetMediaSize()));
}

/// A source may give fewer bytes at a time than there are.
std::size_t MediaBytes::ReadAt(std::uint64_t aPosition, unsigned char* aPlace, std::size_t aSize,
                               bool* afFailed) {
    std::size_t done = 0;
    while (done < aSize) {
        std::size_t count = aSize - done;
        auto* const place = reinterpret_cast<char*>(aPlace + done);
        const bool fRead =
            done == 0 ? mStream.ReadFrom(ezuint64(aPosition), &count, place) : mStream.Read(&count, place);
        *afFailed = *afFailed || !fRead;
        if (!fRead || count == 0) {
            break;
        }
        done += count;
    }
    mLastSize =
        std::max(static_cast<std::size_t>(aPosition - GetBlockStart()) + done, kMediaBytes_LeastBlock);
    return done;
}

std::string MediaBytes::GetFileName() const {
    return std::string(ezPathName::MakeFilePath(mStream.GetFullPath()).GetFullName().View());
}

std::unique_ptr<BesideMedia> MediaBytes::OpenBeside(const std::string& aName, std::uint32_t aMaxReads,
                                                    std::uint64_t aMaxBytes) {
    std::unique_ptr<ezMediaParserStream> stream = mStream.OpenBeside(ezCString(aName));
    if (stream == nullptr || !SetAside(aMaxReads, aMaxBytes)) {
        return nullptr;
    }
    return std::make_unique<BesideMedia>(std::move(stream), aMaxReads, aMaxBytes);
}

BesideMedia::BesideMedia(std::unique_ptr<ezMediaParserStream> aStream, std::uint32_t aMaxReads,
                         std::uint64_t aMaxBytes)
    : mStream(std::move(aStream)), mBytes(*mStream, aMaxReads, aMaxBytes) {}

BesideMedia::~BesideMedia() = default;

void MediaBytes::AllowWholeMedia() {
    // Whoever reads straight on takes a block at a time, a part of which may have been buffered.
    RaiseBudget(2 * (GetEnd() / kMediaBytes_LargestBlock + 1), GetEnd());
}
