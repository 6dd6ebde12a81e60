#include "tools/pkider/io/report.h"

#include "tools/pkider/io/streams.h"
#include "tools/pkider/text/terminal_text.h"

#include <cstdlib>

namespace tool {
namespace {

bool is_set(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

std::string line(const char* colour, std::string_view head, std::string_view shown) {
    std::string text;
    if (has_colour(stderr)) {
        text.append(colour).append(head).append("\x1B[0m");
    } else {
        text.append(head);
    }
    return text.append(" ").append(shown).append("\n");
}

} // namespace

bool has_colour(std::FILE* stream) {
    return !is_set("NO_COLOR") && shows_colours(stream);
}

std::string format_error(std::string_view words) {
    return format_shown_error(printable(words));
}

std::string format_shown_error(std::string_view shown) {
    return line("\x1B[1;31m", "pkider:", shown);
}

void report_error(std::string_view words) {
    write_to_stderr(format_error(words));
}

void report_note(std::string_view words) {
    write_to_stderr(line("\x1B[1;36m", "pkider: note:", printable(words)));
}

void write_to_stderr(std::string_view text) {
    std::fflush(stdout); // so that on one terminal the results before the fault are above it
    write_to(stderr, text);
}

} // namespace tool
