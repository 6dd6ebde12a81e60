// For any text: for each of its keys and for other keys, the three finders return what a walk from the first character
// to the last and through a plain list finds.
#include <pkider/oid.h>

#include "fuzz/check.h"

#include <string>
#include <string_view>
#include <vector>

namespace {

struct plain_entry_t {
    std::string contents;
    std::string dotted;
    std::string short_name;
    std::string long_name;
};

std::string upper(std::string text) {
    for (char& c : text) {
        if (c >= 0x61 && c <= 0x7A) c = static_cast<char>(c - 0x20);
    }
    return text;
}

// Reads the text in one walk, one character at a time, without cutting it into lines.
class plain_reader_t {
  public:
    explicit plain_reader_t(std::string_view text) : m_text(text) {}

    std::vector<plain_entry_t> read() {
        std::vector<plain_entry_t> entries;
        while (!at_end()) {
            plain_entry_t entry;
            if (read_line(entry)) entries.push_back(entry);
            while (!at_end() && !is_one_of("\r\n")) ++m_at;
            while (!at_end() && is_one_of("\r\n")) ++m_at;
        }
        return entries;
    }

  private:
    bool at_end() const { return m_at == m_text.size(); }
    bool is_one_of(std::string_view chars) const { return chars.find(m_text[m_at]) != std::string_view::npos; }
    void skip_blanks() {
        while (!at_end() && is_one_of(" \t")) ++m_at;
    }

    bool read_line(plain_entry_t& out) {
        skip_blanks();
        while (!at_end() && is_one_of("0123456789.")) out.dotted += m_text[m_at++];
        skip_blanks();
        if (at_end() || !is_one_of("=")) return false;
        ++m_at;
        skip_blanks();
        while (!at_end() && !is_one_of(" \t\r\n,=")) out.short_name += m_text[m_at++];
        out.short_name = upper(out.short_name);
        skip_blanks();
        if (!at_end() && is_one_of(",")) {
            ++m_at;
            skip_blanks();
            while (!at_end() && !is_one_of("\r\n")) out.long_name += m_text[m_at++];
        }
        uint8_t contents[512];
        const uint64_t count = oid_str_to_asn_(out.dotted.data(), out.dotted.data() + out.dotted.size(), contents);
        out.contents.assign(contents, contents + count);
        return count != 0;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

using list_t = std::vector<plain_entry_t>;

const plain_entry_t* first_with(const list_t& list, std::string plain_entry_t::*key, const std::string& value) {
    for (const plain_entry_t& entry : list) {
        if (entry.*key == value) return &entry;
    }
    return nullptr;
}

void check_same(const OIDdescr_t* found, const plain_entry_t* expected) {
    CHECK_TRUE((found == nullptr) == (expected == nullptr));
    if (found == nullptr) return;
    CHECK_TRUE(std::string(found->asn, found->asn + found->asn_len) == expected->contents);
    CHECK_TRUE(std::string_view(found->str, found->str + found->str_len) == expected->dotted);
    CHECK_TRUE(std::string_view(found->sn, found->sn + found->sn_len) == expected->short_name);
    CHECK_TRUE(std::string_view(found->ln, found->ln + found->ln_len) == expected->long_name);
    CHECK_TRUE((found->str[found->str_len] | found->sn[found->sn_len] | found->ln[found->ln_len]) == 0);
}

void check_key(oid_map_handle_t map, const list_t& list, const std::string& key) {
    const auto* const bytes = reinterpret_cast<const uint8_t*>(key.data());
    check_same(oid_map_find_asn(map, bytes, key.size()), first_with(list, &plain_entry_t::contents, key));
    check_same(oid_map_find_str(map, key.data(), key.size()), first_with(list, &plain_entry_t::dotted, key));
    check_same(oid_map_find_sn(map, key.data(), key.size()), first_with(list, &plain_entry_t::short_name, upper(key)));
}

void check_key_and_neighbours(oid_map_handle_t map, const list_t& list, std::string key) {
    check_key(map, list, key);
    for (char& c : key) c = static_cast<char>(c ^ 0x20); // the other case of letters, another byte elsewhere
    check_key(map, list, key);
    key += '0';
    check_key(map, list, key);
    key.erase(0, key.size() < 2 ? 0 : 2);
    check_key(map, list, key);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size > 4096) return 0; // the plain list is quadratic
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const list_t list = plain_reader_t(text).read();
    const oid_map_handle_t map = oid_map_parse(text.data(), text.size());
    CHECK_TRUE(map.map != nullptr);
    check_key(map, list, "");
    check_key(map, list, std::string(text));
    for (const plain_entry_t& entry : list) {
        check_key_and_neighbours(map, list, entry.contents);
        check_key_and_neighbours(map, list, entry.dotted);
        check_key_and_neighbours(map, list, entry.short_name);
    }
    oid_map_release(map);
    return 0;
}
