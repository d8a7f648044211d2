#pragma once

#include "ezThumbnails/Export.h"

#include "ez/ThumbnailProvider.h"

/// Makes thumbnails of JPEG and PNG pictures, as JPEG or PNG: within 160 by 160 pixels those of the DLNA
/// profiles JPEG_TN and PNG_TN. The kind of a source is seen from its bytes, whatever its MIME type says.
/// docs/serving-thumbnails.md tells what it decodes, applies and writes.
///
/// A picture that is cut short, corrupt, or fails a check sum fails, and so does one that would cost more
/// than the limits below; nothing is written then. The cost of a JPEG in memory is that of a few rows, of a
/// progressive one that of its coefficients, of an interlaced PNG that of the whole picture.
///
/// A source that has not arrived yet is waited for. An object keeps nothing but a note of the last item of
/// which a build failed, for CostlyThumbnailProvider; one thread at a time uses it.
class EZTHUMBNAILS_API PictureThumbnailGenerator : public ezThumbnailGenerator {
public:
    /// Pixels that an original may have: those of the largest sensors in telephones, 16320 by 12240.
    static constexpr uint32 kMaxPixels = 200'000'000;
    /// Pixels of the longest side of an original: what a JPEG is able to state.
    static constexpr uint32 kMaxSide = 65535;
    /// Bytes of an original that decoding may hold at a time: a progressive JPEG of 32 million pixels at
    /// 4:2:0. On top of them come the thumbnail's own: its pixels of 1 to 4 bytes, twice while it is turned,
    /// 12 bytes for each sample of one of its rows, and the file that it becomes. For 160 by 160 that is some
    /// 200 KiB, for the largest thumbnail up to 131 MiB and the file.
    static constexpr uint32 kMaxMemory = 96U << 20;
    /// Scans that a JPEG may have: encoders write about 10, and each costs a walk through the whole picture.
    static constexpr int kMaxScans = 64;
    /// Bytes of a source: beyond a JPEG of so many pixels with the least compression.
    static constexpr uint32 kMaxSourceBytes = 512U << 20;
    /// Bytes of a PNG's picture data that may follow its last pixels: the end of the data takes some ten, and
    /// some encoders pad it. A byte may inflate to a thousand, so these cost less than a small picture.
    static constexpr uint32 kMaxAfterPixels = 16384;
    /// Pixels that a thumbnail may have: the largest picture of DLNA's JPEG profiles, 4096 by 4096.
    static constexpr uint32 kMaxThumbnailPixels = 4096 * 4096;

    PictureThumbnailGenerator();
    ~PictureThumbnailGenerator() override;

    /// Both formats of a JPEG or PNG MIME type (any case, parameters ignored), nothing of others.
    uint32 CanConvert(const ezCString& aMimeType) override;
    /// Of JPEG and PNG, wanted together, it writes JPEG. With mfFastRescale a JPEG may be decoded smaller
    /// than it is wanted, and be enlarged.
    bool BuildThumbnail(const ThumbnailInfo* anInfo, const ezThumbnailSource* aSource,
                        ezFile* aFile) override;

    /// Whether builds of this item, by identity and path, have failed since the note was taken away, and all
    /// of them for the cost of their picture. Where another one failed otherwise, be it for want of memory, a
    /// disk that is full or damage, a later request may find it good.
    bool HasMetCost(const ThumbnailInfo& anInfo) const;
    /// Takes the note of this item's failures away, as a build that succeeds does.
    void ForgetFailures(const ThumbnailInfo& anInfo);

private:
    bool IsNoted(const ThumbnailInfo& anInfo) const;
    void NoteFailure(const ThumbnailInfo& anInfo, bool afTooCostly);

    bool mfNoted = false;
    bool mfAllTooCostly = false; ///< the failures of the item
    ezCString mNotedItem;
    ezCString mNotedPath;
};
