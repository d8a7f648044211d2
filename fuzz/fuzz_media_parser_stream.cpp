// The door: a media stream, whose content, way of delivery and use the input decides.

#include "fuzz/support/Check.h"
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/WriteFile.h"

#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserStream.h"
#include "ezPlatform/base/System.h"
#include "ezPlatform/media/MediaInfo.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kMaximumOperations = 64;

/// Around the size of the buffer is where the rules change.
constexpr std::array<std::size_t, 8> kContentSizes = {0, 1, 100, 8191, 8192, 8193, 20000, 70000};
constexpr std::size_t kLargestContent = 70000;

/// More than any media here has, so that a read of any size fits into it.
constexpr std::size_t kReadBufferSize = 131072;

/// A file of the largest size then takes a few hundred system calls, not many thousands.
constexpr std::size_t kShortestFileRead = 256;

constexpr char kUntouched = '\x55';

char ContentAt(std::size_t anOffset) {
    // Differs from neighbour to neighbour and from block to block.
    return static_cast<char>(anOffset * 31 + anOffset / 251 + 7);
}

const std::string& Content() {
    static const std::string content = [] {
        std::string text(kLargestContent, '\0');
        for (std::size_t i = 0; i < text.size(); ++i) {
            text[i] = ContentAt(i);
        }
        return text;
    }();
    return content;
}

std::uint64_t AddSaturated(std::uint64_t aLeft, std::uint64_t aRight) {
    return aLeft > UINT64_MAX - aRight ? UINT64_MAX : aLeft + aRight;
}

/// How a source delivers.
struct Delivery {
    std::size_t mMaximumRead = SIZE_MAX; ///< bytes that one read gives at most
    std::size_t mFailingRead = SIZE_MAX; ///< this read, counted from 0, fails
    std::size_t mLyingRead = SIZE_MAX;   ///< this read tells another count than it gave
    ezFileOffset mLie = 0;               ///< what it tells
    bool mfSizeKnown = true;
    bool mfSeekable = true;
    bool mfSeekLies = false; ///< a seek says yes and does not move

    bool IsSane() const { return mLyingRead == SIZE_MAX && mfSeekable && !mfSeekLies; }
};

ezFileOffset DecodeLie(FuzzInput& anInput) {
    constexpr std::array<ezFileOffset, 8> lies = {
        -1, -2, INT64_MIN, INT64_MAX, kezMediaParserStreamBufferSize + 1, 0, 1, 1 << 20};
    return lies[anInput.Byte() % lies.size()];
}

Delivery DecodeDelivery(FuzzInput& anInput) {
    Delivery delivery;
    const std::uint8_t flags = anInput.Byte();
    if ((flags & 1) != 0) {
        delivery.mMaximumRead = 1 + static_cast<std::size_t>(anInput.Number(2));
    }
    if ((flags & 2) != 0) {
        delivery.mFailingRead = anInput.Byte();
    }
    if ((flags & 4) != 0) {
        delivery.mLyingRead = anInput.Byte() % 4;
        delivery.mLie = DecodeLie(anInput);
    }
    delivery.mfSizeKnown = (flags & 8) == 0;
    delivery.mfSeekable = (flags & 16) == 0;
    delivery.mfSeekLies = (flags & 32) != 0;
    return delivery;
}

/// A file in memory.
class MemoryStream : public ezMediaParserStream {
public:
    MemoryStream(std::size_t aSize, const Delivery& aDelivery) : mSize(aSize), mDelivery(aDelivery) {
        SetFullPath("/media/Fuzzed.BIN");
        SetExtension("BIN");
        mMediaSize = mDelivery.mfSizeKnown ? mSize : 0;
    }

protected:
    bool MediaSeek(const ezuint64& anOffset, bool /*afSeekImmediate*/) override {
        if (mDelivery.mfSeekLies) {
            return true;
        }
        if (!mDelivery.mfSeekable) {
            return anOffset == mPosition;
        }
        if (anOffset > mSize) {
            return false;
        }
        mPosition = static_cast<std::size_t>(anOffset.ToUInt64());
        return true;
    }

    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        const std::size_t read = mReads++;
        if (read == mDelivery.mFailingRead) {
            return -1;
        }
        const std::size_t count = std::min({aSize, mSize - mPosition, mDelivery.mMaximumRead});
        std::copy_n(Content().begin() + static_cast<std::ptrdiff_t>(mPosition), count,
                    static_cast<char*>(aBuffer));
        mPosition += count;
        return read == mDelivery.mLyingRead ? mDelivery.mLie : static_cast<ezFileOffset>(count);
    }

private:
    std::size_t mSize;
    Delivery mDelivery;
    std::size_t mPosition = 0;
    std::size_t mReads = 0;
};

/// The system as a file stream meets it: reads come short, are interrupted or fail. One at a time.
class AwkwardSystem {
public:
    explicit AwkwardSystem(const Delivery& aDelivery) : mCalls(ezSystem_Real()) {
        gDelivery = aDelivery;
        gReads = 0;
        mCalls.mPRead = sPRead;
        ezSystem_Replace(&mCalls);
    }
    ~AwkwardSystem() { ezSystem_Replace(nullptr); }
    AwkwardSystem(const AwkwardSystem&) = delete;
    AwkwardSystem& operator=(const AwkwardSystem&) = delete;

private:
    static ssize_t sPRead(int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset) {
        const std::size_t read = gReads++;
        if (gDelivery.mMaximumRead != SIZE_MAX && read % 3 == 1) {
            errno = EINTR;
            return -1;
        }
        if (read == gDelivery.mFailingRead) {
            errno = EIO;
            return -1;
        }
        return ezSystem_Real().mPRead(aFile, aBuffer, std::min(aSize, gDelivery.mMaximumRead), anOffset);
    }

    inline static Delivery gDelivery;
    inline static std::size_t gReads = 0;

    ezSystemCalls mCalls;
};

/// The files of all sizes, and what else a path may lead to.
class Files {
public:
    Files() {
        for (const std::size_t size : kContentSizes) {
            WriteFile(Path(size), std::string_view(Content()).substr(0, size));
        }
        mFolderPath = mFolder.MakeFolder("folder.bin");
    }

    std::string Path(std::size_t aSize) const { return mFolder.Path(std::to_string(aSize) + ".BIN"); }
    std::string MissingPath() const { return mFolder.Path("missing.BIN"); }
    const std::string& FolderPath() const { return mFolderPath; }

private:
    MemoryFolder mFolder;
    std::string mFolderPath;
};

/// A number near something that matters: a small one, the end of the media, the end of the buffer, 2^32,
/// 2^63, 2^64.
std::uint64_t DecodeNumber(FuzzInput& anInput, std::size_t aContentSize) {
    const std::uint8_t kind = anInput.Byte();
    const std::uint64_t distance = kind < 128 ? anInput.Byte() : anInput.Number(3);
    switch (kind % 8) {
    case 0:
        return aContentSize + distance;
    case 1:
        return aContentSize - std::min<std::uint64_t>(distance, aContentSize);
    case 2:
        return kezMediaParserStreamBufferSize + distance % 3 - 1;
    case 3:
        return (std::uint64_t(1) << 32) - 128 + distance;
    case 4:
        return (std::uint64_t(1) << 63) - 128 + distance;
    case 5:
        return UINT64_MAX - distance;
    default:
        return distance;
    }
}

/// One stream, the operations on it, and what each must leave after.
class Play {
public:
    Play(ezMediaParserStream& aStream, std::size_t aContentSize, const Delivery& aDelivery, bool afFile)
        : mStream(aStream),
          mContentSize(aContentSize),
          mDelivery(aDelivery),
          mfFile(afFile),
          mReadBuffer(kReadBufferSize) {}

    /// The first read is made at 0: what the stream buffers is the start of the media from then on.
    void ReadFirstByte() {
        char byte = kUntouched;
        std::size_t count = 1;
        const bool fRead = mStream.Read(&count, &byte);
        FuzzCheck(!fRead || count <= 1);
        FuzzCheck(mStream.Tell() == (fRead ? count : 0));
        mfStartKept = true;
        mfAligned = fRead && mDelivery.IsSane();
        if (mfAligned && count == 1) {
            FuzzCheck(byte == ContentAt(0));
        }
        // A failed fill leaves an empty buffer, after which the source may stand anywhere.
    }

    void Operate(FuzzInput& anInput) {
        // Taken one by one: as arguments of one call, compilers take them in different orders.
        const std::uint8_t operation = anInput.Byte() % 12;
        const std::uint64_t number = operation < 10 ? DecodeNumber(anInput, mContentSize) : 0;
        const std::uint64_t second = operation == 4 ? DecodeNumber(anInput, mContentSize) : 0;
        const bool fFlag = operation >= 4 && operation < 10 && anInput.Flag();
        switch (operation) {
        case 0:
        case 1:
            return ReadExactly(number);
        case 2:
        case 3:
            return ReadUpTo(number);
        case 4:
            return ReadFrom(number, second, fFlag);
        case 5:
            return ReadFromEnd(number, fFlag);
        case 6:
        case 7:
            return Seek(number, ezMediaParserStream::SeekFromStart, fFlag);
        case 8:
            return Seek(number, ezMediaParserStream::SeekFromCurrent, fFlag);
        case 9:
            return CopyInfo(number, fFlag);
        case 10:
            return Open();
        default:
            return Close();
        }
    }

private:
    std::uint64_t Position() const { return mStream.Tell().ToUInt64(); }

    /// How much of a read that was asked for at a position there is.
    std::uint64_t Available(std::uint64_t aPosition, std::uint64_t aSize) const {
        return aPosition >= mContentSize ? 0 : std::min<std::uint64_t>(aSize, mContentSize - aPosition);
    }

    void ClearReadBuffer() { std::fill(mReadBuffer.begin(), mReadBuffer.end(), kUntouched); }

    void CheckBytes(std::uint64_t aPosition, std::uint64_t aCount) const {
        FuzzCheck(aCount == 0 || (aPosition <= mContentSize && aCount <= mContentSize - aPosition));
        if (aCount != 0) {
            FuzzCheck(std::memcmp(mReadBuffer.data(), Content().data() + aPosition,
                                  static_cast<std::size_t>(aCount)) == 0);
        }
    }

    /// Nothing may be written after what was asked for.
    void CheckUntouched(std::uint64_t aFrom) const {
        for (std::size_t i = static_cast<std::size_t>(std::min<std::uint64_t>(aFrom, mReadBuffer.size()));
             i < mReadBuffer.size(); i += 97) {
            FuzzCheck(mReadBuffer[i] == kUntouched);
        }
    }

    /// Whether a read must give all that there is. A file makes up for short and interrupted reads; the
    /// system refuses reads of it that lead beyond 2^63.
    bool IsExpectedWhole(std::uint64_t aPosition, std::uint64_t aSize) const {
        if (!mfAligned || mDelivery.mFailingRead != SIZE_MAX) {
            return false;
        }
        return mfFile ? AddSaturated(aPosition, aSize) <= INT64_MAX : mDelivery.mMaximumRead == SIZE_MAX;
    }

    void CheckExactRead(std::uint64_t aPosition, std::uint64_t aSize, bool afRead) {
        const std::uint64_t now = Position();
        CheckUntouched(aSize);
        if (afRead) {
            FuzzCheck(now == AddSaturated(aPosition, aSize));
            if (mfAligned) {
                CheckBytes(aPosition, aSize);
            }
        }
        if (mfAligned && !afRead) {
            FuzzCheck(now >= aPosition && now - aPosition < aSize);
            CheckBytes(aPosition, now - aPosition);
        }
        if (IsExpectedWhole(aPosition, aSize)) {
            FuzzCheck(afRead == (Available(aPosition, aSize) == aSize));
            FuzzCheck(afRead || now == aPosition + Available(aPosition, aSize));
        }
    }

    void CheckUpToRead(std::uint64_t aPosition, std::uint64_t anAsked, std::uint64_t aCount, bool afRead) {
        CheckUntouched(anAsked);
        FuzzCheck(aCount <= anAsked);
        FuzzCheck(afRead || aCount == anAsked); // a read that fails leaves the count
        FuzzCheck(Position() == (afRead ? AddSaturated(aPosition, aCount) : aPosition));
        if (mfAligned && afRead) {
            CheckBytes(aPosition, aCount);
        }
        if (IsExpectedWhole(aPosition, anAsked)) {
            FuzzCheck(afRead && aCount == Available(aPosition, anAsked));
        }
    }

    static std::size_t ToSize(std::uint64_t aNumber) {
        return static_cast<std::size_t>(std::min<std::uint64_t>(aNumber, SIZE_MAX));
    }

    void ReadExactly(std::uint64_t aSize) {
        const std::size_t size = ToSize(aSize);
        const std::uint64_t position = Position();
        ClearReadBuffer();
        CheckExactRead(position, size, mStream.Read(size, mReadBuffer.data()));
    }

    void ReadUpTo(std::uint64_t aSize) {
        const std::size_t size = ToSize(aSize);
        const std::uint64_t position = Position();
        std::size_t count = size;
        ClearReadBuffer();
        const bool fRead = mStream.Read(&count, mReadBuffer.data());
        CheckUpToRead(position, size, count, fRead);
    }

    /// What a seek to a position must give, as far as that can be told.
    void CheckSeek(std::uint64_t aBefore, std::uint64_t aTarget, bool afMoved) {
        FuzzCheck(Position() == (afMoved ? aTarget : aBefore));
        if (afMoved) {
            mfAligned = mfStartKept && mfAlignable && mDelivery.IsSane();
        } else if (mfFile) {
            mfAligned = false; // the next read starts at the place that was refused
        }
    }

    void Seek(std::uint64_t anOffset, int aMode, bool afImmediate) {
        const std::uint64_t before = Position();
        const std::uint64_t target =
            aMode == ezMediaParserStream::SeekFromStart ? anOffset : AddSaturated(before, anOffset);
        const bool fWraps = aMode == ezMediaParserStream::SeekFromCurrent && anOffset > UINT64_MAX - before;
        const bool fMoved = mStream.Seek(anOffset, aMode, afImmediate);
        FuzzCheck(!fMoved || !fWraps);
        if (fWraps) {
            FuzzCheck(Position() == before); // refused before the source is asked: it stands where it stood
            return;
        }
        CheckSeek(before, target, fMoved);
        if (mDelivery.IsSane() && !afImmediate) {
            FuzzCheck(!fMoved || target <= mContentSize);
        }
    }

    void ReadFrom(std::uint64_t aPosition, std::uint64_t aSize, bool afExact) {
        const std::size_t size = ToSize(aSize);
        const std::uint64_t before = Position();
        std::size_t count = size;
        ClearReadBuffer();
        const bool fRead = afExact ? mStream.ReadFrom(aPosition, size, mReadBuffer.data())
                                   : mStream.ReadFrom(aPosition, &count, mReadBuffer.data());
        AfterCombined(before, aPosition, size, count, fRead, afExact);
    }

    void ReadFromEnd(std::uint64_t aSize, bool afExact) {
        const std::uint64_t mediaSize = mStream.GetMediaSize().ToUInt64();
        const std::size_t size = ToSize(aSize);
        const std::uint64_t before = Position();
        std::size_t count = size;
        ClearReadBuffer();
        const bool fRead = afExact ? mStream.ReadFromEnd(size, mReadBuffer.data())
                                   : mStream.ReadFromEnd(&count, mReadBuffer.data());
        if (mediaSize == 0 || (afExact && size > mediaSize)) {
            FuzzCheck(!fRead && Position() == before && count == size);
            return;
        }
        const std::size_t asked = ToSize(std::min<std::uint64_t>(size, mediaSize));
        if (!fRead) {
            FuzzCheck(count == size);
            count = asked;
        }
        AfterCombined(before, mediaSize - asked, asked, count, fRead, afExact);
    }

    /// After a seek and a read in one: where it failed it cannot be told from outside which of both did.
    void AfterCombined(std::uint64_t aBefore, std::uint64_t aPosition, std::size_t aSize, std::size_t aCount,
                       bool afRead, bool afExact) {
        if (!afRead) {
            const std::uint64_t now = Position();
            FuzzCheck(aCount == aSize);
            // A first read elsewhere than at 0 fills the buffer all the same, and may end anywhere in it.
            FuzzCheck(now == aBefore || !mfStartKept || mDelivery.mLyingRead != SIZE_MAX ||
                      (now >= aPosition && now - aPosition < std::max<std::size_t>(aSize, 1)));
            CheckUntouched(aSize);
            mfAligned = mfAligned && !mfFile;
            return;
        }
        mfAligned = mfStartKept && mfAlignable && mDelivery.IsSane();
        if (afExact) {
            CheckExactRead(aPosition, aSize, true);
        } else {
            CheckUpToRead(aPosition, aSize, aCount, true);
        }
    }

    void CopyInfo(std::uint64_t aKnownSize, bool afExtensionKnown) {
        ezMediaInfo info;
        if (aKnownSize % 2 == 1) {
            info.Set(kezInfo_FileSize, aKnownSize, true);
        }
        if (afExtensionKnown) {
            info.Set(kezInfo_FileExtension, "known", true);
        }
        const std::uint64_t position = Position();
        mStream.CopyInfo(&info);
        mStream.CopyInfo(nullptr);
        FuzzCheck(Position() == position);
        FuzzCheck(info.mFullPath == mStream.GetFullPath());
        FuzzCheck(info.GetCString(kezInfo_FileExtension, "") == (afExtensionKnown ? "known" : "bin"));
        const ezuint64 expected = aKnownSize % 2 == 1 ? ezuint64(aKnownSize) : mStream.GetMediaSize();
        FuzzCheck(info.GetUInt64(kezInfo_FileSize, 0) == expected);
        FuzzCheck(info.Has(kezInfo_FileSize) == (expected != 0));
    }

    void Open() {
        const std::uint64_t position = Position();
        const bool fOpen = mStream.Open();
        FuzzCheck(Position() == position);
        if (mfFile) {
            mfAlignable = fOpen;
            mfAligned = false; // the file stands at its start again, the stream does not
            FuzzCheck(!fOpen || mStream.GetMediaSize() == mContentSize);
        }
    }

    void Close() {
        const std::uint64_t position = Position();
        mStream.Close();
        FuzzCheck(Position() == position);
        if (mfFile) {
            mfAlignable = false; // a read opens the file again, at its start
            mfAligned = false;
        }
    }

    ezMediaParserStream& mStream;
    std::size_t mContentSize;
    Delivery mDelivery;
    bool mfFile;
    std::vector<char> mReadBuffer;
    bool mfStartKept = false; ///< what the stream buffers, if anything, is the start of the media
    bool mfAlignable = true;  ///< a seek makes source and position agree
    bool mfAligned = false;   ///< the source stands where the position says, so that bytes can be foretold
};

void PlayMemory(FuzzInput& anInput, std::size_t aSize, bool afReadFirst) {
    const Delivery delivery = DecodeDelivery(anInput);
    MemoryStream stream(aSize, delivery);
    Play play(stream, aSize, delivery, false);
    if (afReadFirst) {
        play.ReadFirstByte();
    }
    for (std::size_t i = 0; i < kMaximumOperations && !anInput.IsEmpty(); ++i) {
        play.Operate(anInput);
    }
}

void PlayFile(FuzzInput& anInput, std::size_t aSize, bool afReadFirst) {
    static const Files files;
    Delivery delivery = DecodeDelivery(anInput);
    delivery.mLyingRead = SIZE_MAX; // the system does not lie
    delivery.mfSeekable = true;
    delivery.mfSeekLies = false;
    delivery.mMaximumRead = std::max(delivery.mMaximumRead, kShortestFileRead);
    const std::uint8_t kind = anInput.Byte() % 8;
    const std::string path = kind == 0   ? files.MissingPath()
                             : kind == 1 ? files.FolderPath()
                                         : files.Path(aSize);
    const std::size_t size = kind <= 1 ? 0 : aSize;

    const AwkwardSystem system(delivery);
    ezFileMediaParserStream stream(ezCString(path.c_str()));
    FuzzCheck(stream.GetMediaSize() == 0 && stream.Tell() == 0);
    Play play(stream, size, delivery, true);
    if (afReadFirst) {
        FuzzCheck(stream.Open() == (kind > 1));
        play.ReadFirstByte();
    }
    for (std::size_t i = 0; i < kMaximumOperations && !anInput.IsEmpty(); ++i) {
        play.Operate(anInput);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    FuzzInput input(aData, aSize);
    const std::uint8_t header = input.Byte();
    const std::size_t size = kContentSizes[header % kContentSizes.size()];
    const bool fReadFirst = (header & 16) == 0;
    if ((header & 8) == 0) {
        PlayMemory(input, size, fReadFirst);
    } else {
        PlayFile(input, size, fReadFirst);
    }
    return 0;
}
