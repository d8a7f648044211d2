// A stranger's program against an installed ezLiveStreams: prints how many bytes came through standard input,
// and what a stream over HTTP takes for a URL where the library has such streams.

#include "ezLiveStreams/DescriptorStream.h"
#ifdef EZ_HAS_HTTP_STREAM
#include "ezLiveStreams/HttpStream.h"
#endif

#include <cstdio>
#include <unistd.h>

int main() {
    ezFeedOptions options;
    options.mfWaitForSize = true;
    const ezStreamOwner stream(new ezDescriptorStream(STDIN_FILENO, "input.txt", options));
    std::printf("%llu bytes\n", static_cast<unsigned long long>(stream->GetSize().ToUInt64()));
#ifdef EZ_HAS_HTTP_STREAM
    return ezHttpStream::IsURL("http://localhost/film.mp4") ? 0 : 1;
#endif
}
