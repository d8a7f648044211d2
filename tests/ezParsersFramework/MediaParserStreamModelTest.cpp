#include "ez/MediaParserStream.h"

#include "support/AwkwardStream.h"
#include "support/StreamReads.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

// The rules of the stream, stated a second time over a flat media, and compared with the stream operation by
// operation: result, count, every byte of the caller's buffer, position, and the calls of the two primitives
// with their results.

namespace {

constexpr std::uint64_t kEndless = UINT64_MAX; ///< a file that has bytes at every position

/// The byte at an offset of any media here: no stretch looks like another.
char ByteAt(std::uint64_t anOffset) {
    std::uint64_t mixed = (anOffset + 1) * UINT64_C(0x9E3779B97F4A7C15);
    mixed ^= mixed >> 29;
    mixed *= UINT64_C(0xBF58476D1CE4E5B9);
    return static_cast<char>(mixed >> 56);
}

std::string BytesAt(std::uint64_t anOffset, std::size_t aCount) {
    std::string bytes(aCount, '\0');
    for (std::size_t i = 0; i < aCount; ++i) {
        bytes[i] = ByteAt(anOffset + i);
    }
    return bytes;
}

/// How the media of one run is delivered.
struct Terms {
    std::uint64_t mLength = 0;
    std::size_t mMaximumRead = Delivery::kNever;
    std::size_t mFailingOffset = Delivery::kNever;
    bool mfSizeKnown = true;
    bool mfSeekable = true;
    bool mfSeekIgnored = false; ///< a seek succeeds anywhere and moves nothing (endless media only)
};

std::ostream& operator<<(std::ostream& aStream, const Terms& aTerms) {
    return aStream << "length " << aTerms.mLength << ", at most " << aTerms.mMaximumRead << ", failing at "
                   << aTerms.mFailingOffset << (aTerms.mfSizeKnown ? "" : ", size unknown")
                   << (aTerms.mfSeekable ? "" : ", not seekable")
                   << (aTerms.mfSeekIgnored ? ", seeks ignored" : "");
}

using Calls = std::vector<std::string>;

std::string SeekCall(std::uint64_t anOffset, bool afNow, bool afResult) {
    return "seek " + std::to_string(anOffset) + (afNow ? " now" : " lazy") + (afResult ? "" : " refused");
}

std::string ReadCall(std::size_t aSize, std::int64_t aResult) {
    return "read " + std::to_string(aSize) + ": " + std::to_string(aResult);
}

// ---- the stream under test ----

/// Notes the calls that reach the source below.
template <typename Source>
class Recorded : public Source {
public:
    explicit Recorded(const Terms& aTerms) : Source(aTerms) {}
    Calls TakeCalls() { return std::exchange(mCalls, Calls()); }

protected:
    bool MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) override {
        const std::uint64_t offset = anOffset.ToUInt64();
        const bool result = Source::MediaSeek(anOffset, afSeekImmediate);
        mCalls.push_back(SeekCall(offset, afSeekImmediate, result));
        return result;
    }
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        const ezFileOffset result = Source::MediaRead(aBuffer, aSize);
        mCalls.push_back(ReadCall(aSize, result));
        return result;
    }

private:
    Calls mCalls;
};

class AwkwardSource : public AwkwardStream {
public:
    explicit AwkwardSource(const Terms& aTerms)
        : AwkwardStream(
              BytesAt(0, static_cast<std::size_t>(aTerms.mLength)),
              Delivery{aTerms.mMaximumRead, aTerms.mFailingOffset, aTerms.mfSizeKnown, aTerms.mfSeekable}) {}
};

class EndlessSource : public ezMediaParserStream {
public:
    explicit EndlessSource(const Terms& aTerms) : mTerms(aTerms) {
        mMediaSize = aTerms.mfSizeKnown ? kEndless : 0;
    }

protected:
    bool MediaSeek(const ezuint64& anOffset, bool /*afSeekImmediate*/) override {
        if (!mTerms.mfSeekIgnored) {
            mPosition = anOffset.ToUInt64();
        }
        return true;
    }
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        const std::size_t most = std::min(aSize, mTerms.mMaximumRead);
        const std::size_t count =
            static_cast<std::size_t>(std::min<std::uint64_t>(most, kEndless - mPosition));
        const std::string bytes = BytesAt(mPosition, count);
        std::copy(bytes.begin(), bytes.end(), static_cast<char*>(aBuffer));
        mPosition += count;
        return static_cast<ezFileOffset>(count);
    }

private:
    Terms mTerms;
    std::uint64_t mPosition = 0;
};

// ---- the model ----

/// What an operation gave, and what the stream is like after it.
struct Outcome {
    bool mfResult = false;
    std::size_t mCount = 0;
    std::string mBuffer;
    std::uint64_t mPosition = 0;
    Calls mCalls;
};

bool operator==(const Outcome& aLeft, const Outcome& aRight) {
    return aLeft.mfResult == aRight.mfResult && aLeft.mCount == aRight.mCount &&
           aLeft.mBuffer == aRight.mBuffer && aLeft.mPosition == aRight.mPosition &&
           aLeft.mCalls == aRight.mCalls;
}

std::ostream& operator<<(std::ostream& aStream, const Outcome& anOutcome) {
    std::uint64_t sum = 0;
    for (const char byte : anOutcome.mBuffer) {
        sum = sum * 31 + static_cast<unsigned char>(byte);
    }
    aStream << (anOutcome.mfResult ? "true" : "false") << ", count " << anOutcome.mCount << ", position "
            << anOutcome.mPosition << ", bytes' sum " << sum << ", calls:";
    for (const std::string& call : anOutcome.mCalls) {
        aStream << " [" << call << "]";
    }
    return aStream;
}

class Model {
public:
    explicit Model(const Terms& aTerms) : mTerms(aTerms), mSize(aTerms.mfSizeKnown ? aTerms.mLength : 0) {}

    bool Exact(std::size_t aSize, char* aBuffer) {
        if (aSize == 0) {
            return true;
        }
        if (mBuffer && EndsBy(mBuffer->size(), aSize) && mPosition + aSize != mBuffer->size()) {
            return Serve(aSize, aBuffer);
        }
        if (!mBuffer && EndsBy(8192, aSize)) {
            Fill();
            if (!EndsBy(mBuffer->size(), aSize)) {
                mPosition = mBuffer->size();
                SeekSource(mPosition, false);
                return false;
            }
            return Serve(aSize, aBuffer);
        }
        const std::int64_t count = ReadSource(aSize, aBuffer);
        return Advance(count) && static_cast<std::uint64_t>(count) == aSize;
    }

    bool UpTo(std::size_t* aSize, char* aBuffer) {
        if (*aSize == 0) {
            return true;
        }
        if (mBuffer && EndsBy(mBuffer->size(), *aSize)) {
            return Serve(*aSize, aBuffer);
        }
        if (!mBuffer && EndsBy(8192, *aSize)) {
            if (!Fill()) {
                return false;
            }
            const std::uint64_t after = mPosition < mBuffer->size() ? mBuffer->size() - mPosition : 0;
            *aSize = static_cast<std::size_t>(std::min<std::uint64_t>(*aSize, after));
            return Serve(*aSize, aBuffer);
        }
        const std::int64_t count = ReadSource(*aSize, aBuffer);
        if (!Advance(count)) {
            return false;
        }
        *aSize = static_cast<std::size_t>(count);
        return true;
    }

    bool Seek(std::uint64_t anOffset, bool afFromCurrent, bool afNow) {
        if (afFromCurrent && anOffset > UINT64_MAX - mPosition) {
            return false;
        }
        const std::uint64_t target = afFromCurrent ? mPosition + anOffset : anOffset;
        if (!SeekSource(target, afNow)) {
            return false;
        }
        mPosition = target;
        return true;
    }

    bool ExactFromEnd(std::size_t aSize, char* aBuffer) {
        return mSize != 0 && aSize <= mSize && Seek(mSize - aSize, false, false) && Exact(aSize, aBuffer);
    }

    bool UpToFromEnd(std::size_t* aSize, char* aBuffer) {
        std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(*aSize, mSize));
        if (mSize == 0 || !Seek(mSize - size, false, false) || !UpTo(&size, aBuffer)) {
            return false;
        }
        *aSize = size;
        return true;
    }

    std::uint64_t Position() const { return mPosition; }
    Calls TakeCalls() { return std::exchange(mCalls, Calls()); }

private:
    bool EndsBy(std::uint64_t aLimit, std::size_t aSize) const {
        return aSize <= aLimit && mPosition <= aLimit - aSize;
    }

    bool Serve(std::size_t aSize, char* aBuffer) {
        for (std::size_t i = 0; i < aSize; ++i) {
            aBuffer[i] = (*mBuffer)[static_cast<std::size_t>(mPosition) + i];
        }
        mPosition += aSize;
        SeekSource(mPosition, false);
        return true;
    }

    bool Fill() {
        std::string bytes(8192, '\0');
        const std::int64_t count = ReadSource(8192, &bytes[0]);
        bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
        mBuffer = bytes;
        return count >= 0;
    }

    bool Advance(std::int64_t aCount) {
        if (aCount < 0 || static_cast<std::uint64_t>(aCount) > UINT64_MAX - mPosition) {
            return false;
        }
        mPosition += static_cast<std::uint64_t>(aCount);
        return true;
    }

    bool SeekSource(std::uint64_t anOffset, bool afNow) {
        const bool result = mTerms.mfSeekable ? anOffset <= mTerms.mLength : anOffset == mSource;
        mCalls.push_back(SeekCall(anOffset, afNow, result));
        if (result && !mTerms.mfSeekIgnored) {
            mSource = anOffset;
        }
        return result;
    }

    std::int64_t ReadSource(std::size_t aSize, char* aBuffer) {
        const std::size_t count = static_cast<std::size_t>(
            std::min<std::uint64_t>(std::min(aSize, mTerms.mMaximumRead), mTerms.mLength - mSource));
        const bool fails = !mfFailed && mTerms.mFailingOffset != Delivery::kNever &&
                           mTerms.mFailingOffset >= mSource && mTerms.mFailingOffset < mSource + count;
        if (fails) {
            mfFailed = true;
            mCalls.push_back(ReadCall(aSize, -1));
            return -1;
        }
        const std::string bytes = BytesAt(mSource, count);
        std::copy(bytes.begin(), bytes.end(), aBuffer);
        mSource += count;
        mCalls.push_back(ReadCall(aSize, static_cast<std::int64_t>(count)));
        return static_cast<std::int64_t>(count);
    }

    Terms mTerms;
    std::uint64_t mSize;
    std::uint64_t mPosition = 0;
    std::optional<std::string> mBuffer; ///< none until the fill
    std::uint64_t mSource = 0;
    bool mfFailed = false;
    Calls mCalls;
};

// ---- operations ----

enum class Verb {
    Exact,
    UpTo,
    ExactFrom,
    UpToFrom,
    ExactFromEnd,
    UpToFromEnd,
    SeekFromStart,
    SeekFromCurrent
};

struct Operation {
    Verb mVerb;
    std::uint64_t mPosition;
    std::size_t mSize;
    bool mfNow;
};

std::ostream& operator<<(std::ostream& aStream, const Operation& anOperation) {
    static const char* const kNames[] = {"Read exact",      "Read up to",        "ReadFrom exact",
                                         "ReadFrom up to",  "ReadFromEnd exact", "ReadFromEnd up to",
                                         "Seek from start", "Seek from current"};
    return aStream << kNames[static_cast<int>(anOperation.mVerb)] << " position " << anOperation.mPosition
                   << " size " << anOperation.mSize << (anOperation.mfNow ? " now" : "");
}

template <typename Stream>
Outcome Apply(Stream& aStream, const Operation& anOperation) {
    Outcome outcome;
    outcome.mCount = anOperation.mSize;
    outcome.mBuffer.assign(anOperation.mSize + 1, kUntouched); // one more, which stays as it is
    char* const buffer = &outcome.mBuffer[0];
    switch (anOperation.mVerb) {
    case Verb::Exact:
        outcome.mfResult = aStream.Read(anOperation.mSize, buffer);
        break;
    case Verb::UpTo:
        outcome.mfResult = aStream.Read(&outcome.mCount, buffer);
        break;
    case Verb::ExactFrom:
        outcome.mfResult = aStream.ReadFrom(anOperation.mPosition, anOperation.mSize, buffer);
        break;
    case Verb::UpToFrom:
        outcome.mfResult = aStream.ReadFrom(anOperation.mPosition, &outcome.mCount, buffer);
        break;
    case Verb::ExactFromEnd:
        outcome.mfResult = aStream.ReadFromEnd(anOperation.mSize, buffer);
        break;
    case Verb::UpToFromEnd:
        outcome.mfResult = aStream.ReadFromEnd(&outcome.mCount, buffer);
        break;
    case Verb::SeekFromStart:
        outcome.mfResult =
            aStream.Seek(anOperation.mPosition, ezMediaParserStream::SeekFromStart, anOperation.mfNow);
        break;
    case Verb::SeekFromCurrent:
        outcome.mfResult =
            aStream.Seek(anOperation.mPosition, ezMediaParserStream::SeekFromCurrent, anOperation.mfNow);
        break;
    }
    outcome.mPosition = aStream.Tell().ToUInt64();
    outcome.mCalls = aStream.TakeCalls();
    return outcome;
}

Outcome Apply(Model& aModel, const Operation& anOperation) {
    Outcome outcome;
    outcome.mCount = anOperation.mSize;
    outcome.mBuffer.assign(anOperation.mSize + 1, kUntouched);
    char* const buffer = &outcome.mBuffer[0];
    switch (anOperation.mVerb) {
    case Verb::Exact:
        outcome.mfResult = aModel.Exact(anOperation.mSize, buffer);
        break;
    case Verb::UpTo:
        outcome.mfResult = aModel.UpTo(&outcome.mCount, buffer);
        break;
    case Verb::ExactFrom:
        outcome.mfResult =
            aModel.Seek(anOperation.mPosition, false, false) && aModel.Exact(anOperation.mSize, buffer);
        break;
    case Verb::UpToFrom:
        outcome.mfResult =
            aModel.Seek(anOperation.mPosition, false, false) && aModel.UpTo(&outcome.mCount, buffer);
        break;
    case Verb::ExactFromEnd:
        outcome.mfResult = aModel.ExactFromEnd(anOperation.mSize, buffer);
        break;
    case Verb::UpToFromEnd:
        outcome.mfResult = aModel.UpToFromEnd(&outcome.mCount, buffer);
        break;
    case Verb::SeekFromStart:
        outcome.mfResult = aModel.Seek(anOperation.mPosition, false, anOperation.mfNow);
        break;
    case Verb::SeekFromCurrent:
        outcome.mfResult = aModel.Seek(anOperation.mPosition, true, anOperation.mfNow);
        break;
    }
    outcome.mPosition = aModel.Position();
    outcome.mCalls = aModel.TakeCalls();
    return outcome;
}

template <typename Source>
void CompareWithModel(const Terms& aTerms, const std::vector<Operation>& anOperations) {
    Recorded<Source> stream(aTerms);
    Model model(aTerms);
    for (const Operation& operation : anOperations) {
        const Outcome expected = Apply(model, operation);
        const Outcome outcome = Apply(stream, operation);
        if (!(outcome == expected)) {
            RC_LOG() << aTerms << "\n"
                     << operation << "\nstream: " << outcome << "\nmodel:  " << expected << "\n";
            RC_FAIL("The stream does not do what its rules say.");
        }
    }
}

// ---- generators ----

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
         {1, rc::gen::element<std::uint64_t>(UINT64_MAX, UINT64_MAX - 1, UINT64_MAX - 99, UINT64_MAX - 100,
                                             UINT64_MAX - 8192, UINT64_MAX - 20000, UINT64_C(1) << 63,
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
                                           {2, Verb::SeekFromCurrent}});
}

std::vector<Operation> SomeOperations() {
    return *rc::gen::container<std::vector<Operation>>(
        rc::gen::construct<Operation>(AVerb(), APosition(), ASize(), rc::gen::arbitrary<bool>()));
}

std::uint64_t ALength() {
    return *rc::gen::weightedElement<std::uint64_t>(
        {{1, 0}, {1, 1}, {2, 100}, {1, 8191}, {2, 8192}, {2, 8193}, {4, 20000}});
}

std::size_t AMaximumRead() {
    return *rc::gen::element<std::size_t>(1, 2, 99, 100, 101, 8191, 8192, 8193);
}

} // namespace

RC_GTEST_PROP(MediaParserStreamModel, MediaDeliveredWhole, ()) {
    Terms terms;
    terms.mLength = ALength();
    CompareWithModel<AwkwardSource>(terms, SomeOperations());
}

RC_GTEST_PROP(MediaParserStreamModel, MediaDeliveredInShortReads, ()) {
    Terms terms;
    terms.mLength = ALength();
    terms.mMaximumRead = AMaximumRead();
    CompareWithModel<AwkwardSource>(terms, SomeOperations());
}

RC_GTEST_PROP(MediaParserStreamModel, MediaWithOneFailingOffset, ()) {
    Terms terms;
    terms.mLength = ALength();
    terms.mFailingOffset = *rc::gen::oneOf(rc::gen::element<std::size_t>(0, 1, 99, 8191, 8192, 19999),
                                           rc::gen::inRange<std::size_t>(0, 20000));
    CompareWithModel<AwkwardSource>(terms, SomeOperations());
}

RC_GTEST_PROP(MediaParserStreamModel, MediaOfUnknownSize, ()) {
    Terms terms;
    terms.mLength = ALength();
    terms.mfSizeKnown = false;
    CompareWithModel<AwkwardSource>(terms, SomeOperations());
}

RC_GTEST_PROP(MediaParserStreamModel, MediaThatCannotSeek, ()) {
    Terms terms;
    terms.mLength = ALength();
    terms.mfSeekable = false;
    CompareWithModel<AwkwardSource>(terms, SomeOperations());
}

RC_GTEST_PROP(MediaParserStreamModel, MediaWithEveryTroubleAtOnce, ()) {
    Terms terms;
    terms.mLength = ALength();
    terms.mMaximumRead = AMaximumRead();
    terms.mFailingOffset = *rc::gen::inRange<std::size_t>(0, 20000);
    terms.mfSizeKnown = *rc::gen::arbitrary<bool>();
    terms.mfSeekable = *rc::gen::arbitrary<bool>();
    CompareWithModel<AwkwardSource>(terms, SomeOperations());
}

RC_GTEST_PROP(MediaParserStreamModel, MediaWithBytesAtEveryPosition, ()) {
    Terms terms;
    terms.mLength = kEndless;
    terms.mfSizeKnown = *rc::gen::arbitrary<bool>();
    CompareWithModel<EndlessSource>(terms, SomeOperations());
}

RC_GTEST_PROP(MediaParserStreamModel, EndlessMediaThatIgnoresSeeks, ()) {
    Terms terms;
    terms.mLength = kEndless;
    terms.mMaximumRead = *rc::gen::element<std::size_t>(1, 100, 8192, Delivery::kNever);
    terms.mfSeekIgnored = true;
    CompareWithModel<EndlessSource>(terms, SomeOperations());
}
