#pragma once

#include "ez/ElementaryStreamParser.h"
#include "ezPlatform/media/MediaInfo.h"

#include <cstddef>
#include <string>
#include <vector>

/// What a scripted format does when it starts, or when a request of its has been satisfied.
struct EltStep {
    enum Verb {
        Read,
        Append,
        Skip,
        SkipAppended, ///< a skip placed after what was gathered
        Nothing,      ///< stays in progress without a request
        Complete,
        Fail
    };

    Verb mVerb = Nothing;
    uint32 mSize = 0; ///< of a request

    static EltStep OfRead(uint32 aSize) { return {Read, aSize}; }
    static EltStep OfAppend(uint32 aSize) { return {Append, aSize}; }
    static EltStep OfSkip(uint32 aSize) { return {Skip, aSize}; }
    static EltStep OfSkipAppended(uint32 aSize) { return {SkipAppended, aSize}; }
    static EltStep OfNothing() { return {Nothing, 0}; }
    static EltStep OfCompletion() { return {Complete, 0}; }
    static EltStep OfFailure() { return {Fail, 0}; }
};

using EltScript = std::vector<EltStep>;

/// A format that plays a script, and notes what it is given. The last step of a script is repeated for ever.
class ScriptedEltStreamParser : public ezElementaryStreamParser {
public:
    /// A request that was satisfied.
    struct Satisfied {
        bool mfSkip;
        uint32 mSize;
        std::string mBytes; ///< none of a skip

        bool operator==(const Satisfied& anOther) const {
            return mfSkip == anOther.mfSkip && mSize == anOther.mSize && mBytes == anOther.mBytes;
        }
    };

    /// @param aJournal  notes the calls of whoever pushes ("A opened", "A took 10", "A closed", "A deleted");
    ///                  may be null, and else outlives the parser
    explicit ScriptedEltStreamParser(EltScript aScript, uint32 aMaxReadSize = 0xFFFFFFFF,
                                     const char* aName = "Scripted", ezMediaInfo* aMediaInfo = nullptr,
                                     std::vector<std::string>* aJournal = nullptr);
    ~ScriptedEltStreamParser() override;

    void Open() override;
    ezMediaInfo* Close() override;
    parsing_status_t AddPacket(const void* aBuffer, uint32 aSize, bool afLostPackets) override;
    parsing_status_t StartParsing(bool afFromError) override;
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override;

    /// The text's bytes as one packet.
    parsing_status_t Push(const std::string& aPacket, bool afLostPackets = false) {
        return AddPacket(aPacket.data(), static_cast<uint32>(aPacket.size()), afLostPackets);
    }

    /// @name What the parser has come to
    /// @{
    uint32 TotalReadSize() const { return mTotalReadSize; }
    uint32 ReadCurrentSize() const { return mReadCurrentSize; }
    uint32 ReadRequestSize() const { return mReadRequestSize; }
    uint32 ReadBufferSize() const { return mReadBufferSize; }
    const unsigned char* ReadBuffer() const { return mReadBuffer; }
    bool IsSkipping() const { return mSkipRead; }
    /// @}

    std::vector<Satisfied> mSatisfied;
    std::vector<bool> mStarts; ///< of each start, whether packets had been lost
    const unsigned char* mLastBlock = nullptr;
    EltScript mScriptAfterLoss; ///< played by a start after lost packets; empty is the usual script

private:
    parsing_status_t PlayStep();
    void Note(const std::string& aText) const;

    EltScript mScript;
    const EltScript* mPlayed;
    std::size_t mNextStep = 0;
    std::vector<std::string>* mJournal;
};

/// A record that can be counted: how many there are of them.
class CountedMediaInfo : public ezMediaInfo {
public:
    CountedMediaInfo() { ++sCount; }
    ~CountedMediaInfo() override { --sCount; }

    static int Count() { return sCount; }

private:
    inline static int sCount = 0;
};
