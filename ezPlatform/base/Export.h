#pragma once

/// Marks what libezPlatform shows to its users; everything else in it is hidden.
#define EZPLATFORM_API __attribute__((visibility("default")))
