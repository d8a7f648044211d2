#include "detail/ParserName.h"

#include "ez/BaseParser.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeinfo>

ezCString ParserName_Of(const ezBaseParser& aParser) {
    const char* const written = typeid(aParser).name();
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(written, nullptr, nullptr, nullptr), &std::free);
    return name != nullptr ? ezCString(name.get()) : ezCString(written);
}
