/* A host without a C runtime: it includes the C header alone, and needs nothing but pkider_c. It encodes and prints a
   Name, reports a fault, and writes and reads a PKCS#12 file. The exit code is 0, or the number of the check that
   fails. */
#include <pkider/c/pkider.h>

static int is_equal(const uint8_t* bytes, const char* text, uint64_t size) {
    while (size != 0 && *bytes == (uint8_t)*text) ++bytes, ++text, --size;
    return size == 0;
}

static int names(void) {
    static const char line[] = "CN=Server 1, O=\"Example, Ltd\"", wrong[] = "CN=a;b";
    static const char expected[] = "O=Example\\, Ltd,CN=Server 1";
    static uint8_t der[128], text[128];
    pkider_dn_fault_t fault;
    pkider_output_t name = pkider_output_to_buffer(der, sizeof der);
    pkider_output_t printed = pkider_output_to_buffer(text, sizeof text);

    if (pkider_dn_encode(pkider_oid_map_default(), line, sizeof line - 1, &name, &fault) != PKIDER_OK) return 1;
    if (pkider_dn_print(pkider_oid_map_default(), der, name.size, PKIDER_DN_ORDER_REVERSED, &printed, 0) != PKIDER_OK)
        return 2;
    if (printed.size != sizeof expected - 1 || !is_equal(text, expected, printed.size)) return 3;
    if (pkider_dn_encode(0, wrong, sizeof wrong - 1, &name, &fault) != PKIDER_MALFORMED) return 4;
    if (fault.code != PKIDER_DN_FAULT_TYPE_UNKNOWN || fault.position != 0) return 5;
    return 0;
}

/* The callbacks are called by code of another compiler. The MAC is the size of what it is over. */

static int check_mac(void* context, const pkider_pkcs12_mac_t* mac, const uint8_t* data, uint64_t size) {
    (void)data;
    return context != 0 && mac->digest.size == 1 && mac->digest.data[0] == (uint8_t)size ? PKIDER_CALLBACK_OK
                                                                                       : PKIDER_CALLBACK_REFUSED;
}

static int make_mac(void* context, const uint8_t* data, uint64_t size, pkider_pkcs12_mac_t* mac) {
    (void)data;
    *(uint8_t*)context = (uint8_t)size;
    mac->digest.data = (const uint8_t*)context;
    mac->digest.size = 1;
    mac->iterations = 1;
    return PKIDER_CALLBACK_OK;
}

static int pkcs12(void) {
    static const uint8_t cert[] = {0x30, 0x00};
    static uint8_t file[512], digest;
    static pkider_pkcs12_item_t item;
    static pkider_pkcs12_contents_t contents;
    static pkider_pbe_crypto_t crypto;
    pkider_output_t out = pkider_output_to_buffer(file, sizeof file);
    pkider_pkcs12_t* record = 0;

    item.type = PKIDER_PKCS12_ITEM_CERT;
    item.data.data = cert;
    item.data.size = sizeof cert;
    contents.plain_items = &item;
    contents.num_plain_items = 1;
    crypto.check_mac = check_mac;
    crypto.make_mac = make_mac;
    crypto.context = &digest;
    if (pkider_pkcs12_write(&contents, &crypto, &out) != PKIDER_OK) return 6;
    if (pkider_pkcs12_read(file, out.size, &crypto, &record) != PKIDER_OK) return 7;
    if (pkider_pkcs12_num_items(record) != 1 || pkider_pkcs12_item(record, 0)->data.size != sizeof cert) return 8;
    pkider_pkcs12_release(record);
    return 0;
}

int entry(void) {
    const int fault = names();
    return fault != 0 ? fault : pkcs12();
}
