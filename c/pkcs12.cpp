#include <pkider/pkcs12.h>

#include "c/border.h"
#include "c/host_crypto.h"
#include "c/output.h"
#include "c/spans.h"
#include "c/wiping.h"

#include <algorithm>
#include <list>
#include <memory>
#include <string>
#include <vector>

using namespace pkider::c;

/// The file, what was read from it, and both lists of items in one array.
struct pkider_pkcs12_t {
    std::string file;
    pkcs12_easy_t record;
    std::vector<pkider_pkcs12_item_t> items;
    pkider_pkcs12_contents_t contents{};

    explicit pkider_pkcs12_t(std::string_view bytes) : file(bytes) {}
    pkider_pkcs12_t(const pkider_pkcs12_t&) = delete;
    pkider_pkcs12_t& operator=(const pkider_pkcs12_t&) = delete;
    ~pkider_pkcs12_t() {
        wipe(file);
        for (std::string& buffer : record.buffers) wipe(buffer);
    }
};

namespace {

pkider_pkcs12_item_t shown(const pkcs12_item_t& item) {
    return {item.type, span_of(item.data_len, item.data), span_of(item.friendly_name_len, item.friendly_name),
            span_of(item.local_key_id_len, item.local_key_id)};
}

pkcs12_item_t item_of(const pkider_pkcs12_item_t& item) {
    pkcs12_item_t out;
    out.type = static_cast<pkcs12_item_type_t>(item.type);
    store(item.data, out.data_len, out.data);
    store(item.friendly_name, out.friendly_name_len, out.friendly_name);
    store(item.local_key_id, out.local_key_id_len, out.local_key_id);
    return out;
}

void show_contents(pkider_pkcs12_t& out) {
    const pkcs12_easy_t& record = out.record;
    out.items.reserve(record.plain_items.size() + record.protected_items.size());
    for (const auto* list : {&record.plain_items, &record.protected_items}) {
        for (const pkcs12_item_t& item : *list) out.items.push_back(shown(item));
    }
    const pkider_pkcs12_item_t* const first = out.items.data();
    out.contents = {first, record.plain_items.size(), first + record.plain_items.size(), record.protected_items.size(),
                    pkider::c::shown(record.mac)};
}

std::list<pkcs12_item_t> list_of(const pkider_pkcs12_item_t* items, uint64_t num_items) {
    if (num_items > PTRDIFF_MAX / sizeof(pkider_pkcs12_item_t)) throw stopped_t{PKIDER_TOO_LONG};
    std::list<pkcs12_item_t> out;
    std::transform(items, items + num_items, std::back_inserter(out), item_of);
    return out;
}

} // namespace

pkider_status_t pkider_pkcs12_mac_read(const uint8_t* data, uint64_t size, pkider_pkcs12_mac_t* out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = {};
    if (is_missing(data, size)) return PKIDER_ARGUMENT;
    pkcs12_mac_t mac;
    if (!asn_read_pkcs12_MacData(data, size, mac)) return PKIDER_MALFORMED;
    *out = pkider::c::shown(mac);
    return PKIDER_OK;
}

pkider_status_t pkider_pkcs12_read(const uint8_t* data, uint64_t size, const pkider_pbe_crypto_t* crypto,
                                   pkider_pkcs12_t** out) {
    if (out == nullptr) return PKIDER_ARGUMENT;
    *out = nullptr;
    if (crypto == nullptr || is_missing(data, size)) return PKIDER_ARGUMENT;
    return at_border([&] {
        auto record = std::make_unique<pkider_pkcs12_t>(text_of(reinterpret_cast<const char*>(data), size));
        const auto* const file = reinterpret_cast<const uint8_t*>(record->file.data());
        host_crypto_t host(*crypto);
        if (!asn_read_pkcs12_easy(file, size, &host, record->record)) {
            return host.has_refused_mac() ? PKIDER_WRONG_MAC : PKIDER_MALFORMED;
        }
        show_contents(*record);
        *out = record.release();
        return PKIDER_OK;
    });
}

const pkider_pkcs12_contents_t* pkider_pkcs12_contents(const pkider_pkcs12_t* record) {
    return record == nullptr ? nullptr : &record->contents;
}

uint64_t pkider_pkcs12_num_items(const pkider_pkcs12_t* record) {
    return record == nullptr ? 0 : record->items.size();
}

const pkider_pkcs12_item_t* pkider_pkcs12_item(const pkider_pkcs12_t* record, uint64_t number) {
    return number < pkider_pkcs12_num_items(record) ? &record->items[static_cast<std::size_t>(number)] : nullptr;
}

void pkider_pkcs12_release(pkider_pkcs12_t* record) {
    delete record;
}

pkider_status_t pkider_pkcs12_write(const pkider_pkcs12_contents_t* contents, const pkider_pbe_crypto_t* crypto,
                                    pkider_output_t* out) {
    clear(out);
    if (contents == nullptr || crypto == nullptr || out == nullptr) return PKIDER_ARGUMENT;
    if (is_missing(contents->plain_items, contents->num_plain_items) ||
        is_missing(contents->protected_items, contents->num_protected_items)) {
        return PKIDER_ARGUMENT;
    }
    return at_border([&] {
        pkcs12_easy_t record;
        record.plain_items = list_of(contents->plain_items, contents->num_plain_items);
        record.protected_items = list_of(contents->protected_items, contents->num_protected_items);
        record.mac = record_of(contents->mac);
        host_crypto_t host(*crypto);
        std::string pfx;
        asn_write_pkcs12_easy(record, &host, pfx);
        return host.encryption_fault() == PKIDER_OK ? deliver(pfx, *out) : host.encryption_fault();
    });
}
