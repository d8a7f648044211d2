#include "ezFormats/adts/ADTSParser.h"

#include "ezFormats/codecs/ADTSFrames.h"
#include "ezFormats/frames/CodedFrames.h"

#include "ezBytes/ByteReader.h"

bool ADTSParser::IsAt(ByteReader aBytes) {
    return AreFramesAt(ADTSFrames(), aBytes);
}

bool ADTSParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    FrameFile file;
    if (!ReadFrameFile(aBytes, ADTSFrames(), "ADTS", file)) {
        return false;
    }
    file.mSound.mCodec = ADTSFrames::CodecOf(file.mFirst);
    Store(file, anInfo);
    return true;
}
