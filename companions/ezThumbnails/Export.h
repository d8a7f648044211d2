#pragma once

/// Marks what libezThumbnails shows to its users; everything else in it is hidden.
#define EZTHUMBNAILS_API __attribute__((visibility("default")))
