#include "companions/ezFormats/FormatHost.h"

#include "support/AwkwardStream.h"
#include "support/MapperFolder.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

// The names that the media types file of an operator has a word in: UPnP class and MIME type.

namespace {

/// A host with the parsers of this library and a media types file of its own.
class NamingHost {
public:
    explicit NamingHost(const std::string& aLines, int aParseOptions = kParseOption_Default,
                        unsigned int aCTTContext = 0) {
        mFolder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\n" + aLines);
        mEnvironment.Set(kProperty_ReadOnlyConfigPath, mFolder.GetPath())
            .Set(kProperty_ReadWriteConfigPath, mFolder.GetPath())
            .SetCTTContext(aCTTContext);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(aParseOptions);
        RegisterFormatParsers(*mManager);
    }

    ezMediaParserManager& Manager() { return *mManager; }

    /// "class MIME-type" of a sample under a name.
    std::string Names(const std::string& aSample, const std::string& aPath) {
        AwkwardStream stream(ReadWholeFile(std::string(EZ_SAMPLES "/") + aSample), Delivery(), aPath.c_str());
        return NamesOf(Record(mManager->Parse(stream)).get());
    }
    static std::string NamesOf(const ezMediaInfo* anInfo) {
        return anInfo == nullptr ? "none"
                                 : std::string(anInfo->GetCString(kezInfo_ClassName, "-").c_str()) + " " +
                                       anInfo->GetCString(kezInfo_MimeType, "-").c_str();
    }

private:
    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    std::unique_ptr<ezMediaParserManager> mManager;
};

constexpr const char* kSong = "music/morning-walk.mp3";
constexpr const char* kPhoto = "pictures/harbour.jpg";
constexpr const char* kSoundOnly = "formats/aac-only.mp4";

const std::string kMp3Line = "mp3=mp3@audio/mpeg@item.audioItem.musicTrack@jpg,mp4\n";
const std::string kJpgLine = "jpg=jpg@image/jpeg@item.imageItem.photo@mp3\n";
const std::string kMp4Line = "mp4=mp4@video/mp4@item.videoItem.movie\n";

} // namespace

TEST(FormatNames, ClassIsThatOfTheWinningLineWhereItIsOfTheKind) {
    EXPECT_EQ(NamingHost(kMp3Line).Names(kSong, "/a.mp3"), "item.audioItem.musicTrack audio/mpeg");
    EXPECT_EQ(NamingHost("mp3=mp3@audio/mpeg@item.audioItem\n").Names(kSong, "/a.mp3"),
              "item.audioItem audio/mpeg");
    // Not that of the first line of the MIME type.
    EXPECT_EQ(NamingHost("talk=talk@audio/mpeg@item.audioItem.audioBook\n" + kMp3Line).Names(kSong, "/a.mp3"),
              "item.audioItem.musicTrack audio/mpeg");
    EXPECT_EQ(NamingHost("m4b=m4b@audio/mp4@item.audioItem.audioBook@mp4\n"
                         "m4a=m4a@audio/mp4@item.audioItem.musicTrack@mp4\n")
                  .Names("music/evening-train.m4a", "/a.m4b"),
              "item.audioItem.audioBook audio/mp4");
}

TEST(FormatNames, MisnamedMediaHasTheClassOfTheFirstLineOfItsTypeAndKind) {
    EXPECT_EQ(NamingHost(kMp3Line + kJpgLine).Names(kPhoto, "/a.mp3"), "item.imageItem.photo image/jpeg");
    EXPECT_EQ(NamingHost(kMp3Line + kJpgLine).Names(kSong, "/a.jpg"), "item.audioItem.musicTrack audio/mpeg");
    // A line of the type may be of another kind, or have no class.
    EXPECT_EQ(NamingHost(kMp3Line + "odd=odd@image/jpeg@item.audioItem\nbare=bare@image/jpeg\n" + kJpgLine)
                  .Names(kPhoto, "/a.mp3"),
              "item.imageItem.photo image/jpeg");
    EXPECT_EQ(NamingHost(kMp3Line + "[MimeTypesExcluded]\nhid=hid@image/jpeg@item.imageItem.hidden\n")
                  .Names(kPhoto, "/a.mp3"),
              "item.imageItem image/jpeg");
    EXPECT_EQ(NamingHost(kMp3Line).Names(kPhoto, "/a.mp3"), "item.imageItem image/jpeg");
}

TEST(FormatNames, SoundOnlyFilmIsOfTheClassOfSound) {
    EXPECT_EQ(NamingHost(kMp4Line).Names(kSoundOnly, "/a.mp4"), "item.audioItem audio/mp4");
    EXPECT_EQ(NamingHost(kMp4Line + "m4a=m4a@audio/mp4@item.audioItem.musicTrack@mp4\n")
                  .Names(kSoundOnly, "/a.mp4"),
              "item.audioItem.musicTrack audio/mp4");
}

TEST(FormatNames, AdjustedRecordHasTheClassOfTheFirstLineOfItsTypeAndKind) {
    NamingHost host("odd=odd@audio/mpeg@item.videoItem\n" + kMp3Line);
    ezMediaInfo song;
    song.Set(kezInfo_MimeType, "audio/mpeg", true);
    EXPECT_TRUE(host.Manager().AdjustDLNAInfo(&song));
    EXPECT_EQ(NamingHost::NamesOf(&song), "item.audioItem.musicTrack audio/mpeg");
    ezMediaInfo kept;
    kept.Set(kezInfo_MimeType, "audio/mpeg", true);
    kept.Set(kezInfo_ClassName, "item.audioItem.audioBroadcast", true);
    EXPECT_TRUE(host.Manager().AdjustDLNAInfo(&kept));
    EXPECT_EQ(NamingHost::NamesOf(&kept), "item.audioItem.audioBroadcast audio/mpeg");
}

TEST(FormatNames, ParserOfAHostWithoutATableGivesTheKind) {
    AwkwardStream stream(ReadWholeFile(std::string(EZ_SAMPLES "/") + kSong));
    EXPECT_EQ(NamingHost::NamesOf(Record(MPEGAudioParser().Parse(stream)).get()),
              "item.audioItem audio/mpeg");
}

TEST(FormatNames, AnotherNameOfTheTypeIsAnnouncedWhereTheLineHasItFirst) {
    // Without a profile: a lossless song, and a picture of progressive scans.
    EXPECT_EQ(NamingHost("m4a=m4a@audio/x-m4a,audio/mp4@item.audioItem.musicTrack@mp4\n")
                  .Names("formats/alac.m4a", "/a.m4a"),
              "item.audioItem.musicTrack audio/x-m4a");
    EXPECT_EQ(NamingHost("m4a=m4a@audio/mp4,audio/x-m4a@item.audioItem.musicTrack@mp4\n")
                  .Names("formats/alac.m4a", "/a.m4a"),
              "item.audioItem.musicTrack audio/mp4");
    EXPECT_EQ(NamingHost("jpg=jpg@image/pjpeg,image/jpeg@item.imageItem.photo\n")
                  .Names("formats/progressive.jpg", "/a.jpg"),
              "item.imageItem.photo image/pjpeg");
    // A profile is defined for one type.
    EXPECT_EQ(NamingHost("mp3=mp3@audio/mp3,audio/mpeg@item.audioItem.musicTrack\n").Names(kSong, "/a.mp3"),
              "item.audioItem.musicTrack audio/mpeg");
    // What is no name of this content never is announced for it.
    EXPECT_EQ(
        NamingHost("mp3=mp2@audio/mp2@item.audioItem.musicTrack\n").Names("formats/mpeg-2.5.mp3", "/a.mp2"),
        "item.audioItem.musicTrack audio/mpeg");
    EXPECT_EQ(
        NamingHost("mp3=mp2@audio/mp2@item.audioItem.musicTrack\n").Names("formats/mpeg-1.mp2", "/a.mp2"),
        "item.audioItem.musicTrack audio/mp2");
    EXPECT_EQ(NamingHost("mp4=mov@video/mp4@item.videoItem\n").Names("formats/motion-jpeg.mov", "/a.mov"),
              "item.videoItem video/quicktime");
}

TEST(FormatNames, EveryOtherNameOfATypeIsAnnouncedForItsSampleWithoutAProfile) {
    std::set<std::string> left;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        for (const OtherMimeTypes& other : format->mOtherMimeTypes) {
            left.insert(other.mNames.begin(), other.mNames.end());
        }
    }
    for (const SampleFile& sample : AllSamples()) {
        const std::string line = sample.mWinner + "=zz@";
        for (auto name = left.begin(); sample.mWinner.size() > 1 && name != left.end();) {
            const std::string names = NamingHost(line + *name + "\n").Names(sample.mName, "/a.zz");
            const bool fAnnounced = names.substr(names.rfind(' ') + 1) == *name;
            name = fAnnounced ? left.erase(name) : std::next(name);
        }
    }
    EXPECT_EQ(left, std::set<std::string>());
    // Samples that are coded sound in truth are no samples by another name.
    EXPECT_EQ(NamingHost("wav=wav@audio/x-wav@item.audioItem.musicTrack\n")
                  .Names("formats/dts-as-samples.wav", "/a.wav"),
              "item.audioItem.musicTrack audio/vnd.dts");
}

TEST(FormatNames, RecordOfAnotherNameIsAdjusted) {
    NamingHost host("m4a=m4a@audio/x-m4a,audio/mp4@item.audioItem.musicTrack@mp4\n");
    ezMediaInfo song;
    song.Set(kezInfo_MimeType, "audio/x-m4a", true);
    EXPECT_TRUE(host.Manager().AdjustDLNAInfo(&song));
    EXPECT_EQ(NamingHost::NamesOf(&song), "item.audioItem.musicTrack audio/x-m4a");
}

TEST(FormatNames, FilesOfSegmentsAreFoundByTheirNames) {
    const std::string table = ReadWholeFile(EZ_SAMPLES "/mediaCTRLMediaTypes.ini");
    NamingHost host(table.substr(table.find("[MimeTypes]") + 12));
    const char* const film = "formats/avc-segments.m4s";
    for (const char* const name : {"/a.m4s", "/a.dash", "/a.cmfv"}) {
        EXPECT_EQ(host.Names(film, name), "item.videoItem video/mp4") << name;
    }
    EXPECT_EQ(host.Names("formats/aac-only.mp4", "/a.cmfa"), "item.audioItem.musicTrack audio/mp4");
    EXPECT_EQ(host.Names("formats/aac-only.mp4", "/a.m4s"), "item.audioItem.musicTrack audio/mp4");
}

TEST(FormatNames, TestFileNamesGiveProfileAndTypeAndLeaveTheClass) {
    const std::string lines = "m4a=m4a@audio/mp4@item.audioItem.musicTrack@mp4\n" + kMp4Line + kMp3Line;
    const char* const song = "music/evening-train.m4a";
    for (const unsigned int context : {1U, 2U}) {
        NamingHost host(lines, kParseOption_Default, context);
        EXPECT_EQ(host.Names(song, "/B-AAC_I-1.m4a"), "item.audioItem.musicTrack audio/mp4") << context;
        // Where no parser answers the name gives the class, too, and no line does.
        EXPECT_EQ(host.Names("music/plain-water.flac", "/B-AAC_I-1.m4a"), "item.audioItem audio/mp4")
            << context;
    }
    // The class is that of the content, whatever type the name demands.
    const char* const film = "/B-AVC_MP4_BL_CIF15_AAC_520-1.m4a";
    EXPECT_EQ(NamingHost(lines, kParseOption_Default, 1).Names(song, film),
              "item.audioItem.musicTrack audio/mp4");
    EXPECT_EQ(NamingHost(lines, kParseOption_Default, 2).Names(song, film),
              "item.audioItem.musicTrack video/mp4");
}

TEST(FormatNames, MediaMapperThatReplacesTheTypeGivesTheClass) {
    const MapperFolder folder;
    const auto names = [&](const char* aTable) {
        const std::unique_ptr<OpenMapper> mapper = folder.Loaded(aTable);
        NamingHost host(kMp3Line);
        host.Manager().AddDLNAMediaMapperParser(mapper.get());
        return host.Names(kSong, "/media/a.mp3");
    };
    EXPECT_EQ(names("a.mp3,audio/mpeg,MP3\n"), "item.audioItem.musicTrack audio/mpeg");
    EXPECT_EQ(names("a.mp3,audio/mpeg,MP3X\n"), "item.audioItem.musicTrack audio/mpeg");
    EXPECT_EQ(names("a.mp3,audio/x-other,MP3\n"), "item.audioItem audio/x-other");
    EXPECT_EQ(names("b.mp3,audio/x-other,MP3\n"), "item.audioItem.musicTrack audio/mpeg");
}

TEST(FormatNames, LineOfAnotherKindThatLedThereByChanceGivesNoClass) {
    // All lines are tried: the first of them leads to every parser.
    const std::string lines = "xyz=xyz@video/xyz@item.videoItem.movie@any\n" + kJpgLine + kMp3Line;
    for (const int options :
         {kParseOption_ParseWithAllParserEverytime, kParseOption_ParseWithAllParserIfFailed,
          kParseOption_ParseWithAllParserIfNoExtension}) {
        const bool fNoExtension = options == kParseOption_ParseWithAllParserIfNoExtension;
        NamingHost host(lines, options);
        EXPECT_EQ(host.Names(kSong, fNoExtension ? "/a." : "/a.mp3"), "item.audioItem.musicTrack audio/mpeg");
        EXPECT_EQ(host.Names(kPhoto, fNoExtension ? "/a." : "/a.mp3"), "item.imageItem.photo image/jpeg");
    }
}

TEST(FormatNames, TypeThatAServerStatedIsNoMoreThanAName) {
    class StatedStream : public AwkwardStream {
    public:
        explicit StatedStream(const char* aSample)
            : AwkwardStream(ReadWholeFile(std::string(EZ_SAMPLES "/") + aSample), Delivery(), "/stream") {}
        void CopyInfo(ezMediaInfo* anInfo) override {
            AwkwardStream::CopyInfo(anInfo);
            anInfo->Set(kezInfo_MimeType, "audio/mpeg", false);
        }
    };
    NamingHost host("mp3=mp3@audio/mpeg@item.audioItem.musicTrack@any\n" + kJpgLine);
    for (const auto& [sample, names] : std::vector<std::pair<const char*, const char*>>{
             {kSong, "item.audioItem.musicTrack audio/mpeg"}, {kPhoto, "item.imageItem.photo image/jpeg"}}) {
        StatedStream stream(sample);
        EXPECT_EQ(NamingHost::NamesOf(Record(host.Manager().Parse(stream)).get()), names);
    }
}

TEST(FormatNames, HostThatTriesATypeItselfGetsTheClassOfTheFirstLine) {
    NamingHost host("talk=talk@audio/mpeg@item.audioItem.audioBook\n" + kMp3Line);
    AwkwardStream stream(ReadWholeFile(std::string(EZ_SAMPLES "/") + kSong), Delivery(), "/a.mp3");
    EXPECT_EQ(NamingHost::NamesOf(Record(host.Manager().ParseFromType("mp3", stream)).get()),
              "item.audioItem.audioBook audio/mpeg");
    // None of these parsers has covers to give.
    EXPECT_EQ(host.Manager().ParseCoverArt("audio/mpeg", stream), nullptr);
}
