#pragma once

#include "ez/ElementaryStreamParser.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// A stream, and how it arrives.
struct EltStreamInput {
    /// The first bytes of an input say how the rest, which is the stream, is repeated and cut into packets.
    EltStreamInput(const std::uint8_t* aData, std::size_t aSize);

    /// Bytes of the packet of an index that begins at a position.
    std::size_t PacketSize(std::size_t anIndex, std::size_t aPosition) const;

    std::string mStream;
    std::size_t mLossAt = 0;        ///< a position in the stream
    std::vector<std::size_t> mCuts; ///< sizes of packets, over and over; empty is one byte each
};

/// Pushes a packet from a block of its own size, so that a sanitizer sees every read beside it.
ezElementaryStreamParser::parsing_status_t PushEltStream(ezElementaryStreamParser& aParser,
                                                         const std::string& aStream, std::size_t aFrom,
                                                         std::size_t aSize, bool afLost);

/// Makes a parser that owns the record.
using MakeEltStreamParser = ezElementaryStreamParser* (*)(ezMediaInfo* anInfo);

/// Plays an input (EltStreamInput) against a parser of an elementary stream.
/// @param aCodecKey  key under which the record names the codec
/// @param aCodecs    what it may say there
void FuzzEltStream(const std::uint8_t* aData, std::size_t aSize, MakeEltStreamParser aMake,
                   const char* aCodecKey, std::initializer_list<const char*> aCodecs);
