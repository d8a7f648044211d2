#include "ezFormats/tags/CommentTexts.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/TagNames.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/PictureBlock.h"
#include "ezBytes/TextBytes.h"
#include "ezBytes/VorbisComments.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

void ReadCommentTexts(const ByteReader& aComments, const CodePage& aCodePage, MusicTexts& aTexts,
                      CoverFacts& aCover) {
    VorbisComments comments(aComments);
    MusicValues values;
    ezCString key;
    ByteReader value = aComments;
    bool fTitle = !aTexts.mTitle.IsEmpty();
    for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && comments.Next(&key, &value); ++count) {
        PictureBlock picture;
        if (const TagField* const field = FindTagField(TagWords::Vorbis, key.View())) {
            values.Add(*field, ReadCleanText(value, TextEncoding::Utf8, aCodePage));
            fTitle = fTitle || field->mField == MusicField::Title;
        } else if (ReadPictureComment(key.View(), value, kCoverFacts_MaxText, &picture)) {
            aCover.Offer(picture.mType, picture.mMimeType, picture.mDataSize);
            if (fTitle && aCover.IsFinal()) {
                break;
            }
        }
    }
    values.Store(aTexts);
}
