#include "ezLiveStreams/HttpStream.h"

#include "ezLiveStreams/detail/HttpDate.h"
#include "ezLiveStreams/detail/HttpPatience.h"
#include "ezLiveStreams/detail/HttpResponse.h"
#include "ezLiveStreams/detail/Limits.h"

#include "ezPlatform/base/Descriptor.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <curl/curl.h>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <sys/socket.h>

namespace {

using Clock = ezHttpPatience::Clock;

constexpr const char* kCannotBegin = "the transfer cannot be set up";
constexpr const char* kChanged = "the media changed while it was read";

// libcurl's two kinds of handles are the same type to the compiler.
struct EasyDeleter {
    void operator()(CURL* aHandle) const { curl_easy_cleanup(aHandle); }
};
struct MultiDeleter {
    void operator()(CURLM* aHandle) const { curl_multi_cleanup(aHandle); }
};
struct FieldsDeleter {
    void operator()(curl_slist* aList) const { curl_slist_free_all(aList); }
};

/// Has to come before everything else of libcurl, once.
void InitializeOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

std::string_view PathOf(std::string_view aURL) {
    const std::string_view url = aURL.substr(0, aURL.find_first_of("?#"));
    const std::size_t scheme = url.find("://");
    const std::size_t path = scheme == std::string_view::npos ? scheme : url.find('/', scheme + 3);
    return path == std::string_view::npos ? std::string_view() : url.substr(path);
}

} // namespace

/// The conversation with the server. All of it belongs to the thread of the stream, but for Wake and what the
/// mutex guards.
class ezHttpStream::Transfer {
public:
    Transfer(const ezCString& aURL, const ezHttpOptions& anOptions, ezFeedBuffer& aBuffer)
        : mOptions(anOptions), mBuffer(aBuffer), mPatience(anOptions.mStallTime), mFinalURL(aURL.View()) {
        InitializeOnce();
        mEasy.reset(curl_easy_init());
        mMulti.reset(curl_multi_init());
        if (mEasy != nullptr && mMulti != nullptr) {
            SetUp(aURL.c_str());
        }
    }

    void Run() {
        std::uint64_t position = 0;
        do {
            mfContinues = false;
            while (const std::optional<std::uint64_t> next = RunFrom(position)) {
                position = *next;
                mfContinues = true;
            }
        } while (mBuffer.WaitForMove(&position));
    }

    void Wake() {
        if (mMulti != nullptr) {
            curl_multi_wakeup(mMulti.get());
        }
    }

    void CopyInfo(ezMediaInfo& anInfo) {
        const std::lock_guard<std::mutex> lock(mMutex);
        anInfo.Set(kezInfo_MimeType, mMimeType.c_str(), false);
        if (!anInfo.mLastModificationTime.IsSet()) {
            anInfo.mLastModificationTime = mModified;
        }
    }

    ezCString GetFinalURL() {
        const std::lock_guard<std::mutex> lock(mMutex);
        return ezCString(mFinalURL);
    }

private:
    void SetUp(const char* aURL) {
        CURL* easy = mEasy.get();
        // Not by CURLOPT_ACCEPT_ENCODING, which would make libcurl decode what is encoded all the same.
        mFields.reset(curl_slist_append(nullptr, "Accept-Encoding: identity"));
        curl_easy_setopt(easy, CURLOPT_HTTPHEADER, mFields.get());
        curl_easy_setopt(easy, CURLOPT_URL, aURL);
#if LIBCURL_VERSION_NUM >= 0x075500
        curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
        curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
#else
        curl_easy_setopt(easy, CURLOPT_PROTOCOLS, long{CURLPROTO_HTTP | CURLPROTO_HTTPS});
        curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS, long{CURLPROTO_HTTP | CURLPROTO_HTTPS});
#endif
        curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
        curl_easy_setopt(easy, CURLOPT_MAXREDIRS, static_cast<long>(mOptions.mMaxRedirects));
        // The header of a proxy's answer is not the server's.
        curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
        curl_easy_setopt(easy, CURLOPT_USERAGENT, "ezLiveStreams");
        curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, mCurlText.data());
        // The time that the host chose is watched here; libcurl's own limit must not come before it.
        curl_easy_setopt(
            easy, CURLOPT_CONNECTTIMEOUT_MS,
            static_cast<long>(std::min<std::int64_t>(mOptions.mStallTime.count(), INT32_MAX / 2) * 2));
        curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &sOpenSocket);
        curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &sHeader);
        curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
        curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &sBody);
        curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
        mfReady = mFields != nullptr;
    }

    static curl_socket_t sOpenSocket(void* /*aTransfer*/, curlsocktype /*aPurpose*/,
                                     curl_sockaddr* anAddress) {
        return ezDescriptor_AboveStandard(
            socket(anAddress->family, anAddress->socktype | SOCK_CLOEXEC, anAddress->protocol));
    }

    static std::size_t sHeader(char* aData, std::size_t aSize, std::size_t aCount, void* aTransfer) {
        auto* transfer = static_cast<Transfer*>(aTransfer);
        return transfer->TakeLine(std::string_view(aData, aSize * aCount)) ? aSize * aCount : 0;
    }

    static std::size_t sBody(char* aData, std::size_t aSize, std::size_t aCount, void* aTransfer) {
        auto* transfer = static_cast<Transfer*>(aTransfer);
        const bool fGoOn = transfer->TakeBody(std::string_view(aData, aSize * aCount));
        transfer->mPatience.TakeBody(Clock::now()); // not before: in a full window the server is not to blame
        return fGoOn ? aSize * aCount : 0;
    }

    /// A line of a head, or of what follows the last chunk. False when nothing more is wanted.
    bool TakeLine(std::string_view aLine) {
        if (!mPatience.TakeLine(aLine.size(), Clock::now())) {
            return Refuse(mPatience.GetReason());
        }
        if (!mResponse.AddLine(aLine) || mResponse.IsInterim()) {
            return true;
        }
        const bool fAccepted = Begin();
        if (fAccepted) {
            mPatience.Accept(Clock::now());
        }
        return fAccepted;
    }

    /// False when nothing more is wanted.
    bool TakeBody(std::string_view aData) {
        if (!mfAccepted) {
            return Refuse("the server sent data without an answer");
        }
        const auto passed = static_cast<std::size_t>(std::min<std::uint64_t>(mToPass, aData.size()));
        mToPass -= passed;
        aData.remove_prefix(passed);
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(mLeft.value_or(UINT64_MAX), aData.size()));
        if (mBuffer.Append(aData.data(), count) != ezFeedBuffer::Push::Taken) {
            return false;
        }
        if (mLeft) {
            *mLeft -= count;
        }
        return count == aData.size() || Refuse("the server sent more than the range that it stated");
    }

    /// Takes up the head of the answer. False when it is not what was asked for.
    bool Begin() {
        const int status = mResponse.GetStatus();
        if (status == 416 && mRequested > 0) {
            return BeginPastTheEnd();
        }
        const bool fWhole = status == 200 || status == 203;
        if (!fWhole && !(status == 206 && mRequested > 0)) {
            return Refuse("the server answered with status " + std::to_string(status));
        }
        const std::optional<ezContentRange> range = mResponse.GetRange();
        if (!fWhole && (!range || range->mFirst != mRequested)) {
            return Refuse("the server answered with another range than it was asked for");
        }
        if (mResponse.IsEncoded()) {
            return Refuse("the server sends the media encoded, which it was not asked for");
        }
        if (FinalURL().size() > kHttp_MaxURL && IsRedirected()) {
            return Refuse("the server redirected to a URL of more than 8 KiB");
        }
        mfRangesRefused = mfRangesRefused || (fWhole && mRequested > 0);
        mBuffer.SetMovable(true, !mfRangesRefused && (!fWhole || mResponse.AcceptsRanges()));
        StartAt(fWhole ? 0 : mRequested);
        TakeFacts();
        const std::string tag = mResponse.GetTag();
        if (mTag && *mTag != tag) {
            return Refuse(kChanged);
        }
        mTag = tag;
        if (!fWhole) {
            mLeft = range->mLast - range->mFirst + 1;
            mNext = range->mLast + 1;
            mPart = *mLeft;
        }
        const std::optional<std::uint64_t> size = fWhole ? mResponse.GetLength() : range->mTotal;
        mfAccepted = !size || mBuffer.SetSize(*size);
        return mfAccepted;
    }

    /// The body begins at this place of the media. One that continues another finds the window filled.
    void StartAt(std::uint64_t aPosition) {
        if (mfContinues) {
            mToPass = mRequested - aPosition;
        } else {
            mBuffer.StartAt(aPosition);
        }
    }

    /// The place asked for lies at or past the end of media whose size was not known before.
    bool BeginPastTheEnd() {
        std::optional<std::uint64_t> size = mResponse.GetSizeOfUnsatisfied();
        if (!size && mfContinues) {
            size = mRequested; // nothing follows what came before
        }
        if (!size || *size > mRequested) {
            return Refuse("the server answered with status 416");
        }
        mfPastTheEnd = true;
        if (!mfContinues) {
            mBuffer.StartAt(*size);
        }
        mBuffer.SetSize(*size);
        return false;
    }

    bool Refuse(const std::string& aReason) {
        mReason = aReason;
        return false;
    }

    /// Of the answer that is coming; borrowed.
    std::string_view FinalURL() const {
        const char* url = nullptr;
        const bool fURL = curl_easy_getinfo(mEasy.get(), CURLINFO_EFFECTIVE_URL, &url) == CURLE_OK;
        return fURL && url != nullptr ? url : "";
    }

    bool IsRedirected() const {
        long count = 0;
        return curl_easy_getinfo(mEasy.get(), CURLINFO_REDIRECT_COUNT, &count) == CURLE_OK && count > 0;
    }

    void TakeFacts() {
        const std::optional<std::int64_t> time = ezReadHttpDate(mResponse.Get("last-modified"));
        const std::lock_guard<std::mutex> lock(mMutex);
        mFinalURL = FinalURL();
        mMimeType = mResponse.GetMimeType();
        if (time) {
            mModified = ezDateTime(*time, 0);
        }
    }

    void Reset(std::uint64_t aPosition) {
        mRequested = aPosition;
        mResponse = ezHttpResponse();
        mReason.clear();
        mfAccepted = false;
        mfPastTheEnd = false;
        mToPass = 0;
        mLeft.reset();
        mNext = 0;
        mCurlText[0] = '\0';
        mPart = 0;
        mPatience.Ask(Clock::now());
    }

    /// Where to ask for what follows; none when there is no more to ask for.
    std::optional<std::uint64_t> RunFrom(std::uint64_t aPosition) {
        Reset(aPosition);
        const std::string range = std::to_string(aPosition) + "-";
        if (!mfReady ||
            curl_easy_setopt(mEasy.get(), CURLOPT_RANGE, aPosition > 0 ? range.c_str() : nullptr) !=
                CURLE_OK ||
            curl_multi_add_handle(mMulti.get(), mEasy.get()) != CURLM_OK) {
            mBuffer.Fail(ezStreamingStatus_ReadError, kCannotBegin);
            return std::nullopt;
        }
        const std::optional<CURLcode> result = Perform();
        curl_multi_remove_handle(mMulti.get(), mEasy.get());
        if (IsPartDone(result)) {
            if (mPatience.MayContinue(mPart)) {
                return mNext;
            }
            Refuse(mPatience.GetReason());
        }
        Conclude(result);
        return std::nullopt;
    }

    /// True when all of a range came that is not the rest of the media, as far as that is known.
    bool IsPartDone(std::optional<CURLcode> aResult) const {
        const bool fDone = aResult == CURLE_OK && mfAccepted && mLeft == std::uint64_t{0};
        const std::optional<std::uint64_t> size = mBuffer.GetSize(false);
        return fDone && !mBuffer.IsInterrupted() && (!size || mNext < *size);
    }

    /// What the transfer came to; none when it was given up: interrupted, or stalled with a reason.
    std::optional<CURLcode> Perform() {
        while (true) {
            int running = 0;
            if (curl_multi_perform(mMulti.get(), &running) != CURLM_OK) {
                return CURLE_FAILED_INIT;
            }
            int others = 0;
            if (const CURLMsg* message = curl_multi_info_read(mMulti.get(), &others)) {
                return message->data.result;
            }
            if (mBuffer.IsInterrupted()) {
                return std::nullopt;
            }
            const std::chrono::milliseconds left = mPatience.TimeLeft(Clock::now());
            if (left.count() == 0) {
                Refuse(mPatience.GetReason());
                return std::nullopt;
            }
            const std::int64_t wait = std::min(left, kHttp_LongestPoll).count();
            curl_multi_poll(mMulti.get(), nullptr, 0, static_cast<int>(wait) + 1, nullptr);
        }
    }

    /// Tells the buffer how the transfer ended. One that the reader gave up is no failure.
    void Conclude(std::optional<CURLcode> aResult) {
        if (!mReason.empty()) {
            mBuffer.Fail(ezStreamingStatus_ReadError, mReason);
        } else if (mBuffer.IsInterrupted() || !aResult) {
            return;
        } else if (*aResult == CURLE_OK && !mfAccepted) {
            mBuffer.Fail(ezStreamingStatus_ReadError, "the server sent no answer");
        } else if (*aResult == CURLE_OK && mLeft.value_or(0) > 0) {
            mBuffer.Fail(ezStreamingStatus_ReadError, "the server sent less than the range that it stated");
        } else if (*aResult == CURLE_OK && mToPass > 0) {
            mBuffer.Fail(ezStreamingStatus_ReadError, kChanged);
        } else if (*aResult == CURLE_OK || mfPastTheEnd || *aResult == CURLE_WRITE_ERROR) {
            mBuffer.End(); // a write error: more than the stated size, which nobody wants
        } else {
            mBuffer.Fail(ezStreamingStatus_ReadError,
                         mCurlText[0] != '\0' ? mCurlText.data() : curl_easy_strerror(*aResult));
        }
    }

    const ezHttpOptions mOptions;
    ezFeedBuffer& mBuffer;
    std::unique_ptr<CURLM, MultiDeleter> mMulti;
    std::unique_ptr<CURL, EasyDeleter> mEasy;
    std::unique_ptr<curl_slist, FieldsDeleter> mFields;
    bool mfReady = false;
    std::array<char, CURL_ERROR_SIZE> mCurlText = {};

    std::uint64_t mRequested = 0; ///< the first byte that the server was asked for
    ezHttpResponse mResponse;
    std::string mReason;                ///< why the transfer is given up; "" while it is not
    bool mfContinues = false;           ///< a range that the server made shorter than it was asked for
    bool mfAccepted = false;            ///< there is a head, and what follows is of the media
    std::uint64_t mToPass = 0;          ///< bytes of the body that are known already
    std::optional<std::uint64_t> mLeft; ///< bytes of the stated range that are still to come
    std::uint64_t mNext = 0;            ///< after the stated range
    bool mfPastTheEnd = false;
    bool mfRangesRefused = false;
    std::optional<std::string> mTag; ///< of the first answer
    std::uint64_t mPart = 0;         ///< bytes of the stated range
    ezHttpPatience mPatience;

    std::mutex mMutex;
    std::string mFinalURL;
    std::string mMimeType;
    ezDateTime mModified;
};

ezHttpStream::ezHttpStream(const ezCString& aURL, const ezHttpOptions& anOptions)
    : ezFeedStream(anOptions.mFeed),
      mURL(aURL),
      mTransfer(std::make_unique<Transfer>(aURL, anOptions, GetBuffer())) {
    Start();
}

ezHttpStream::~ezHttpStream() {
    Stop();
}

bool ezHttpStream::IsURL(const ezCString& aText) {
    return ezStartsWithNoCase(aText.View(), "http://") || ezStartsWithNoCase(aText.View(), "https://");
}

ezCString ezHttpStream::GetExtension() const {
    return ezPathName::MakeFilePath(ezCString(PathOf(mURL.View()))).GetExtension();
}

ezCString ezHttpStream::GetFinalURI() const {
    return mTransfer->GetFinalURL();
}

void ezHttpStream::CopyInfo(ezMediaInfo* anInfo) {
    mTransfer->CopyInfo(*anInfo);
}

void ezHttpStream::Feed(ezFeedBuffer& /*aBuffer*/) {
    mTransfer->Run();
}

void ezHttpStream::Interrupt() {
    mTransfer->Wake();
}
