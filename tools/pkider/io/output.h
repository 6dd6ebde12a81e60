// What a command prints on standard output: text, bytes in one of four forms, or JSON.
#pragma once

#include "tools/pkider/text/json.h"

#include <string_view>

namespace tool {

enum class output_form_t { text, der, hex, base64, json };

/// Prints text that is ready to be shown. Throws file_trouble_t when standard output cannot be written, or a file that
/// the text may come from became shorter under its view (file_view.h). The same holds for all that follow.
void print(std::string_view text);

/// Prints bytes as DER, or as one line of hex or base64. DER is refused on a terminal (usage_fault_t).
void print_bytes(std::string_view bytes, output_form_t form);

/// Ends the output; throws file_trouble_t when not all of it could be written or read.
void flush_output();

/// Every command's --json prints one array, an element a line, also when there are none. Only ASCII is written. Made
/// for any other form, it prints nothing.
///
///     json_array_t json(options.form);
///     json.add({{"subject", json_text(name)}});
///     json.end();
class json_array_t {
  public:
    explicit json_array_t(output_form_t form = output_form_t::json) : m_wanted(form == output_form_t::json) {}
    void add(const json_t& element);
    void end() const;

  private:
    bool m_wanted;
    bool m_empty = true;
};

} // namespace tool
