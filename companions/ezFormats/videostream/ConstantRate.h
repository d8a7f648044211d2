#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

class MediaBytes;

/// The length of a stream of MPEG video of a constant rate, by what each picture says of the buffer of a
/// decoder (vbv_delay): how long its bytes wait there until it is shown. So what stands between the first
/// picture and the last took as long to arrive as their bytes need, and the two delays differ by what it was
/// shown earlier or later (ISO/IEC 13818-2, annex C; ISO/IEC 11172-2, annex C).
class ConstantRate {
public:
    /// @param aRate       bits a second, as the stream states it
    /// @param aFrameRate  pictures in 1000 seconds; not 0: no sequence header without one is believed
    ConstantRate(std::uint32_t aRate, std::uint32_t aFrameRate) : mRate(aRate), mFrameRate(aFrameRate) {}

    /// Whether the first two pictures keep the rate, and their delays are those of it. None where there are
    /// not so many.
    /// @param aBytes  from the start of the file on
    std::optional<bool> LookAtStart(const unsigned char* aBytes, std::size_t aSize);

    /// Microseconds, by the last picture within the last bytes of a file, which are read. 0 where there is
    /// none, or it does not tell its delay.
    std::uint64_t Measure(MediaBytes& aBytes, std::uint64_t aFileSize) const;

private:
    struct Picture {
        std::uint64_t mPlace = 0;
        std::uint32_t mDelay = 0; ///< of 90 kHz
    };

    static std::optional<Picture> Find(const unsigned char* aBytes, std::size_t aSize, std::size_t aFrom);
    std::uint64_t TimeTo(const Picture& aPicture) const;

    std::uint32_t mRate;
    std::uint32_t mFrameRate;
    Picture mFirst;
};
