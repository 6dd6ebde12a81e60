// Looks into memory as it is given back to the heap: anybody may find what is still there.
//
//     EXPECT_EQ(count_freed_with("secret", [] { ... }), 0U);
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

namespace pkider_test {

/// Number of blocks that `call` freed on this thread with these bytes in them. The bytes themselves do not change.
std::size_t count_freed_with(std::string_view bytes, const std::function<void()>& call);

} // namespace pkider_test
