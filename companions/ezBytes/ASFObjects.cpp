#include "ezBytes/ASFObjects.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::uint64_t kHeadSize = 16 + 8; // of an object

// Kinds of streams (10.4).
constexpr ASFGuid kAudioMedia = {0x409E69F84D5BCF11, 0xA8FD00805F5C442B};
constexpr ASFGuid kVideoMedia = {0xC0EF19BC4D5BCF11, 0xA8FD00805F5C442B};
constexpr ASFGuid kBinaryMedia = {0xE265FB3AEF47F240, 0xAC2C70A90D71D343};

// What a stream of the last kind says it holds (9.5): "auds" and "vids" as media types, and how its format is
// laid.
constexpr ASFGuid kBinarySound = {0x6175647300001000, 0x800000AA00389B71};
constexpr ASFGuid kBinaryVideo = {0x7669647300001000, 0x800000AA00389B71};

struct Form {
    ASFGuid mGuid;
    ASFForm mForm;
};
constexpr Form kForms[] = {{{0x819F580556C3CE11, 0xBF0100AA0055595A}, ASFForm::Wave},
                           {{0x809F580556C3CE11, 0xBF0100AA0055595A}, ASFForm::Video},
                           {{0xA0762AF70AEBD011, 0xACE40000C0CC16BA}, ASFForm::Video2},
                           {{0xE3806DE046DBCF11, 0xB4D100805F6CBBEA}, ASFForm::MPEG2Video}};

// Why only one of several streams is played (10.10).
constexpr ASFGuid kExclusionByBitRate = {0x012AE2D6DA35D111, 0x903400A0C90349BE};

/// What a stream holds by its own word.
void TakeBinary(ASFStream& aStream) {
    ByteReader reader = aStream.mFormat;
    const ASFGuid major = ASFGuid::Read(reader);
    aStream.mSubtype = reader.ReadLittle32();
    reader.Skip(12 + 4 + 4 + 4); // the rest of it, whether sizes are fixed, and compressed, sample size
    const ASFGuid format = ASFGuid::Read(reader);
    if (major == kBinaryVideo) {
        aStream.mKind = ASFStreamKind::Video;
    } else if (major == kBinarySound) {
        aStream.mKind = ASFStreamKind::Sound;
    }
    const auto* const form = std::find_if(std::begin(kForms), std::end(kForms),
                                          [&](const Form& aForm) { return aForm.mGuid == format; });
    aStream.mForm = form != std::end(kForms) ? form->mForm : ASFForm::Unknown;
    aStream.mFormat = reader.Take(reader.ReadLittle32());
}

} // namespace

ASFGuid ASFGuid::Read(ByteReader& aReader) {
    ASFGuid guid;
    guid.mFirst = aReader.ReadBig(8);
    guid.mLast = aReader.ReadBig(8);
    return aReader.HasFailed() ? ASFGuid() : guid;
}

bool ASFWalk::Next(ASFGuid* aKind, ByteReader* aContent) {
    if (*mBudget == 0 || mReader.GetLeft() < kHeadSize) {
        return false;
    }
    --*mBudget;
    *aKind = ASFGuid::Read(mReader);
    const std::uint64_t size = mReader.ReadLittle(8);
    if (!mReader.Require(size >= kHeadSize)) {
        return false;
    }
    *aContent = mReader.Take(std::min(size - kHeadSize, mReader.GetLeft()));
    return true;
}

bool ASFHeaderWalk::Next(ASFGuid* aKind, ByteReader* aContent) {
    if (mExtension.Next(aKind, aContent)) {
        return true;
    }
    if (!mHeader.Next(aKind, aContent)) {
        return false;
    }
    if (*aKind == kASF_HeaderExtension) {
        ByteReader objects = *aContent;
        objects.Skip(16 + 2 + 4); // reserved, and the size of what follows, which is the rest
        mExtension = ASFWalk(objects, *mBudget);
    }
    return true;
}

bool IsASFHeader(ByteReader aReader) {
    return ASFGuid::Read(aReader) == kASF_Header;
}

bool ReadASFHeader(ByteReader& aReader, ByteReader* aObjects) {
    const bool fHeader = ASFGuid::Read(aReader) == kASF_Header;
    const std::uint64_t size = aReader.ReadLittle(8);
    if (!fHeader || !aReader.Require(size >= kHeadSize)) {
        return false;
    }
    *aObjects = aReader.Take(std::min(size - kHeadSize, aReader.GetLeft()));
    aObjects->Skip(4 + 2); // how many there are, reserved
    return !aObjects->HasFailed();
}

std::uint64_t ASFFileProperties::GetMilliseconds() const {
    const std::uint64_t all = mPlayDuration / (kASF_TicksPerSecond / 1000);
    return !mfBroadcast && all > mPreroll ? all - mPreroll : 0;
}

bool ReadASFFileProperties(ByteReader aObject, ASFFileProperties* aFile) {
    aObject.Skip(16 + 8 + 8); // an identity, the file's size, when it was made
    aFile->mPackets = aObject.ReadLittle(8);
    aFile->mPlayDuration = aObject.ReadLittle(8);
    aObject.Skip(8); // how long sending takes
    aFile->mPreroll = aObject.ReadLittle(8);
    aFile->mfBroadcast = (aObject.ReadLittle32() & 1U) != 0;
    const std::uint32_t least = aObject.ReadLittle32();
    aFile->mPacketSize = aObject.ReadLittle32() == least ? least : 0;
    aFile->mMaxBitRate = aObject.ReadLittle32();
    return !aObject.HasFailed();
}

std::optional<ASFStream> ReadASFStream(ByteReader aObject) {
    const ASFGuid kind = ASFGuid::Read(aObject);
    aObject.Skip(16 + 8); // how errors are corrected, and when it begins
    const std::uint32_t size = aObject.ReadLittle32();
    aObject.Skip(4); // bytes about that correction
    const auto flags = static_cast<unsigned>(aObject.ReadLittle(2));
    aObject.Skip(4); // reserved
    if (aObject.HasFailed()) {
        return std::nullopt;
    }
    const std::uint64_t there = std::min<std::uint64_t>(size, aObject.GetLeft());
    ASFStream stream = {ASFStreamKind::Other, flags & kASF_MaxStreamNumber, (flags & 0x8000U) != 0,
                        aObject.Take(there)};
    if (kind == kAudioMedia) {
        stream.mKind = ASFStreamKind::Sound;
    } else if (kind == kVideoMedia) {
        stream.mKind = ASFStreamKind::Video;
    } else if (kind == kBinaryMedia) {
        TakeBinary(stream);
    }
    return stream;
}

std::optional<ASFExtendedStream> ReadASFExtendedStream(ByteReader aObject) {
    aObject.Skip(8 + 8); // when it begins and ends
    ASFExtendedStream stream = {0, aObject.ReadLittle32(), 0, 0, aObject};
    aObject.Skip(5 * 4 + 4 + 4); // buffers and the other rate, the largest media object, flags
    stream.mNumber = static_cast<unsigned>(aObject.ReadLittle(2));
    stream.mLanguage = static_cast<unsigned>(aObject.ReadLittle(2));
    stream.mFrameTime = aObject.ReadLittle(8);
    const std::uint64_t names = aObject.ReadLittle(2);
    const std::uint64_t extensions = aObject.ReadLittle(2);
    if (aObject.HasFailed()) {
        return std::nullopt;
    }
    for (std::uint64_t i = 0; i < names && !aObject.HasFailed(); ++i) {
        aObject.Skip(2); // language
        aObject.Skip(aObject.ReadLittle(2));
    }
    for (std::uint64_t i = 0; i < extensions && !aObject.HasFailed(); ++i) {
        aObject.Skip(16 + 2); // what it extends, bytes in each payload
        aObject.Skip(aObject.ReadLittle32());
    }
    stream.mObjects = aObject;
    return stream;
}

bool ASFBitRates::Next(ASFBitRate* aRate) {
    aRate->mNumber = static_cast<unsigned>(mReader.ReadLittle(2)) & kASF_MaxStreamNumber;
    aRate->mBitRate = mReader.ReadLittle32();
    return mLeft != 0 && !mReader.HasFailed() && mLeft-- != 0;
}

bool ASFLanguages::Next(ByteReader* aName) {
    if (mLeft == 0 || mReader.HasFailed()) {
        return false;
    }
    --mLeft;
    *aName = mReader.Take(mReader.ReadByte());
    return !mReader.HasFailed();
}

ASFExclusion::ASFExclusion(ByteReader aObject)
    : mReader(aObject),
      mfByBitRate(ASFGuid::Read(mReader) == kExclusionByBitRate),
      mLeft(mReader.ReadLittle(2)) {}

bool ASFExclusion::Next(unsigned* aNumber) {
    *aNumber = static_cast<unsigned>(mReader.ReadLittle(2)) & kASF_MaxStreamNumber;
    return mLeft != 0 && !mReader.HasFailed() && mLeft-- != 0;
}
