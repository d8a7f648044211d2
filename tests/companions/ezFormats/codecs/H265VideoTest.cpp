#include "ezFormats/codecs/H265Video.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"
#include "ezFormats/codecs/H265Headers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/elementary/H265EltStreamParser.h"

#include "companions/ezFormats/codecs/H265Bytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"

#include <gtest/gtest.h>

using namespace h265;

namespace {

std::string Told(const std::string& aStream) {
    return Text(H265Video_ReadStream(Data(aStream), aStream.size()));
}

template <typename Change>
Stream265 With(Change aChange) {
    Stream265 stream;
    aChange(stream);
    return stream;
}

template <typename Change>
std::string ToldWith(Change aChange) {
    return Told(With(aChange).Bytes());
}

template <typename Change>
VideoFacts FactsWith(Change aChange) {
    const std::string bytes = With(aChange).Bytes();
    return H265Video_ReadStream(Data(bytes), bytes.size()).value_or(VideoFacts());
}

std::string WordOf(const char* aWord) {
    return aWord != nullptr ? aWord : "";
}

/// Whether the parser of elementary streams takes it.
template <typename Change>
bool Wins(Change aChange) {
    // More may follow: whoever is refused is not refused for the end.
    return Parse<H265EltStreamParser>(With(aChange).Bytes() + Content(200, '\x55'), {UINT32_MAX}).mStatus ==
           ezElementaryStreamParser::MSS_COMPLETED;
}

std::string ToldOfConfig(const std::string& aConfig, const std::string& aSample = "") {
    BlockBytes config(Data(aConfig), aConfig.size());
    BlockBytes sample(Data(aSample), aSample.size());
    const ByteReader first(sample);
    return Text(H265Video_ReadConfig(ByteReader(config), aSample.empty() ? nullptr : &first));
}

constexpr const char* kTold = "H265 Main@31 320x180 progressive cd=8 4:2:0";

} // namespace

TEST(H265Video, TellsWhatTheSequenceSays) {
    EXPECT_EQ(ToldWith([](Stream265&) {}), kTold);
    EXPECT_EQ(ToldWith([](Stream265& s) {
                  s.mTier = 1;
                  s.mProfile = 2;
                  s.mLevel = 153;
                  s.mWidth = 3840;
                  s.mHeight = 2160;
                  s.mCrop = {};
                  s.mBitDepth = 10;
                  s.mSigns.mAspect = 1;
                  s.mSigns.mUnits = 1001;
                  s.mSigns.mScale = 24000;
                  s.mSigns.mTransfer = 16;
                  s.mMessages = MasteringDisplay();
              }),
              "H265 Main10@51 3840x2160 1:1 fr=23976 progressive cd=10 4:2:0 HDR10");
    EXPECT_EQ(ToldWith([](Stream265& s) { s.mfUsability = false; }), kTold);
    EXPECT_EQ(ToldWith([](Stream265& s) { s.mfDisplayWindow = true; }), kTold) << "the window is a proposal";
}

TEST(H265Video, ProfilesAndLevelsHaveTheWordsAndNumbersOfTheRules) {
    const std::vector<std::string> words = {"",
                                            "Main",
                                            "Main10",
                                            "MainStillPicture",
                                            "RangeExtensions",
                                            "HighThroughput",
                                            "MultiviewMain",
                                            "ScalableMain",
                                            "3DMain",
                                            "ScreenContent",
                                            "ScalableRangeExtensions",
                                            "HighThroughputScreenContent",
                                            ""};
    for (unsigned profile = 0; profile < words.size(); ++profile) {
        EXPECT_EQ(FactsWith([=](Stream265& s) { s.mProfile = profile; }).mProfile.c_str(), words[profile]);
    }
    const auto level = [](unsigned aLevel) {
        return FactsWith([=](Stream265& s) { s.mLevel = aLevel; }).mLevel;
    };
    EXPECT_EQ(level(30), 10U);
    EXPECT_EQ(level(63), 21U);
    EXPECT_EQ(level(120), 40U);
    EXPECT_EQ(level(123), 41U);
    EXPECT_EQ(level(186), 62U);
    EXPECT_EQ(level(255), 85U) << "without limits";
    EXPECT_EQ(level(0), VideoFacts::kNoLevel);
}

TEST(H265Video, SizeIsCutInUnitsOfChroma) {
    const auto size = [](unsigned aFormat) {
        const VideoFacts facts = FactsWith([=](Stream265& s) {
            s.mChromaFormat = aFormat;
            s.mProfile = 4;
            s.mCrop = {1, 2, 3, 4};
        });
        return std::to_string(facts.mWidth) + "x" + std::to_string(facts.mHeight) + " " +
               WordOf(facts.mColours);
    };
    EXPECT_EQ(size(0), "317x177 grey");
    EXPECT_EQ(size(1), "314x170 4:2:0");
    EXPECT_EQ(size(2), "314x177 4:2:2");
    EXPECT_EQ(size(3), "317x177 4:4:4");
    EXPECT_EQ(ToldWith([](Stream265& s) { s.mCrop = {0, 0, 46, 46}; }), "nothing") << "no line is left";
    EXPECT_EQ(ToldWith([](Stream265& s) { s.mCrop = {0xFFFFFFFE, 0xFFFFFFFE, 0, 0}; }), "nothing");
}

TEST(H265Video, SubLayersArePassed) {
    for (unsigned count = 1; count <= 7; ++count) {
        EXPECT_EQ(ToldWith([=](Stream265& s) { s.mSubLayers = count; }), kTold) << count;
    }
    EXPECT_EQ(ToldWith([](Stream265& s) { s.mSubLayers = 8; }), "nothing");
    EXPECT_EQ(ToldWith([](Stream265& s) { s.mNested = 0; }), "nothing") << "a single one is nested";
}

TEST(H265Video, WhatStandsBeforeTheUsabilityIsPassed) {
    const auto rate = [](auto aChange) {
        return FactsWith([&](Stream265& s) {
                   s.mSigns.mUnits = 1;
                   s.mSigns.mScale = 25;
                   aChange(s);
               })
            .mFrameRate;
    };
    EXPECT_EQ(rate([](Stream265&) {}), 25000U);
    EXPECT_EQ(rate([](Stream265& s) { s.mfPCM = true; }), 25000U);
    EXPECT_EQ(rate([](Stream265& s) { s.mLongTerm = kH265_MaxLongTermPictures; }), 25000U);
    EXPECT_EQ(rate([](Stream265& s) { s.mLongTerm = kH265_MaxLongTermPictures + 1; }), 0U);
    EXPECT_EQ(rate([](Stream265& s) {
                  s.mScaling = [](Bits& aBits) {
                      for (unsigned i = 0; i < 20; ++i) {
                          const unsigned size = i / 6;
                          aBits.Put(i % 2, 1);
                          if (i % 2 == 0) {
                              aBits.UE(0); // as another list
                              continue;
                          }
                          if (size > 1) {
                              aBits.SE(247);
                          }
                          for (unsigned j = 0; j < (size == 0 ? 16 : 64); ++j) {
                              aBits.SE(j % 2 == 0 ? 127 : -128);
                          }
                      }
                  };
              }),
              25000U);
}

TEST(H265Video, ReferencePictureSetsAreAsLongAsTheirPredictionMakesThem) {
    const auto rate = [](Part aSets) {
        return FactsWith([=](Stream265& s) {
                   s.mRefPicSets = aSets;
                   s.mSigns.mUnits = 1;
                   s.mSigns.mScale = 25;
               })
            .mFrameRate;
    };
    // -1 -3, 2; by it, a picture later: 0 is the picture itself and falls out, -1 stays.
    EXPECT_EQ(rate([](Bits& aBits) {
                  aBits.UE(3).UE(2).UE(1).UE(0).Put(1, 1).UE(1).Put(0, 1).UE(1).Put(1, 1);
                  aBits.Put(1, 1).Put(0, 1).UE(0).Put(1, 1).Put(1, 1).Put(1, 2).Put(1, 1); // 0, -2, 3, 1
                  aBits.Put(1, 1).Put(1, 1).UE(4).Put(0, 2).Put(1, 1).Put(0, 2).Put(1, 1); // three and itself
              }),
              25000U);
    // Sixteen pictures, and none more.
    EXPECT_EQ(rate([](Bits& aBits) {
                  aBits.UE(2).UE(8).UE(8);
                  for (unsigned i = 0; i < 16; ++i) {
                      aBits.UE(32767).Put(1, 1);
                  }
                  aBits.Put(1, 1).Put(1, 1).UE(0);
                  for (unsigned i = 0; i < 17; ++i) {
                      aBits.Put(i == 0 ? 0 : 1, i == 0 ? 2 : 1);
                  }
              }),
              25000U);
    EXPECT_EQ(rate([](Bits& aBits) {
                  aBits.UE(2).UE(8).UE(8);
                  for (unsigned i = 0; i < 16; ++i) {
                      aBits.UE(0).Put(1, 1);
                  }
                  aBits.Put(1, 1).Put(1, 1).UE(100).Put(0x1FFFF, 17);
              }),
              0U)
        << "seventeen";
    EXPECT_EQ(rate([](Bits& aBits) { aBits.UE(1).UE(9).UE(8).Put(0, 64); }), 0U) << "seventeen";
    EXPECT_EQ(rate([](Bits& aBits) {
                  aBits.UE(kH265_MaxRefPicSets);
                  for (unsigned i = 0; i < kH265_MaxRefPicSets; ++i) {
                      aBits.Put(0, i == 0 ? 0 : 1).UE(0).UE(0);
                  }
              }),
              25000U);
    EXPECT_EQ(rate([](Bits& aBits) {
                  aBits.UE(kH265_MaxRefPicSets + 1);
                  for (unsigned i = 0; i <= kH265_MaxRefPicSets; ++i) {
                      aBits.Put(0, i == 0 ? 0 : 1).UE(0).UE(0);
                  }
              }),
              0U);
}

TEST(H265Video, RateIsThatOfTheBuffers) {
    const auto rates = [](unsigned aSubLayers, Part anHRD) {
        const std::string told = ToldWith([=](Stream265& s) {
            s.mSubLayers = aSubLayers;
            s.mSigns.mUnits = 1;
            s.mSigns.mScale = 50;
            s.mHRD = anHRD;
        });
        return told.substr(told.find("4:2:0") + 5);
    };
    EXPECT_EQ(rates(1, [](Bits& aBits) { aBits.Put(0, 2).Put(1, 1).UE(0).UE(0); }), "") << "none";
    EXPECT_EQ(rates(1,
                    [](Bits& aBits) {
                        aBits.Put(2, 2).Put(0, 1).Put(0, 8).Put(0, 15); // of the byte stream
                        aBits.Put(1, 1).UE(2047).UE(1).UE(99).UE(9).Put(0, 1).UE(15624).UE(9).Put(1, 1);
                    }),
              " vr=1000000");
    EXPECT_EQ(rates(2,
                    [](Bits& aBits) {
                        aBits.Put(3, 2).Put(1, 1).Put(0, 19).Put(1, 4).Put(0, 8).Put(
                            0, 15);                // both, of parts of pictures
                        aBits.Put(0, 2).Put(1, 1); // with low delay: one delivery
                        for (unsigned i = 0; i < 2; ++i) {
                            aBits.UE(4).UE(0).UE(0).UE(0).Put(0, 1);
                        }
                        aBits.Put(0, 1).Put(1, 1).UE(0).UE(0);
                        aBits.UE(15624).UE(0).UE(0).UE(0).Put(0, 1).UE(9).UE(0).UE(0).UE(0).Put(1, 1);
                    }),
              " mv=2000000");
    EXPECT_EQ(rates(1,
                    [](Bits& aBits) {
                        aBits.Put(1, 2).Put(0, 1).Put(15, 4).Put(0, 4).Put(
                            0, 15); // of slices, and no 32 bits hold it
                        aBits.Put(1, 1).UE(0).UE(0).UE(99999999).UE(0).Put(0, 1);
                    }),
              "");
}

TEST(H265Video, FieldsAreToldByTheSourceTheSequenceOrMessages) {
    const auto scan = [](unsigned aSource, bool afFields, unsigned aStructure) {
        return WordOf(FactsWith([=](Stream265& s) {
                          s.mSource = aSource;
                          s.mfFieldPictures = afFields;
                          s.mfStructure = true;
                          s.mMessages = Message(1, Bits().Put(aStructure, 4).Put(0, 4).Bytes());
                      }).mScan);
    };
    EXPECT_EQ(scan(2, false, 3), "progressive") << "the source is";
    EXPECT_EQ(scan(1, false, 0), "interlaced");
    EXPECT_EQ(scan(2, true, 0), "interlaced") << "each picture is a field";
    for (const unsigned source : {0U, 3U}) {
        for (unsigned structure = 0; structure < 16; ++structure) {
            const bool fFields = (structure >= 1 && structure <= 4) || structure >= 9;
            const std::string expected = structure > 12 ? "" : fFields ? "interlaced" : "progressive";
            EXPECT_EQ(scan(source, false, structure), expected) << structure;
        }
    }
    EXPECT_EQ(WordOf(FactsWith([](Stream265& s) { s.mSource = 0; }).mScan), "") << "nobody says";
    EXPECT_EQ(ToldWith([](Stream265& s) {
                  s.mfFieldPictures = true;
                  s.mHeight = 544;
                  s.mWidth = 1920;
                  s.mSigns.mUnits = 1;
                  s.mSigns.mScale = 50;
              }),
              "H265 Main@31 1920x1080 fr=25000 interlaced cd=8 4:2:0")
        << "a frame is two of them";
}

TEST(H265Video, HighDynamicRangeIsOfTheTransferAndTheMessages) {
    const auto kind = [](unsigned aTransfer, const std::string& aMessages) {
        return WordOf(FactsWith([=](Stream265& s) {
                          s.mSigns.mTransfer = aTransfer;
                          s.mMessages = aMessages;
                      }).mHDR);
    };
    EXPECT_EQ(kind(16, ""), "PQ");
    EXPECT_EQ(kind(16, LightLevel()), "HDR10");
    EXPECT_EQ(kind(16, MasteringDisplay() + RegisteredData(0xB5, 4)), "HDR10+");
    EXPECT_EQ(kind(18, ""), "HLG");
    EXPECT_EQ(kind(14, AlternativeTransfer(18)), "HLG");
    EXPECT_EQ(kind(1, LightLevel()), "");
}

TEST(H265Video, FurtherLayersArePassedOver) {
    const Stream265 base;
    const Stream265 other = With([](Stream265& s) {
        s.mProfile = 7;
        s.mWidth = 640;
        s.mSPSHeader = Hex({0x42, 9});
        s.mSliceHeader = Hex({0x26, 9});
    });
    EXPECT_EQ(Told(other.Bytes() + base.Bytes()), kTold);
    EXPECT_EQ(Told(other.Bytes()), "nothing");
    EXPECT_EQ(Told(StartCoded({Hex({0x43, 1}) + Escaped(other.SPS())})), "nothing") << "layer 32";
}

TEST(H265Video, AStreamMayBeginAndEndAnywhere) {
    const Stream265 stream = With([](Stream265& s) {
        s.mSigns.mUnits = 1;
        s.mSigns.mScale = 25;
    });
    const std::string bytes = stream.Bytes();
    const std::string whole = "H265 Main@31 320x180 fr=25000 progressive cd=8 4:2:0";
    const std::size_t setEnd = StartCoded({stream.Sets()[0], stream.Sets()[1]}).size();
    EXPECT_EQ(Told(Content(100, '\x47') + Hex({0, 0}) + bytes), whole);
    bool fSize = false;
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        const std::string told = Told(bytes.substr(0, size));
        fSize = fSize || told != "nothing";
        EXPECT_EQ(told.substr(0, 20), fSize ? whole.substr(0, 20) : "nothing") << size;
        if (size >= setEnd) {
            EXPECT_EQ(told, whole) << size;
        }
    }
    EXPECT_TRUE(fSize);
}

TEST(H265Video, ConfigurationHasProfileAndSets) {
    const Stream265 stream;
    const std::vector<std::string> sets = stream.Sets();
    const std::string config = Config(sets);
    EXPECT_EQ(ToldOfConfig(config), kTold);
    EXPECT_EQ(ToldOfConfig(Config({})), "H265 Main10@40 progressive cd=10 4:2:0")
        << "sets come with the pictures";
    EXPECT_EQ(ToldOfConfig(Config({std::string("\x42\1broken")})), "H265 Main10@40 progressive cd=10 4:2:0");
    EXPECT_EQ(ToldOfConfig(config.substr(0, 13)), "H265 Main10@40 progressive") << "no more is there";
    EXPECT_EQ(ToldOfConfig(""), "nothing");
    EXPECT_EQ(ToldOfConfig('\2' + config.substr(1)), "nothing") << "another version";
    for (std::size_t size = 0; size < config.size(); ++size) {
        const std::string expected = size < 13 ? "nothing" : "H265 Main";
        EXPECT_EQ(ToldOfConfig(config.substr(0, size)).substr(0, expected.size()), expected) << size;
    }
    EXPECT_EQ(ToldOfConfig(config.substr(0, 22) + std::string(9, '\xFF')),
              "H265 Main10@40 progressive cd=10 4:2:0");
}

TEST(H265Video, FirstPictureTellsOfItsRange) {
    const Stream265 stream = With([](Stream265& s) {
        s.mSigns.mTransfer = 16;
        s.mMessages = LightLevel();
    });
    const std::string told = std::string(kTold) + " HDR10";
    for (const unsigned sizeBytes : {1U, 2U, 4U}) {
        const std::string config = Config(stream.Sets(), sizeBytes);
        EXPECT_EQ(ToldOfConfig(config), std::string(kTold) + " PQ");
        EXPECT_EQ(ToldOfConfig(config, Sized(stream.Picture(), sizeBytes)), told) << sizeBytes;
    }
    std::vector<std::string> inBand = stream.Sets();
    for (const std::string& unit : stream.Picture()) {
        inBand.push_back(unit);
    }
    EXPECT_EQ(ToldOfConfig(Config({}), Sized(inBand, 4)), told);
}

TEST(H265Video, UnitsOfAConfigurationAreBounded) {
    const Stream265 stream;
    const auto told = [&](std::uint32_t aCount) {
        std::vector<std::string> units(aCount, "\x46\1");
        units.push_back(stream.Sets()[1]);
        return ToldOfConfig(Config(units));
    };
    EXPECT_EQ(told(kNALUnits_MaxCount - 1), kTold);
    EXPECT_EQ(told(kNALUnits_MaxCount), "H265 Main10@40 progressive cd=10 4:2:0");
}

// ---- as an elementary stream, which every field must fit ----

TEST(H265EltStreamParser, RecordSaysWhatTheHeadersSay) {
    const auto record = [](auto aChange) {
        return Parse<H265EltStreamParser>(With(aChange).Bytes(), {UINT32_MAX}).mRecord;
    };
    EXPECT_EQ(record([](Stream265&) {}), "he=180\nvc=\"H265\"\nvr=4294967295\nvt=1\nwi=320\n");
    EXPECT_EQ(record([](Stream265& s) { s.mfFieldPictures = true; }),
              "he=360\nvc=\"H265\"\nvr=4294967295\nvt=1\nwi=320\n");
    EXPECT_EQ(record([](Stream265& s) {
                  s.mSigns.mUnits = 1;
                  s.mSigns.mScale = 50;
                  s.mHRD = [](Bits& aBits) {
                      aBits.Put(2, 2).Put(0, 24).Put(1, 1).UE(0).UE(0).UE(15624).UE(9).Put(1, 1);
                  };
              }),
              "he=180\nvc=\"H265\"\nvr=1000000\nvt=1\nwi=320\n");
}

TEST(H265EltStreamParser, OneBrokenFieldIsNoStream) {
    EXPECT_TRUE(Wins([](Stream265&) {}));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mReserved = 0xFFFE; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mVPSID = 1; })) << "an unknown VPS";
    EXPECT_TRUE(Wins([](Stream265& s) { s.mVPSID = s.mSPSVPSID = 15; }));
    EXPECT_TRUE(Wins([](Stream265& s) { s.mSPSID = s.mPPSSPSID = 15; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mSPSID = s.mPPSSPSID = 16; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mPPSSPSID = 1; })) << "an unknown SPS";
    EXPECT_TRUE(Wins([](Stream265& s) { s.mPPSID = s.mSlicePPSID = 63; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mPPSID = s.mSlicePPSID = 64; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mSlicePPSID = 1; })) << "an unknown PPS";
    EXPECT_FALSE(Wins([](Stream265& s) { s.mChromaFormat = 4; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mBitDepth = 17; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mWidth = 324; })) << "no row of whole blocks";
    EXPECT_TRUE(Wins([](Stream265& s) { s.mBlocks = {0, 0, 0, 0, 4, 4}; }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mBlocks = {1, 3, 0, 3, 0, 0}; })) << "blocks of 128";
    EXPECT_FALSE(Wins([](Stream265& s) { s.mBlocks = {0, 3, 1, 3, 0, 0}; }))
        << "transforms as large as blocks";
    EXPECT_FALSE(Wins([](Stream265& s) { s.mBlocks = {0, 3, 0, 3, 5, 0}; }));
}

TEST(H265EltStreamParser, PicturesAreAsLargeAsTheHighestLevelHasThem) {
    const auto wins = [](unsigned aWidth, unsigned aHeight) {
        return Wins([=](Stream265& s) {
            s.mWidth = aWidth;
            s.mHeight = aHeight;
            s.mCrop = {};
        });
    };
    EXPECT_TRUE(wins(kH265_MaxSide, 8));
    EXPECT_FALSE(wins(kH265_MaxSide + 8, 8));
    EXPECT_FALSE(wins(8, kH265_MaxSide + 8));
    EXPECT_TRUE(wins(8192, kH265_MaxPicture / 8192));
    EXPECT_FALSE(wins(8192, kH265_MaxPicture / 8192 + 8));
    EXPECT_FALSE(wins(0, 8));
    EXPECT_FALSE(wins(8, 0));
}

TEST(H265EltStreamParser, ExtensionsOfRangesAreReadAndOthersPassed) {
    EXPECT_TRUE(Wins([](Stream265& s) { s.mExtensions = 0x80; }));
    EXPECT_TRUE(Wins([](Stream265& s) { s.mExtensions = 0x10; }));
    EXPECT_TRUE(Wins([](Stream265& s) { s.mExtensions = 0xFF; }));
}

TEST(H265EltStreamParser, TilesAreBounded) {
    EXPECT_TRUE(Wins([](Stream265& s) {
        s.mTiles = [](Bits& aBits) {
            aBits.UE(kH265_MaxTileColumns - 1).UE(kH265_MaxTileRows - 1).Put(3, 2);
        };
    }));
    EXPECT_FALSE(Wins([](Stream265& s) {
        s.mTiles = [](Bits& aBits) { aBits.UE(kH265_MaxTileColumns).UE(kH265_MaxTileRows - 1).Put(3, 2); };
    }));
    EXPECT_FALSE(Wins([](Stream265& s) {
        s.mTiles = [](Bits& aBits) { aBits.UE(kH265_MaxTileColumns - 1).UE(kH265_MaxTileRows).Put(3, 2); };
    }));
    EXPECT_TRUE(Wins([](Stream265& s) {
        s.mTiles = [](Bits& aBits) { aBits.UE(1).UE(2).Put(0, 1).UE(3).UE(1).UE(1).Put(0, 1); };
        s.mfListsOfPPS = true;
    }));
}

TEST(H265EltStreamParser, UnitsAreOfTheBaseAndOfTypesThatCount) {
    EXPECT_FALSE(Wins([](Stream265& s) { s.mVPSHeader = Hex({0x40, 2}); })) << "a higher sub-layer";
    EXPECT_FALSE(Wins([](Stream265& s) { s.mSPSHeader = Hex({0x42, 2}); }));
    EXPECT_TRUE(Wins([](Stream265& s) { s.mPPSHeader = Hex({0x44, 2}); }));
    EXPECT_FALSE(Wins([](Stream265& s) { s.mPPSHeader = Hex({0x44, 0}); })) << "no sub-layer";
    EXPECT_FALSE(Wins([](Stream265& s) { s.mSPSHeader = Hex({0x42, 9}); })) << "another layer";
    EXPECT_FALSE(Wins([](Stream265& s) { s.mSPSHeader = Hex({0xC2, 1}); })) << "forbidden bit";
    for (int type = 0; type < 64; ++type) {
        const bool fSlice = type <= 9 || (type >= 16 && type <= 21);
        EXPECT_EQ(Wins([=](Stream265& s) { s.mSliceHeader = Hex({type << 1, 1}); }), fSlice) << type;
    }
}

TEST(H265EltStreamParser, NeitherCodecIsTakenForTheOther) {
    const std::string own = ReadSample("elementary/harbour-light.h265");
    const std::string other = ReadSample("elementary/harbour-light.h264");
    EXPECT_EQ(Race(own, {1316}).mRecord, "he=180\nvc=\"H265\"\nvr=4294967295\nvt=1\nwi=320\n");
    EXPECT_EQ(Parse<H265EltStreamParser>(other, {1316}).mStatus, ezElementaryStreamParser::MSS_IN_PROGRESS);
    EXPECT_EQ(Text(H265Video_ReadStream(Data(other), other.size())), "nothing");
}

TEST(H265EltStreamParser, ASliceIsReadToItsBoundAndNoFurther) {
    const Stream265 stream;
    const std::string zeros = Hex({0x02, 1}) + Escaped(std::string(kH265_MaxSliceHeaderSize, '\0'));
    H265EltStreamParser parser;
    parser.Open();
    EXPECT_EQ(Push(parser, StartCoded(stream.Sets()) + StartCoded({zeros}) + Hex({3}) + Content(9), {1}),
              ezElementaryStreamParser::MSS_IN_PROGRESS);
    EXPECT_EQ(Push(parser, StartCoded(stream.Picture()), {1}), ezElementaryStreamParser::MSS_COMPLETED);
}
