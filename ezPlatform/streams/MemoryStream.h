#pragma once

#include "ezPlatform/streams/Stream.h"

/// A media stream that lies in memory as a whole. It lends its bytes.
///
/// A record receives the MIME type, where it has none.
class EZPLATFORM_API ezMemoryStream : public ezStream {
public:
    /// @param aBlock  a block of ezMalloc, owned from now on; null is an empty one
    /// @param aSize   bytes of the media at the start of the block
    ezMemoryStream(void* aBlock, std::size_t aSize, const ezCString& aMimeType);

    /// Names the stream; without a name it has neither URI nor extension.
    void SetURI(const ezCString& aURI) { mURI = aURI; }

    /// Of the name's last component.
    ezCString GetExtension() const override;
    ezCString GetURI() const override { return mURI; }
    ezuint64 GetSize() override { return mSize; }
    bool IsOpened() override { return true; }
    ezStreamingStatus Seek(const ezuint64& aPosition) override;
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override;
    ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag) override;
    bool HasOwnBuffer() const override { return true; }
    bool CanLend(int /*anAccess*/) const override { return true; }
    void CopyInfo(ezMediaInfo* anInfo) override;

protected:
    ~ezMemoryStream() override;

private:
    const unsigned char* mBlock;
    std::size_t mSize;
    std::size_t mPosition = 0;
    ezCString mMimeType;
    ezCString mURI;
};
