#include "ezFormats/ac3/AC3Parser.h"

#include "ezFormats/codecs/AC3Frames.h"
#include "ezFormats/frames/CodedFrames.h"

#include "ezBytes/ByteReader.h"

#include "ezPlatform/media/MediaInfo.h"

bool AC3Parser::IsAt(ByteReader aBytes) {
    return AreFramesAt(AC3Frames(), aBytes);
}

bool AC3Parser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    FrameFile file;
    if (!ReadFrameFile(aBytes, AC3Frames(), "AC-3", file)) {
        return false;
    }
    const bool fEnhanced = AC3Frames::IsEAC3(file.mFirst);
    file.mSound.mCodec = fEnhanced ? "EAC3" : "AC3";
    Store(file, anInfo);
    anInfo.Set(kezInfo_MimeType, fEnhanced ? "audio/eac3" : "audio/ac3", true);
    return true;
}
