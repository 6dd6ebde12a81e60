// Objects of a C library in a smart pointer:
//
//     using key_ptr_t = std::unique_ptr<EVP_PKEY, freed_by_t<EVP_PKEY_free>>;
#pragma once

namespace pkider_test {

template <auto Free>
struct freed_by_t {
    template <typename Object>
    void operator()(Object* object) const {
        Free(object);
    }
};

} // namespace pkider_test
