#pragma once

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/containers/HashTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// A record's place by profile name, so that a table of many profiles is not walked for each entry.
class ProfileIndex {
public:
    std::optional<std::size_t> Find(std::string_view aProfile) const {
        const void* const place = ezHashTable_GetEntry(mTable.get(), aProfile.data(), aProfile.size());
        return place != nullptr ? std::optional(reinterpret_cast<std::uintptr_t>(place) - 1) : std::nullopt;
    }
    /// Of places under one name the first stays.
    void Add(std::string_view aProfile, std::size_t aPlace) {
        if (!Find(aProfile)) {
            // A number in the place of a pointer: nothing follows it, and no optimisation is lost on it.
            void* const number = reinterpret_cast<void*>(aPlace + 1); // NOLINT(performance-no-int-to-ptr)
            ezHashTable_AddEntry(mTable.get(), aProfile.data(), aProfile.size(), number);
        }
    }

private:
    ezOwned<ezHashTable_Delete> mTable{ezHashTable_New()};
};
