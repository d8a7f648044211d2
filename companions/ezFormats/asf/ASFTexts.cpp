#include "ezFormats/asf/ASFTexts.h"

#include "ezFormats/asf/ASFLimits.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/TagNames.h"

#include "ezBytes/ASFAttributes.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/text/Case.h"

#include <optional>
#include <string_view>
#include <utility>

namespace {

ezCString TextOf(ByteReader aText) {
    return ReadCleanText(aText, TextEncoding::Utf16Little, CodePage());
}

/// The value of an attribute as a text; empty for one of bytes.
ezCString TextOf(const ByteReader& aValue, ASFValue aType) {
    switch (aType) {
    case ASFValue::Text:
        return TextOf(aValue);
    case ASFValue::Bool:
    case ASFValue::Number16:
    case ASFValue::Number32:
    case ASFValue::Number64:
        return ezCString::Format("%llu", static_cast<unsigned long long>(ReadASFNumber(aValue)));
    default:
        return {};
    }
}

/// A track as the older name has it, which counts from 0.
ezCString CountedFromOne(const ezCString& aText) {
    const std::uint32_t before = MusicNumberOf(aText.View());
    return before != 0 || aText == "0" ? ezCString::Format("%u", unsigned{before} + 1) : ezCString();
}

class Reading {
public:
    /// Takes the numbers of the streams that are announced; 0 where there is none.
    Reading(unsigned aSound, unsigned aVideo) : mSound(aSound), mVideo(aVideo) {}

    void TakeDescription(const ByteReader& aObject) {
        const auto texts = ReadASFDescription(aObject);
        mValues.Add({MusicField::Title, false}, TextOf(texts[0]));
        mValues.Add({MusicField::Creator, false}, TextOf(texts[1]));
    }

    void TakeAttributes(const ByteReader& aObject, ASFAttributes::Form aForm) {
        ASFAttributes attributes(aObject, aForm);
        std::uint32_t pictures = 0;
        std::string_view name;
        ByteReader value = aObject;
        for (std::uint32_t count = 0; count < kMusicTexts_MaxFrames && attributes.Next(&name, &value);
             ++count) {
            if (ezIsEqualNoCase(name, "WM/Picture")) {
                OfferPicture(value);
                if (++pictures == kASF_MaxPictures) {
                    return;
                }
            } else if (ezIsEqualNoCase(name, "IsVBR")) {
                TakeVaries(attributes.GetStream(), ReadASFNumber(value) != 0);
            } else if (ezIsEqualNoCase(name, "AspectRatioX")) {
                TakeAspect(attributes.GetStream(), ReadASFNumber(value), &VideoRatio::mWidth);
            } else if (ezIsEqualNoCase(name, "AspectRatioY")) {
                TakeAspect(attributes.GetStream(), ReadASFNumber(value), &VideoRatio::mHeight);
            } else if (const TagField* const field = FindTagField(TagWords::ASF, name)) {
                ezCString text = TextOf(value, attributes.GetType());
                if (ezIsEqualNoCase(name, "WM/Track")) {
                    text = CountedFromOne(text);
                }
                mValues.Add(*field, text);
            }
        }
    }

    /// The last call.
    ASFTexts Finish() {
        mValues.Store(mTexts.mTexts);
        mTexts.mfVaries = mSoundVaries.value_or(mfFileVaries);
        const VideoRatio& pixel = mVideoPixel.IsKnown() ? mVideoPixel : mFilePixel;
        mTexts.mPixelAspect = VideoRatio::Of(pixel.mWidth, pixel.mHeight);
        return std::move(mTexts);
    }

private:
    void OfferPicture(ByteReader aValue) {
        ASFPicture picture;
        if (ReadASFPicture(aValue, kCoverFacts_MaxText, &picture)) {
            mTexts.mCover.OfferPicture(picture.mType, picture.mMimeType, aValue);
        }
    }

    /// Of a film the file as a whole may vary, and its pictures, where the sound does not.
    void TakeVaries(unsigned aStream, bool afVaries) {
        if (aStream == 0) {
            mfFileVaries = mfFileVaries || afVaries;
        } else if (aStream == mSound) {
            mSoundVaries = mSoundVaries.value_or(false) || afVaries;
        }
    }

    void TakeAspect(unsigned aStream, std::uint64_t aNumber, std::uint32_t VideoRatio::*aSide) {
        if (aStream == 0 || aStream == mVideo) {
            VideoRatio& pixel = aStream == 0 ? mFilePixel : mVideoPixel;
            pixel.*aSide = aNumber <= UINT32_MAX ? static_cast<std::uint32_t>(aNumber) : 0;
        }
    }

    MusicValues mValues;
    ASFTexts mTexts;
    unsigned mSound;
    unsigned mVideo;
    bool mfFileVaries = false;
    std::optional<bool> mSoundVaries; ///< nothing where only the file says
    VideoRatio mFilePixel;
    VideoRatio mVideoPixel;
};

} // namespace

ASFTexts ReadASFTexts(const ASFHeader& aHeader) {
    const ASFStreamFacts* const sound = aHeader.Find(ASFStreamKind::Sound);
    const ASFStreamFacts* const video = aHeader.Find(ASFStreamKind::Video);
    Reading reading(sound != nullptr ? sound->mNumber : 0, video != nullptr ? video->mNumber : 0);
    if (aHeader.mDescription) {
        reading.TakeDescription(*aHeader.mDescription);
    }
    if (aHeader.mContent) {
        reading.TakeAttributes(*aHeader.mContent, ASFAttributes::Form::Content);
    }
    for (const auto& object : {aHeader.mMetadata, aHeader.mLibrary}) {
        if (object) {
            reading.TakeAttributes(*object, ASFAttributes::Form::Library);
        }
    }
    return reading.Finish();
}
