#pragma once

#include "ezFormats/FormatParsers.h"
#include "ezFormats/detail/FormatDescription.h"

#include <FormatHeaders.inc> // those of the parsers in EZ_FORMATS; the build makes it from the list

#include <array>
#include <cstddef>

/// Parsers as a list of types.
template <typename... Parsers>
struct FormatList {
    static constexpr std::size_t kCount = sizeof...(Parsers);
    static constexpr std::array<const FormatDescription*, kCount> kDescriptions = {
        {&Parsers::kDescription...}};

    /// The same list as another template has it.
    template <template <typename...> class List>
    using As = List<Parsers...>;
    /// Calls a function with null pointers to each parser, in the order of the list.
    template <typename Function>
    static void ForEach(Function aFunction) {
        (aFunction(static_cast<Parsers*>(nullptr)), ...);
    }
};

/// Drops what stands before the first comma of a list that a macro wrote.
template <typename First, typename... Parsers>
struct FormatListAfter {
    using List = FormatList<Parsers...>;
};

#define EZ_COMMA_PARSER(FOLDER, PARSER) , PARSER
/// The parsers of EZ_FORMATS, in its order.
using AllFormats = FormatListAfter<void EZ_FORMATS(EZ_COMMA_PARSER)>::List;
#undef EZ_COMMA_PARSER
