#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/VorbisComments.h"

#include "ezPlatform/text/Base64.h"

#include <array>
#include <string>
#include <utility>

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kKey = "METADATA_BLOCK_PICTURE"sv;

/// How the comments of a codec are found: what its first and its second packet begin with.
struct Codec {
    std::string_view mHead;
    std::string_view mComments;
};
constexpr Codec kCodecs[] = {{"\x01vorbis"sv, "\x03vorbis"sv}, {"OpusHead"sv, "OpusTags"sv}};

struct Page {
    bool mfContinues = false; ///< its first bytes belong to the packet before
    bool mfBegins = false;    ///< it is the first of its stream
    std::uint32_t mSerial = 0;
    std::uint64_t mFirstSize = 0; ///< of the packet that its first bytes belong to, as far as it is here
    bool mfFirstEnds = false;
};

/// Reads a page; gives a reader of what it holds.
ByteReader ReadPage(ByteReader& aReader, Page* aPage) {
    aReader.Require(aReader.ReadText(4) == "OggS" && aReader.ReadByte() == 0);
    const unsigned flags = aReader.ReadByte();
    aPage->mfContinues = (flags & 1) != 0;
    aPage->mfBegins = (flags & 2) != 0;
    aReader.Skip(8); // the time
    aPage->mSerial = aReader.ReadLittle32();
    aReader.Skip(8); // number and checksum: a decoder of pictures sees for itself whether one is whole
    const unsigned segments = aReader.ReadByte();
    std::uint64_t size = 0;
    for (unsigned i = 0; i < segments; ++i) {
        const unsigned segment = aReader.ReadByte();
        size += segment;
        if (!aPage->mfFirstEnds) {
            aPage->mFirstSize = size;
            aPage->mfFirstEnds = segment < 255;
        }
    }
    return aReader.Take(size);
}

const Codec* CodecOf(ByteReader aBody) {
    for (const Codec& codec : kCodecs) {
        ByteReader head = aBody;
        if (head.ReadText(codec.mHead.size()).View() == codec.mHead) {
            return &codec;
        }
    }
    return nullptr;
}

/// Finds the second packet of the first stream with comments, which begins on that stream's second page. Null
/// when there is none, or it is not whole.
const Codec* FindComments(ByteReader aFile, std::vector<BytePiece>* aPieces) {
    const Codec* codec = nullptr;
    std::uint32_t serial = 0;
    for (std::uint32_t i = 0; i < kCover_MaxPages && !aFile.HasFailed(); ++i) {
        Page page;
        ByteReader body = ReadPage(aFile, &page);
        if (body.HasFailed()) {
            return nullptr;
        }
        if (codec == nullptr) {
            codec = page.mfBegins ? CodecOf(body) : nullptr;
            serial = page.mSerial;
            continue;
        }
        if (page.mSerial != serial) {
            continue;
        }
        if (page.mfBegins || page.mfContinues == aPieces->empty()) {
            return nullptr; // pages are missing
        }
        aPieces->push_back({body.GetPosition(), page.mFirstSize});
        if (page.mfFirstEnds) {
            return codec;
        }
    }
    return nullptr;
}

/// The decoded start of a base64 text, in which the picture begins, or nothing that is of use does.
std::string DecodedHead(ByteReader aText) {
    const auto count = static_cast<std::size_t>(
        aText.GetLeft() < kCover_MaxBase64Head ? aText.GetLeft() : kCover_MaxBase64Head);
    const ezCString text = aText.ReadText(count);
    std::string decoded(kCover_MaxBase64Head / 4 * 3, '\0');
    decoded.resize(ezBase64_Decode(text.c_str(), decoded.data(), decoded.size()));
    return decoded;
}

/// aText is the value of a comment.
void OfferPicture(const ByteReader& aText, const PieceBytes& aBytes, CoverChoice& aChoice) {
    const std::uint64_t size = aText.GetLeft();
    if (size > kCover_MaxHeldSize) {
        return;
    }
    const std::string head = DecodedHead(aText);
    BlockBytes bytes(reinterpret_cast<const unsigned char*>(head.data()), head.size());
    ByteReader reader(bytes);
    PictureBlock block;
    // Characters that are no base64 only make it less than this.
    if (!ReadPictureBlock(reader, size * 3 / 4, kCover_MaxText, &block) || block.mDataSize == 0 ||
        block.mMimeType == "-->") {
        return;
    }
    Cover cover;
    cover.mMimeType = PictureMimeType(std::string_view(head).substr(block.mDataOffset), block.mMimeType);
    cover.mPieces = aBytes.Slice(aText.GetPosition(), size);
    cover.mfBase64 = true;
    cover.mEncodedOffset = block.mDataOffset;
    aChoice.Offer(block.mType, cover);
}

} // namespace

Cover FindOggCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    std::vector<BytePiece> pieces;
    const Codec* const codec = FindComments(ByteReader(bytes), &pieces);
    if (codec == nullptr) {
        return {};
    }
    PieceBytes packet(bytes, std::move(pieces));
    ByteReader reader(packet);
    reader.Require(reader.ReadText(codec->mComments.size()).View() == codec->mComments);
    VorbisComments comments(reader);
    CoverChoice choice;
    ezCString key;
    ByteReader value = reader;
    while (!reader.HasFailed() && !choice.IsFinal() && comments.Next(&key, &value)) {
        if (ezIsEqualNoCase(key.View(), kKey)) {
            OfferPicture(value, packet, choice);
        }
    }
    return choice.Get();
}
