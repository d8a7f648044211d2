#pragma once

#include "ezFormats/tags/MusicTexts.h"
#include "ezFormats/tags/MusicValues.h"

#include "ezBytes/ByteReader.h"

#include <cstdint>

class CodePage;

/// What the script tag "onMetaData" states (E.5), of which nothing needs to be true: writers put in what they
/// were told, and editors of the file leave it as it was. A number that cannot be right tells nothing.
class FLVMetadata {
public:
    /// Takes what a script tag states, unless it is stated already. Nothing where it is another one.
    /// @param aCodePage  of texts that are not UTF-8
    void Take(const ByteReader& aContent, const CodePage& aCodePage);

    std::uint64_t GetMicroseconds() const; ///< 0: not stated; a year at most
    std::uint32_t GetFrameRate() const;    ///< pictures in 1000 seconds
    std::uint32_t GetWidth() const;        ///< pixels; 0 where one of both is not stated
    std::uint32_t GetHeight() const;
    std::uint32_t GetSoundRate() const; ///< bits a second that the encoder aimed at
    std::uint64_t GetFileSize() const;  ///< bytes that the file had
    MusicTexts GetTexts() const;

private:
    struct Number {
        const char* mName;
        double FLVMetadata::*mValue;
    };
    void TakeNumber(const ezCString& aName, double aValue);

    double mDuration = 0; ///< seconds
    double mWidth = 0;
    double mHeight = 0;
    double mFrameRate = 0;
    double mSoundRate = 0; ///< kilobits a second
    double mFileSize = 0;
    MusicValues mTexts;
};
