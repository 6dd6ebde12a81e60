// A row of the benchmark: one job, done once for each of its items in a pass.
//
// Every executable registers the rows that its library can do under the same names, so that a script can put them side
// by side. A pass returns an answer (a sum over what was found); where two libraries do the same work the answers must
// be equal, and the script refuses a run in which they are not. An answer of 0 says that the results differ by design
// (another text form of the same name) and are not compared.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace pkider_bench {

using pass_t = std::function<uint64_t()>;

/// @param name   `family/job` or `family/job/size`; the sizes of one job are a scaling series.
/// @param items  Items of one pass; figures are per item.
void add_row(std::string name, std::size_t items, pass_t pass);

/// The same for a row whose input is made when the row is run, and released after it.
void add_made_row(std::string name, std::size_t items, std::function<pass_t()> make);

/// Defined by each executable: adds the rows that its library can do.
void register_rows();

/// Keeps a value from being optimised away.
template <typename T>
inline void keep(const T& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

/// True in the pass whose answers are compared; in the timed ones answer_of does next to nothing.
inline bool answers_wanted = false;

/// Equal for equal bytes.
uint64_t checksum_of(const void* data, std::size_t size);

/// A number that is equal for equal results.
inline uint64_t answer_of(const void* data, std::size_t size) {
    if (answers_wanted) [[unlikely]]
        return checksum_of(data, size);
    asm volatile("" : : "r"(data) : "memory"); // nothing is stored, as keep would
    return size;
}

/// A pass that does one job on one input so often that the calls around it do not count.
inline constexpr std::size_t num_repeats = 100;
template <typename Job>
pass_t repeated(Job job) {
    return [job = std::move(job)]() mutable -> uint64_t {
        uint64_t sum = 0;
        for (std::size_t i = 0; i < num_repeats; ++i) sum += job();
        return sum;
    };
}

} // namespace pkider_bench
