#pragma once

class ByteSource;

/// The type of the parser whose format's magic a media has; null when it has none that is known. A tag of
/// songs tells nothing: what stands after it does.
const char* FormatMagic_Find(ByteSource& aBytes);
