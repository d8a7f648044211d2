#pragma once

#include <cstdint>
#include <string_view>

/// The hash of all tables that are asked for texts from outside: SipHash-1-3 (J.-P. Aumasson and D. J.
/// Bernstein, "SipHash: a fast short-input PRF", 2012) under a key that nobody knows beforehand, so that
/// nobody can choose texts that meet in one place of a table and make it slow. Not installed.
struct ezHashKey {
    std::uint64_t mLow;  ///< k0 of the paper: bytes 0 to 7 of the key, the first one lowest
    std::uint64_t mHigh; ///< k1: bytes 8 to 15
};

/// A hash of a text. It is the same on every machine, and only its distribution matters: no order and no
/// result may depend on it.
std::uint64_t ezHashKey_Hash(const ezHashKey& aKey, std::string_view aText);
/// The same for all texts that differ in the case of A to Z alone: that of their lower case.
std::uint64_t ezHashKey_HashNoCase(const ezHashKey& aKey, std::string_view aText);

/// The key of this process, read at the first use and constant from then on: every table of a process has
/// the same one. May be called from any thread.
const ezHashKey& ezHashKey_OfProcess();

/// A new key, by ezSystem: random bytes of the kernel, or, where that has no call for them, of /dev/urandom.
/// Where neither answers, it is made of the time, the process and the places of code and stack: a key that
/// differs from process to process, which is enough against texts that were chosen beforehand, but not
/// against somebody who watches this machine.
ezHashKey ezHashKey_Read();
