// JSON as the program prints it.
#pragma once

#include <nlohmann/json.hpp>

#include <string_view>

namespace tool {

/// Members keep the order in which they are added.
using json_t = nlohmann::ordered_json;

/// Text of the input as a JSON string: bytes that are no UTF-8 become `\XX`, as in printed names.
json_t json_text(std::string_view text);

} // namespace tool
