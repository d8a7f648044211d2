#include "ezFormats/matroska/MatroskaParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/matroska/MatroskaBytes.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace matroska;
using namespace std::string_literals;
using ebml::Head;
using ebml::Info;
using ebml::Segment;
using ebml::Tracks;
using ebml::Unknown;

namespace {

std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                   const Delivery& aDelivery = Delivery()) {
    return chunks::Values<MatroskaParser>(aBytes, aKeys, aDelivery);
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<MatroskaParser>(aBytes);
}

const std::string kVideo = Track(1, 1, "V_VP8", Picture() + Number(0x23E383, 40'000'000));
const std::string kSound = Track(2, 2, "A_VORBIS", Sound());

/// A second of pictures and sound, in one cluster.
std::string Blocks(std::size_t aSize = 500) {
    std::string blocks;
    for (int time = 0; time < 1000; time += 40) {
        blocks += Block(1, time, std::string(aSize, 'v')) + Block(2, time, std::string(aSize / 5, 's'));
    }
    return blocks;
}

/// A file of these tracks, which lasts a second.
std::string Film(const std::string& aTracks = kVideo + kSound, const std::string& aRest = "",
                 const std::string& aDocType = "matroska") {
    return Head(aDocType) + Segment(Info(Duration(1000)) + Tracks(aTracks) + aRest + Cluster(0, Blocks()));
}

std::vector<std::string> UsualFiles() {
    const std::string tags = ebml::Tags(ebml::Tag(50, {{"TITLE", "Film"}, {"ARTIST", "Maker"}}));
    return {Film(), Film(kSound, tags, "webm"),
            Head("webm") +
                Unknown(0x18538067, Info("") + Tracks(kVideo + kSound) + OpenCluster(7000, Blocks(20)) +
                                        OpenCluster(8000, Blocks(20)))};
}

std::vector<std::string> CostlyFiles() {
    const std::string front = Info("") + Tracks(kVideo + kSound);
    std::string seeks;
    for (unsigned i = 0; i < 300; ++i) {
        seeks += ebml::Seek(i % 2 == 0 ? 0x114D9B74 : 0x1254C367, 20000 * i);
    }
    const std::string ids = ebml::Id(kCluster) + ebml::Size(20) + Number(0xE7, 5);
    std::string clusters;
    for (unsigned i = 0; i < 200; ++i) {
        clusters += ids + std::string(20000, '\x1F');
    }
    return {Head() + Segment(front + std::string(3U << 20, '\x1F')),
            Head() + Segment(front + Cluster(0, Blocks(200000))),
            Head() + Segment(ebml::SeekHead(seeks) + front + Cluster(0, Blocks(100000))),
            Head() + Segment(front + Cluster(0, "") + clusters)};
}

const FormatFiles kFiles("mkv", {48, 4U << 20}, {"ct"}, UsualFiles, CostlyFiles);

} // namespace

TEST(MatroskaParser, ClassAndTypeFollowFromWhatPlays) {
    const std::vector<const char*> keys = {"cn", "ct", "mt"};
    EXPECT_EQ(Values(Film(), keys), "\"item.videoItem\"|\"MKV\"|\"video/x-matroska\"");
    EXPECT_EQ(Values(Film(kSound), keys), "\"item.audioItem\"|\"MKV\"|\"audio/x-matroska\"");
    EXPECT_EQ(Values(Film(kVideo + kSound, "", "webm"), keys), "\"item.videoItem\"|\"WebM\"|\"video/webm\"");
    EXPECT_EQ(Values(Film(kSound, "", "webm"), keys), "\"item.audioItem\"|\"WebM\"|\"audio/webm\"");
}

TEST(MatroskaParser, WhatHoldsNoTrackThatPlaysIsRefused) {
    EXPECT_EQ(Refusal(Head("other") + Segment("")), "MatroskaParser: malformed: begins with 1A45DFA3");
    EXPECT_EQ(Refusal(Head()), "MatroskaParser: malformed: ends before the segment");
    EXPECT_EQ(Refusal(Head() + Segment(Info(""))),
              "MatroskaParser: malformed: ends before a track of pictures or sound");
    EXPECT_EQ(Refusal(Head() + Segment(Tracks(Track(1, 17, "S_TEXT/UTF8")))),
              "MatroskaParser: malformed: ends before a track of pictures or sound");
}
