#pragma once

/// Marks what libezLiveStreams shows to its users; everything else in it is hidden.
#define EZLIVESTREAMS_API __attribute__((visibility("default")))
