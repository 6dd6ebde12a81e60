// Takes the issuer and the subject out of every certificate of a PEM file, prints each, encodes the text, and prints
// what was encoded: a name that went once through text does not change any more.
#include <pkider/der.h>
#include <pkider/dn.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

namespace {

struct bytes_t {
    const uint8_t* data = nullptr;
    uint64_t size = 0;
};

// The element at the start of `rest`, which then begins after it; no data when there is no element with this tag.
struct element_t {
    bytes_t whole;
    bytes_t contents;
};

element_t take(asn_tag_t::Type tag, bytes_t& rest) {
    uint64_t len = 0;
    const uint8_t* const contents = asn1_read_tag_(tag, rest.data, rest.size, &len);
    if (contents == nullptr) return {};
    const uint64_t size = static_cast<uint64_t>(contents - rest.data) + len;
    const element_t element{{rest.data, size}, {contents, len}};
    rest = {rest.data + size, rest.size - size};
    return element;
}

struct names_t {
    bytes_t issuer;
    bytes_t subject;
};

// Certificate ::= SEQUENCE { tbsCertificate SEQUENCE { [0] version OPTIONAL, serialNumber INTEGER, signature SEQUENCE,
//                            issuer Name, validity SEQUENCE, subject Name, ... }, ... }               (RFC 5280 4.1)
names_t find_names(bytes_t certificate) {
    bytes_t rest = take(asn_tag_t::SEQUENCE, certificate).contents;
    rest = take(asn_tag_t::SEQUENCE, rest).contents;
    take(asn_tag_t::CONTEXT_0, rest);
    take(asn_tag_t::INTEGER, rest);
    take(asn_tag_t::SEQUENCE, rest);
    names_t names;
    names.issuer = take(asn_tag_t::SEQUENCE, rest).whole;
    take(asn_tag_t::SEQUENCE, rest);
    names.subject = take(asn_tag_t::SEQUENCE, rest).whole;
    return names;
}

int base64_digit(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    return c == '/' ? 63 : -1;
}

void append_base64(const std::string& line, uint32_t& bits, int& num_bits, std::string& out) {
    for (const char c : line) {
        const int digit = base64_digit(c);
        if (digit < 0) continue;
        bits = bits << 6 | static_cast<uint32_t>(digit);
        num_bits += 6;
        if (num_bits < 8) continue;
        num_bits -= 8;
        out.push_back(static_cast<char>(bits >> num_bits & 0xFF));
    }
}

// The next certificate of the file; empty at its end.
std::string next_certificate(std::istream& pem) {
    std::string line;
    while (std::getline(pem, line) && line.rfind("-----BEGIN CERTIFICATE-----", 0) != 0) {
    }
    std::string der;
    uint32_t bits = 0;
    int num_bits = 0;
    while (std::getline(pem, line) && line.rfind("-----END", 0) != 0) append_base64(line, bits, num_bits, der);
    return der;
}

bool survives_text(const char* what, bytes_t name) {
    std::string text;
    const auto size = static_cast<uint32_t>(name.size);
    const bool printed = asn_dn_to_printable(name.data, size, text, DN_ORDER_AS_ENCODED, OID_MAP_HANDLE_DEFAULT);

    std::string again;
    const bool encoded = printed && printable_dn_normalize(text, again, nullptr, OID_MAP_HANDLE_DEFAULT);
    const bool equal = encoded && again == text;
    std::printf("%-9s  %-7s  %s\n", equal ? "equal" : "DIFFERENT", what, text.c_str());
    if (!equal) std::printf("%-9s  %-7s  %s\n", "", "again", again.c_str());
    return equal;
}

} // namespace

int main(int argc, char** argv) {
    std::ifstream pem(argc > 1 ? argv[1] : "/etc/ssl/certs/ca-certificates.crt");
    int num_names = 0;
    int num_equal = 0;
    for (std::string der = next_certificate(pem); !der.empty(); der = next_certificate(pem)) {
        const names_t names = find_names({reinterpret_cast<const uint8_t*>(der.data()), der.size()});
        num_equal += survives_text("issuer", names.issuer);
        num_equal += survives_text("subject", names.subject);
        num_names += 2;
    }
    std::printf("%d names, %d printed again as the same text, %d different\n", num_names, num_equal,
                num_names - num_equal);
    return num_names > 0 && num_equal == num_names ? 0 : 1;
}
