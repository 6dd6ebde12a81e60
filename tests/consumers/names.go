// A host in Go, by cgo: it encodes and prints a Name, reports a fault, and writes and reads a PKCS#12 file with a crypto
// object of its own.
package main

/*
#include <pkider/c/pkider.h>
#include <stdlib.h>

int checkMac(void*, pkider_pkcs12_mac_t*, uint8_t*, uint64_t);
int makeMac(void*, uint8_t*, uint64_t, pkider_pkcs12_mac_t*);
int decrypt(void*, pkider_encrypted_gost_key_t*, uint8_t*, uint64_t, pkider_sink_t*);
int encrypt(void*, uint8_t*, uint64_t, pkider_encrypted_gost_key_t*, pkider_sink_t*);

// The exported functions of Go have no const.
static pkider_pbe_crypto_t crypto_of_go(void) {
    pkider_pbe_crypto_t out = {
        (int (*)(void*, const pkider_pkcs12_mac_t*, const uint8_t*, uint64_t))checkMac,
        (int (*)(void*, const uint8_t*, uint64_t, pkider_pkcs12_mac_t*))makeMac,
        (int (*)(void*, const pkider_encrypted_gost_key_t*, const uint8_t*, uint64_t, const pkider_sink_t*))decrypt,
        (int (*)(void*, const uint8_t*, uint64_t, pkider_encrypted_gost_key_t*, const pkider_sink_t*))encrypt, NULL};
    return out;
}

static int write_to(const pkider_sink_t* sink, const void* bytes, uint64_t count) {
    return sink->write(sink->context, bytes, count);
}
*/
import "C"

import (
	"bytes"
	"fmt"
	"os"
	"unsafe"
)

// What the callbacks give must be in memory of C until the writer returns.
var digest = (*C.uint8_t)(C.malloc(1))
var salt = (*C.uint8_t)(C.CBytes([]byte{1, 2, 3, 4, 5, 6, 7, 8}))

func goBytes(data *C.uint8_t, size C.uint64_t) []byte {
	return C.GoBytes(unsafe.Pointer(data), C.int(size))
}

func sum(data []byte) (out byte) {
	for _, b := range data {
		out += b
	}
	return
}

// The cipher turns every bit, the MAC is a sum. Not for real files.
func turn(data []byte, sink *C.pkider_sink_t) C.int {
	for i := range data {
		data[i] ^= 0xFF
	}
	return 2 * C.write_to(sink, unsafe.Pointer(&data[0]), C.uint64_t(len(data)))
}

//export checkMac
func checkMac(_ unsafe.Pointer, mac *C.pkider_pkcs12_mac_t, data *C.uint8_t, size C.uint64_t) C.int {
	if bytes.Equal(goBytes(mac.digest.data, mac.digest.size), []byte{sum(goBytes(data, size))}) {
		return C.PKIDER_CALLBACK_OK
	}
	return C.PKIDER_CALLBACK_REFUSED
}

//export makeMac
func makeMac(_ unsafe.Pointer, data *C.uint8_t, size C.uint64_t, mac *C.pkider_pkcs12_mac_t) C.int {
	*digest = C.uint8_t(sum(goBytes(data, size)))
	mac.digest = C.pkider_bytes_t{data: digest, size: 1}
	mac.salt = C.pkider_bytes_t{data: salt, size: 8}
	mac.iterations = 2000
	return C.PKIDER_CALLBACK_OK
}

//export decrypt
func decrypt(_ unsafe.Pointer, key *C.pkider_encrypted_gost_key_t, data *C.uint8_t, size C.uint64_t, out *C.pkider_sink_t) C.int {
	return turn(goBytes(data, size), out)
}

//export encrypt
func encrypt(_ unsafe.Pointer, data *C.uint8_t, size C.uint64_t, key *C.pkider_encrypted_gost_key_t, out *C.pkider_sink_t) C.int {
	key.salt = C.pkider_bytes_t{data: salt, size: 8}
	key.iv = key.salt
	key.iterations = 2000
	return turn(goBytes(data, size), out)
}

// output is a buffer in memory of C.
func output() (out C.pkider_output_t) {
	const capacity = 4096
	return C.pkider_output_to_buffer(C.malloc(capacity), capacity)
}

func encode(line string) ([]byte, C.pkider_status_t, C.pkider_dn_fault_t) {
	var fault C.pkider_dn_fault_t
	out, text := output(), C.CString(line)
	defer C.free(unsafe.Pointer(out.data))
	defer C.free(unsafe.Pointer(text))
	status := C.pkider_dn_encode(C.pkider_oid_map_default(), text, C.uint64_t(len(line)), &out, &fault)
	return goBytes(out.data, out.size), status, fault
}

func print(der []byte) (string, C.pkider_status_t, C.pkider_dn_fault_t) {
	var fault C.pkider_dn_fault_t
	out := output()
	defer C.free(unsafe.Pointer(out.data))
	status := C.pkider_dn_print(C.pkider_oid_map_default(), (*C.uint8_t)(&der[0]), C.uint64_t(len(der)),
		C.PKIDER_DN_ORDER_REVERSED, &out, &fault)
	return string(goBytes(out.data, out.size)), status, fault
}

func check(isTrue bool, what string) {
	if !isTrue {
		fmt.Fprintln(os.Stderr, "wrong:", what)
		os.Exit(1)
	}
}

func main() {
	der, status, _ := encode("CN=Server 1, O=\"Example, Ltd\", C=RU")
	check(status == C.PKIDER_OK && len(der) == 57, "encode")
	line, status, _ := print(der)
	check(status == C.PKIDER_OK && line == "C=RU,O=Example\\, Ltd,CN=Server 1", "print")
	_, status, fault := encode("CN=a;b")
	check(status == C.PKIDER_MALFORMED && fault.code == 10 && fault.position == 4, "fault of a line")
	_, status, fault = print([]byte{0x30, 2, 0x30, 0})
	check(status == C.PKIDER_MALFORMED && fault.code == 12 && fault.position == 2, "fault of DER")

	key := []byte{0x30, 3, 2, 1, 0x22}
	item := (*C.pkider_pkcs12_item_t)(C.calloc(1, C.sizeof_pkider_pkcs12_item_t))
	item.data = C.pkider_bytes_t{data: (*C.uint8_t)(C.CBytes(key)), size: C.uint64_t(len(key))}
	contents := C.pkider_pkcs12_contents_t{protected_items: item, num_protected_items: 1}
	crypto, out := C.crypto_of_go(), output()
	check(C.pkider_pkcs12_write(&contents, &crypto, &out) == C.PKIDER_OK, "write PKCS#12")

	var record *C.pkider_pkcs12_t
	check(C.pkider_pkcs12_read(out.data, out.size, &crypto, &record) == C.PKIDER_OK, "read PKCS#12")
	defer C.pkider_pkcs12_release(record)
	check(C.pkider_pkcs12_num_items(record) == 1, "number of items")
	read := C.pkider_pkcs12_item(record, 0).data
	check(bytes.Equal(goBytes(read.data, read.size), key), "key")
	fmt.Println("a host in Go")
}
