#pragma once

#include "ezPlatform/base/Memory.h"

#include <cstddef>
#include <memory>

/// The one deleter of a std::unique_ptr: gives back by the function that belongs to what is held, ezFree or
/// the
/// `_Delete` of a C-style class. It takes no room in the pointer.
template <auto kGiveBack>
struct ezDeleter {
    /// Called by the std::unique_ptr, with no null pointer.
    template <typename Type>
    void operator()(Type* anObject) const {
        kGiveBack(anObject);
    }
};

/// A block of ezMalloc, ezRealloc or ezStrdup that is given back with ezFree.
template <typename Type>
using ezFreed = std::unique_ptr<Type, ezDeleter<ezFree>>;

/// A C string of a platform function whose caller frees it.
using ezOwnedText = ezFreed<char>;

/// Makes an owned block aSize bytes long, aSize not 0, and keeps its content; what it points at may move.
/// False, with the block as it was, when the bytes cannot be had.
template <typename Type>
bool ezFreed_Resize(ezFreed<Type>& aBlock, std::size_t aSize) {
    void* const resized = ezRealloc(aBlock.get(), aSize);
    if (resized == nullptr) {
        return false;
    }
    static_cast<void>(aBlock.release()); // it is, or lies in, the new block
    aBlock.reset(static_cast<Type*>(resized));
    return true;
}

/// What a `_Delete` function deletes; defined for functions that take one pointer alone.
template <typename Function>
struct ezDeletedBy;
/// The class of an object that such a function takes.
template <typename Type>
struct ezDeletedBy<void (*)(Type*)> {
    using type = Type; ///< the class
};

/// An object of a C-style class, by the function that deletes it: `ezOwned<ezURI_Delete> uri(ezURI_New());`
template <auto kDelete>
using ezOwned = std::unique_ptr<typename ezDeletedBy<decltype(kDelete)>::type, ezDeleter<kDelete>>;
