#include "tools/pkider/io/progress_note.h"

#include "tools/pkider/io/streams.h"

#include <chrono>
#include <cstdio>
#include <optional>

namespace tool {
namespace {

using clock_t = std::chrono::steady_clock;
constexpr auto patience = std::chrono::seconds(1);
constexpr auto pause_between_notes = std::chrono::milliseconds(200);
constexpr const char* erase_line = "\r\033[K";

struct note_t {
    std::optional<clock_t::time_point> next; // when to speak; empty between two derivations
    bool shown = false;

    void operator()(uint32_t done, uint32_t total) {
        const clock_t::time_point now = clock_t::now();
        if (done == total) {
            if (shown) std::fputs(erase_line, stderr);
            *this = {};
            return;
        }
        if (!next) next = now + patience;
        if (now < *next) return;
        const auto percent = static_cast<unsigned>(uint64_t{done} * 100 / total);
        std::fprintf(stderr, "%sDeriving the key from the password: %u %% of %u iterations", erase_line, percent,
                     total);
        std::fflush(stderr);
        next = now + pause_between_notes;
        shown = true;
    }
};

} // namespace

std::function<void(uint32_t done, uint32_t total)> progress_note() {
    if (!is_terminal(stderr)) return {};
    return note_t();
}

} // namespace tool
