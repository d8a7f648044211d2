#include "ezThumbnails/detail/AreaScaler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

/// How much of [aStart, aStart + 1) lies in [aFrom, aTo).
double Overlap(unsigned aStart, double aFrom, double aTo) {
    return std::max(0.0, std::min(aTo, aStart + 1.0) - std::max(aFrom, static_cast<double>(aStart)));
}

/// The average of a channel over what a pixel of the result covers, by the definition.
double Average(const std::vector<unsigned char>& aBytes, unsigned aWidth, unsigned aHeight,
               unsigned aChannels, unsigned aChannel, double aLeft, double aTop, double aRight,
               double aBottom) {
    double sum = 0;
    for (unsigned y = 0; y < aHeight; ++y) {
        for (unsigned x = 0; x < aWidth; ++x) {
            const std::size_t at = (static_cast<std::size_t>(y) * aWidth + x) * aChannels + aChannel;
            sum += Overlap(x, aLeft, aRight) * Overlap(y, aTop, aBottom) * aBytes[at];
        }
    }
    return sum / ((aRight - aLeft) * (aBottom - aTop));
}

TEST(AreaScaler, EveryPixelIsTheAverageOfWhatItCovers) {
    std::uint32_t state = 99;
    const auto random = [&state](unsigned aLimit) {
        state = state * 1664525U + 1013904223U;
        return (state >> 16) % aLimit;
    };
    for (int i = 0; i < 200; ++i) {
        const unsigned width = random(20) + 1;
        const unsigned height = random(20) + 1;
        const unsigned channels = random(2) == 0 ? 1 : 3;
        const unsigned resultWidth = random(20) + 1;
        const unsigned resultHeight = random(20) + 1;
        std::vector<unsigned char> bytes(static_cast<std::size_t>(width) * height * channels);
        for (unsigned char& byte : bytes) {
            byte = static_cast<unsigned char>(random(256));
        }
        AreaScaler scaler;
        Picture result;
        ASSERT_TRUE(scaler.Begin(width, height, channels, resultWidth, resultHeight, &result));
        for (unsigned y = 0; y < height; ++y) {
            EXPECT_FALSE(scaler.IsComplete());
            scaler.AddRow(&bytes[static_cast<std::size_t>(y) * width * channels]);
        }
        ASSERT_TRUE(scaler.IsComplete());
        scaler.AddRow(bytes.data()); // one too many is ignored
        const double stepX = static_cast<double>(width) / resultWidth;
        const double stepY = static_cast<double>(height) / resultHeight;
        for (unsigned at = 0; at < resultWidth * resultHeight * channels; ++at) {
            const unsigned x = at / channels % resultWidth;
            const unsigned y = at / channels / resultWidth;
            const double expected = Average(bytes, width, height, channels, at % channels, x * stepX,
                                            y * stepY, (x + 1) * stepX, (y + 1) * stepY);
            EXPECT_NEAR(result.mBytes[at], expected, 0.501);
        }
    }
}

/// By the definition in whole numbers, one result's pixel after the other.
std::vector<unsigned char> ExactlyScaled(const std::vector<unsigned char>& aBytes, unsigned aWidth,
                                         unsigned aHeight, unsigned aChannels, unsigned aResultWidth,
                                         unsigned aResultHeight) {
    const auto common = [](unsigned aStart, unsigned aSize, unsigned aResultStart, unsigned aResultSize) {
        const unsigned from = std::max(aStart * aResultSize, aResultStart * aSize);
        const unsigned to = std::min((aStart + 1) * aResultSize, (aResultStart + 1) * aSize);
        return from < to ? std::uint64_t{to - from} : 0;
    };
    std::vector<unsigned char> result;
    for (unsigned at = 0; at < aResultWidth * aResultHeight; ++at) {
        std::vector<std::uint64_t> sums(aChannels);
        for (unsigned from = 0; from < aWidth * aHeight; ++from) {
            const std::uint64_t parts = common(from % aWidth, aWidth, at % aResultWidth, aResultWidth) *
                                        common(from / aWidth, aHeight, at / aResultWidth, aResultHeight);
            const unsigned char* const pixel = &aBytes[std::size_t{from} * aChannels];
            for (unsigned c = 0; c < aChannels; ++c) {
                sums[c] += parts * pixel[c] * (aChannels == 4 && c != 3 ? pixel[3] : 1);
            }
        }
        const std::uint64_t area = std::uint64_t{aWidth} * aHeight;
        for (unsigned c = 0; c < aChannels; ++c) {
            const std::uint64_t count = aChannels == 4 && c != 3 ? sums[3] : area;
            result.push_back(count == 0 ? 0 : static_cast<unsigned char>((sums[c] + count / 2) / count));
        }
    }
    return result;
}

TEST(AreaScaler, EveryByteIsTheExactAverageRounded) {
    std::uint32_t state = 4;
    const auto random = [&state](unsigned aLimit) {
        state = state * 1664525U + 1013904223U;
        return (state >> 16) % aLimit;
    };
    for (int i = 0; i < 300; ++i) {
        const unsigned width = random(24) + 1;
        const unsigned height = random(24) + 1;
        const unsigned channels = std::vector<unsigned>{1, 3, 4}[random(3)];
        const unsigned resultWidth = random(24) + 1;
        const unsigned resultHeight = random(24) + 1;
        const bool fExtreme = random(3) == 0;
        std::vector<unsigned char> bytes(static_cast<std::size_t>(width) * height * channels);
        for (unsigned char& byte : bytes) {
            byte = static_cast<unsigned char>(fExtreme ? random(2) * 255 : random(256));
        }
        AreaScaler scaler;
        Picture result;
        ASSERT_TRUE(scaler.Begin(width, height, channels, resultWidth, resultHeight, &result));
        for (unsigned y = 0; y < height; ++y) {
            scaler.AddRow(&bytes[static_cast<std::size_t>(y) * width * channels]);
        }
        const unsigned char* const scaled = result.mBytes.get();
        EXPECT_EQ(std::vector<unsigned char>(scaled, scaled + result.GetByteCount()),
                  ExactlyScaled(bytes, width, height, channels, resultWidth, resultHeight));
    }
}

TEST(AreaScaler, TheLongestSidesDoNotOverflow) {
    constexpr unsigned kSide = 65535;
    const std::vector<unsigned char> row(std::size_t{kSide} * 4, 255);
    AreaScaler scaler;
    Picture result;
    ASSERT_TRUE(scaler.Begin(kSide, 300, 4, 1, 1, &result));
    for (unsigned y = 0; y < 300; ++y) {
        scaler.AddRow(row.data());
    }
    ASSERT_TRUE(scaler.IsComplete());
    for (unsigned i = 0; i < 4; ++i) {
        EXPECT_EQ(result.mBytes[i], 255);
    }
}

} // namespace
