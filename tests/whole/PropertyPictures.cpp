#include "PropertyPictures.h"

#include "PropertyPackets.h"
#include "PropertyTypes.h"

#include "companions/ezThumbnails/PictureKit.h"
#include "support/MapperFolder.h"
#include "support/Record.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"

#include "ez/FileMediaParserStream.h"
#include "ezFormats/FormatParsers.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <unistd.h>

namespace {

// Those that may lie beside the film come first, in the order in which they are tried.
const char* const kNames[] = {"film.cover.png", "film.jpg",   "film.png", "cover.jpg",
                              "folder.png",     "poster.jpg", "film.mpg", "other.jpg"};
constexpr std::size_t kBesideTheFilm = 6;
const char* const kExtensions[] = {"jpg", "png", "mpg", ""};
const std::size_t kLengths[] = {30, 3, 0, 300};
const long kOffsets[] = {0, 4, 20, 400, -1};
const unsigned kSizes[] = {1000, 4, 8, 0};
const unsigned kEncodedOffsets[] = {0, 1, 6, 200};

/// Sizes, and what they become in a box of 160 by 160.
struct Size {
    unsigned mWidth;
    unsigned mHeight;
    unsigned mFinalWidth;
    unsigned mFinalHeight;
};
const Size kPictures[] = {{16, 9, 16, 9}, {320, 160, 160, 80}, {160, 160, 160, 160}, {100, 200, 80, 160},
                          {1, 1, 1, 1},   {640, 320, 160, 80}, {320, 10, 160, 5}};

std::string AsBase64(const std::string& aText) {
    static const char* const kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string encoded;
    for (std::size_t i = 0; i + 2 < aText.size(); i += 3) { // every length that is made is three times one
        std::uint32_t bits = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            bits = bits << 8 | static_cast<unsigned char>(aText[i + j]);
        }
        for (unsigned shift = 24; shift != 0; shift -= 6) {
            encoded += kDigits[bits >> (shift - 6) & 63];
        }
    }
    return encoded;
}

/// The same pictures are asked for again and again.
const std::string& PictureBytes(PictureFile::Kind aKind, unsigned aWidth, unsigned aHeight) {
    static std::map<std::tuple<PictureFile::Kind, unsigned, unsigned>, std::string> sMade;
    std::string& bytes = sMade[{aKind, aWidth, aHeight}];
    if (bytes.empty()) {
        const TestPicture picture(aWidth, aHeight, 1);
        bytes = aKind == PictureFile::Png ? MakePng(picture, PNG_COLOR_TYPE_GRAY)
                                          : MakeJpeg(picture, JCS_GRAYSCALE);
    }
    return bytes;
}

std::string MimeTypeOf(PictureFile::Kind aKind) {
    return aKind == PictureFile::Png ? "image/png" : "image/jpeg";
}

std::string MimeTypeOf(const std::string& anExtension) {
    return anExtension == "png" ? "image/png" : anExtension == "jpg" ? "image/jpeg" : "";
}

} // namespace

PicturesSubject::PicturesSubject(const TemporaryFolder& aFolder)
    : mFolder(aFolder),
      mGenerator(std::make_unique<PictureThumbnailGenerator>()),
      mProvider(std::make_unique<SidecarThumbnailProvider>(mGenerator.get())) {}

ezMediaParserManager& PicturesSubject::Manager() {
    if (mManager == nullptr) { // most hosts parse no picture
        mFolder.Write("pictures/mediaCTRLMediaTypes.ini", "[MimeTypes]\njpg=jpg@image/jpeg@item.imageItem\n"
                                                          "png=png@image/png@item.imageItem\n");
        mEnvironment.Set("ReadOnlyConfigPath", mFolder.Path("pictures"));
        mEnvironment.Set("ReadWriteConfigPath", mFolder.Path("pictures"));
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_ParseWithAllParserEverytime);
        RegisterFormatParsers(*mManager);
    }
    return *mManager;
}

PicturesSubject::~PicturesSubject() = default;

PictureFile PicturesSubject::FileOf(const Operation& anOperation) {
    PictureFile file;
    file.mKind = static_cast<PictureFile::Kind>(anOperation.mB % PictureFile::kKinds);
    if (file.IsPicture()) {
        const Size& size = Chosen(kPictures, anOperation.mC);
        file.mWidth = size.mWidth;
        file.mHeight = size.mHeight;
        file.mBytes = PictureBytes(file.mKind, file.mWidth, file.mHeight);
    } else {
        file.mLetters = LettersOf(Chosen(kLengths, anOperation.mC), anOperation.mD);
        file.mBytes = file.mKind == PictureFile::Base64 ? AsBase64(file.mLetters) : file.mLetters;
    }
    return file;
}

ThumbnailInfo PicturesSubject::Film() const {
    ThumbnailInfo info;
    info.mUniqueID = "film";
    info.mMimeType = "video/mpeg";
    info.mFilePath = ezPathName::MakeFilePath(Path("film.mpg").c_str());
    info.mThumbnailID = kJPEGThumbnailID;
    info.mWidthMax = 160;
    info.mHeightMax = 160;
    return info;
}

std::string PicturesSubject::Describe(const Operation& anOperation) {
    const std::string name = Chosen(kNames, anOperation.mA);
    const PictureFile file = FileOf(anOperation);
    static const char* const kKinds[] = {"letters", "base64", "PNG", "JPEG"};
    switch (anOperation.mVerb) {
    case Verb::WritePicture:
        return "write " + name + ": " + kKinds[file.mKind] + " of " +
               (file.IsPicture() ? std::to_string(file.mWidth) + " by " + std::to_string(file.mHeight)
                                 : std::to_string(file.mLetters.size()) + " letters");
    case Verb::RemovePicture:
        return "remove " + name;
    case Verb::ReadSource:
        return "read beside the film " +
               (anOperation.mB % 2 != 0
                    ? name
                    : "its extension " + std::string(Chosen(kExtensions, anOperation.mC)));
    case Verb::ReadPart:
        return "read of file " + std::to_string(anOperation.mA) + " (of those there) from byte " +
               std::to_string(Chosen(kOffsets, anOperation.mB)) + " " +
               std::to_string(Chosen(kSizes, anOperation.mC)) + " bytes, as base64 without the first " +
               std::to_string(Chosen(kEncodedOffsets, anOperation.mD)) + " if it is";
    case Verb::ParsePicture:
        return "parse file " + std::to_string(anOperation.mA) +
               " (of those there) by the companions' formats";
    case Verb::MakeThumbnail:
        return std::string("make the thumbnail of the film, as ") +
               (anOperation.mA % 2 != 0 ? "PNG" : "JPEG");
    default:
        return "announce the thumbnails";
    }
}

void PicturesSubject::Apply(const Operation& anOperation) {
    switch (anOperation.mVerb) {
    case Verb::WritePicture:
        return Write(anOperation);
    case Verb::RemovePicture:
        return Remove(anOperation);
    case Verb::ReadSource:
        return ReadSource(anOperation);
    case Verb::ReadPart:
        return ReadPart(anOperation);
    case Verb::ParsePicture:
        return Parse(anOperation);
    case Verb::MakeThumbnail:
        return MakeThumbnail(anOperation);
    default:
        break;
    }
    // The two profiles of DLNA's thumbnails: byte seek, converted, and an image's transfer modes.
    ezThumbnailProviderManager manager(nullptr, nullptr);
    const std::string flags = ";DLNA.ORG_OP=01;DLNA.ORG_CI=1;DLNA.ORG_FLAGS=04F" + std::string(29, '0');
    Agree("the announced thumbnails", Str(manager.GetThumbnailDLNAProfiles()),
          "image/jpeg:DLNA.ORG_PN=JPEG_TN" + flags + ",image/png:DLNA.ORG_PN=PNG_TN" + flags);
    Met("thumbnails are announced");
}

void PicturesSubject::Write(const Operation& anOperation) {
    const std::string name = Chosen(kNames, anOperation.mA);
    mFiles[name] = FileOf(anOperation);
    mFolder.Write("films/" + name, mFiles[name].mBytes);
}

void PicturesSubject::Remove(const Operation& anOperation) {
    const std::string name = Chosen(kNames, anOperation.mA);
    Agree("a picture that is removed was there", unlink(Path(name).c_str()) == 0, mFiles.erase(name) != 0);
}

void PicturesSubject::ReadSource(const Operation& anOperation) {
    const ThumbnailInfo film = Film();
    ezFileThumbnailSource source(&film);
    std::string name = Chosen(kNames, anOperation.mA);
    if (anOperation.mB % 2 != 0) {
        source.SetFileName(name.c_str());
    } else {
        const std::string extension = Chosen(kExtensions, anOperation.mC);
        source.SetExtension(extension.c_str());
        name = extension.empty() ? "film" : "film." + extension;
    }
    const auto file = mFiles.find(name);
    const bool fThere = file != mFiles.end();
    Agree("the path of a source", Str(source.GetFullPath()), Path(name));
    Agree("the MIME type of a source", Str(source.GetMimeType()), std::string("video/mpeg"));
    Agree("a source is there: " + name, source.Exists(), fThere);
    Agree("the source " + name, ReadAll(source.GetStream()), fThere ? file->second.mBytes : "<closed>");
    Met(fThere ? "a source is read" : "a source is not there");
}

std::string PicturesSubject::OneOfThoseThere(unsigned aNumber) const {
    const unsigned count = static_cast<unsigned>(mFiles.size());
    // Now and then one that may not be there.
    return aNumber % 4 == 3 || count == 0
               ? Chosen(kNames, aNumber)
               : std::next(mFiles.begin(), static_cast<std::ptrdiff_t>(aNumber % count))->first;
}

void PicturesSubject::ReadPart(const Operation& anOperation) {
    const std::string name = OneOfThoseThere(anOperation.mA);
    const long offset = Chosen(kOffsets, anOperation.mB);
    const unsigned size = Chosen(kSizes, anOperation.mC);
    const unsigned dropped = Chosen(kEncodedOffsets, anOperation.mD);
    const auto file = mFiles.find(name);
    const bool fThere = file != mFiles.end();
    const bool fBase64 = fThere && file->second.mKind == PictureFile::Base64;
    const ezFilePartThumbnailSource source("image/jpeg", ezPathName::MakeFilePath(Path(name).c_str()), offset,
                                           size, fBase64, dropped);
    std::string expected = "<null>";
    if (fThere && offset >= 0) {
        const std::string& bytes = file->second.mBytes;
        const auto from = std::min(static_cast<std::size_t>(offset), bytes.size());
        const std::size_t count = std::min<std::size_t>(size, bytes.size() - from);
        const std::size_t letters = count / 4 * 3; // every offset and size is four times one
        if (!fBase64) {
            expected = bytes.substr(from, count);
        } else if (letters != 0 && dropped <= letters) {
            expected = file->second.mLetters.substr(from / 4 * 3 + dropped, letters - dropped);
        }
    }
    Agree("the source of a part is there: " + name, source.Exists(), fThere);
    Agree("the part of " + name, ReadAll(source.GetStream()), expected);
    Met(expected == "<null>" ? "there is no such part" : fBase64 ? "a part is decoded" : "a part is read");
}

void PicturesSubject::Parse(const Operation& anOperation) {
    const std::string name = OneOfThoseThere(anOperation.mA);
    const auto file = mFiles.find(name);
    if (file == mFiles.end()) {
        return;
    }
    ezFileMediaParserStream stream{ezCString(Path(name).c_str())};
    Agree("a picture opens", stream.Open(), true);
    const Record record(Manager().Parse(stream));
    const PictureFile& picture = file->second;
    // The content tells what a picture is; of anything else the name alone, where the table has it.
    const std::string named = MimeTypeOf(NameParts(name).mExtension);
    const std::string expected = picture.IsPicture() ? MimeTypeOf(picture.mKind) : named;
    Agree("the picture " + name + " has a record", record != nullptr, !expected.empty());
    Met(picture.IsPicture() ? "a picture is parsed" : "what is no picture is parsed");
    if (record != nullptr) {
        Agree("its MIME type", Str(record->GetCString(kezInfo_MimeType, "")), expected);
        Agree("its width", record->GetUInt32(kezInfo_PictureWidth, 0), picture.mWidth);
        Agree("its height", record->GetUInt32(kezInfo_PictureHeight, 0), picture.mHeight);
    }
}

void PicturesSubject::MakeThumbnail(const Operation& anOperation) {
    ThumbnailInfo film = Film();
    const bool fJpeg = anOperation.mA % 2 == 0;
    film.mThumbnailID = fJpeg ? kJPEGThumbnailID : kPNGThumbnailID;
    const PictureFile* picture = nullptr;
    bool fAny = false;
    for (std::size_t i = 0; i < kBesideTheFilm && picture == nullptr; ++i) {
        const auto file = mFiles.find(kNames[i]);
        fAny = fAny || file != mFiles.end();
        picture = file != mFiles.end() && file->second.IsPicture() ? &file->second : nullptr;
    }
    const std::string path = mFolder.Path("thumbnail");
    ezFile thumbnail;
    Agree("the thumbnail's file is made", thumbnail.Create(path.c_str(), true, ezFileAccessMode_ReadWrite),
          true);
    Agree("a thumbnail of the film is possible", mProvider->CanProvideThumbnailFor(&film), fAny);
    Agree("a thumbnail of the film is made", mProvider->BuildThumbnail(&film, &thumbnail),
          picture != nullptr);
    thumbnail.Close();
    Met(picture != nullptr ? "a thumbnail is made of a picture" : "there is no picture beside the film");
    if (picture != nullptr) {
        CompareThumbnail(MapperFolder::ReadFile(path), fJpeg, *picture);
    }
}

void PicturesSubject::CompareThumbnail(const std::string& aBytes, bool afJpeg,
                                       const PictureFile& aPicture) const {
    const TestPicture made = afJpeg ? ReadJpeg(aBytes).mPicture : ReadPng(aBytes);
    const auto* size = std::find_if(std::begin(kPictures), std::end(kPictures), [&](const Size& aSize) {
        return aSize.mWidth == aPicture.mWidth && aSize.mHeight == aPicture.mHeight;
    });
    Agree("the width of the thumbnail", made.mWidth, size->mFinalWidth);
    Agree("the height of the thumbnail", made.mHeight, size->mFinalHeight);
}
