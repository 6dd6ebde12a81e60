// Looks into memory as it is given back to the heap: what still stands there then, anybody may find.
//
//     EXPECT_EQ(count_freed_with("secret", [] { ... }), 0U);
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace pkider_test {

/// Number of blocks that `call` freed on this thread with these bytes in them. The bytes themselves stay untouched.
std::size_t count_freed_with(std::string_view bytes, const std::function<void()>& call);

} // namespace pkider_test
