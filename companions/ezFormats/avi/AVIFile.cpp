#include "ezFormats/avi/AVIFile.h"

#include "ezFormats/avi/AVILimits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/tags/RIFFTexts.h"

#include "ezBytes/ChunkWalk.h"
#include "ezBytes/LanguageTags.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <array>

namespace {

/// Lists of headers. Their chunks are walked as if there were no list around them: a writer that is broken
/// off never comes to state its size.
bool IsOpened(BoxType aKind) {
    constexpr std::array<BoxType, 3> kOpened = {{"hdrl", "strl", "odml"}};
    return std::find(kOpened.begin(), kOpened.end(), aKind) != kOpened.end();
}

/// Texts of a list "INFO" that state the language of a stream of sound each, by its place among them.
bool IsLanguage(BoxType aName) {
    return aName.StartsWith("IAS") && (aName.GetCode() & 0xFF) >= '1' && (aName.GetCode() & 0xFF) <= '9';
}

} // namespace

bool ReadAVIHead(ByteReader& aReader, std::uint32_t* aStated) {
    const bool fRiff = BoxType::Read(aReader) == "RIFF";
    *aStated = aReader.ReadLittle32();
    return BoxType::Read(aReader) == "AVI " && fRiff;
}

bool AVIFile::ReadHead() {
    ByteReader reader(mBytes);
    std::uint32_t stated = 0;
    if (!ReadAVIHead(reader, &stated)) {
        return false;
    }
    mStatedEnd = stated != 0 && stated != UINT32_MAX ? stated + kAVI_ChunkHeadSize : 0;
    mWalk.emplace(reader, kChunks_RIFF, mBudget);
    BoxType name;
    for (ByteReader content = reader; !mFrames && mWalk->Next(&name, &content);) {
        Take(name, content);
    }
    return true;
}

/// Of further parts nothing tells more, and a source of unknown size may have no end.
void AVIFile::ReadTail() {
    BoxType name;
    ByteReader content(mBytes);
    for (std::uint32_t i = 0;
         i < kAVI_MaxTailChunks && mFrames && !mfFramesOpen && !mfParts && mWalk->Next(&name, &content);
         ++i) {
        Take(name, content);
    }
}

void AVIFile::Take(BoxType aName, const ByteReader& aContent) {
    ByteReader list(mBytes); // its kind is there whatever its size says
    list.Skip(aContent.GetPosition());
    const BoxType kind = aName == "LIST" || aName == "RIFF" ? BoxType::Read(list) : BoxType();
    if (IsOpened(kind)) {
        TakeHeaderList(kind, aContent);
        mWalk->SetContentSize(kAVI_ListKindSize);
    } else if (kind == "movi" && !mFrames) {
        TakeFrames(aContent, list);
    } else if (kind == "INFO") {
        TakeInfo(aContent);
    } else if (aName == "idx1" && mFrames) {
        mIndex = aContent;
    } else if (aName == "RIFF") {
        mfParts = true;
    } else {
        mHeader.Take(aName, aContent);
    }
}

/// The first list is that of all headers. It is read at once, with the first of what follows it.
void AVIFile::TakeHeaderList(BoxType aKind, const ByteReader& aContent) {
    if (aKind == "strl") {
        mHeader.BeginStream();
    } else if (aKind == "hdrl") {
        mBytes.Load(0, static_cast<std::size_t>(std::min<std::uint64_t>(
                           aContent.GetPosition() + aContent.GetLeft() + kAVI_MaxFrame, kAVI_HeaderSize)));
    }
}

void AVIFile::TakeFrames(const ByteReader& aContent, ByteReader aList) {
    const std::uint64_t stated = mWalk->GetStatedSize();
    mfFramesOpen = stated < kAVI_ListKindSize || stated > aContent.GetLeft() || !mBytes.GetSize();
    mFrames = mfFramesOpen ? aList : aList.Take(stated - kAVI_ListKindSize);
}

void AVIFile::TakeInfo(const ByteReader& aList) {
    TakeInfoTexts(aList, kChunks_RIFF, mBudget, mCodePage, mTexts);
    ByteReader list = aList;
    BoxType::Read(list);
    ChunkWalk walk(list, kChunks_RIFF, mBudget);
    BoxType name;
    for (ByteReader item = list; walk.Next(&name, &item);) {
        if (IsLanguage(name)) {
            const auto size = std::min<std::uint64_t>(item.GetLeft(), kAVI_MaxText);
            const ezCString text = item.ReadText(static_cast<std::size_t>(size));
            AddLanguages(mLanguages, text.View().substr(0, text.View().find('\0')));
        }
    }
}

std::optional<std::uint64_t> AVIFile::GetSize() const {
    const std::optional<std::uint64_t> size = mBytes.GetSize();
    return size ? std::make_optional(std::max({*size, mStatedEnd, mHeader.mIndexedEnd})) : std::nullopt;
}
