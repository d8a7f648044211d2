#pragma once

#include "PropertyOperation.h"

#include "support/ScriptedThumbnails.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class ezFileCacheManager;

/// The cache: a set of names with contents within bounds, the one that was used last at the end.
class CacheModel {
public:
    CacheModel(std::size_t aMaximumBytes, std::size_t aMaximumFiles)
        : mMaximumBytes(aMaximumBytes), mMaximumFiles(aMaximumFiles) {}

    /// Its content, which counts as used now.
    std::optional<std::string> Use(const std::string& aName);
    void Keep(const std::string& aName, const std::string& aContent);
    void Forget(const std::string& aName);
    bool Has(const std::string& aName) const;

private:
    struct File {
        std::string mName;
        std::string mContent;
    };

    std::size_t mMaximumBytes;
    std::size_t mMaximumFiles;
    std::vector<File> mFiles;
};

/// The thumbnails of a host, with a cache of small bounds, beside their model.
class ThumbnailsSubject {
public:
    /// @param aBounds  chooses the bounds of the cache
    ThumbnailsSubject(const TemporaryFolder& aFolder, unsigned aBounds);
    ~ThumbnailsSubject();

    static constexpr unsigned kBoundsOfCache = 9;
    static std::string Describe(const Operation& anOperation);
    static std::string DescribeBounds(unsigned aBounds);
    void Apply(const Operation& anOperation);

private:
    /// A provider, as its model knows it.
    struct Provider {
        std::string mName;
        unsigned mPossible = 0;
        std::size_t mLength = 0; ///< of what it writes
        bool mfFails = false;
    };
    static Provider ProviderOf(const Operation& anOperation);
    static ThumbnailInfo RequestOf(const Operation& anOperation);

    ezThumbnailProvider* NewProvider(const Provider& aProvider);
    void Start();
    void Request(const Operation& anOperation);
    void FillTwice(const Operation& anOperation);
    void ForgetOne(const Operation& anOperation);
    /// What the model gives for one of the two thumbnails of a request.
    std::optional<std::string> Cached(const ThumbnailInfo& anInfo, bool afDefault);
    bool Build(const ThumbnailInfo& anInfo, bool afDefault, std::string* aContent);
    unsigned Possible() const;
    void CompareFiles();

    const TemporaryFolder& mFolder;
    std::size_t mMaximumBytes;
    std::size_t mMaximumFiles;
    ThumbnailTrace mTrace;
    std::unique_ptr<ezFileCacheManager> mCache;
    std::unique_ptr<ezThumbnailProviderManager> mManager;
    CacheModel mModel;
    ThumbnailTrace mModelTrace;
    std::vector<Provider> mProviders;
    std::optional<Provider> mDefault;
    std::vector<std::string> mNames; ///< that were asked for
    std::unique_ptr<ezFile> mServed; ///< the last one given, which stays whole whatever becomes of the cache
    std::string mServedContent;
};
