#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/MapperFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

// Every system call of the media mapper's file goes wrong once, and for good: what the caller is told, what
// the table then holds, and that the file is the old one or the whole new one.

namespace {

const std::string kOldTable = "own.mpg,video/mpeg,MPEG_PS_PAL\nsong.mp3,audio/mpeg,MP3\n";
const std::string kFactoryTable = "factory.mpg,video/mpeg,MPEG_PS_NTSC\n";

/// A text with the test's own folder written as "~".
std::string Placed(std::string aText, const TemporaryFolder& aFolder) {
    for (std::size_t at = aText.find(aFolder.GetPath()); at != std::string::npos; at = aText.find(aFolder.GetPath())) {
        aText.replace(at, aFolder.GetPath().size(), "~");
    }
    return aText;
}

std::string Told(const ezError& anError, const TemporaryFolder& aFolder) {
    std::string text = anError.IsError() ? std::to_string(anError.GetCode()) + " " + anError.ToString() : "good";
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n')) {
        text[at] = ' ';
    }
    return Placed(text, aFolder);
}

std::string Joined(const std::vector<std::string>& aTexts) {
    std::string joined;
    for (const std::string& text : aTexts) {
        joined += (joined.empty() ? "" : " ") + text;
    }
    return joined;
}

/// What a table holds, and what the next start of the server finds.
std::string Held(OpenMapper& aMapper, const MapperFolder& aFolder) {
    std::string text = "; holds " + Joined(aMapper.Names());
    const std::unique_ptr<OpenMapper> next = aFolder.New();
    const ezError error = next->Load();
    text += "; next " + (error.IsError() ? Told(error, aFolder.Folder()) : Joined(next->Names()));
    return text;
}

std::string LoadOwn(const std::vector<Fault>& aFaults, bool* afStruck) {
    const AssertCatcher asserts;
    const MapperFolder folder;
    folder.WriteReadOnly(kFactoryTable);
    folder.WriteWritable(kOldTable);
    std::unique_ptr<OpenMapper> mapper;
    std::string text;
    {
        const FaultySystem system(aFaults);
        mapper = folder.New();
        text = Told(mapper->Load(), folder.Folder());
        *afStruck = system.HasStruck();
    }
    EXPECT_EQ(folder.ReadWritable(), kOldTable);
    EXPECT_TRUE(asserts.Failures().empty());
    return text + Held(*mapper, folder);
}

std::string LoadFirst(const std::vector<Fault>& aFaults, bool* afStruck) {
    const AssertCatcher asserts;
    const MapperFolder folder;
    folder.WriteReadOnly(kFactoryTable);
    std::unique_ptr<OpenMapper> mapper;
    std::string text;
    LogCatcher log(2); // errors alone
    {
        const FaultySystem system(aFaults);
        mapper = folder.New();
        text = Told(mapper->Load(), folder.Folder());
        *afStruck = system.HasStruck();
    }
    text += "; holds " + Joined(mapper->Names());
    for (const std::string& line : log.Texts()) {
        text += "; logs " + Told(ezError(0 - 9, line), folder.Folder());
    }
    return text;
}

}

TEST(Zzz, A) {
    for (int i = 0; i < 21; ++i) for (bool g : {false, true}) {
        FaultManner m; m.mCall = SystemCall(i); m.mError = EIO; m.mfForGood = g;
        printf("LoadOwn %s %d\n%s", NameOf(m.mCall), g, SweepFaults(m, LoadOwn).c_str());
        printf("LoadFirst %s %d\n%s", NameOf(m.mCall), g, SweepFaults(m, LoadFirst).c_str());
    }
}
