// Big-endian UTF-16, the form of friendly names and of passwords in older PKCS#12 files (RFC 7292 B.1), to and from
// UTF-8. Characters above U+FFFF become surrogate pairs, as everybody writes them, although a BMPString has none.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tool {

/// Appends `utf8` to `out` as big-endian UTF-16, at most two bytes for each byte of it.
/// @return  False when `utf8` is malformed (overlong forms, surrogates, values above U+10FFFF); `out` has a part then.
bool append_utf16be(std::string_view utf8, std::string& out);

/// The text of big-endian UTF-16 as UTF-8. A lone surrogate and an odd byte at the end become U+FFFD each.
std::string utf16be_to_utf8(std::span<const uint8_t> utf16);

} // namespace tool
