#include "companions/ezFormats/FormatHost.h"
#include "companions/ezThumbnails/CoverKit.h"

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Covers: what a record tells of one, and what a thumbnail is made of, are read by two libraries. Both must
// mean the same picture.

namespace {

/// "type size" of the cover that a record tells; "" where it tells none.
std::string Told(const std::string& aBytes, const std::string& aName) {
    FormatHost host;
    const Record record = host.Parse(aBytes, "/samples/" + aName);
    if (record == nullptr || !record->Has(kezInfo_CoverMimeType)) {
        return "";
    }
    return Str(record->GetCString(kezInfo_CoverMimeType, "")) + " " +
           Str(record->GetCString(kezInfo_CoverSize, ""));
}

/// The same of the picture that a thumbnail is made of first.
std::string Found(const std::string& aBytes) {
    const Covers covers = CoversOf(aBytes);
    if (covers.empty()) {
        return "";
    }
    const std::size_t blank = covers[0].find(' ');
    return covers[0].substr(0, blank + 1) + std::to_string(covers[0].size() - blank - 1);
}

} // namespace

TEST(Covers, ThoseThatRecordsOfSamplesTellAreFound) {
    std::size_t count = 0;
    for (const SampleFile& sample : AllSamples()) {
        if (sample.mWinner.empty() || sample.mWinner == "-") {
            continue;
        }
        const std::string told = Told(sample.mBytes, sample.mName);
        EXPECT_EQ(Found(sample.mBytes), told) << sample.mName;
        count += told.empty() ? 0U : 1U;
    }
    EXPECT_GE(count, 5U); // of an ID3 tag, of FLAC, of WAV ...
}

TEST(Covers, ThoseInOddPlacesAreToldAndFound) {
    const std::string picture = Jpeg(std::string(700, 'x'));
    const std::string block = PictureOfFlac(3, picture);
    const std::string tag = ID3(3, 0, Frame23("APIC", Apic(3, picture)));
    const std::string bare = ID3(3, 0, Frame23("TIT2", "\0Title"s));
    const std::string head = "\x7F"
                             "FLAC\1\0\0\1fLaC"s +
                             FlacBlock(0, std::string(34, 's'));
    std::string pages = PageOfOgg(7, 2, head, true) + PageOfOgg(7, 0, FlacBlock(4, Comments({})), true);
    for (const std::string& page : PagesOfOgg(7, FlacBlock(6, block, true), 255)) {
        pages += page;
    }
    for (const auto& [name, bytes] : std::vector<std::pair<std::string, std::string>>{
             {"block.flac", Flac(FlacBlock(6, block))},
             {"comment.flac", Flac(FlacBlock(4, Comments({PictureComment(block)})))},
             {"older.flac", Flac(FlacBlock(4, Comments({"COVERART=" + Base64(picture)})))},
             {"tag.flac", bare + tag + Flac("")},
             {"block.oga", pages}}) {
        EXPECT_EQ(Told(bytes, name), "image/jpeg " + std::to_string(picture.size())) << name;
        EXPECT_EQ(Found(bytes), Told(bytes, name)) << name;
    }
}

TEST(Covers, ThoseOfTagsAroundFramesAreToldAndFound) {
    const std::string picture = Jpeg(std::string(700, 'x'));
    const std::string before = ID3(3, 0, Frame23("APIC", Apic(3, picture)));
    const std::string after = APE2(ApePicture(picture, "Cover Art (Front)"));
    const std::set<std::string> names = {"formats/5.1.aac",  "formats/44-khz.ac3", "formats/slow.eac3",
                                         "formats/mono.dts", "formats/truehd.thd", "formats/mlp.mlp"};
    std::size_t count = 0;
    for (const SampleFile& sample : AllSamples()) {
        if (names.count(sample.mName) == 0) {
            continue;
        }
        ++count;
        for (const std::string& bytes : {before + sample.mBytes, sample.mBytes + after}) {
            EXPECT_EQ(Told(bytes, sample.mName), "image/jpeg " + std::to_string(picture.size()))
                << sample.mName;
            EXPECT_EQ(Found(bytes), Told(bytes, sample.mName)) << sample.mName;
        }
    }
    EXPECT_EQ(count, names.size());
}
