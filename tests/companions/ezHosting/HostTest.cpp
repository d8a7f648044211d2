#include "ezHosting/Host.h"

#include "support/Folders.h"

#include <gtest/gtest.h>

namespace {

const std::string kWalk = EZ_SAMPLES "/music/morning-walk.mp3";

} // namespace

TEST(Host, OfAFolderIdentifiesFiles) {
    ezHost host(EZ_SAMPLES);
    ASSERT_TRUE(host.IsReady()) << host.GetError();
    const auto info = host.Identify(kWalk);
    ASSERT_NE(info, nullptr) << host.GetError();
    EXPECT_EQ(info->GetCString(kezInfo_MimeType, "").View(), "audio/mpeg");
    EXPECT_EQ(info->GetCString(kezInfo_DLNA, "").View(),
              "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000");
}
