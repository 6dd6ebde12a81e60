#include "c/wiping.h"

#include "c/border.h"
#include "platform/compiler.h"

#include <algorithm>
#include <stdexcept>

namespace pkider::c {

void wipe(std::string& secret) noexcept {
    secret.resize(secret.capacity());
    overwrite(secret.data(), secret.size());
    secret.clear();
}

int wiping_sink_t::write(void* context, const uint8_t* bytes, uint64_t count) {
    auto& self = *static_cast<wiping_sink_t*>(context);
    if (self.m_status == PKIDER_OK) {
        self.m_status = at_border([&] {
            if (is_missing(bytes, count)) return PKIDER_HOST;
            self.append(bytes, count);
            return PKIDER_OK;
        });
    }
    return self.m_status == PKIDER_OK ? 0 : 1;
}

void wiping_sink_t::append(const uint8_t* bytes, uint64_t count) {
    if (count > m_secret.max_size() - m_secret.size()) throw std::length_error("pkider: plaintext too long");
    const std::size_t size = m_secret.size() + static_cast<std::size_t>(count);
    if (size > m_secret.capacity()) {
        std::string larger;
        larger.reserve(std::max(size, std::min(m_secret.capacity() * 2, m_secret.max_size())));
        larger = m_secret;
        m_secret.swap(larger);
        wipe(larger);
    }
    m_secret.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
}

} // namespace pkider::c
