#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/text/CString.h"

class ezStream;

/// A place where the data of a picture can be read: the input of an ezThumbnailGenerator. Made for one build,
/// and used by one thread at a time.
class EZPARSERS_API ezThumbnailSource {
public:
    ezThumbnailSource() = default;
    /// @param aMimeType  of the picture; "" when it is not known
    explicit ezThumbnailSource(const ezCString& aMimeType) : mMimeType(aMimeType) {}
    virtual ~ezThumbnailSource();

    ezThumbnailSource(const ezThumbnailSource&) = delete;
    ezThumbnailSource& operator=(const ezThumbnailSource&) = delete;

    /// True when there is something to read.
    virtual bool Exists() const = 0;
    /// A new stream over the picture's data, at its start, which the caller owns and gives back with Release.
    /// It may outlive the source. Null when there is no data.
    virtual ezStream* GetStream() const = 0;

    /// The MIME type of the picture.
    ezCString GetMimeType() const { return mMimeType; }
    /// Sets the MIME type that GetMimeType and the streams made from now on report.
    void SetMimeType(const ezCString& aMimeType) { mMimeType = aMimeType; }

protected:
    ezCString mMimeType; ///< what GetMimeType returns
};
