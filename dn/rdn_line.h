// Where the next RDN of a Name goes in its line: after the others, or before them. Both forms have the same
// members, for the template that walks over the Name.
#pragma once

#include "dn/front_sink.h"
#include "dn/text_sink.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace pkider {

class forward_line_t {
  public:
    explicit forward_line_t(std::size_t expected_size) : m_text(expected_size) {}

    /// The place of an RDN of `size` characters, its "," included; take() when they have been written.
    char* room(std::size_t size) { return m_text.room(size); }
    void take(std::size_t size) { m_text.take(size); }

    /// Where an RDN of unknown size is printed; call end() after it.
    text_sink_t& begin() { return m_text; }
    void end() { m_text.put(','); }

    /// All of it so far. Of an RDN that was begun and not ended, what there is.
    std::string_view text() const { return m_text.text(); }

  private:
    text_sink_t m_text;
};

class reversed_line_t {
  public:
    explicit reversed_line_t(std::size_t expected_size) : m_text(expected_size) {}

    char* room(std::size_t size) { return m_text.room(size); }
    void take(std::size_t size) { m_text.take(size); }

    text_sink_t& begin() {
        m_rdn.cut(0);
        return m_rdn;
    }
    void end() {
        m_rdn.put(',');
        const std::string_view rdn = m_rdn.text();
        std::copy(rdn.begin(), rdn.end(), m_text.room(rdn.size()));
        m_text.take(rdn.size());
    }

    /// The RDNs that were ended.
    std::string_view text() const { return m_text.text(); }

  private:
    front_sink_t m_text;
    text_sink_t m_rdn;
};

} // namespace pkider
