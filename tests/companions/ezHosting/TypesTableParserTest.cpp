#include "ezHosting/TypesTableParser.h"

#include "support/AwkwardStream.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

TEST(TypesTableParser, DeclaresTheFirstTypeOfEachEntryOnce) {
    const TemporaryFolder folder;
    folder.Write("mediaCTRLMediaTypes.ini",
                 "[MimeTypesExcluded]\npdf=pdf@application/pdf\n"
                 "[MimeTypes]\nb=b@video/b,video/bb@item.videoItem\nagain=c@video/b@item.videoItem\n"
                 "none=d\npar=p@audio/l16;rate=44100@item.audioItem\nknown=k@audio/known@item.audioItem\n"
                 "bad=e@no:type/x,audio/e@item.audioItem\n");
    const ezCString path = folder.GetPath().c_str();
    ExtensionMimeTypeMatcher matcher(path, path, "");
    TypesTableParser parser(matcher, {"http-get:*:audio/known:*"});
    EXPECT_EQ(Str(parser.GetDLNAInfo()), ""); // before the table is loaded
    matcher.Load();
    EXPECT_EQ(Str(parser.GetDLNAInfo()), "video/b:*,audio/l16;rate=44100:*");
    EXPECT_EQ(Str(parser.GetDLNAInfo()), "video/b:*,audio/l16;rate=44100:*");
}

TEST(TypesTableParser, RecognisesAndAdjustsNothing) {
    ExtensionMimeTypeMatcher matcher("/nowhere", "/nowhere", "");
    TypesTableParser parser(matcher, {});
    AwkwardStream stream("bytes");
    EXPECT_EQ(parser.Parse(stream), nullptr);
    ezMediaInfo info;
    EXPECT_FALSE(parser.AdjustDLNAInfo(&info));
    EXPECT_EQ(Str(parser.GetDLNAInfo()), "");
}
