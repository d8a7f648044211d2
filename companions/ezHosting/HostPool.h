#pragma once

#include "ezHosting/CancellableStream.h"
#include "ezHosting/Export.h"
#include "ezHosting/Host.h"

#include "ezPlatform/media/MediaInfo.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// What a host chooses about a pool.
struct ezHostPoolOptions {
    /// Threads, each with a host of its own; 0: as many as the machine runs at a time. More than
    /// ezHostPool::kMaxThreads are as many as that.
    std::size_t mThreads = 0;
    /// Items that are in the pool at a time: those that wait, those that are parsed, and those whose
    /// results wait for the callback or for their turn. 0 counts as 1. A bound below the number of threads
    /// leaves threads idle.
    std::size_t mBound = 64;
    /// Results come in the order in which the items were submitted. An item that takes long then holds back
    /// those after it, which still count for the bound.
    bool mfOrderKept = false;
};

/// What became of an item of a pool.
enum class ezHostPoolOutcome {
    Recognised,    ///< there is a record
    NotRecognised, ///< it could be opened, and no parser knows it
    NotReadable,   ///< it could not be opened, or the maker of its stream gave none; the error tells why
    Cancelled      ///< the pool was cancelled before the item was done
};

/// The answer to an item of a pool.
struct ezHostPoolResult {
    std::string mName;         ///< the path, or the name, that was submitted
    std::uint64_t mNumber = 0; ///< of the item in the order of submission, from 0
    ezHostPoolOutcome mOutcome = ezHostPoolOutcome::Cancelled; ///< what became of it
    std::unique_ptr<ezMediaInfo> mInfo; ///< the record; null unless the outcome is Recognised
    std::string mError; ///< in one line why it is not readable, as of ezHost::GetError; "" for other outcomes
};

/// How far a pool is. The numbers are those of one moment.
struct ezHostPoolProgress {
    std::uint64_t mSubmitted = 0; ///< items that were taken
    std::uint64_t mDone = 0;      ///< of these, those whose results were given out: the sum of the next three
    std::uint64_t mRecognised = 0; ///< those with a record
    std::uint64_t mFailed = 0;     ///< those that were not recognised or not readable
    std::uint64_t mCancelled = 0;  ///< those that the cancelling met
};

class PoolCrew;

/// Identifies media on several threads at a time: an ezHost a thread, and a bounded number of items under
/// way.
///
///     ezHostPool pool(folder, {}, {}, [](ezHostPoolResult aResult) { ... });
///     for (const std::string& path : paths) {
///         pool.Submit(path);
///     }
///     pool.Wait();
///
/// Every item that was taken gets exactly one result. Results come through a callback, on the threads of the
/// pool, one at a time: it needs no lock against itself. The threads take no signals.
///
/// Cancelling makes the next read of each running request fail, so that it ends after one read at most; what
/// it found till then is not given out. Items that still wait are answered without being opened. A cancelled
/// pool stays cancelled.
///
/// What the callback, or a stream of the host's, throws is logged as an error and cancels the pool; the first
/// of it is thrown again by Wait or WaitFor. docs/parsing-in-parallel.md has all rules together.
class EZHOSTING_API ezHostPool {
public:
    /// Threads of a pool: more than the machines that this is for run at a time. Who asks for more gets
    /// these.
    static constexpr std::size_t kMaxThreads = 64;

    /// Receives the results. It may ask for the progress, cancel, and submit, which does not wait then; Wait
    /// and WaitFor are of no use in it. It may also destroy the pool: the results that are left are given to
    /// it within that, so it is called within itself.
    using Callback = std::function<void(ezHostPoolResult aResult)>;
    /// Makes a stream on the thread that parses it. The stream is to watch the cancellation, which lives as
    /// long as the stream: made by ezMakeCancellable or ezCancellable. One that does not is read to its end
    /// when the pool is cancelled. The pool opens it. Null: there is nothing to read.
    using StreamMaker = std::function<std::unique_ptr<ezMediaParserStream>(ezCancellation& aCancellation)>;

    /// What became of a submission.
    enum class Submitted {
        Taken,     ///< there will be a result
        Full,      ///< refused: the bound is reached, and waiting would be for the caller's own thread
        Cancelled, ///< refused: the pool has been cancelled
        NotReady   ///< refused: the pool could not be made
    };

    /// Makes the hosts, on the calling thread, then the threads.
    /// @param aConfigFolder  and anOptions: as for ezHost, of which one a thread is made
    /// @param aCallback      empty: the results only count
    ezHostPool(std::string_view aConfigFolder, const ezHostOptions& anOptions,
               const ezHostPoolOptions& aPoolOptions, Callback aCallback);
    /// Cancels, and returns when every item has its result and every thread has ended; called by the
    /// callback, all but that of the callback, which ends when the callback returns. Not to be called by a
    /// maker or a read of a stream, nor while another thread is within an operation of the pool: cancel, let
    /// that return, then destroy.
    ~ezHostPool();
    ezHostPool(const ezHostPool&) = delete;
    ezHostPool& operator=(const ezHostPool&) = delete;

    /// False when a host or a thread could not be had.
    bool IsReady() const { return mError.empty(); }
    /// Why not; "" when it is ready.
    const std::string& GetError() const { return mError; }

    /// Has a file identified. Waits while the pool is full, then for a quarter of it to be free; never on a
    /// thread of the pool itself.
    Submitted Submit(std::string_view aPath);
    /// The same for a stream. The maker is called once, or not at all where the pool is cancelled before; it
    /// goes before the item's result is given out.
    /// @param aName  what the result calls it
    Submitted Submit(std::string_view aName, StreamMaker aMaker);

    /// Returns true when nothing is under way: every item has its result, and the callback has returned. On a
    /// thread of the pool, which would wait for itself, false at once.
    bool Wait();
    /// The same, but false when that did not come about in the time given.
    bool WaitFor(std::chrono::milliseconds aTime);

    /// Cancels, and waits for nothing. Not for signal handlers.
    void Cancel();
    /// Whether the pool has been cancelled.
    bool IsCancelled() const;

    /// Costs next to nothing, and never waits for a parser or the callback.
    ezHostPoolProgress GetProgress() const;
    /// Threads that parse; 0 when the pool is not ready.
    std::size_t GetThreadCount() const;

private:
    std::string mError;
    std::shared_ptr<PoolCrew> mCrew; ///< its threads own it too
};
