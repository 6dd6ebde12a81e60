#include "tools/pkider/facts/p12_outline.h"

#include "tools/pkider/base/failure.h"
#include "tools/pkider/facts/encrypted_key.h"
#include "tools/pkider/facts/pbe_algorithm.h"
#include "tools/pkider/formats/tags.h"

#include <algorithm>

namespace tool {
namespace {

constexpr bytes_t encrypted_type = oid<"1.2.840.113549.1.7.6">;

/// The types of bags (RFC 7292 4.2) have one arc more, their number in this list.
constexpr bytes_t bag_types = oid<"1.2.840.113549.1.12.10.1">;
constexpr bag_kind_t bag_kinds[] = {bag_kind_t::key, bag_kind_t::shrouded_key, bag_kind_t::certificate,
                                    bag_kind_t::crl, bag_kind_t::secret,       bag_kind_t::safe_contents};

bag_kind_t bag_kind(bytes_t type) {
    if (type.size() != bag_types.size() + 1 || !std::ranges::equal(type.first(bag_types.size()), bag_types))
        return bag_kind_t::unknown;
    const std::size_t number = type.back();
    return number >= 1 && number <= std::size(bag_kinds) ? bag_kinds[number - 1] : bag_kind_t::unknown;
}

std::string why_not_decrypted(const decryption_t& decryption) {
    if (decryption.fault == pbe_fault_t::too_many_iterations)
        return std::to_string(decryption.iterations) + " iterations, more than allowed (--max-iterations)";
    return std::string("cannot be decrypted: ") + pbe_fault_text(decryption.fault);
}

/// Attributes ::= SET OF SEQUENCE { OID, SET OF value }, as strict as the library: a fault in them ends its read.
void check_attributes(der_cursor_t attributes) {
    constexpr bytes_t friendly_name = oid<"1.2.840.113549.1.9.20">;
    constexpr bytes_t local_key_id = oid<"1.2.840.113549.1.9.21">;
    while (!attributes.at_end()) {
        der_cursor_t attribute(attributes.next(asn_tag_t::SEQUENCE, "an attribute"));
        const der_element_t type = attribute.next(asn_tag_t::OBJECT_IDENTIFIER, "the attribute type");
        der_cursor_t values(attribute.next(asn_tag_t::SET, "the attribute values"));
        if (type.holds(friendly_name)) values.next(identifier_of(bmp_string_tag), "the friendly name");
        if (type.holds(local_key_id)) values.next(asn_tag_t::OCTET_STRING, "the local key id");
    }
}

void check_cert_bag(der_cursor_t value) {
    der_cursor_t cert_bag(value.next(asn_tag_t::SEQUENCE, "a CertBag"));
    cert_bag.next(asn_tag_t::OBJECT_IDENTIFIER, "the certificate type");
    der_cursor_t explicit_value(cert_bag.next(asn_tag_t::CONTEXT_0, "the certificate"));
    explicit_value.next(asn_tag_t::OCTET_STRING, "the certificate");
}

/// The walk: in step with the decryptions and the items of the reading, which are in the order of the file.
class p12_walk_t {
  public:
    explicit p12_walk_t(const p12_reading_t& reading)
        : m_reading(reading),
          m_next_decryption(reading.decryptions.begin()),
          m_next_plain(reading.content.plain_items.begin()),
          m_next_protected(reading.content.protected_items.begin()) {}

    p12_outline_t run(bytes_t file) {
        try {
            der_cursor_t safe(read_pfx(file).authenticated_safe);
            der_cursor_t contents(safe.next(asn_tag_t::SEQUENCE, "an AuthenticatedSafe"));
            while (!contents.at_end()) walk_content(contents.next(asn_tag_t::SEQUENCE, "a ContentInfo"));
            if (!m_reading.complete) m_outline.fault = "malformed DER";
        } catch (const data_fault_t& fault) {
            m_outline.fault = m_fault_prefix + fault.what();
        }
        return std::move(m_outline);
    }

  private:
    void walk_content(const der_element_t& element) {
        p12_content_t& content = m_outline.contents.emplace_back();
        der_cursor_t info(element);
        const der_element_t type = info.next(asn_tag_t::OBJECT_IDENTIFIER, "the content type");
        der_cursor_t value(info.next(asn_tag_t::CONTEXT_0, "the content"));
        if (type.holds(data_type)) {
            walk_safe_contents(der_cursor_t(value.next(asn_tag_t::OCTET_STRING, "the SafeContents")), content);
        } else if (type.holds(encrypted_type)) {
            content.encrypted = true;
            walk_encrypted(value, content);
        } else {
            content.skipped = "its type is " + algorithm_name(type.contents);
        }
    }

    void walk_encrypted(der_cursor_t value, p12_content_t& content) {
        der_cursor_t data(value.next(asn_tag_t::SEQUENCE, "an EncryptedData"));
        const der_element_t version = data.next(asn_tag_t::INTEGER, "the version");
        der_cursor_t info(data.next(asn_tag_t::SEQUENCE, "an EncryptedContentInfo"));
        if (version.contents.size() != 1 && (version.contents.empty() || version.contents[0] != 0))
            throw der_fault_t(version.offset, "version 0");
        const der_element_t type = info.next(asn_tag_t::OBJECT_IDENTIFIER, "the content type");
        const der_element_t algorithm = info.next(asn_tag_t::SEQUENCE, "the encryption algorithm");
        const der_element_t ciphertext = info.next(primitive_context_tag(0), "the encrypted content");
        if (!data.at_end()) data.next(asn_tag_t::ANY, "the attributes");

        if (!type.holds(data_type)) {
            content.skipped = "the encrypted type is " + algorithm_name(type.contents);
            return;
        }
        const decryption_t* const decryption = open(algorithm.contents, ciphertext.contents, content);
        if (decryption == nullptr) return;
        m_fault_prefix = "content " + std::to_string(m_outline.contents.size()) + ", decrypted: ";
        walk_safe_contents(contents_of_plaintext(decryption->plain), content);
        m_fault_prefix.clear();
    }

    /// The SafeContents in an OCTET STRING; offsets count from what other programs encrypt, after its header.
    static der_cursor_t contents_of_plaintext(bytes_t plain) {
        return der_cursor_t(der_cursor_t(plain).next(asn_tag_t::OCTET_STRING, "the plaintext").contents);
    }

    void walk_safe_contents(der_cursor_t safe, p12_content_t& content) {
        der_cursor_t bags(safe.next(asn_tag_t::SEQUENCE, "a SafeContents"));
        while (!bags.at_end()) walk_bag(bags.next(asn_tag_t::SEQUENCE, "a SafeBag"), content);
    }

    void walk_bag(const der_element_t& element, p12_content_t& content) {
        der_cursor_t cursor(element);
        const der_element_t type = cursor.next(asn_tag_t::OBJECT_IDENTIFIER, "the bag type");
        const der_element_t value = cursor.next(asn_tag_t::CONTEXT_0, "the bag value");
        if (cursor.sees(asn_tag_t::SET)) check_attributes(der_cursor_t(cursor.next(asn_tag_t::SET, "the attributes")));

        p12_bag_t bag;
        bag.kind = bag_kind(type.contents);
        bag.is_protected = content.encrypted || bag.kind == bag_kind_t::shrouded_key;
        switch (bag.kind) {
        case bag_kind_t::key:
            take_item(bag);
            break;
        case bag_kind_t::shrouded_key:
            take_shrouded_key(value, bag);
            break;
        case bag_kind_t::certificate:
            check_cert_bag(der_cursor_t(value));
            take_item(bag);
            break;
        case bag_kind_t::unknown:
            bag.skipped = "bags of type " + algorithm_name(type.contents) + " are not read";
            break;
        default:
            bag.skipped = "bags of this kind are not read";
            break;
        }
        content.bags.push_back(std::move(bag));
    }

    void take_shrouded_key(const der_element_t& value, p12_bag_t& bag) {
        // A malformed EncryptedPrivateKeyInfo is passed over.
        try {
            der_cursor_t cursor(value);
            const encrypted_info_t info = read_encrypted_info(cursor);
            if (open(info.algorithm, info.ciphertext, bag) != nullptr) take_item(bag);
        } catch (const der_fault_t& fault) {
            bag.skipped = "malformed: expected " + fault.expected;
        }
    }

    /// What a content or a bag was decrypted to, and how it is protected; null, and the reason, if it was not.
    template <typename Part>
    const decryption_t* open(bytes_t algorithm, bytes_t ciphertext, Part& part) {
        const decryption_t* const decryption = take_decryption(ciphertext);
        if (decryption == nullptr) {
            part.skipped = why_refused(algorithm);
        } else if (decryption->fault != pbe_fault_t::none) {
            part.skipped = why_not_decrypted(*decryption);
        } else {
            part.protection = protection_text(algorithm, decryption->iterations);
            return decryption;
        }
        return nullptr;
    }

    /// The next call of `decrypt`, if it was made for this ciphertext: the library makes none for what it refuses.
    const decryption_t* take_decryption(bytes_t ciphertext) {
        if (m_next_decryption == m_reading.decryptions.end() || m_next_decryption->ciphertext != ciphertext.data())
            return nullptr;
        return &*m_next_decryption++;
    }

    void take_item(p12_bag_t& bag) {
        auto& next = bag.is_protected ? m_next_protected : m_next_plain;
        const auto& items = bag.is_protected ? m_reading.content.protected_items : m_reading.content.plain_items;
        if (next == items.end()) throw data_fault_t("the library took less than is here");
        bag.item = &*next++;
        bag.number = ++m_num_items;
    }

    const p12_reading_t& m_reading;
    std::vector<decryption_t>::const_iterator m_next_decryption;
    std::list<pkcs12_item_t>::const_iterator m_next_plain, m_next_protected;
    std::size_t m_num_items = 0;
    p12_outline_t m_outline;
    std::string m_fault_prefix;
};

} // namespace

const char* bag_kind_text(bag_kind_t kind) {
    switch (kind) {
    case bag_kind_t::key:
    case bag_kind_t::shrouded_key:
        return "private key";
    case bag_kind_t::certificate:
        return "certificate";
    case bag_kind_t::crl:
        return "certificate revocation list";
    case bag_kind_t::secret:
        return "secret";
    case bag_kind_t::safe_contents:
        return "nested contents";
    case bag_kind_t::unknown:
        return "unknown";
    }
    return "";
}

p12_outline_t outline_p12(bytes_t file, const p12_reading_t& reading) {
    return p12_walk_t(reading).run(file);
}

} // namespace tool
