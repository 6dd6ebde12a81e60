#include "tools/pkider/text/json.h"

#include "tools/pkider/text/terminal_text.h"

namespace tool {

json_t json_text(std::string_view text) {
    return valid_utf8(text);
}

} // namespace tool
