// Outputs and spans of the C interface in tests.
#pragma once

#include <pkider/c/pkider.h>

#include "tests/support/hex.h"

#include <functional>
#include <string>

namespace pkider_test {

inline std::string text_of(const pkider_bytes_t& span) {
    return span.size == 0 ? std::string()
                          : std::string(reinterpret_cast<const char*>(span.data), static_cast<std::size_t>(span.size));
}

inline bytes_t bytes_of(const pkider_bytes_t& span) {
    return to_bytes(text_of(span));
}

inline pkider_bytes_t span_of(const bytes_t& bytes) {
    return {bytes.data(), bytes.size()};
}

/// A sink that collects what it receives.
class collector_t {
  public:
    std::string text;

    pkider_output_t output() { return pkider_output_to_sink(write, this); }

  private:
    static int write(void* context, const uint8_t* bytes, uint64_t count) {
        static_cast<collector_t*>(context)->text.append(reinterpret_cast<const char*>(bytes),
                                                        static_cast<std::size_t>(count));
        return 0;
    }
};

/// What a function gives to a sink, and its status.
struct result_t {
    pkider_status_t status;
    std::string text;

    bool operator==(const result_t&) const = default;
};

inline void PrintTo(const result_t& result, std::ostream* os) {
    *os << pkider_status_text(result.status) << " \"" << result.text << '"';
}

inline result_t collect(const std::function<pkider_status_t(pkider_output_t*)>& call) {
    collector_t collector;
    pkider_output_t out = collector.output();
    const pkider_status_t status = call(&out);
    return {status, collector.text};
}

} // namespace pkider_test
