#include "JsonLine.h"

#include "SafeText.h"

std::string JsonLineOf(const nlohmann::ordered_json& anObject) {
    const auto handler = nlohmann::ordered_json::error_handler_t::replace;
    return JsonForTerminal(anObject.dump(-1, ' ', false, handler)) + "\n";
}
