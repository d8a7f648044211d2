#include "host/LiveMedia.h"

#include "arguments/Arguments.h"
#include "arguments/Operands.h"
#include "host/Host.h"

#include "ez/StreamMediaParserStream.h"
#include "ezLiveStreams/DescriptorStream.h"
#ifdef EZ_HAS_HTTP_STREAM
#include "ezLiveStreams/HttpStream.h"
#endif

#include <string_view>
#include <unistd.h>

namespace {

/// The stream of an operand, for the adapter to own; null, with the reason, where it is not built in.
ezFeedStream* NewStream(const std::string& anOperand, const Arguments& anArguments,
                        const ezFeedOptions& anOptions, [[maybe_unused]] std::string& aReason) {
    if (anOperand == kStandardInput) {
        return new ezDescriptorStream(STDIN_FILENO, ezCString(anArguments.mName.value_or("")), anOptions);
    }
#ifdef EZ_HAS_HTTP_STREAM
    ezHttpOptions http;
    http.mFeed = anOptions;
    http.mStallTime = std::chrono::seconds(anArguments.mTimeout);
    return new ezHttpStream(ezCString(anOperand), http);
#else
    aReason = "built without HTTP (libcurl was missing)";
    return nullptr;
#endif
}

/// Whether there is a first byte.
bool IsEmpty(ezMediaParserStream& aStream) {
    char byte = 0;
    std::size_t count = 1;
    const bool fRead = aStream.ReadFrom(0, &count, &byte);
    aStream.Seek(0, ezMediaParserStream::SeekFromStart, false);
    return fRead && count == 0;
}

} // namespace

LiveMedia::LiveMedia(const std::string& anOperand, const Arguments& anArguments, bool afWaitForSize) {
    ezFeedOptions options;
    options.mfWaitForSize = afWaitForSize;
    mSource = NewStream(anOperand, anArguments, options, mRefusal);
    mStream = std::make_unique<ezStreamMediaParserStream>(mSource, true);
}

LiveMedia::~LiveMedia() = default;

bool LiveMedia::Open(std::string& aReason) {
    if (mSource == nullptr) {
        aReason = mRefusal;
        return false;
    }
    if (!mStream->Open()) {
        aReason = mSource->GetErrorText();
        return false;
    }
    if (!IsWhole(aReason)) {
        return false;
    }
    if (IsEmpty(*mStream)) {
        aReason = "there is no data";
        return false;
    }
    return IsWhole(aReason); // the first byte may not have come
}

ezMediaParserStream& LiveMedia::GetStream() {
    return *mStream;
}

bool LiveMedia::IsWhole(std::string& aReason) const {
    if (mSource->HasFailed()) {
        aReason = mSource->GetErrorText();
        return false;
    }
    return true;
}

bool AnnounceLive(const std::string& anOperand, const Arguments& anArguments, Host& aHost,
                  Announcement& anAnnouncement, std::string& aReason) {
    LiveMedia media(anOperand, anArguments, true);
    if (!media.Open(aReason)) {
        return false;
    }
    const bool fNamed = anOperand == kStandardInput && anArguments.mName;
    if (!aHost.Announce(media.GetStream(), fNamed ? *anArguments.mName : anOperand, anAnnouncement)) {
        aReason = "cannot be read from its start";
        return false;
    }
    return media.IsWhole(aReason);
}
