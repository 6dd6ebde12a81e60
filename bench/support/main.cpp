// Runs the rows: with Google Benchmark, or (--count) each row a few times under callgrind, one dump a row.
#include "bench/support/row.h"

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <malloc.h>

#include <climits>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

namespace pkider_bench {

namespace {

constexpr std::size_t max_counted_items = 10'000; // a program is far slower under callgrind

struct row_t {
    std::string name;
    std::size_t items;
    std::function<pass_t()> make;
};

std::vector<row_t>& rows() {
    static std::vector<row_t> all;
    return all;
}

void time_row(benchmark::State& state, const row_t& row) {
    const pass_t pass = row.make();
    answers_wanted = true;
    const uint64_t answer = pass();
    answers_wanted = false;
    for (auto _ : state) benchmark::DoNotOptimize(pass());
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(row.items));
    state.counters["items"] = static_cast<double>(row.items);
    state.counters["answer"] = static_cast<double>(answer & 0xFFFFFFFFFFFF); // exact in a double
}

// The kernel's work of handing out fresh pages would drown the rest of what a large output costs, for every library.
void keep_freed_memory() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, INT_MAX);
    mallopt(M_TOP_PAD, 64 << 20);
}

// The second pass is counted: the first one fills what is filled once.
void count_row(const row_t& row) {
    if (row.items > max_counted_items) return;
    const pass_t pass = row.make();
    pass();
    CALLGRIND_ZERO_STATS;
    pass();
    CALLGRIND_DUMP_STATS_AT(row.name.c_str());
    std::printf("%s %zu\n", row.name.c_str(), row.items);
}

} // namespace

uint64_t checksum_of(const void* data, std::size_t size) {
    uint64_t sum = size;
    for (std::size_t i = 0; i < size; ++i) sum = sum * 31 + static_cast<const uint8_t*>(data)[i];
    return sum;
}

void add_row(std::string name, std::size_t items, pass_t pass) {
    add_made_row(std::move(name), items, [pass = std::move(pass)] { return pass; });
}

void add_made_row(std::string name, std::size_t items, std::function<pass_t()> make) {
    rows().push_back({std::move(name), items, std::move(make)});
}

} // namespace pkider_bench

int main(int argc, char** argv) {
    using namespace pkider_bench;
    keep_freed_memory();
    register_rows();
    if (argc > 1 && std::string_view(argv[1]) == "--count") {
        for (const row_t& row : rows()) count_row(row);
        return 0;
    }
    for (const row_t& row : rows()) {
        benchmark::RegisterBenchmark(row.name.c_str(), [&row](benchmark::State& state) { time_row(state, row); });
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
