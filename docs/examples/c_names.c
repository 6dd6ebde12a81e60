#include <pkider/c/pkider.h>

#include <stdio.h>

int main(void) {
    const char line[] = "CN=Server 1, O=Example; Ltd";
    uint8_t der[256];
    pkider_output_t out = pkider_output_to_buffer(der, sizeof der);
    pkider_dn_fault_t fault;

    switch (pkider_dn_encode(pkider_oid_map_default(), line, sizeof line - 1, &out, &fault)) {
    case PKIDER_OK: printf("%u bytes of DER\n", (unsigned)out.size); return 0;
    case PKIDER_MALFORMED: printf("fault %u at byte %u\n", fault.code, fault.position); return 0;
    case PKIDER_NO_ROOM: printf("%u bytes are needed\n", (unsigned)out.size); return 1;
    default: return 1;
    }
}
