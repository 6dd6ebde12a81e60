// What the records promise in every language version that a host may use; included by a file for each of them.
#pragma once

#include <pkider/pkcs12.h>

#include <type_traits>

static_assert(std::is_default_constructible_v<pkcs12_easy_t>);
static_assert(std::is_nothrow_move_constructible_v<pkcs12_easy_t> && std::is_nothrow_move_assignable_v<pkcs12_easy_t>);
static_assert(!std::is_copy_constructible_v<pkcs12_easy_t> && !std::is_copy_assignable_v<pkcs12_easy_t>);
static_assert(std::is_trivially_copyable_v<pkcs12_item_t> && std::is_trivially_copyable_v<pkcs12_mac_t>);
static_assert(sizeof(pkcs12_item_type_t) == 4);

// Nobody but the maker destroys a crypto object, and nobody makes one of the abstract class.
static_assert(std::is_abstract_v<pbe_crypto_t> && !std::is_destructible_v<pbe_crypto_t>);
static_assert(!std::has_virtual_destructor_v<pbe_crypto_t>);

/// A fresh record is all zeros, made without a brace, so that it means the same before and after C++20.
///
/// @tparam Language  __cplusplus: one function a version, so that the linker does not take one for all.
template <long Language>
bool fresh_record_is_empty() {
    const pkcs12_easy_t record;
    const pkcs12_mac_t& mac = record.mac;
    return record.plain_items.empty() && record.protected_items.empty() && record.buffers.empty() &&
           mac.digest_alg_len == 0 && mac.digest_alg == nullptr && mac.digest_len == 0 && mac.digest == nullptr &&
           mac.salt_len == 0 && mac.salt == nullptr && mac.iterations == 0;
}
