#pragma once

#include <cstddef>

/// What is kept of the elementary streams in a transport or program stream while its headers are read.

/// Bytes of a picture track's payload that its codec's reader gets: half a second at 4 Mbit/s, and the first
/// picture with its headers at 40 Mbit/s. Encoders put the headers before the first picture.
inline constexpr std::size_t kMPEGSystem_VideoPayload = std::size_t{256} * 1024;

/// Bytes of a sound track's payload that its codec's reader gets: a tenth of a second of TrueHD, which has
/// its headers so often, and two frames of any other codec.
inline constexpr std::size_t kMPEGSystem_AudioPayload = std::size_t{64} * 1024;

/// Bytes of the payload of a track that does not play first, and of one of which nothing tells what it holds:
/// two frames of most codecs.
inline constexpr std::size_t kMPEGSystem_OtherPayload = std::size_t{4} * 1024;

/// Time stamps of one window of a track of which the steps between pictures are told: of ten seconds, and
/// enough that the gap of one lost packet is not the usual step.
inline constexpr std::size_t kStampWindow_MaxKept = 256;

/// Steps of one length that tell a rate, the fewest: one alone may be that of a picture that was left out.
inline constexpr std::size_t kStampWindow_LeastSteps = 2;
