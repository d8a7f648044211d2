#include "output/JsonLine.h"

#include "output/SafeText.h"

std::string JsonLineOf(const nlohmann::ordered_json& anObject) {
    const auto handler = nlohmann::ordered_json::error_handler_t::replace;
    return JsonForTerminal(anObject.dump(-1, ' ', false, handler)) + "\n";
}
