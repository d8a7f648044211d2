#include "ez/FileMediaParserStream.h"
#include "ez/StreamMediaParserStream.h"

#include "support/ScriptedStream.h"
#include "support/StreamProbe.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

// The adapter over every kind of stream behaves like a file stream over the same bytes, operation by
// operation: result, count, every byte of the caller's buffer, and the position after it.

namespace {

enum class Verb {
    Exact,
    UpTo,
    ExactFrom,
    UpToFrom,
    ExactFromEnd,
    UpToFromEnd,
    SeekFromStart,
    SeekFromCurrent,
    SeekNow
};

struct Operation {
    Verb mVerb;
    std::uint64_t mPosition;
    std::size_t mSize;
};

std::ostream& operator<<(std::ostream& aStream, const Operation& anOperation) {
    static const char* const kNames[] = {"Read exact",      "Read up to",        "ReadFrom exact",
                                         "ReadFrom up to",  "ReadFromEnd exact", "ReadFromEnd up to",
                                         "Seek from start", "Seek from current", "Seek now"};
    return aStream << kNames[static_cast<int>(anOperation.mVerb)] << " position " << anOperation.mPosition
                   << " size " << anOperation.mSize;
}

struct Outcome {
    bool mfResult = false;
    std::size_t mCount = 0;
    std::string mBuffer;
    std::uint64_t mPosition = 0;
};

bool operator==(const Outcome& aLeft, const Outcome& aRight) {
    return aLeft.mfResult == aRight.mfResult && aLeft.mCount == aRight.mCount &&
           aLeft.mBuffer == aRight.mBuffer && aLeft.mPosition == aRight.mPosition;
}

std::ostream& operator<<(std::ostream& aStream, const Outcome& anOutcome) {
    return aStream << (anOutcome.mfResult ? "true" : "false") << ", count " << anOutcome.mCount
                   << ", position " << anOutcome.mPosition << ", bytes' hash "
                   << std::hash<std::string>()(anOutcome.mBuffer);
}

/// An immediate seek beyond the end is not compared: a file goes there, and a stream refuses.
std::uint64_t WithinTheMedia(const ezMediaParserStream& aStream, std::uint64_t aPosition) {
    return aPosition % (aStream.GetMediaSize().ToUInt64() + 1);
}

Outcome Apply(ezMediaParserStream& aStream, const Operation& anOperation) {
    Outcome outcome;
    outcome.mCount = anOperation.mSize;
    outcome.mBuffer.assign(anOperation.mSize + 1, kUntouched); // one more, which stays as it is
    char* const buffer = &outcome.mBuffer[0];
    const std::uint64_t position = anOperation.mPosition;
    switch (anOperation.mVerb) {
    case Verb::Exact:
        outcome.mfResult = aStream.Read(anOperation.mSize, buffer);
        break;
    case Verb::UpTo:
        outcome.mfResult = aStream.Read(&outcome.mCount, buffer);
        break;
    case Verb::ExactFrom:
        outcome.mfResult = aStream.ReadFrom(position, anOperation.mSize, buffer);
        break;
    case Verb::UpToFrom:
        outcome.mfResult = aStream.ReadFrom(position, &outcome.mCount, buffer);
        break;
    case Verb::ExactFromEnd:
        outcome.mfResult = aStream.ReadFromEnd(anOperation.mSize, buffer);
        break;
    case Verb::UpToFromEnd:
        outcome.mfResult = aStream.ReadFromEnd(&outcome.mCount, buffer);
        break;
    case Verb::SeekFromStart:
        outcome.mfResult = aStream.Seek(position, ezMediaParserStream::SeekFromStart, false);
        break;
    case Verb::SeekFromCurrent:
        outcome.mfResult = aStream.Seek(position, ezMediaParserStream::SeekFromCurrent, false);
        break;
    case Verb::SeekNow:
        outcome.mfResult =
            aStream.Seek(WithinTheMedia(aStream, position), ezMediaParserStream::SeekFromStart, true);
        break;
    }
    outcome.mPosition = aStream.Tell().ToUInt64();
    return outcome;
}

// ---- the streams ----

/// A memory stream that keeps its bytes to itself.
class CopyingMemoryStream : public ezMemoryStream {
public:
    using ezMemoryStream::ezMemoryStream;
    bool CanLend(int /*anAccess*/) const override { return false; }
};

template <typename Stream>
ezStream* InMemory(const std::string& aContent) {
    void* block = ezMalloc(aContent.size());
    std::memcpy(block, aContent.data(), aContent.size());
    return new Stream(block, aContent.size(), "");
}

/// The bytes of every run, as a file of its first so many, and as a file of them.
class Media {
public:
    explicit Media(std::size_t aLength)
        : mContent(RandomMedia(20000).substr(0, aLength)), mPath(mFolder.Write("media.bin", mContent)) {}

    const std::string& Content() const { return mContent; }
    const std::string& Path() const { return mPath; }
    ezFile* Open(const std::string& aPath) const {
        auto* file = new ezFile(aPath.c_str(), ezFileOpenMode_Read);
        RC_ASSERT(file->Open());
        return file;
    }
    /// A file that holds the media somewhere within.
    std::string PathOfLargerFile() const {
        return mFolder.Write("larger.bin", "before" + mContent + "behind");
    }

private:
    TemporaryFolder mFolder;
    std::string mContent;
    std::string mPath;
};

/// Sizes at which something changes, and any other.
rc::Gen<std::size_t> ASize() {
    return rc::gen::weightedOneOf<std::size_t>(
        {{3, rc::gen::element<std::size_t>(0, 1, 2, 99, 100, 101, 8091, 8092, 8093, 8191, 8192, 8193, 20000)},
         {1, rc::gen::inRange<std::size_t>(0, 200)},
         {1, rc::gen::inRange<std::size_t>(0, 20001)}});
}

rc::Gen<std::uint64_t> APosition() {
    return rc::gen::weightedOneOf<std::uint64_t>(
        {{4, rc::gen::element<std::uint64_t>(0, 0, 1, 99, 100, 101, 8091, 8092, 8093, 8191, 8192, 8193, 19999,
                                             20000, 20001)},
         {2, rc::gen::inRange<std::uint64_t>(0, 20001)},
         {1, rc::gen::element<std::uint64_t>(UINT64_MAX, UINT64_MAX - 1, UINT64_MAX - 8192, UINT64_C(1) << 63,
                                             UINT64_C(1) << 32)}});
}

rc::Gen<Verb> AVerb() {
    return rc::gen::weightedElement<Verb>({{5, Verb::Exact},
                                           {5, Verb::UpTo},
                                           {3, Verb::ExactFrom},
                                           {3, Verb::UpToFrom},
                                           {1, Verb::ExactFromEnd},
                                           {1, Verb::UpToFromEnd},
                                           {3, Verb::SeekFromStart},
                                           {2, Verb::SeekFromCurrent},
                                           {1, Verb::SeekNow}});
}

/// Not 0: the size of an empty media is one that is not known, for a stream.
std::size_t ALength() {
    return *rc::gen::weightedElement<std::size_t>(
        {{1, 1}, {2, 100}, {1, 8191}, {2, 8192}, {2, 8193}, {4, 20000}});
}

void CompareWithTheFile(const std::function<ezStream*(const Media& aMedia)>& aMake) {
    const Media media(ALength());
    ezFileMediaParserStream file{ezCString(media.Path().c_str())};
    RC_ASSERT(file.Open());
    char byte = 0; // Open fills the adapter's buffer, so the file's is filled as well
    RC_ASSERT(file.Read(1, &byte));
    RC_ASSERT(file.Seek(0, ezMediaParserStream::SeekFromStart, false));
    ezStreamMediaParserStream adapter(aMake(media), true);
    RC_ASSERT(adapter.Open());
    RC_ASSERT(adapter.Seek(0, ezMediaParserStream::SeekFromStart, false));
    RC_ASSERT((adapter.GetMediaSize() == file.GetMediaSize()));
    const auto operations = *rc::gen::container<std::vector<Operation>>(
        rc::gen::construct<Operation>(AVerb(), APosition(), ASize()));
    for (const Operation& operation : operations) {
        const Outcome expected = Apply(file, operation);
        const Outcome outcome = Apply(adapter, operation);
        if (!(outcome == expected)) {
            RC_LOG() << "length " << media.Content().size() << "\n"
                     << operation << "\nadapter: " << outcome << "\nfile:    " << expected << "\n";
            RC_FAIL("The adapter does not do what the file stream does.");
        }
    }
}

/// Bytes that come only when a read has found nothing, so many at a time.
ezStream* Trickle(const Media& aMedia, bool afLending) {
    auto* stream = new ScriptedStream(aMedia.Content(), afLending);
    stream->Withhold();
    const std::size_t piece = *rc::gen::element<std::size_t>(1, 188, 1316, 8192);
    stream->mOnNothing = [stream, piece, left = aMedia.Content().size()]() mutable {
        if (left == 0) {
            stream->Finish();
        }
        left -= std::min(left, piece);
        stream->Arrive(piece);
        stream->Fire();
    };
    return stream;
}

} // namespace

RC_GTEST_PROP(StreamMediaParserStreamModel, OverAMemoryStreamThatLendsIsAFile, ()) {
    CompareWithTheFile([](const Media& aMedia) { return InMemory<ezMemoryStream>(aMedia.Content()); });
}

RC_GTEST_PROP(StreamMediaParserStreamModel, OverAMemoryStreamThatCopiesIsAFile, ()) {
    CompareWithTheFile([](const Media& aMedia) { return InMemory<CopyingMemoryStream>(aMedia.Content()); });
}

RC_GTEST_PROP(StreamMediaParserStreamModel, OverAFileStreamIsAFile, ()) {
    CompareWithTheFile([](const Media& aMedia) {
        return ezFileGetStream(aMedia.Open(aMedia.Path()), "", aMedia.Path().c_str());
    });
}

RC_GTEST_PROP(StreamMediaParserStreamModel, OverAPartOfAFileIsAFile, ()) {
    CompareWithTheFile([](const Media& aMedia) {
        const std::string path = aMedia.PathOfLargerFile();
        return ezFilePartGetStream(aMedia.Open(path), "", path.c_str(), 6, aMedia.Content().size());
    });
}

RC_GTEST_PROP(StreamMediaParserStreamModel, OverATrickleThatLendsIsAFile, ()) {
    CompareWithTheFile([](const Media& aMedia) { return Trickle(aMedia, true); });
}

RC_GTEST_PROP(StreamMediaParserStreamModel, OverATrickleThatCopiesIsAFile, ()) {
    CompareWithTheFile([](const Media& aMedia) { return Trickle(aMedia, false); });
}
