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
