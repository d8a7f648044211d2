#include "ezFormats/ps/PSParser.h"

#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/MPEGVideoHeaders.h"
#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/FilmRecord.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/ps/CDXA.h"
#include "ezFormats/ps/PSBytes.h"
#include "ezFormats/ps/PSLength.h"
#include "ezFormats/ps/PSPackets.h"
#include "ezFormats/ps/PSStart.h"

#include "ezPlatform/media/MediaInfo.h"

#include <array>

namespace {

constexpr std::uint32_t kSequenceCode = 0x00000100U | kMPEGVideo_Sequence;

/// A pack header of either kind.
bool IsPackAt(ByteReader aBytes) {
    constexpr std::size_t kSize = 14; // of MPEG-2; MPEG-1 has two less, and a packet after it
    std::array<unsigned char, kSize> bytes = {};
    PackHeader header;
    return aBytes.Read(bytes.data(), kSize) && PackHeader_Read(bytes.data(), kSize, header);
}

bool IsInSectorsAt(ByteReader aBytes) {
    const bool fDisc = IsCDXA(aBytes);
    aBytes.Skip(kCDXA_HeaderSize + kCDXA_HeadSize);
    return fDisc && IsPackAt(aBytes);
}

} // namespace

bool PSParser::IsAt(ByteReader aBytes) {
    return IsPackAt(aBytes) || IsInSectorsAt(aBytes);
}

bool PSParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    if (ByteReader(aBytes).ReadBig32() == kSequenceCode) { // its slices may look like packets
        return Refuse(Cause::Unsupported, "MPEG video without packets");
    }
    PSBytes bytes(aBytes);
    return ReadStream(bytes, anInfo);
}

bool PSParser::ReadStream(PSBytes& aBytes, ezMediaInfo& anInfo) const {
    MediaBytes& file = aBytes.GetFile();
    PSStart start;
    if (!start.Read(aBytes)) {
        return file.HasLostBytes() ? RefuseCut(file, "the first packets")
                                   : Refuse(Cause::Malformed, "no packets in a row");
    }
    FilmFacts film;
    film.mContainer = start.IsMPEG1() ? kContainer_MPEG1 : kContainer_PS;
    film.mVideo = start.GetVideo();
    film.mAudio = start.GetAudio();
    if (!film.mVideo.has_value() && !film.mAudio.has_value()) {
        return Refuse(Cause::Unsupported, "no stream of pictures or sound");
    }
    PSLength length = MeasurePS(aBytes, start);
    const PSTitle title = ReadPSTitle(aBytes);
    if (file.HasLostBytes()) {
        return RefuseCut(file, "all that tells the length");
    }
    length = title.mLength.mMicroseconds != 0 ? title.mLength : length;
    film.mAudioCount = start.GetTracks().Count(StreamKind::Audio);
    film.mSubtitleCount = start.GetTracks().Count(StreamKind::Subtitle);
    film.mLanguages = title.mSoundLanguages;
    film.mSubtitleLanguages = title.mSubtitleLanguages;
    film.mDuration = length.mMicroseconds;
    film.mDurationMethod = length.mMethod;
    film.mDurationBound = length.mBound;
    if (aBytes.GetFileSize().has_value()) {
        film.mSize = aBytes.GetStreamSize(*aBytes.GetFileSize());
    }
    film.Store(anInfo);
    return true;
}
