#pragma once

#include "ez/MediaParserTypes.h"
#include "ez/PlaylistParser.h"

#include "ezPlatform/text/CString.h"

struct ezArray;

/// One registration of a reader.
struct PlaylistParserFactoryInfo {
    PlaylistParserBuilderFunc mBuilderFunc = nullptr; ///< makes the reader; not null in a registration
    ezCString mMimeType;                              ///< as it was registered; may be empty
    ezCString mExtensionList; ///< lower case, a comma before the first and after the last: ",m3u,m3u8,"
};

/// The playlist readers that a server has, found by MIME type or extension.
///
/// A host registers its readers once, in the order in which they are to win (Register, or
/// PlaylistParser::RegisterTo), then asks any number of times. No reader comes with the library. Not locked:
/// once the readers are registered, any number of threads may ask.
class EZPARSERS_API PlaylistParserFactory {
public:
    PlaylistParserFactory();
    ~PlaylistParserFactory();

    PlaylistParserFactory(const PlaylistParserFactory&) = delete;
    PlaylistParserFactory& operator=(const PlaylistParserFactory&) = delete;

    /// Adds a reader for a MIME type, for extensions, or for both.
    /// @param aMimeType        compared exactly, case-sensitive
    /// @param anExtensionList  separated by "," alone, without dots: "m3u,m3u8", any case. A blank after a
    /// comma would belong to the extension. Of two readers for the same type or extension the first
    /// registered wins. No builder is the assertion "aPlaylistParserBuilderFunc != NULL", neither type nor
    /// extension the assertion
    /// "!aMimeType.IsEmpty() || !anExtensionList.IsEmpty()"; nothing is added then, and the result is false.
    bool Register(PlaylistParserBuilderFunc aPlaylistParserBuilderFunc, const ezCString& aMimeType,
                  const ezCString& anExtensionList);

    /// The registration that answers, owned by the factory; null when none does.
    ///
    /// A MIME type that is not empty decides alone: when no reader has exactly it, none answers, whatever the
    /// extension. A host that does not trust its MIME type passes "". Else the extension is looked up in any
    /// case, with its dots removed (".M3U" is "m3u"). "." alone is not the empty extension,
    /// which finds nothing: it finds a reader that was registered without extensions.
    PlaylistParserFactoryInfo* GetPlaylistParserFactoryInfo(const ezCString& aMimeType,
                                                            const ezCString& anExtension) const;

    /// A new reader over an opened stream, owned by the caller; null when none answers or its builder fails.
    /// The stream stays the caller's and outlives the reader. It is passed to the builder as it is, null too.
    PlaylistParser* NewPlaylistParser(ezStream* aStream, const ezCString& aMimeType,
                                      const ezCString& anExtension) const;

    /// Whether a reader is registered; it may still fail to be built.
    bool IsSupportedPlaylist(const ezCString& aMimeType, const ezCString& anExtension) const;

private:
    ezArray* mArray; ///< PlaylistParserFactoryInfo in order of registration, owned
};
