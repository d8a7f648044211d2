#pragma once

/// Marks what libezFormats shows to its users; everything else in it is hidden.
#define EZFORMATS_API __attribute__((visibility("default")))
