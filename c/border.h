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

/// Whether an input of `size` bytes is possible. Addresses of 32 bits have less room than a size of the interface can
/// say, and no machine has room for the size -1 of a host that counts with a sign.
inline bool fits_address_space(uint64_t size) {
    return size <= uint64_t{PTRDIFF_MAX};
}

/// The characters of an input that is not missing. To be called in at_border.
inline std::string_view text_of(const char* text, uint64_t size) {
    if (!fits_address_space(size)) throw stopped_t{PKIDER_TOO_LONG};
    return text == nullptr ? std::string_view() : std::string_view(text, static_cast<std::size_t>(size));
}

/// An input as a text with a terminator. The C++ functions end a text at its first NUL, and one with a size must not be
/// cut there without a report. To be called in at_border.
inline std::string terminated(const char* text, uint64_t size) {
    if (is_missing(text, size)) throw stopped_t{PKIDER_ARGUMENT};
    const std::string_view characters = text_of(text, size);
    if (characters.find('\0') != std::string_view::npos) throw stopped_t{PKIDER_ARGUMENT};
    return std::string(characters);
}

/// The status of a reader that returns bool.
inline pkider_status_t found_or_malformed(bool is_read) {
    return is_read ? PKIDER_OK : PKIDER_MALFORMED;
}

} // namespace pkider::c
