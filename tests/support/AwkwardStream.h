#pragma once

#include "ez/MediaParserStream.h"

#include <cstddef>
#include <string>

/// How an AwkwardStream delivers.
struct Delivery {
    static constexpr std::size_t kNever = static_cast<std::size_t>(-1);

    std::size_t mMaximumRead = kNever; ///< bytes that one read of the source gives at most: 1 is a trickle
    std::size_t mFailingOffset =
        kNever;              ///< a read of the source that would touch this offset fails once with -1
    bool mfSizeKnown = true; ///< GetMediaSize tells the size
    bool mfSeekable = true;  ///< the source moves; else only a seek to where it stands succeeds
};

/// A file in memory that is delivered awkwardly, and that counts what it costs.
class AwkwardStream : public ezMediaParserStream {
public:
    explicit AwkwardStream(std::string aContent, const Delivery& aDelivery = Delivery(),
                           const char* aFullPath = "/media/awkward.bin");

    struct Costs {
        std::size_t mReads = 0;          ///< reads of the source, failed ones included
        std::size_t mBytes = 0;          ///< bytes that they gave
        std::size_t mSeeks = 0;          ///< seeks, lazy ones included
        std::size_t mImmediateSeeks = 0; ///< seeks that had to happen at once
    };
    const Costs& GetCosts() const { return mCosts; }
    void ResetCosts() { mCosts = Costs(); }
    /// Where the source stands.
    std::size_t GetSourcePosition() const { return mSourcePosition; }
    /// Exchanges the bytes after the stream's back.
    void SetContent(std::string aContent) { mContent = std::move(aContent); }

protected:
    bool MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) override;
    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override;

private:
    std::string mContent;
    Delivery mDelivery;
    Costs mCosts;
    std::size_t mSourcePosition = 0;
    bool mfFailed = false;
};
