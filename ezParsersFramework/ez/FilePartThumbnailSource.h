#pragma once

#include "ez/MediaParserTypes.h"
#include "ez/ThumbnailSource.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>

class ezFile;
class ezStream;

/// A picture that is a part of a file: a cover within a media file, stored as it is or as base64 text. Used
/// by one thread at a time.
class EZPARSERS_API ezFilePartThumbnailSource : public ezThumbnailSource {
public:
    /// @param aMimeType       of the picture
    /// @param aFilePath       the file that holds it
    /// @param aStartOffset    where its data begins, in bytes; below 0 there is no data
    /// @param aSize           bytes of the data in the file; a part that goes beyond the file's end is cut
    ///                        there. Base64 text is held in memory as a whole, together with what it decodes
    ///                        to, up to the smaller of this size and that of the file, which may be 2 GiB:
    ///                        bound an aSize that comes from an untrusted file
    /// @param afBase64        the data is base64 text, as ezBase64_Decode takes it
    /// @param anEncodedOffset bytes to drop from the start of the decoded data; ignored without afBase64
    ezFilePartThumbnailSource(const ezCString& aMimeType, const ezPathName& aFilePath,
                              ezFileOffset aStartOffset, uint32 aSize, bool afBase64, uint32 anEncodedOffset);
    ~ezFilePartThumbnailSource() override;

    /// True when something other than a folder stands under the path.
    bool Exists() const override;
    /// Null when the file does not open or the start offset is below 0; for base64 text also when nothing can
    /// be read, memory is refused, or anEncodedOffset is beyond the end of the decoded data (at the end
    /// itself the stream is empty). The stream owns the decoded data, or else the open file.
    ezStream* GetStream() const override;

protected:
    ezPathName mFilePath;      ///< of the file that holds the picture
    ezFileOffset mStartOffset; ///< of the data in the file; below 0 there is none
    uint32 mSize;              ///< bytes of the data in the file
    bool mfBase64;             ///< the data is base64 text
    uint32 mEncodedOffset;     ///< bytes to drop from the start of what that decodes to

private:
    ezStream* GetDecodedStream(ezFile& aFile) const;
    ezStream* Decode(const char* aText, std::size_t aCount) const;
};
