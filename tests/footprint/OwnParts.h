#pragma once

#include "ez/ElementaryStreamParser.h"
#include "ez/MediaParser.h"
#include "ez/PlaylistParser.h"
#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/streams/Stream.h"

#include <cstddef>
#include <cstring>
#include <string_view>

// What a host brings along, as small as it can be: what is measured is the libraries'.

/// A parser as format parsers are: a block from the start, 128 bytes from the end.
class MP3Parser : public ezMediaParser {
public:
    MP3Parser() : ezMediaParser("mp3", nullptr, false) {}

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        return ParseFromStream(aStream, kezMediaParser_DefaultBeginBufferSize, 128);
    }
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override {
        anInfo->Set(kezInfo_DLNA, "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01", true);
        return true;
    }
    ezCString GetDLNAInfo() override { return "audio/mpeg:DLNA.ORG_PN=MP3"; }

protected:
    ezMediaInfo* Read(uint8* aBegin, std::size_t aBeginSize, uint8* /*anEnd*/, std::size_t anEndSize,
                      const ezuint64& /*aMediaSize*/) override {
        if (aBeginSize < 3 || anEndSize != 128 || std::memcmp(aBegin, "ID3", 3) != 0) {
            return nullptr;
        }
        auto* info = new ezMediaInfo;
        info->Set(kezInfo_AudioTrackCount, 1, true);
        info->Set(kezInfo_AudioChannelCount, 2, true);
        info->Set(kezInfo_AudioSamplingRate, 44100, true);
        info->Set(kezInfo_AudioBitRate, 128000, true);
        info->mTitle = "A title of the usual length";
        info->mCreator = "A performer of the usual length";
        return info;
    }
};

/// A reader of lists of one location a line, "#" before what is none. A line of 256 bytes or more is cut.
class LocationsParser : public PlaylistParser {
public:
    explicit LocationsParser(ezStream& aStream) : mStream(aStream) {
        mFilePath = ezPathName::MakeFilePath(aStream.GetURI());
    }

    bool SeekBytes(const ezuint64& aPos) override {
        if (mStream.Seek(aPos) != ezStreamingStatus_NoError) {
            return false;
        }
        mPos = aPos;
        return PlaylistParser::SeekBytes(aPos);
    }

    void ParseAll(PlaylistParserCallback aCallback, void* aUserData) override {
        PlaylistParserEntry entry;
        PlaylistParserEntry next;
        bool fMore = ReadEntry(entry);
        while (fMore) {
            fMore = ReadEntry(next);
            entry.mNextEntryStreamPos = fMore ? next.mStreamPos : ezuint64(kezuint64_Max);
            entry.mRelativeEntryIndex = mRelativeEntryIndex++;
            if (aCallback(&entry, aUserData)) {
                return;
            }
            entry.mURI = next.mURI;
            entry.mStreamPos = next.mStreamPos;
        }
    }

private:
    bool ReadEntry(PlaylistParserEntry& anEntry) {
        char line[256];
        std::size_t length = 0;
        do {
            anEntry.mStreamPos = mPos;
            if (!ReadLine(line, sizeof line, length)) {
                return false;
            }
        } while (length == 0 || line[0] == '#');
        anEntry.mURI = ezCString(std::string_view(line, length));
        return true;
    }

    bool ReadLine(char* aLine, std::size_t aSize, std::size_t& aLength) {
        std::size_t count = aSize;
        mStream.Seek(mPos);
        mStream.Read(aLine, &count, 0);
        const void* end = std::memchr(aLine, '\n', count);
        aLength = end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - aLine) : count;
        mPos += ezuint64(end != nullptr ? aLength + 1 : count);
        return count != 0;
    }

    ezStream& mStream;
    ezuint64 mPos = 0;
};

/// Makes the same thumbnail of everything.
class OnePictureProvider : public ezThumbnailProvider {
public:
    OnePictureProvider() : ezThumbnailProvider("one picture") {}

    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* /*anInfo*/) override { return kJPEGThumbnailID; }
    bool BuildThumbnail(const ThumbnailInfo* /*anInfo*/, ezFile* aFile) override {
        static constexpr char kPicture[4096] = {'\xFF', '\xD8'};
        ++mBuilt;
        return aFile->Write(kPicture, sizeof kPicture) == static_cast<int>(sizeof kPicture);
    }

    int mBuilt = 0;
};

/// A format of frames: a header of four bytes that begins with "EZ", and then always as many more.
class FramesParser : public ezElementaryStreamParser {
public:
    static constexpr uint32 kHeader = 4;
    static constexpr uint32 kRest = 764;

    FramesParser() : ezElementaryStreamParser("frames", 0xFFFFFFFF, nullptr, new ezMediaInfo) {}

    parsing_status_t StartParsing(bool /*afFromError*/) override {
        RequestRead(kHeader);
        return MSS_IN_PROGRESS;
    }
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override {
        if (std::memcmp(aBuffer, "EZ", 2) != 0) {
            return MSS_UNRECOVERABLE_ERROR;
        }
        if (aSize == kHeader) {
            RequestAppend(kRest);
        } else {
            ++mFrames;
            RequestRead(kHeader);
        }
        return MSS_IN_PROGRESS;
    }

    int mFrames = 0;
};
