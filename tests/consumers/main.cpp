// A host of a few lines: what it prints shows that headers and library belong together.
#include <pkider/dn.h>

#include <cstdio>

int main() {
    std::string der, text;
    if (!printable_to_asn_dn("CN=a,C=RU", der, OID_MAP_HANDLE_DEFAULT)) return 1;
    const auto* const name = reinterpret_cast<const uint8_t*>(der.data());
    const auto size = static_cast<uint32_t>(der.size());
    if (!asn_dn_to_printable(name, size, text, DN_ORDER_REVERSED, OID_MAP_HANDLE_DEFAULT)) return 1;
    std::puts(text.c_str());
    return text == "C=RU,CN=a" ? 0 : 1;
}
