#include "c/output.h"

#include <algorithm>

namespace pkider::c {

void clear(pkider_output_t* out) {
    if (out != nullptr) out->size = 0;
}

bool has_room(const pkider_output_t& out, uint64_t size) {
    if (out.sink.write != nullptr || size == 0) return true;
    return out.data != nullptr && size <= out.capacity;
}

pkider_status_t deliver(std::string_view bytes, pkider_output_t& out) {
    out.size = bytes.size();
    if (!has_room(out, bytes.size())) return PKIDER_NO_ROOM;
    if (bytes.empty()) return PKIDER_OK;

    const auto* const data = reinterpret_cast<const uint8_t*>(bytes.data());
    if (out.sink.write == nullptr) {
        std::copy_n(data, bytes.size(), out.data);
        return PKIDER_OK;
    }
    return out.sink.write(out.sink.context, data, bytes.size()) == 0 ? PKIDER_OK : PKIDER_HOST;
}

} // namespace pkider::c
