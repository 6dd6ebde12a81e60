// How much key derivation the program asks for, and how much a file may ask of it.
//
// An iteration of one digest costs far more than that of another, so the work that a file may ask for is counted as
// work. Its unit for the user is the most expensive iteration: that of PBKDF2 with HMAC GOST R 34.11-94, which is also
// what the program writes.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

/// For keys and files that are written.
inline constexpr uint32_t default_iterations = 600'000;

/// For all keys of a file that is read: those of five files' worth of defaults, which is some ten seconds of work for
/// an ordinary processor.
inline constexpr uint64_t default_max_iterations = uint64_t{5} * default_iterations;

/// Work of one iteration, in sixteenths of one of PBKDF2 with HMAC GOST R 34.11-94. PBKDF2 hashes twice in an
/// iteration, the derivation of RFC 7292 B.2 once.
struct iteration_work_t {
    uint32_t pbkdf2;
    uint32_t pkcs12;
};
inline constexpr uint32_t work_of_counted_iteration = 16;

/// A derivation that a file asks for.
struct asked_iterations_t {
    uint64_t iterations = 0; ///< At most 2^33: a count for each of two keys.
    uint32_t work_of_one = work_of_counted_iteration;

    uint64_t work() const { return iterations * work_of_one; }
};

/// How much of the limit of a file is left.
class iteration_budget_t {
  public:
    explicit iteration_budget_t(uint64_t max_iterations);

    /// False, and nothing is taken, when less is left.
    bool take(const asked_iterations_t& asked);

    /// For what was not granted, with the name of the option that raises the limit:
    /// "4294967295 iterations of key derivation; the limit is 3000000 for all keys of a file (--max-iterations)"
    /// "60000000 iterations of key derivation, which count as 3750000; of the 3000000 that are allowed for all keys of
    /// a file, 2400000 are left (--max-iterations)"
    std::string refusal(const asked_iterations_t& asked) const;

  private:
    uint64_t m_limit, m_left; // work
};

} // namespace tool
