#pragma once

#include "ez/PlaylistParser.h"
#include "ez/StreamMediaParserStream.h"

#include "ezPlatform/streams/Stream.h"

#include <algorithm>
#include <string>

/// Reads lists of one location a line, "#" before a title: the smallest reader that keeps every promise.
class LineListParser : public PlaylistParser {
public:
    static constexpr const char* kMimeTypes[] = {"text/x-line-list"};
    static constexpr const char* kExtensionList = "lines,lst";
    static PlaylistParser* sBuild(ezStream* aStream) {
        return aStream != nullptr ? new LineListParser(aStream) : nullptr;
    }

    explicit LineListParser(ezStream* aStream) : mInput(aStream, false) {
        mFilePath = ezPathName::MakeFilePath(aStream->GetURI());
        mMimeType = kMimeTypes[0];
    }

    bool SeekBytes(const ezuint64& aPos) override {
        if (aPos > Text().size()) {
            return false;
        }
        mPos = static_cast<std::size_t>(aPos.ToUInt64());
        if (mPos != 0 && mText[mPos - 1] != '\n') {
            NextLine(); // inside a line: the next one
        }
        return PlaylistParser::SeekBytes(aPos);
    }

    void ParseAll(PlaylistParserCallback aCallback, void* aUserData) override {
        PlaylistParserEntry entry;
        bool fStop = false;
        while (!fStop && ReadEntry(&entry)) {
            const std::size_t after = mPos;
            PlaylistParserEntry next;
            entry.mNextEntryStreamPos = ReadEntry(&next) ? next.mStreamPos : ezuint64(kezuint64_Max);
            mPos = after;
            entry.mRelativeEntryIndex = mRelativeEntryIndex++;
            fStop = aCallback(&entry, aUserData);
        }
    }

private:
    static constexpr std::size_t kMaxSize = std::size_t{1} << 20; ///< whatever a stranger sends

    /// The whole list, read once. A stream may not have arrived yet: the adapter waits for it.
    const std::string& Text() {
        if (!mfRead) {
            mfRead = true;
            mInput.Open();
            std::size_t count = kMaxSize;
            mText.resize(count);
            mText.resize(mInput.Read(&count, mText.data()) ? count : 0);
            if (mText.size() == kMaxSize) {
                mText.resize(mText.rfind('\n') + 1); // half a line is not one
            }
        }
        return mText;
    }

    std::string NextLine() {
        const std::size_t end = std::min(Text().find('\n', mPos), mText.size());
        std::string line = mText.substr(mPos, end - mPos);
        mPos = std::min(end + 1, mText.size());
        if (!line.empty() && line.back() == '\r') {
            line.pop_back(); // the other half of a line end of Windows
        }
        return line;
    }

    bool ReadEntry(PlaylistParserEntry* anEntry) {
        *anEntry = PlaylistParserEntry();
        bool fBegun = false;
        while (mPos < Text().size()) {
            const std::size_t start = mPos;
            const std::string line = NextLine();
            if (line.empty()) {
                continue;
            }
            if (!fBegun) {
                anEntry->mStreamPos = start; // that of its title, where it has one
                fBegun = true;
            }
            if (line[0] != '#') {
                anEntry->mURI = ezCString(line);
                return true;
            }
            anEntry->mTitle = ezCString(line.substr(1));
        }
        return false;
    }

    ezStreamMediaParserStream mInput;
    std::string mText;
    std::size_t mPos = 0;
    bool mfRead = false;
};
