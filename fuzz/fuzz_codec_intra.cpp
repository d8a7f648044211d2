// The door: a frame of Motion JPEG, DV or ProRes, each of which stands for itself, and the sound in one of
// DV.

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/DVSound.h"
#include "ezFormats/codecs/DVVideo.h"
#include "ezFormats/codecs/MJPEGVideo.h"
#include "ezFormats/codecs/ProResVideo.h"

namespace {

void CheckSound(const std::vector<unsigned char>& aBytes) {
    const DVSound sound = DVSound_Read(aBytes.data(), aBytes.size());
    const AudioFacts& facts = sound.mFacts;
    FuzzCheck(sound.mTrackCount <= 2);
    if (sound.mTrackCount == 0) {
        FuzzCheck(facts.mCodec.IsEmpty() && facts.mSamplingRate == 0 && facts.mBitsPerSample == 0);
        return;
    }
    FuzzCheck(facts.mCodec == "LPCM" && facts.mChannels == 2);
    FuzzCheck(facts.mSamplingRate == 48000 || facts.mSamplingRate == 44100 || facts.mSamplingRate == 32000);
    FuzzCheck(facts.mBitsPerSample == 16 || facts.mBitsPerSample == 20);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    CodecDoor_Enter(MJPEGVideo_Read, aData, aSize, {{"MJPEG"}, 2 * UINT16_MAX});
    CodecDoor_Enter(DVVideo_Read, aData, aSize, {{"DV"}, 1440});
    CodecDoor_Enter(ProResVideo_Read, aData, aSize, {{"ProRes"}, UINT16_MAX});
    const FuzzHouse house;
    CheckSound(CodecDoor_Block(aData, aSize));
    CheckSound(CodecDoor_Block(aData, aSize / 2));
    return 0;
}
