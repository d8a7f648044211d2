#pragma once

/// Marks what libezHosting shows to its users; everything else in it is hidden.
#define EZHOSTING_API __attribute__((visibility("default")))
