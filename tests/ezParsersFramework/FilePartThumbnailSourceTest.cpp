#include "ez/FilePartThumbnailSource.h"

#include "ezPlatform/media/MediaInfo.h"
#include "support/Catchers.h"
#include "support/ScriptedSystem.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

class FilePartThumbnailSource : public testing::Test {
protected:
    /// What the stream of a part gives.
    std::string Part(const std::string& aContent, ezFileOffset anOffset, uint32 aSize) {
        return Read(aContent, anOffset, aSize, false, 0);
    }
    std::string Decoded(const std::string& aContent, ezFileOffset anOffset, uint32 aSize,
                        uint32 anEncodedOffset = 0) {
        return Read(aContent, anOffset, aSize, true, anEncodedOffset);
    }
    std::string Read(const std::string& aContent, ezFileOffset anOffset, uint32 aSize, bool afBase64,
                     uint32 anEncodedOffset) {
        return ReadAll(Source(mFolder.Write("media", aContent), anOffset, aSize, afBase64, anEncodedOffset)
                           ->GetStream());
    }
    static std::unique_ptr<ezFilePartThumbnailSource> Source(const std::string& aPath, ezFileOffset anOffset,
                                                             uint32 aSize, bool afBase64,
                                                             uint32 anEncodedOffset) {
        return std::make_unique<ezFilePartThumbnailSource>(
            "image/jpeg", ezPathName::MakeFilePath(Bytes(aPath)), anOffset, aSize, afBase64, anEncodedOffset);
    }

    TemporaryFolder mFolder;
};

TEST_F(FilePartThumbnailSource, ExistsWhenTheFileDoes) {
    EXPECT_TRUE(Source(mFolder.Write("a", "x"), 0, 1, false, 0)->Exists());
    EXPECT_FALSE(Source(mFolder.Path("b"), 0, 1, false, 0)->Exists());
}

TEST_F(FilePartThumbnailSource, IsTheBytesOfThePart) {
    EXPECT_EQ(Part("0123456789", 3, 4), "3456");
    EXPECT_EQ(Part("0123456789", 0, 10), "0123456789");
    EXPECT_EQ(Part("0123456789", 3, 0), "");
    const std::unique_ptr<ezFilePartThumbnailSource> source =
        Source(mFolder.Path("media"), 3, 4, false, 2); // no encoding, so no offset in it
    ezStreamOwner stream(source->GetStream());
    EXPECT_EQ(stream->GetSize(), 4U);
    EXPECT_EQ(Str(stream->GetURI()), mFolder.Path("media"));
    EXPECT_EQ(ReadAll(stream.release()), "3456");
}

TEST_F(FilePartThumbnailSource, WhatGoesBeyondTheFileIsNotThere) {
    EXPECT_EQ(Part("0123456789", 8, 4), "89");
    EXPECT_EQ(Part("0123456789", 8, UINT32_MAX), "89");
    EXPECT_EQ(Part("0123456789", 10, 1), "");
    EXPECT_EQ(Part("0123456789", INT64_MAX, 1), "");
}

TEST_F(FilePartThumbnailSource, AnOffsetBelowZeroGivesNoStream) {
    EXPECT_EQ(Part("0123456789", -1, 4), "<null>");
    EXPECT_EQ(Decoded("Zm9vYmFy", -1, 4), "<null>"); // though a failed seek gives this very position
    EXPECT_EQ(Decoded("Zm9vYmFy", INT64_MIN, 4), "<null>");
}

TEST_F(FilePartThumbnailSource, AFileThatDoesNotOpenGivesNoStream) {
    for (const bool fBase64 : {false, true}) {
        EXPECT_EQ(ReadAll(Source(mFolder.Path("none"), 0, 4, fBase64, 0)->GetStream()), "<null>");
        EXPECT_EQ(ReadAll(Source(mFolder.GetPath(), 0, 4, fBase64, 0)->GetStream()), "<null>");
    }
}

TEST_F(FilePartThumbnailSource, WhatIsNoFileIsNeitherWaitedForNorRead) {
    const std::string pipe = mFolder.Path("pipe.jpg");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {pipe, mFolder.Write("a.jpg", "picture") + std::string("\0.png", 5)}) {
        for (const bool fBase64 : {false, true}) {
            EXPECT_EQ(ReadAll(Source(path, 0, 4, fBase64, 0)->GetStream()), "<null>");
        }
    }
}

TEST_F(FilePartThumbnailSource, Base64TextIsDecoded) {
    EXPECT_EQ(Decoded("METADATA=Zm9vYmFy,rest", 9, 8), "foobar");
    EXPECT_EQ(Decoded("Zm9vYg==", 0, 8), "foob");
    EXPECT_EQ(Decoded("Zm9v\r\nYmFy", 0, 10), "foobar");
    EXPECT_EQ(Decoded("Zm9vYmFy", 0, 7), "fooba"); // cut short
    EXPECT_EQ(Decoded("Z", 0, 1), "");
    EXPECT_EQ(Decoded("!*-_\x80~", 0, 6), "");
    EXPECT_EQ(Decoded(std::string("Zm9v\0YmFy", 9), 0, 9), "foo");
}

TEST_F(FilePartThumbnailSource, TheStreamOfDecodedDataHasItsSizeTypeAndNoFile) {
    const std::string path = mFolder.Write("media", "Zm9vYmFy");
    ScriptedSystem system;
    std::unique_ptr<ezFilePartThumbnailSource> source = Source(path, 0, 8, true, 0);
    ezStreamOwner stream(source->GetStream());
    source.reset();
    EXPECT_EQ(system.GetCounts().mOpen, 1U);
    EXPECT_EQ(system.GetCounts().mClose, 1U); // the file is released already
    EXPECT_EQ(stream->GetSize(), 6U);
    ezMediaInfo record;
    stream->CopyInfo(&record);
    EXPECT_EQ(Str(record.GetCString(kezInfo_MimeType, "")), "image/jpeg");
    EXPECT_EQ(ReadAll(stream.release()), "foobar");
}

TEST_F(FilePartThumbnailSource, LeadingDecodedBytesAreDropped) {
    EXPECT_EQ(Decoded("Zm9vYmFy", 0, 8, 2), "obar"); // 8 characters, 6 bytes, 4 of them left
    EXPECT_EQ(Decoded("Zm9vYmFy", 0, 8, 5), "r");
    EXPECT_EQ(Decoded("Zm9vYmFy", 0, 8, 6), "");
    EXPECT_EQ(Decoded("Zm9vYmFy", 0, 8, 7), "<null>"); // beyond the data, though within its block
    EXPECT_EQ(Decoded("Zm9vYmFy", 0, 8, UINT32_MAX), "<null>");
    EXPECT_EQ(Decoded("!!!!", 0, 4, 1), "<null>");
}

TEST_F(FilePartThumbnailSource, EveryLengthOfTextDecodesToItsWholeBytes) {
    const std::string text = "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8g"; // bytes 0 to 32
    std::string bytes;
    for (char byte = 0; byte < 33; ++byte) {
        bytes += byte;
    }
    for (uint32 size = 1; size <= text.size(); ++size) {
        for (uint32 offset = 0; offset <= size * 3 / 4; ++offset) {
            EXPECT_EQ(Decoded(text, 0, size, offset), bytes.substr(offset, size * 3 / 4 - offset)) << size;
        }
    }
}

TEST_F(FilePartThumbnailSource, EveryPieceOfATextWithLineEndsAndPaddingDecodesToItsWholeBytes) {
    // 3, 2 and 1 bytes in their last group, in lines as mails and tags have them.
    for (const std::string text : {"AAEC\r\nAwQF\r\nBgcI\r\n", "AAEC\nAwQF\nBgc=\n", "AAECA wQFBg\t==\n  "}) {
        for (std::size_t from = 0; from <= text.size(); ++from) {
            for (std::size_t size = 0; size <= text.size() - from + 2; ++size) {
                const std::string piece = text.substr(from, size);
                std::string bytes;
                unsigned bits = 0;
                unsigned count = 0;
                for (const char character : piece.substr(0, piece.find('='))) {
                    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
                    const std::size_t value = (alphabet + "0123456789+/").find(character);
                    if (value == std::string::npos) {
                        continue;
                    }
                    bits = bits << 6 | static_cast<unsigned>(value);
                    count += 6;
                    if (count >= 8) {
                        count -= 8;
                        bytes += static_cast<char>(bits >> count & 0xFF);
                    }
                }
                const std::string expected = piece.empty() ? "<null>" : bytes;
                const auto offset = static_cast<ezFileOffset>(from);
                ASSERT_EQ(Decoded(text, offset, static_cast<uint32>(size)), expected) << from << "+" << size;
            }
        }
    }
}

TEST_F(FilePartThumbnailSource, TheBlocksAreAsLongAsTextAndExpectedSize) {
    static std::vector<std::size_t> sSizes;
    sSizes.clear();
    const std::string path = mFolder.Write("media", "Zm9vYmFy");
    ezSystemCalls calls = ezSystem_Real();
    calls.mAllocate = [](std::size_t aSize) {
        sSizes.push_back(aSize);
        return ezSystem_Real().mAllocate(aSize);
    };
    ezSystem_Replace(&calls);
    const std::string all = ReadAll(Source(path, 0, 8, true, 0)->GetStream());
    const std::string most = ReadAll(Source(path, 2, UINT32_MAX, true, 0)->GetStream());
    ezSystem_Replace(nullptr);
    EXPECT_EQ(all, "foobar");
    EXPECT_NE(most, "<null>");
    EXPECT_EQ(sSizes, (std::vector<std::size_t>{9, 7, 7, 7})); // never by the size alone
}

TEST_F(FilePartThumbnailSource, NothingReadGivesNoStream) {
    EXPECT_EQ(Decoded("Zm9vYmFy", 0, 0), "<null>");
    EXPECT_EQ(Decoded("Zm9vYmFy", 8, 8), "<null>");
    EXPECT_EQ(Decoded("Zm9vYmFy", INT64_MAX, UINT32_MAX), "<null>");
    EXPECT_EQ(Decoded("", 0, 8), "<null>");
}

TEST_F(FilePartThumbnailSource, WhenReadingFailsThereIsNoStreamAndTheFileIsReleased) {
    const std::string path = mFolder.Write("media", "Zm9vYmFy");
    ScriptedSystem system;
    system.mPReadOutcomes = {{EIO}};
    EXPECT_EQ(ReadAll(Source(path, 0, 8, true, 0)->GetStream()), "<null>");
    EXPECT_EQ(system.GetCounts().mClose, 1U);
}

TEST_F(FilePartThumbnailSource, AFileCutSinceItWasOpenedGivesWhatIsLeft) {
    const std::string path = mFolder.Write("media", "Zm9vYmFy");
    ScriptedSystem system;
    system.mPReadOutcomes = {{0, 4}, {0, 0}};
    EXPECT_EQ(ReadAll(Source(path, 0, 8, true, 0)->GetStream()), "foo");
}

TEST_F(FilePartThumbnailSource, WhenMemoryIsRefusedThereIsNoStreamAndTheFileIsReleased) {
    const std::string path = mFolder.Write("media", "Zm9vYmFy");
    for (const std::size_t granted : {0U, 1U}) {
        ScriptedSystem system;
        system.mAllocateOutcomes.resize(granted);
        system.mAllocateOutcomes.push_back({ENOMEM});
        EXPECT_EQ(ReadAll(Source(path, 0, 8, true, 0)->GetStream()), "<null>");
        EXPECT_EQ(system.GetCounts().mClose, 1U);
        EXPECT_TRUE(system.mAllocateOutcomes.empty());
    }
}

TEST_F(FilePartThumbnailSource, ADecoderWithinItsBoundNeverAsserts) {
    const AssertCatcher assertions;
    for (uint32 size = 1; size < 64; ++size) {
        EXPECT_EQ(Decoded(std::string(64, '/'), 0, size), std::string(size * 3 / 4, '\xff'));
    }
    EXPECT_TRUE(assertions.Failures().empty());
}

} // namespace
