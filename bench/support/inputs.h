// What the rows work on: the certificates of the system's CA bundle and the parts found in them, and keys, signature
// values and files made from a fixed seed. Every library gets the same bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pkider_bench {

using bytes_t = std::vector<uint8_t>;

/// Certificates of the bundle (PKIDER_BENCH_BUNDLE, else the system's), in its order.
const std::vector<bytes_t>& certificates();

/// Subjects and issuers.
const std::vector<bytes_t>& names();

/// The names whose types every library knows, each once, and whose text needs no escape, and their lines `CN=a,O=b`.
struct plain_names_t {
    std::vector<bytes_t> der;
    std::vector<std::string> lines;
};
const plain_names_t& plain_names();

/// The SubjectPublicKeyInfo elements of RSA keys.
const std::vector<bytes_t>& rsa_public_keys();

/// Contents octets of every OBJECT IDENTIFIER in the bundle, each once, and their dotted text.
const std::vector<bytes_t>& oids();
const std::vector<std::string>& dotted_oids();

/// Contents octets of the attribute types of all names, as they occur.
const std::vector<bytes_t>& attribute_types();

/// Contents octets of the signature algorithm of each certificate, and the whole AlgorithmIdentifier.
const std::vector<bytes_t>& signature_oids();
const std::vector<bytes_t>& signature_algorithms();

/// DSA signature values (r, s of 20 to 32 bytes).
const std::vector<bytes_t>& dsa_values();

/// Hash values of 32 bytes, and the DigestInfo of each with SHA-256.
const std::vector<std::string>& digests();
const std::vector<std::string>& digest_infos();

/// A line and the Name of `num_rdns` RDNs; `as_one_set`: as many members of one RDN.
std::string long_name_line(std::size_t num_rdns, bool as_one_set);
bytes_t long_name(std::size_t num_rdns, bool as_one_set);

/// Bytes from a fixed seed.
bytes_t made_bytes(std::size_t size, uint32_t seed);

/// One DER element around `contents`, minimal length.
bytes_t element(uint8_t tag, const bytes_t& contents);

/// Each of these contents octets as a whole OBJECT IDENTIFIER, for libraries that read no bare contents.
std::vector<bytes_t> oid_elements(const std::vector<bytes_t>& contents);

/// A header as the inputs themselves are read; null when there is none that fits.
const uint8_t* read_header(const uint8_t* at, const uint8_t* end, uint8_t* tag, std::size_t* length);

/// Visits every element of some DER, depth first: primitive elements and constructed ones, not what is inside strings.
template <typename Visit>
void walk(const bytes_t& der, Visit visit) {
    const uint8_t* at = der.data();
    const uint8_t* const end = at + der.size();
    while (at < end) {
        uint8_t tag = 0;
        std::size_t length = 0;
        const uint8_t* const content = read_header(at, end, &tag, &length);
        if (content == nullptr) return;
        visit(tag, at, content, length);
        at = (tag & 0x20) != 0 ? content : content + length;
    }
}

} // namespace pkider_bench
