#pragma once

#include "PropertyOperation.h"

#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include "ez/MediaParserManager.h"
#include "ez/ThumbnailProvider.h"

#include <map>
#include <memory>
#include <string>

/// What a file of the folder holds: a picture, or letters, as they are or as base64.
struct PictureFile {
    enum Kind { Letters, Base64, Png, Jpeg, kKinds };

    Kind mKind = Letters;
    unsigned mWidth = 0; ///< of a picture
    unsigned mHeight = 0;
    std::string mLetters; ///< before they are encoded
    std::string mBytes;   ///< of the file

    bool IsPicture() const { return mKind == Png || mKind == Jpeg; }
};

/// A folder with a film and pictures, which come and go: its model is a map from name to content. They are
/// read as sources, parsed by the formats of the companions, and a thumbnail of the film is made of the first
/// of those that may lie beside it.
class PicturesSubject {
public:
    explicit PicturesSubject(const TemporaryFolder& aFolder);
    ~PicturesSubject();

    static std::string Describe(const Operation& anOperation);
    void Apply(const Operation& anOperation);

private:
    static PictureFile FileOf(const Operation& anOperation);
    std::string Path(const std::string& aName) const { return mFolder.Path("films/" + aName); }
    ThumbnailInfo Film() const;
    std::string OneOfThoseThere(unsigned aNumber) const;
    ezMediaParserManager& Manager();

    void Write(const Operation& anOperation);
    void Remove(const Operation& anOperation);
    void ReadSource(const Operation& anOperation);
    void ReadPart(const Operation& anOperation);
    void Parse(const Operation& anOperation);
    void MakeThumbnail(const Operation& anOperation);
    void CompareThumbnail(const std::string& aBytes, bool afJpeg, const PictureFile& aPicture) const;

    const TemporaryFolder& mFolder;
    ezEnvironment mEnvironment;
    std::unique_ptr<ezMediaParserManager> mManager; ///< null until a picture is parsed
    std::unique_ptr<ezThumbnailGenerator> mGenerator;
    std::unique_ptr<ezThumbnailProvider> mProvider;
    std::map<std::string, PictureFile> mFiles;
};
