#include "ez/FileMediaParserStream.h"

#include <utility>

ezFileMediaParserStream::ezFileMediaParserStream(const ezPathName& aFilePath)
    : mFile(aFilePath.GetFullPath(), ezFileOpenMode_Read) {
    InitFromPath(aFilePath);
}

ezFileMediaParserStream::ezFileMediaParserStream(const ezCString& aFilePath)
    : mFile(aFilePath, ezFileOpenMode_Read) {
    InitFromPath(ezPathName::MakeFilePath(aFilePath));
}

ezFileMediaParserStream::~ezFileMediaParserStream() {
    ezFileMediaParserStream::Close();
}

void ezFileMediaParserStream::Init(const char* aFilePath) {
    InitFromPath(ezPathName::MakeFilePath(aFilePath));
}

void ezFileMediaParserStream::InitFromPath(ezPathName aFilePath) {
    // Whole, where a C string would cut a path at a NUL and name another file.
    mFilePath = std::move(aFilePath);
    mMediaFullPath = mFilePath.GetFullPath();
    mLastModificationTime = ezDateTime();
    ezFile::GetTimes(mMediaFullPath, nullptr, &mLastModificationTime, nullptr);
    SetExtension(mFilePath.GetExtension());
    if (mFile.IsOpened()) {
        const ezFileOffset length = mFile.Length();
        mMediaSize = length > 0 ? length : 0;
    }
}

bool ezFileMediaParserStream::Open() {
    Close();
    mFilePos = 0;
    mSeekPos = mFilePos;
    if (!mFile.Open(mMediaFullPath, ezFileOpenMode_Read, ezFileAccessMode_ReadWrite)) {
        return false;
    }
    mMediaSize = mFile.LengthAtOpen(); // the length of this moment, without asking the system twice
    return true;
}

void ezFileMediaParserStream::Close() {
    if (mFile.IsOpened()) {
        mFile.Close();
    }
}

void ezFileMediaParserStream::CopyInfo(ezMediaInfo* anInfo) {
    ezMediaParserStream::CopyInfo(anInfo);
}

std::unique_ptr<ezMediaParserStream> ezFileMediaParserStream::OpenBeside(const ezCString& aName) {
    const std::string_view name = aName.View();
    if (name.empty() || name.find('/') != std::string_view::npos ||
        name.find('\0') != std::string_view::npos) {
        return nullptr;
    }
    const ezPathName folder = ezPathName::MakeFilePath(mMediaFullPath).GetParentPath();
    auto stream = std::make_unique<ezFileMediaParserStream>(ezCString(folder.GetFullPath() + aName));
    return stream->Open() ? std::move(stream) : nullptr;
}

bool ezFileMediaParserStream::FileSeek() {
    if (mFilePos == mSeekPos) {
        return true;
    }
    if (mFile.Seek(mSeekPos.ToFileOffset(), ezFileSeekMode_Begin) == -1) {
        return false;
    }
    mFilePos = mSeekPos;
    return true;
}

bool ezFileMediaParserStream::MediaSeek(const ezuint64& anOffset, bool afSeekImmediate) {
    mSeekPos = anOffset; // kept also when the seek is refused below
    if (afSeekImmediate) {
        return FileSeek();
    }
    return mSeekPos <= mMediaSize;
}

ezFileOffset ezFileMediaParserStream::MediaRead(void* aBuffer, std::size_t aSize) {
    if (!mFile.IsOpened() && !Open()) {
        return 0;
    }
    if (!FileSeek()) {
        return 0;
    }
    const ezFileOffset count = mFile.Read(aBuffer, aSize);
    if (count != -1) {
        mFilePos += count;
    }
    mSeekPos = mFilePos;
    return count;
}
