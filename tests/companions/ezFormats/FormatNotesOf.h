#pragma once

#include "ezFormats/detail/FormatNotes.h"

#include <type_traits>

/// The notes of a parser; null where its header has none, which a test then says.
template <typename Parser, typename = void>
struct FormatNotesOf {
    static const FormatNotes* Get() { return nullptr; }
};
template <typename Parser>
struct FormatNotesOf<Parser, std::void_t<decltype(Parser::kNotes)>> {
    static const FormatNotes* Get() { return &Parser::kNotes; }
};

/// What to do about a parser that has none.
inline constexpr const char* kFormatNotesMissing =
    " has no kNotes: its header says there what a person wants to know (ezFormats/detail/FormatNotes.h)";
