#include "ezLiveStreams/HttpStream.h"

#include "ezLiveStreams/detail/HttpResponse.h"

#include "ezPlatform/files/PathName.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <curl/curl.h>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kCannotBegin = "the transfer cannot be set up";

// libcurl's two kinds of handles are the same type to the compiler.
struct EasyDeleter {
    void operator()(CURL* aHandle) const { curl_easy_cleanup(aHandle); }
};
struct MultiDeleter {
    void operator()(CURLM* aHandle) const { curl_multi_cleanup(aHandle); }
};

/// Has to come before everything else of libcurl, once.
void InitializeOnce() {
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

std::string Seconds(std::chrono::milliseconds aTime) {
    std::string text = std::to_string(aTime.count() / 1000);
    if (aTime.count() % 1000 != 0) {
        text += "." + std::to_string(aTime.count() % 1000 + 1000).substr(1);
    }
    return text;
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
        : mOptions(anOptions), mBuffer(aBuffer) {
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
            RunFrom(position);
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

private:
    void SetUp(const char* aURL) {
        CURL* easy = mEasy.get();
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
        curl_easy_setopt(easy, CURLOPT_USERAGENT, "ezLiveStreams");
        curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, mCurlText.data());
        // The time that the host chose is watched here; libcurl's own limit must not come before it.
        curl_easy_setopt(
            easy, CURLOPT_CONNECTTIMEOUT_MS,
            static_cast<long>(std::min<std::int64_t>(mOptions.mStallTime.count() * 2, INT32_MAX)));
        curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &sHeader);
        curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
        curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &sBody);
        curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
        mfReady = true;
    }

    static std::size_t sHeader(char* aData, std::size_t aSize, std::size_t aCount, void* aTransfer) {
        auto* transfer = static_cast<Transfer*>(aTransfer);
        transfer->mLastProgress = Clock::now();
        const bool fGoOn = !transfer->mResponse.AddLine(std::string_view(aData, aSize * aCount)) ||
                           transfer->mResponse.IsInterim() || transfer->Begin();
        return fGoOn ? aSize * aCount : 0;
    }

    static std::size_t sBody(char* aData, std::size_t aSize, std::size_t aCount, void* aTransfer) {
        auto* transfer = static_cast<Transfer*>(aTransfer);
        const ezFeedBuffer::Push push = transfer->mBuffer.Append(aData, aSize * aCount);
        transfer->mLastProgress = Clock::now(); // behind Append: while that waits the server is not to blame
        return push == ezFeedBuffer::Push::Taken ? aSize * aCount : 0;
    }

    /// Takes up the head of the answer. False when it is not what was asked for.
    bool Begin() {
        const int status = mResponse.GetStatus();
        if (status == 416 && mRequested > 0) {
            return BeginBehindTheEnd();
        }
        const bool fWhole = status == 200 || status == 203;
        if (!fWhole && !(status == 206 && mRequested > 0)) {
            return Refuse("the server answered with status " + std::to_string(status));
        }
        const std::optional<ezContentRange> range = mResponse.GetRange();
        if (!fWhole && (!range || range->mFirst != mRequested)) {
            return Refuse("the server answered with another range than it was asked for");
        }
        mfRangesRefused = mfRangesRefused || (fWhole && mRequested > 0);
        mBuffer.SetMovable(true, !mfRangesRefused && (!fWhole || mResponse.Get("accept-ranges") == "bytes"));
        mBuffer.StartAt(fWhole ? 0 : mRequested);
        TakeFacts();
        const std::string tag = mResponse.Get("etag");
        if (mTag && *mTag != tag) {
            return Refuse("the media changed while it was read");
        }
        mTag = tag;
        const std::optional<std::uint64_t> size = fWhole ? mResponse.GetLength() : range->mTotal;
        return !size || mBuffer.SetSize(*size);
    }

    /// The place asked for lies at or behind the end of a media whose size was not known before.
    bool BeginBehindTheEnd() {
        const std::optional<std::uint64_t> size = mResponse.GetSizeOfUnsatisfied();
        if (!size || *size > mRequested) {
            return Refuse("the server answered with status 416");
        }
        mfBehindTheEnd = true;
        mBuffer.StartAt(*size);
        mBuffer.SetSize(*size);
        return false;
    }

    bool Refuse(const std::string& aReason) {
        mReason = aReason;
        return false;
    }

    void TakeFacts() {
        const std::string modified = mResponse.Get("last-modified");
        const time_t time = modified.empty() ? -1 : curl_getdate(modified.c_str(), nullptr);
        const std::lock_guard<std::mutex> lock(mMutex);
        mMimeType = mResponse.GetMimeType();
        if (time >= 0) {
            mModified = ezDateTime(time, 0);
        }
    }

    void RunFrom(std::uint64_t aPosition) {
        mRequested = aPosition;
        mResponse = ezHttpResponse();
        mReason.clear();
        mfBehindTheEnd = false;
        mCurlText[0] = '\0';
        mLastProgress = Clock::now();
        const std::string range = std::to_string(aPosition) + "-";
        if (!mfReady ||
            curl_easy_setopt(mEasy.get(), CURLOPT_RANGE, aPosition > 0 ? range.c_str() : nullptr) !=
                CURLE_OK ||
            curl_multi_add_handle(mMulti.get(), mEasy.get()) != CURLM_OK) {
            mBuffer.Fail(ezStreamingStatus_ReadError, kCannotBegin);
            return;
        }
        Conclude(Perform());
        curl_multi_remove_handle(mMulti.get(), mEasy.get());
    }

    /// What the transfer came to; none when it was given up: interrupted, or stalled with a reason.
    std::optional<CURLcode> Perform() {
        while (true) {
            int running = 0;
            if (curl_multi_perform(mMulti.get(), &running) != CURLM_OK) {
                return CURLE_FAILED_INIT;
            }
            int left = 0;
            if (const CURLMsg* message = curl_multi_info_read(mMulti.get(), &left)) {
                return message->data.result;
            }
            if (mBuffer.IsInterrupted()) {
                return std::nullopt;
            }
            const auto idle =
                std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - mLastProgress);
            if (idle >= mOptions.mStallTime) {
                mReason = "the server sent nothing for " + Seconds(mOptions.mStallTime) + " seconds";
                return std::nullopt;
            }
            const std::int64_t wait = std::min<std::int64_t>((mOptions.mStallTime - idle).count(), 60000);
            curl_multi_poll(mMulti.get(), nullptr, 0, static_cast<int>(wait) + 1, nullptr);
        }
    }

    /// Tells the buffer how the transfer ended. One that the reader gave up is no failure.
    void Conclude(std::optional<CURLcode> aResult) {
        if (!mReason.empty()) {
            mBuffer.Fail(ezStreamingStatus_ReadError, mReason);
        } else if (mBuffer.IsInterrupted() || !aResult) {
            return;
        } else if (*aResult == CURLE_OK || mfBehindTheEnd || *aResult == CURLE_WRITE_ERROR) {
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
    bool mfReady = false;
    std::array<char, CURL_ERROR_SIZE> mCurlText = {};

    std::uint64_t mRequested = 0; ///< the first byte that the server was asked for
    ezHttpResponse mResponse;
    std::string mReason; ///< why the transfer is given up; "" while it is not
    bool mfBehindTheEnd = false;
    bool mfRangesRefused = false;
    std::optional<std::string> mTag; ///< of the first answer
    Clock::time_point mLastProgress;

    std::mutex mMutex;
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
    const ezCString lower = aText.Left(8).Lower();
    return lower.Left(7) == "http://" || lower == "https://";
}

ezCString ezHttpStream::GetExtension() const {
    return ezPathName::MakeFilePath(ezCString(PathOf(mURL.View()))).GetExtension();
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
