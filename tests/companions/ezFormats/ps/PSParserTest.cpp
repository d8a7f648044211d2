#include "ezFormats/ps/PSParser.h"

#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/ps/PSKit.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace ps;
using namespace std::string_literals;

namespace {

std::vector<std::string> UsualFiles() {
    Film small;
    small.mFrames = 2;
    Film old = small;
    old.mfMPEG1 = true;
    old.mVideo = MPEG1();
    Film disc = small;
    disc.mAudioStream = 0xBD;
    disc.mAudio = Sub(0x80, AC3());
    disc.mAudioTicks = kAC3Ticks;
    return {small.Bytes(), old.Bytes(), disc.Bytes()};
}

std::vector<std::string> CostlyFiles() {
    const std::string pictures = Packet(0xE0, std::string(60000, '\x33'));
    std::string silent;
    std::string restarting;
    std::string empty;
    for (unsigned i = 0; i < 60; ++i) {
        silent += Pack(i * kSecond) + pictures + pictures;
        restarting += Pack(0) + Pack(kSecond) + Packet(0xE0, MPEG2(), 1) + pictures + pictures;
        empty += Plain(0xBE, std::string(65535, '\xFF'));
    }
    return {silent, restarting, Pack(0) + empty, CDXA(restarting)};
}

const FormatFiles kFiles("mpg", {24, 8U << 20}, {"mt"}, UsualFiles, CostlyFiles);

} // namespace

TEST(PSParser, RecordSaysWhatTheHeadersAndStampsSay) {
    EXPECT_EQ(pictures::Parsed<PSParser>(ReadSample("video/river-ferry.mpg")),
              "ac=1\n"
              "ar=32000\n"
              "br=129802\n"
              "ca=\"MP2\"\n"
              "cd=8\n"
              "cn=\"item.videoItem\"\n"
              "cr=\"4:2:0\"\n"
              "ct=\"PS\"\n"
              "dl=\"DLNA.ORG_OP=01\"\n"
              "dm=3408\n"
              "dr=\"11:9\"\n"
              "du=3\n"
              "ev=97802\n"
              "fr=25000\n"
              "he=288\n"
              "mb=129802\n"
              "md=\"last frame\"\n"
              "mt=\"video/mpeg\"\n"
              "pa=\"1:1\"\n"
              "pr=\"progressive\"\n"
              "sf=48000\n"
              "ta=1\n"
              "vc=\"MPEG2\"\n"
              "vl=20\n"
              "vp=\"Main\"\n"
              "vt=1\n"
              "wi=352\n");
}
