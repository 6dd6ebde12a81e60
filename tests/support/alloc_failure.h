// Makes the n-th allocation of a call fail, alone and with all after it, so that every one of them is tried in turn.
//
//     for_each_failing_allocation([&] { asn_write_...(record, out); },       // run until no allocation is left
//                                 [&] { EXPECT_EQ(out, "as before"); });    // after each std::bad_alloc
#pragma once

#include <cstddef>
#include <functional>

namespace pkider_test {

/// Runs `call` with its 1st, 2nd, 3rd ... allocation failing until it ends without a failure. Each of them fails twice:
/// once alone, and once with all that follow it, as where memory is exhausted for good.
///
/// `after_failure` runs each time std::bad_alloc arrived. The test fails when `call` swallows a failed allocation or
/// leaks memory when it throws.
///
/// @return  Number of allocations that failed.
std::size_t for_each_failing_allocation(const std::function<void()>& call, const std::function<void()>& after_failure);

/// Number of allocations made by `call` on this thread.
std::size_t count_allocations(const std::function<void()>& call);

/// Largest number of bytes that were allocated at one time by `call` on this thread, beyond what was there before.
std::size_t peak_allocated_bytes(const std::function<void()>& call);

/// Runs `call`, and `look` at each of its allocations on this thread; allocations of `look` itself are ignored.
void at_each_allocation(const std::function<void()>& call, const std::function<void()>& look);

} // namespace pkider_test
