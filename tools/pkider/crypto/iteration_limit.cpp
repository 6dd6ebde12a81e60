#include "tools/pkider/crypto/iteration_limit.h"

#include <algorithm>

namespace tool {
namespace {

/// As the user counts, rounded up: to allow it, the limit must be that high.
uint64_t as_iterations(uint64_t work) {
    return work / work_of_counted_iteration + (work % work_of_counted_iteration != 0 ? 1 : 0);
}

} // namespace

iteration_budget_t::iteration_budget_t(uint64_t max_iterations)
    : m_limit(std::min(max_iterations, UINT64_MAX / work_of_counted_iteration) * work_of_counted_iteration),
      m_left(m_limit) {}

bool iteration_budget_t::take(const asked_iterations_t& asked) {
    if (asked.work() > m_left) return false;
    m_left -= asked.work();
    return true;
}

std::string iteration_budget_t::refusal(const asked_iterations_t& asked) const {
    std::string words = std::to_string(asked.iterations) + " iterations of key derivation";
    if (asked.work_of_one != work_of_counted_iteration)
        words += ", which count as " + std::to_string(as_iterations(asked.work()));
    const std::string limit = std::to_string(as_iterations(m_limit));
    if (m_left == m_limit) {
        words += "; the limit is " + limit + " for all keys of a file";
    } else {
        words += "; of the " + limit + " that are allowed for all keys of a file, " +
                 std::to_string(m_left / work_of_counted_iteration) + " are left";
    }
    return words + " (--max-iterations)";
}

} // namespace tool
