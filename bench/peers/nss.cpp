// NSS: its Name and OID functions.
#include "bench/support/inputs.h"
#include "bench/support/row.h"
#include "bench/support/row_names.h"

#include <cert.h>
#include <nss.h>
#include <prprf.h>
#include <secasn1.h>
#include <secoid.h>

#include <cstring>

namespace pkider_bench {
namespace {

SECItem item(const bytes_t& bytes) {
    return {siBuffer, const_cast<unsigned char*>(bytes.data()), static_cast<unsigned>(bytes.size())};
}

uint64_t print_all(const std::vector<bytes_t>& all) {
    for (const bytes_t& der : all) {
        SECItem bytes = item(der);
        char* const text = CERT_DerNameToAscii(&bytes);
        keep(text);
        PORT_Free(text);
    }
    return 0; // last RDN first
}

} // namespace

void register_rows() {
    NSS_NoDB_Init(nullptr);
    add_row(row_name::oid_to_text, oids().size(), []() -> uint64_t {
        for (const bytes_t& oid : oids()) {
            const SECItem bytes = item(oid);
            char* const text = CERT_GetOidString(&bytes);
            keep(text);
            PR_smprintf_free(text);
        }
        return 0; // "OID." first
    });
    add_row(row_name::oid_from_text, oids().size(), [] {
        uint64_t sum = 0;
        for (const std::string& text : dotted_oids()) {
            SECItem out{};
            if (SEC_StringToOID(nullptr, &out, text.c_str(), static_cast<PRUint32>(text.size())) != SECSuccess)
                continue;
            sum += answer_of(out.data, out.len);
            SECITEM_FreeItem(&out, PR_FALSE);
        }
        return sum;
    });
    add_row(row_name::find_by_contents, attribute_types().size(), []() -> uint64_t {
        for (const bytes_t& type : attribute_types()) {
            const SECItem bytes = item(type);
            keep(SECOID_FindOID(&bytes));
        }
        return 0;
    });
    add_row(row_name::alg_from_oid, signature_oids().size(), []() -> uint64_t {
        for (const bytes_t& oid : signature_oids()) {
            const SECItem bytes = item(oid);
            keep(SECOID_FindOIDTag(&bytes));
        }
        return 0;
    });
    add_row(row_name::print_name, plain_names().der.size(), [] { return print_all(plain_names().der); });
    add_row(row_name::encode_name, plain_names().lines.size(), []() -> uint64_t {
        for (const std::string& line : plain_names().lines) {
            CERTName* const name = CERT_AsciiToName(line.c_str());
            SECItem* const der = SEC_ASN1EncodeItem(nullptr, nullptr, name, SEC_ASN1_GET(CERT_NameTemplate));
            keep(der);
            SECITEM_FreeItem(der, PR_TRUE);
            CERT_DestroyName(name);
        }
        return 0;
    });
}

} // namespace pkider_bench
