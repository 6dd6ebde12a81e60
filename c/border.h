// The border between the library and a host in another language: no exception crosses it, and arguments are checked
// before the library sees them.
#pragma once

#include <pkider/c/pkider.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pkider::c {

/// Thrown inside the library to end a call of the host with a status.
struct stopped_t {
    pkider_status_t status;
};

/// Runs the body of a function of the C interface. Every exception becomes a status.
template <typename Body>
pkider_status_t at_border(const Body& body) noexcept {
    try {
        return body();
    } catch (const stopped_t& stopped) {
        return stopped.status;
    } catch (const std::bad_alloc&) {
        return PKIDER_NO_MEMORY;
    } catch (const std::length_error&) {
        return PKIDER_TOO_LONG;
    } catch (...) {
        return PKIDER_INTERNAL;
    }
}

/// Whether an input has a size but no bytes.
inline bool is_missing(const void* data, uint64_t size) {
    return data == nullptr && size != 0;
}

inline bool fits_32_bits(uint64_t size) {
    return size <= std::numeric_limits<uint32_t>::max();
}

/// The characters of an input that is not missing.
inline std::string_view text_of(const char* text, uint64_t size) {
    return text == nullptr ? std::string_view() : std::string_view(text, static_cast<std::size_t>(size));
}

/// The status of a reader that returns bool.
inline pkider_status_t found_or_malformed(bool is_read) {
    return is_read ? PKIDER_OK : PKIDER_MALFORMED;
}

} // namespace pkider::c
