#pragma once

class ByteSource;

/// The type of the parser whose format's magic the media have; null when they have none that is known. A tag
/// of songs tells nothing: what stands after it does.
const char* FormatMagic_Find(ByteSource& aBytes);
