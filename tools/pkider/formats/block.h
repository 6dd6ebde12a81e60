// One encoding out of an input.
#pragma once

#include "tools/pkider/base/secret.h"
#include "tools/pkider/formats/der_cursor.h"

#include <cstddef>
#include <string>

namespace tool {

enum class input_form_t { guess, pem, der, hex, base64 };

struct block_t {
    input_form_t form = input_form_t::der; ///< What the input was, never a guess.
    std::string label;                     ///< `CERTIFICATE`; empty when the input was not PEM.
    std::size_t line = 0;                  ///< Of its BEGIN line, counted from 1; 0 when the input was not PEM.
    bytes_t der;                           ///< In an input that is DER, otherwise in `decoded`. Empty with a fault.
    secret_t decoded;
    std::string fault; ///< Why the block cannot be read, else empty.

    void set_decoded(secret_t bytes) {
        decoded = std::move(bytes);
        der = decoded.view();
    }

    /// Makes the block independent of the input.
    void detach() {
        if (decoded.empty()) set_decoded(secret_t(der));
    }
};

} // namespace tool
