#pragma once

/// Marks what libezPlaylists shows to its users; everything else in it is hidden.
#define EZPLAYLISTS_API __attribute__((visibility("default")))
