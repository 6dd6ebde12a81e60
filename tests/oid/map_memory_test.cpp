// The entries of a map live in memory of operator new, and not in what a host made the default resource for a while.
#include "oid/map_memory.h"

#include "tests/oid/shown_entry.h"
#include "tests/support/alloc_failure.h"
#include "tests/support/parsed_map.h"
#include "tests/support/temp_dir.h"

#include <pkider/oid.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#if __has_include(<memory_resource>)
#include <memory_resource>
#endif

using namespace pkider;
using namespace pkider_test;

namespace {

TEST(OidMapMemory, PlacesAreAlignedAndDoNotOverlap) {
    oid_map_memory_t memory;
    std::vector<std::pair<unsigned char*, std::size_t>> places;
    for (std::size_t i = 0; i < 3000; ++i) {
        const std::size_t size =
            i % 1000 == 999 ? 1'000'000 : 1 + i * 7 % 300; // with some that are larger than a block
        auto* const place = static_cast<unsigned char*>(memory.allocate(size));
        ASSERT_EQ(reinterpret_cast<uintptr_t>(place) % alignof(OIDdescr_t), 0u);
        std::fill_n(place, size, static_cast<unsigned char>(i));
        places.emplace_back(place, size);
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto [place, size] = places[i];
        ASSERT_EQ(std::count(place, place + size, static_cast<unsigned char>(i)), static_cast<std::ptrdiff_t>(size));
    }
}

TEST(OidMapMemory, AFailedAllocationKeepsThePlacesBeforeIt) {
    const std::size_t failures = for_each_failing_allocation(
        [] {
            oid_map_memory_t memory;
            for (std::size_t size = 1; size < 100'000; size *= 3)
                std::fill_n(static_cast<char*>(memory.allocate(size)), size, 'x');
        },
        [] {});
    EXPECT_GT(failures, 5u);
}

TEST(OidMapMemory, FewAllocationsServeManyEntries) {
    std::string text;
    for (int i = 0; i < 10'000; ++i) text += "1.2." + std::to_string(i) + " = A\n";
    EXPECT_LT(count_allocations([&] { const parsed_map_t map(text); }), 200u);
}

// What the tests of failing allocations see is all that there is.
TEST(OidMapMemory, IsCountedAsMemoryOfOperatorNew) {
    const std::string text = "1.2.3 = A, " + std::string(1'000'000, 'x');
    EXPECT_GT(peak_allocated_bytes([&] { const parsed_map_t map(text); }), 1'000'000u);
}

#ifdef __cpp_lib_memory_resource
// The default resource of the process while it lives.
class as_default_resource_t {
  public:
    explicit as_default_resource_t(std::pmr::memory_resource* resource)
        : m_before(std::pmr::set_default_resource(resource)) {}
    ~as_default_resource_t() { std::pmr::set_default_resource(m_before); }
    as_default_resource_t(const as_default_resource_t&) = delete;
    as_default_resource_t& operator=(const as_default_resource_t&) = delete;

  private:
    std::pmr::memory_resource* m_before;
};

std::string by_name(std::string_view name, oid_map_handle_t map) {
    return shown(oid_map_find_sn(map, name.data(), name.size()));
}

TEST(OidMapMemory, ParsingTakesNothingFromTheDefaultResource) {
    const as_default_resource_t nothing(std::pmr::null_memory_resource());
    const parsed_map_t map("1.2.3 = MINE");
    EXPECT_EQ(by_name("MINE", map), "1.2.3|MINE|");
}

TEST(OidMapMemory, OfAParsedMapOutlivesTheDefaultResource) {
    std::unique_ptr<parsed_map_t> map;
    std::vector<char> arena(100'000);
    {
        std::pmr::monotonic_buffer_resource resource(arena.data(), arena.size(), std::pmr::null_memory_resource());
        const as_default_resource_t of_a_request(&resource);
        map = std::make_unique<parsed_map_t>("1.2.3 = MINE");
    }
    std::fill(arena.begin(), arena.end(), '\xDD');
    EXPECT_EQ(by_name("MINE", *map), "1.2.3|MINE|");
}

TEST(OidMapMemory, OfTheConfigurationFileOutlivesTheDefaultResource) {
    const temp_dir_t dir;
    dir.write(u8"vpnoids.cfg", "1.2.3 = MINE");
    std::vector<char> arena(100'000);
    for (std::pmr::memory_resource* const upstream :
         {std::pmr::null_memory_resource(), std::pmr::new_delete_resource()}) {
        {
            std::pmr::monotonic_buffer_resource resource(arena.data(), arena.size(), upstream);
            const as_default_resource_t of_a_request(&resource);
            set_oid_default_file_dir(dir.utf8(u8"").c_str());
        }
        std::fill(arena.begin(), arena.end(), '\xDD');
        EXPECT_EQ(by_name("MINE", OID_MAP_HANDLE_DEFAULT_FILE), "1.2.3|MINE|");
    }
    const as_default_resource_t nothing(std::pmr::null_memory_resource());
    set_oid_default_file_dir(dir.utf8(u8"").c_str());
    EXPECT_EQ(by_name("MINE", OID_MAP_HANDLE_DEFAULT_FILE), "1.2.3|MINE|");
    set_oid_default_file_dir(dir.utf8(u8"no such directory/").c_str());
}
#endif

} // namespace
