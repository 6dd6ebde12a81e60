// The map object of an oid_map_handle_t: the built-in rows or none, and the rows that a text adds to them.
//
// The built-in rows are searched first, so that they win.
// Required: OidDefaultMaps.RequiredBuiltinNamesWinOverTheFile. They are a constant, so that a map with them is
// constant-initialised. Finders are safe for any number of threads; assign and clear are not.
#pragma once

#include "oid/builtin_index.h"
#include "oid/map_entries.h"
#include "platform/compiler.h"

#include <pkider/oid.h>

#include <cstdint>
#include <string_view>

namespace pkider {

enum class oid_map_start_t : bool { EMPTY, BUILTIN };

class oid_map_t {
  public:
    explicit constexpr oid_map_t(oid_map_start_t start) : m_has_builtin(start == oid_map_start_t::BUILTIN) {}
    oid_map_t(const oid_map_t&) = delete;
    oid_map_t& operator=(const oid_map_t&) = delete;

    /// Ends a map made by `new`, which has no built-in rows. There is no destructor that would: the maps that are
    /// constants of the library's image must stay there for the destructors of its hosts.
    static void destroy(const oid_map_t* map) noexcept;

    /// Adds the entries of `text`, in place of those of another text.
    ///
    /// @throws std::bad_alloc, std::length_error; the map is then unchanged.
    void assign(std::string_view text);

    /// Back to what the map started with. Entries added by a text end their life.
    void clear() noexcept;

    /// Whether the built-in rows are searched first.
    bool begins_with_builtin() const { return m_has_builtin; }

    const OIDdescr_t* find_asn(const uint8_t* asn, uint64_t length) const {
        const OIDdescr_t* const row = m_has_builtin ? builtin_by_x520_contents.find(asn, length) : nullptr;
        return row != nullptr ? row : find_asn_anywhere(asn, length);
    }
    const OIDdescr_t* find_str(const char* str, uint64_t length) const {
        const OIDdescr_t* const row = m_has_builtin ? find_builtin_dotted_text(str, length) : nullptr;
        return row != nullptr || m_added == nullptr ? row : m_added->find_str(str, length);
    }
    const OIDdescr_t* find_sn(const char* sn, uint64_t length) const {
        const OIDdescr_t* const row = m_has_builtin ? builtin_by_short_name.find(sn, length) : nullptr;
        return row != nullptr || m_added == nullptr ? row : m_added->find_sn(sn, length);
    }

  private:
    // Not inline: a type of X.520, found at once, is to pay for nothing else. Bench: oid/find_by_contents.
    PKIDER_NEVER_INLINE const OIDdescr_t* find_asn_anywhere(const uint8_t* asn, uint64_t length) const;

    bool m_has_builtin;
    const oid_map_entries_t* m_added = nullptr; // owned
};

} // namespace pkider
