#pragma once

#include "fuzz/support/Check.h"
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/HeapBound.h"

#include "ezBytes/TextBytes.h"
#include "ezBytes/Utf8.h"
#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/Limits.h"

#include "ez/MediaParserStream.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

/// What every parser of a file format promises of every input. The input is the file; its last eight bytes,
/// unless it is shorter, say how the file is delivered, and all of them zero that it is delivered as it is.

/// The most that a parse may hold at a time: a block of the file and the one that it grows from, 64 KiB each,
/// and what is made of them.
inline constexpr std::size_t kFormatDoor_Heap = std::size_t{256} * 1024;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

struct FormatDoorDelivery {
    std::size_t mMaximumRead = SIZE_MAX; ///< bytes that one read gives at most
    std::size_t mFailingRead = SIZE_MAX; ///< this read, counted from 0, fails
    bool mfEndsInstead = false;          ///< it says that the media ends, which is no failure
    bool mfSizeKnown = true;
    std::uint64_t mSizeLie = 0; ///< bytes that the media is said to have and has not
    std::size_t mHolePlace = 0; ///< zeros are put in here, as a file has them where nothing was written
    std::uint64_t mHoleSize = 0;

    bool IsSound() const { return mFailingRead == SIZE_MAX && mSizeLie == 0; }
};

inline constexpr std::size_t kFormatDoor_DeliverySize = 8;

inline FormatDoorDelivery FormatDoor_Decode(const std::uint8_t* aData) {
    FuzzInput input(aData, kFormatDoor_DeliverySize);
    FormatDoorDelivery delivery;
    const std::uint8_t flags = input.Byte();
    const auto maximum = static_cast<std::size_t>(input.Number(2));
    const std::size_t failing = input.Byte();
    const auto place = static_cast<std::size_t>(input.Number(2));
    const std::uint64_t size = input.Byte();
    delivery.mMaximumRead = (flags & 1) != 0 ? maximum + 1 : SIZE_MAX;
    delivery.mFailingRead = (flags & 2) != 0 ? failing : SIZE_MAX;
    delivery.mfEndsInstead = (flags & 4) != 0;
    delivery.mfSizeKnown = (flags & 8) == 0;
    delivery.mSizeLie = (flags & 16) != 0 ? maximum + 1 : 0;
    delivery.mHolePlace = place;
    delivery.mHoleSize = size << input.Byte() % 48;
    return delivery;
}

/// A bit of the delivery that a door may have a meaning of its own for.
inline bool FormatDoor_IsFlagged(const std::uint8_t* aData, std::size_t aSize) {
    return aSize >= kFormatDoor_DeliverySize && (aData[aSize - kFormatDoor_DeliverySize] & 32) != 0;
}

/// A file in memory.
class FormatDoorStream : public ezMediaParserStream {
public:
    FormatDoorStream(std::string_view aFile, const FormatDoorDelivery& aDelivery)
        : mFile(aFile), mDelivery(aDelivery) {
        mDelivery.mHolePlace = std::min(mDelivery.mHolePlace, mFile.size());
        SetFullPath("/media/fuzzed");
        mMediaSize = mDelivery.mfSizeKnown ? GetTrueSize() + mDelivery.mSizeLie : 0;
    }

    std::uint64_t GetTrueSize() const { return mFile.size() + mDelivery.mHoleSize; }
    std::size_t GetReads() const { return mReads; }
    std::uint64_t GetBytes() const { return mBytes; }

protected:
    bool MediaSeek(const ezuint64& anOffset, bool /*afSeekImmediate*/) override {
        if (anOffset > GetTrueSize() + mDelivery.mSizeLie) {
            return false;
        }
        mPosition = anOffset.ToUInt64();
        return true;
    }

    ezFileOffset MediaRead(void* aBuffer, std::size_t aSize) override {
        FuzzCheck(mReads != 0 || mPosition == 0); // others read the start from what is kept of the first read
        if (mReads++ == mDelivery.mFailingRead) {
            return mDelivery.mfEndsInstead ? 0 : -1;
        }
        const std::uint64_t left = mPosition < GetTrueSize() ? GetTrueSize() - mPosition : 0;
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(left, std::min(aSize, mDelivery.mMaximumRead)));
        auto* const bytes = static_cast<char*>(aBuffer);
        for (std::size_t done = 0; done < count;) {
            done += Copy(bytes + done, count - done);
        }
        mBytes += count;
        return static_cast<ezFileOffset>(count);
    }

private:
    /// Gives bytes up to the next end of the hole.
    std::size_t Copy(char* aBytes, std::size_t aSize) {
        const std::uint64_t place = mDelivery.mHolePlace;
        const std::uint64_t after = place + mDelivery.mHoleSize;
        const bool fHole = mPosition >= place && mPosition < after;
        const std::uint64_t end = mPosition < place ? place : fHole ? after : GetTrueSize();
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(aSize, end - mPosition));
        if (fHole) {
            std::memset(aBytes, 0, count);
        } else {
            const std::uint64_t at = mPosition < place ? mPosition : mPosition - mDelivery.mHoleSize;
            std::memcpy(aBytes, mFile.data() + static_cast<std::size_t>(at), count);
        }
        mPosition += count;
        return count;
    }

    std::string_view mFile;
    FormatDoorDelivery mDelivery;
    std::uint64_t mPosition = 0;
    std::size_t mReads = 0;
    std::uint64_t mBytes = 0;
};

inline std::string FormatDoor_Dump(const ezMediaInfo* anInfo) {
    if (anInfo == nullptr) {
        return "none";
    }
    std::string text(anInfo->GetOtherProperties().View());
    for (const ezCString* member :
         {&anInfo->mTitle, &anInfo->mCreator, &anInfo->mAlbum, &anInfo->mGenre, &anInfo->mFullPath}) {
        text.append("|").append(member->View());
    }
    return text;
}

inline bool FormatDoor_IsListed(std::string_view aItem, std::string_view aList) {
    return ("," + std::string(aList) + ",").find("," + std::string(aItem) + ",") != std::string::npos;
}

/// @param afLines  line ends are between its parts
inline void FormatDoor_CheckText(std::string_view aText, std::size_t aMaxLength, bool afLines) {
    FuzzCheck(IsWholeUtf8(aText) && aText.size() <= aMaxLength);
    FuzzCheck(std::none_of(aText.begin(), aText.end(), [afLines](char aByte) {
        return (aByte >= 0 && aByte < ' ' && !(afLines && aByte == '\n')) || aByte == 0x7F;
    }));
}

/// Texts go into XML that other devices read.
inline void FormatDoor_CheckTexts(const ezMediaInfo& anInfo) {
    for (const ezCString* text : {&anInfo.mTitle, &anInfo.mCreator, &anInfo.mAlbum, &anInfo.mGenre}) {
        FormatDoor_CheckText(text->View(), kCleanText_MaxLength, false);
    }
    for (std::size_t i = 0; i < anInfo.GetCount(); ++i) {
        const ezCString key = anInfo.GetKeyAt(i);
        const ezCString value = anInfo.GetCString(key.c_str(), "");
        if (key == kezInfo_AlbumArtist || key == kezInfo_Composer) {
            FormatDoor_CheckText(value.View(), kCleanText_MaxLength, false);
        } else if (key == kezInfo_Creators || key == kezInfo_Genres) {
            FormatDoor_CheckText(value.View(), kMusicNames_MaxSize, true);
        } else {
            FuzzCheck(std::all_of(value.View().begin(), value.View().end(),
                                  [](char aByte) { return aByte >= ' ' && aByte < 0x7F; }));
        }
    }
}

/// MIME type, class, 4th field, and that they say the same.
inline void FormatDoor_CheckAnnouncement(FormatParser& aParser, const FormatDescription& aFormat,
                                         const ezMediaInfo& anInfo, bool afSizeKnown) {
    const std::string type(anInfo.GetCString(kezInfo_MimeType, "").View());
    FuzzCheck(aFormat.Announces(type));
    const std::string kind = type.substr(0, type.find('/'));
    const bool fSound = anInfo.Has(kezInfo_AudioTrackCount) && !anInfo.Has(kezInfo_HasVideoTrack);
    FuzzCheck(anInfo.GetCString(kezInfo_ClassName, "") ==
              (fSound ? "item.audioItem" : ("item." + kind + "Item").c_str()));
    const std::string field(anInfo.GetCString(kezInfo_DLNA, "").View());
    const bool fProfile = field.compare(0, 12, "DLNA.ORG_PN=") == 0;
    const std::string profile = fProfile ? field.substr(0, field.find(';')) : "*";
    const auto& foreign = aFormat.mForeignMimeTypes; // without a profile listed by the parsers of theirs
    const bool fForeign = std::count(foreign.begin(), foreign.end(), std::string_view(type)) != 0;
    FuzzCheck((fForeign && !fProfile) ||
              FormatDoor_IsListed(type + ":" + profile, aParser.GetDLNAInfo().View()));
    std::string expected = fProfile ? profile : "";
    if (afSizeKnown) {
        expected += fProfile ? ";DLNA.ORG_OP=01" : "DLNA.ORG_OP=01";
    }
    if (fProfile) {
        expected += kind == "image" ? ";DLNA.ORG_FLAGS=00D00000000000000000000000000000"
                                    : ";DLNA.ORG_FLAGS=01500000000000000000000000000000";
    }
    FuzzCheck(field == (expected.empty() ? "*" : expected));
    const ezCString from = anInfo.GetCString(kezInfo_DurationMethod, "");
    const bool fNone = from.StartsWith("none: ");
    FuzzCheck(anInfo.Has(kezInfo_Duration) == (!from.IsEmpty() && !fNone));
    FuzzCheck(!fNone || !afSizeKnown);
    FuzzCheck(anInfo.Has(kezInfo_Duration) == anInfo.Has(kezInfo_DurationMilliseconds));
    ezMediaInfo length;
    length.SetDuration(anInfo.GetUInt64(kezInfo_DurationMilliseconds, 0),
                       anInfo.GetCString(kezInfo_DurationMethod, ""));
    FuzzCheck(length.GetUInt64(kezInfo_Duration, 0) == anInfo.GetUInt64(kezInfo_Duration, 0));
}

/// A record that came from elsewhere is completed to the same.
inline void FormatDoor_CheckAdjusting(FormatParser& aParser, const ezMediaInfo& anInfo, bool afSizeKnown) {
    const std::unique_ptr<ezMediaInfo> copy(anInfo.Duplicate());
    FuzzCheck(aParser.AdjustDLNAInfo(copy.get()));
    FuzzCheck(FormatDoor_Dump(copy.get()) == FormatDoor_Dump(&anInfo));
    copy->Set(kezInfo_ClassName, "", true);
    copy->Set(kezInfo_DLNA, "", true);
    copy->Set(kezInfo_FileSize, ezuint64(afSizeKnown ? 1U : 0U), true);
    FuzzCheck(aParser.AdjustDLNAInfo(copy.get()));
    for (const char* key : {kezInfo_ClassName, kezInfo_DLNA}) {
        FuzzCheck(copy->GetCString(key, "-") == anInfo.GetCString(key, "-"));
    }
}

/// Reads a file once, within what the format allows itself and what a parse may hold, and says what there was
/// in it.
inline std::string FormatDoor_Parse(FormatParser& aParser, FormatDoorStream& aStream,
                                    const FormatDescription& aFormat, std::size_t aHeap, bool afWholeReads) {
    const std::size_t readsBefore = aStream.GetReads();
    const std::uint64_t bytesBefore = aStream.GetBytes();
    const bool fSizeKnown = aStream.GetMediaSize() != 0U;
    std::unique_ptr<ezMediaInfo> info;
    {
        const HeapBound bound(aHeap);
        info.reset(aParser.Parse(aStream));
    }
    FuzzCheck(aStream.GetBytes() - bytesBefore <= aFormat.mBudget.mBytes);
    // A read that comes short is gone on with, up to the end: one more of a read that the budget counts.
    FuzzCheck(!afWholeReads || aStream.GetReads() - readsBefore <= 2 * std::size_t{aFormat.mBudget.mReads});
    if (info != nullptr) {
        FormatDoor_CheckTexts(*info);
        FormatDoor_CheckAnnouncement(aParser, aFormat, *info, fSizeKnown);
        FormatDoor_CheckAdjusting(aParser, *info, fSizeKnown);
    }
    return FormatDoor_Dump(info.get());
}

/// A file and how it is delivered, taken from the bytes of the fuzzer: the last of them tell the delivery.
struct FormatDoorInput {
    FormatDoorInput(const std::uint8_t* aData, std::size_t aSize) {
        std::size_t size = aSize;
        if (size >= kFormatDoor_DeliverySize) {
            size -= kFormatDoor_DeliverySize;
            mDelivery = FormatDoor_Decode(aData + size);
        }
        mBlock.reset(new char[size]);
        std::copy(aData, aData + size, mBlock.get());
        mFile = std::string_view(mBlock.get(), size);
    }

    FormatDoorDelivery mDelivery;
    std::string_view mFile;

private:
    std::unique_ptr<char[]> mBlock; ///< of its own, so that a read past its end is seen
};

inline void FormatDoor_Check(const std::uint8_t* aData, std::size_t aSize, FormatParser& aParser,
                             const FormatDescription& aFormat, std::size_t aHeap = kFormatDoor_Heap) {
    const FuzzHouse house;
    const FormatDoorInput input(aData, aSize);
    FormatDoorDelivery delivery = input.mDelivery;
    const std::string_view file = input.mFile;
    const bool fWholeReads = delivery.mMaximumRead == SIZE_MAX;
    FormatDoorStream stream(file, delivery);
    const std::string record = FormatDoor_Parse(aParser, stream, aFormat, aHeap, fWholeReads);
    FormatDoorStream again(file, delivery);
    FuzzCheck(FormatDoor_Parse(aParser, again, aFormat, aHeap, fWholeReads) == record);
    if (!delivery.IsSound()) {
        return;
    }
    // As another parser finds it, which comes after this one, and in one piece.
    FuzzCheck(FormatDoor_Parse(aParser, stream, aFormat, aHeap, fWholeReads) == record);
    delivery.mMaximumRead = SIZE_MAX;
    FormatDoorStream whole(file, delivery);
    FuzzCheck(FormatDoor_Parse(aParser, whole, aFormat, aHeap, true) == record);
}

/// The door of a format, whose parser holds nothing between two parses.
template <typename Parser>
int FormatDoor_Enter(const std::uint8_t* aData, std::size_t aSize, std::size_t aHeap = kFormatDoor_Heap) {
    static Parser sParser;
    FormatDoor_Check(aData, aSize, sParser, Parser::kDescription, aHeap);
    return 0;
}
