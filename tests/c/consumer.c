/* A host in C99: it encodes and prints a Name, reports a fault, and writes and reads a PKCS#12 file with a crypto
   object of its own. */
#include <pkider/c/pkider.h>

#include <stdio.h>
#include <string.h>

static int faults = 0;

static void check(int is_true, const char* what) {
    if (is_true) return;
    fprintf(stderr, "wrong: %s\n", what);
    ++faults;
}

/* Names */

static void encode_and_print(void) {
    const char line[] = "CN=Server 1, O=\"Example, Ltd\", C=RU";
    const char expected[] = "C=RU,O=Example\\, Ltd,CN=Server 1";
    uint8_t der[128];
    char text[128];
    pkider_output_t name = pkider_output_to_buffer(der, sizeof der);
    pkider_output_t printed = pkider_output_to_buffer(text, sizeof text);

    check(pkider_dn_encode(pkider_oid_map_default(), line, sizeof line - 1, &name, NULL) == PKIDER_OK, "encode");
    check(name.size == 57, "size of the Name");
    check(pkider_dn_print(pkider_oid_map_default(), der, name.size, PKIDER_DN_ORDER_REVERSED, &printed, NULL) ==
              PKIDER_OK,
          "print");
    check(printed.size == sizeof expected - 1 && memcmp(text, expected, sizeof expected - 1) == 0, "printed line");
}

static void report_faults(void) {
    const char line[] = "CN=a;b";
    const uint8_t der[] = {0x30, 0x02, 0x30, 0x00};
    pkider_output_t out = pkider_output_to_buffer(NULL, 0);
    pkider_dn_fault_t fault;

    check(pkider_dn_encode(pkider_oid_map_default(), line, sizeof line - 1, &out, &fault) == PKIDER_MALFORMED, "fault");
    check(fault.code == PKIDER_DN_FAULT_UNESCAPED_SPECIAL && fault.position == 4, "fault of the line");
    check(pkider_dn_print(NULL, der, sizeof der, PKIDER_DN_ORDER_AS_ENCODED, &out, &fault) == PKIDER_MALFORMED, "DER");
    check(fault.code == PKIDER_DN_FAULT_NOT_A_SET && fault.position == 2, "fault of the DER");
}

/* PKCS#12: the cipher turns every bit, the MAC is a sum. Not for real files. */

typedef struct crypto_state_t {
    uint8_t digest[1];
    uint8_t salt[8];
} crypto_state_t;

static uint8_t sum(const uint8_t* data, uint64_t size) {
    uint8_t out = 0;
    while (size-- != 0) out = (uint8_t)(out + *data++);
    return out;
}

static int turn(const uint8_t* data, uint64_t size, const pkider_sink_t* out) {
    for (; size != 0; --size, ++data) {
        const uint8_t turned = (uint8_t)(*data ^ 0xFF);
        if (out->write(out->context, &turned, 1) != 0) return PKIDER_CALLBACK_FAILED;
    }
    return PKIDER_CALLBACK_OK;
}

static int check_mac(void* context, const pkider_pkcs12_mac_t* mac, const uint8_t* data, uint64_t size) {
    (void)context;
    return mac->digest.size == 1 && mac->digest.data[0] == sum(data, size) ? PKIDER_CALLBACK_OK
                                                                           : PKIDER_CALLBACK_REFUSED;
}

static int make_mac(void* context, const uint8_t* data, uint64_t size, pkider_pkcs12_mac_t* mac) {
    crypto_state_t* const state = context;
    state->digest[0] = sum(data, size);
    mac->digest.data = state->digest;
    mac->digest.size = sizeof state->digest;
    mac->salt.data = state->salt;
    mac->salt.size = sizeof state->salt;
    mac->iterations = 2000;
    return PKIDER_CALLBACK_OK;
}

static int decrypt(void* context, const pkider_encrypted_gost_key_t* params, const uint8_t* data, uint64_t size,
                   const pkider_sink_t* plain) {
    (void)context;
    return params->iterations == 2000 ? turn(data, size, plain) : PKIDER_CALLBACK_REFUSED;
}

static int encrypt(void* context, const uint8_t* data, uint64_t size, pkider_encrypted_gost_key_t* params,
                   const pkider_sink_t* encrypted) {
    crypto_state_t* const state = context;
    params->salt.data = state->salt;
    params->salt.size = sizeof state->salt;
    params->iv = params->salt;
    params->iterations = 2000;
    return turn(data, size, encrypted);
}

static void write_and_read_pkcs12(void) {
    static const uint8_t key[] = {0x30, 0x03, 0x02, 0x01, 0x22};
    crypto_state_t state = {{0}, {1, 2, 3, 4, 5, 6, 7, 8}};
    const pkider_pbe_crypto_t crypto = {check_mac, make_mac, decrypt, encrypt, &state};
    pkider_pkcs12_item_t item;
    pkider_pkcs12_contents_t contents;
    uint8_t file[1024];
    pkider_output_t out = pkider_output_to_buffer(file, sizeof file);
    pkider_pkcs12_t* record = NULL;

    memset(&item, 0, sizeof item);
    item.type = PKIDER_PKCS12_ITEM_KEY;
    item.data.data = key;
    item.data.size = sizeof key;
    memset(&contents, 0, sizeof contents);
    contents.protected_items = &item;
    contents.num_protected_items = 1;

    check(pkider_pkcs12_write(&contents, &crypto, &out) == PKIDER_OK, "write PKCS#12");
    check(pkider_pkcs12_read(file, out.size, &crypto, &record) == PKIDER_OK, "read PKCS#12");
    check(pkider_pkcs12_num_items(record) == 1, "number of items");
    if (pkider_pkcs12_num_items(record) == 1) {
        const pkider_bytes_t read = pkider_pkcs12_item(record, 0)->data;
        check(read.size == sizeof key && memcmp(read.data, key, sizeof key) == 0, "key");
    }
    pkider_pkcs12_release(record);

    file[out.size - 30] ^= 1; /* in the MAC's salt or digest, or in what it protects */
    check(pkider_pkcs12_read(file, out.size, &crypto, &record) != PKIDER_OK && record == NULL, "changed file");
}

int main(void) {
    encode_and_print();
    report_faults();
    write_and_read_pkcs12();
    if (faults == 0) printf("pkider %s: a host in C\n", pkider_version());
    return faults == 0 ? 0 : 1;
}
