#pragma once

#include <functional>

/// The most memory of the heap, in bytes, that a piece of work has at a time beyond what was there before it:
/// all of the process, what the codecs' libraries ask for included, as the blocks are given (a little above
/// what was asked; one that grows counts as one while it is moved). Memory of the stack is not counted. Below
/// 0 where the heap cannot be watched: without glibc, and under a sanitizer with a heap of its own.
double HeapPeak_Of(const std::function<void()>& aWork);
