#pragma once

#include "ez/MediaParserTypes.h"
#include "ez/ThumbnailProviderBase.h"

#include "ezPlatform/base/Types.h"

class ezFile;
class ezThumbnailGenerator;
class ezThumbnailSource;
struct ThumbnailInfo;

/// A provider that tries one candidate source after the other, such as pictures beside the media file. A
/// derived class supplies the candidates. At most one is held at a time: whoever replaces it deletes it, and
/// the destructor deletes the last.
class EZPARSERS_API ezIndirectThumbnailProvider : public ezThumbnailProvider {
public:
    /// @param aName                as that of ezThumbnailProvider
    /// @param aThumbnailGenerator  borrowed from the manager; null converts nothing
    ezIndirectThumbnailProvider(const char* aName, ezThumbnailGenerator* aThumbnailGenerator)
        : ezThumbnailProvider(aName), mThumbnailGenerator(aThumbnailGenerator) {}
    /// Deletes the candidate.
    ~ezIndirectThumbnailProvider() override;

    /// What the generator can make of the first candidate that exists and that it can convert to any format;
    /// 0 when there is no such candidate. That candidate stays until the next call of GetFirstPath.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override;
    /// Builds from the first candidate that exists, of which the generator can make every wanted format, and
    /// from which it builds. That candidate stays until the next call of GetFirstPath. Each attempt gets an
    /// empty file.
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override;

    /// Deletes the candidate that was left, and sets mTrySource to the first one for the item, a new object;
    /// calls EndTries where there is no candidate.
    virtual void GetFirstPath(const ThumbnailInfo* anInfo) = 0;
    /// The same with the next candidate. The sequence must end.
    virtual void GetNextPath(const ThumbnailInfo* anInfo) = 0;
    /// Deletes the candidate.
    virtual void EndTries();

    /// True while there is a candidate.
    bool SourceToTry() const { return mTrySource != nullptr; }

protected:
    ezThumbnailGenerator* mThumbnailGenerator; ///< borrowed; null converts nothing
    ezThumbnailSource* mTrySource = nullptr;   ///< owned
};
