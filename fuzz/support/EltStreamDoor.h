#pragma once

#include "ez/ElementaryStreamParser.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>

/// Makes a parser that owns the record.
using MakeEltStreamParser = ezElementaryStreamParser* (*)(ezMediaInfo* anInfo);

/// Plays an input against a parser of an elementary stream. Its first bytes say how the rest, which is the
/// stream, is repeated and cut into packets.
/// @param aCodecKey  key under which the record names the codec
/// @param aCodecs    what it may say there
void FuzzEltStream(const std::uint8_t* aData, std::size_t aSize, MakeEltStreamParser aMake,
                   const char* aCodecKey, std::initializer_list<const char*> aCodecs);
