// A host in Go, by cgo: it encodes and prints a Name, reports a fault, and reads and writes PKCS#12 files with a crypto
// object of its own, by libgcrypt.
//
//	names FOLDER    with the files of tests/tools/fixtures, which OpenSSL made
package main

/*
#cgo LDFLAGS: -lgcrypt
#include <pkider/c/pkider.h>

#include <gcrypt.h>
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
    return count == 0 ? 0 : sink->write(sink->context, bytes, count);
}

// A macro, and a function that cgo cannot call.
static gcry_error_t set_sbox(gcry_cipher_hd_t cipher) {
    return gcry_cipher_ctl(cipher, GCRYCTL_SET_SBOX, (void*)"1.2.643.2.2.31.1", 0);
}
*/
import "C"

import (
	"bytes"
	"fmt"
	"os"
	"path/filepath"
	"unsafe"
)

func goBytes(data *C.uint8_t, size C.uint64_t) []byte {
	return C.GoBytes(unsafe.Pointer(data), C.int(size))
}

func spanBytes(span C.pkider_bytes_t) []byte {
	return goBytes(span.data, span.size)
}

// The cryptography of PKCS#12: PBKDF2 with HMAC GOST R 34.11-94, and GOST 28147-89 with the set 1.2.643.2.2.31.1. It
// reads what other programs make; docs/crypto_object.md describes the OCTET STRING around the contents.

const iterations, maxIterations = 2000, 1000000

var password = "secret"

// What the callbacks give must be in memory of C until the writer returns.
var salt = (*C.uint8_t)(C.malloc(16))
var iv = (*C.uint8_t)(C.malloc(8))
var digest = (*C.uint8_t)(C.malloc(32))

func pointer(data []byte) unsafe.Pointer {
	if len(data) == 0 {
		return nil
	}
	return unsafe.Pointer(&data[0])
}

// derive gives nil for a count that a file must not ask for.
func derive(salt []byte, iterations C.uint32_t, size int) []byte {
	key, secret := make([]byte, size), []byte(password)
	if iterations > maxIterations || C.gcry_kdf_derive(pointer(secret), C.size_t(len(secret)), C.GCRY_KDF_PBKDF2,
		C.GCRY_MD_GOSTR3411_CP, pointer(salt), C.size_t(len(salt)), C.ulong(iterations), C.size_t(size), pointer(key)) != 0 {
		return nil
	}
	return key
}

// hmac is over the contents of an OCTET STRING; its key is the last of 96 derived bytes. The caller closes it.
func hmac(salt []byte, iterations C.uint32_t, data *C.uint8_t, size C.uint64_t) (handle C.gcry_mac_hd_t, isMade bool) {
	var contents C.pkider_bytes_t
	key := derive(salt, iterations, 96)
	if key == nil || C.pkider_der_read(C.PKIDER_TAG_OCTET_STRING, data, size, &contents) != C.PKIDER_OK ||
		C.gcry_mac_open(&handle, C.GCRY_MAC_HMAC_GOSTR3411_CP, 0, nil) != 0 {
		return nil, false
	}
	return handle, C.gcry_mac_setkey(handle, pointer(key[64:]), 32) == 0 &&
		C.gcry_mac_write(handle, unsafe.Pointer(contents.data), C.size_t(contents.size)) == 0
}

// openCipher gives nil when libgcrypt or the count refuses.
func openCipher(salt []byte, iterations C.uint32_t, iv []byte) (handle C.gcry_cipher_hd_t) {
	key := derive(salt, iterations, 32)
	if key == nil || C.gcry_cipher_open(&handle, C.GCRY_CIPHER_GOST28147_MESH, C.GCRY_CIPHER_MODE_CFB, 0) != 0 {
		return nil
	}
	if C.set_sbox(handle) != 0 || C.gcry_cipher_setkey(handle, pointer(key), 32) != 0 ||
		C.gcry_cipher_setiv(handle, pointer(iv), C.size_t(len(iv))) != 0 {
		C.gcry_cipher_close(handle)
		return nil
	}
	return handle
}

// octetStringHeader is that of X.690 8.1.3.
func octetStringHeader(length int) []byte {
	if length < 0x80 {
		return []byte{0x04, byte(length)}
	}
	octets := []byte{}
	for ; length != 0; length >>= 8 {
		octets = append([]byte{byte(length)}, octets...)
	}
	return append([]byte{0x04, 0x80 | byte(len(octets))}, octets...)
}

func give(data []byte, sink *C.pkider_sink_t) C.int {
	return C.PKIDER_CALLBACK_FAILED * C.write_to(sink, pointer(data), C.uint64_t(len(data)))
}

//export checkMac
func checkMac(_ unsafe.Pointer, mac *C.pkider_pkcs12_mac_t, data *C.uint8_t, size C.uint64_t) C.int {
	gostr341194 := []byte{0x06, 0x06, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x09}
	if !bytes.HasPrefix(spanBytes(mac.digest_alg), gostr341194) {
		return C.PKIDER_CALLBACK_REFUSED
	}
	handle, isMade := hmac(spanBytes(mac.salt), mac.iterations, data, size)
	defer C.gcry_mac_close(handle)
	if isMade && C.gcry_mac_verify(handle, unsafe.Pointer(mac.digest.data), C.size_t(mac.digest.size)) == 0 {
		return C.PKIDER_CALLBACK_OK
	}
	return C.PKIDER_CALLBACK_REFUSED
}

//export makeMac
func makeMac(_ unsafe.Pointer, data *C.uint8_t, size C.uint64_t, mac *C.pkider_pkcs12_mac_t) C.int {
	handle, isMade := hmac(goBytes(salt, 16), iterations, data, size)
	defer C.gcry_mac_close(handle)
	length := C.size_t(32)
	if !isMade || C.gcry_mac_read(handle, unsafe.Pointer(digest), &length) != 0 {
		return C.PKIDER_CALLBACK_FAILED
	}
	mac.digest = C.pkider_bytes_t{data: digest, size: 32}
	mac.salt = C.pkider_bytes_t{data: salt, size: 16}
	mac.iterations = iterations
	return C.PKIDER_CALLBACK_OK
}

//export decrypt
func decrypt(_ unsafe.Pointer, key *C.pkider_encrypted_gost_key_t, data *C.uint8_t, size C.uint64_t, out *C.pkider_sink_t) C.int {
	cipher := openCipher(spanBytes(key.salt), key.iterations, spanBytes(key.iv))
	defer C.gcry_cipher_close(cipher)
	plain := goBytes(data, size)
	if cipher == nil || C.gcry_cipher_decrypt(cipher, pointer(plain), C.size_t(len(plain)), nil, 0) != 0 {
		return C.PKIDER_CALLBACK_REFUSED
	}
	if key.encrypted.data == nil {
		plain = append(octetStringHeader(len(plain)), plain...)
	}
	return give(plain, out)
}

//export encrypt
func encrypt(_ unsafe.Pointer, data *C.uint8_t, size C.uint64_t, key *C.pkider_encrypted_gost_key_t, out *C.pkider_sink_t) C.int {
	C.gcry_randomize(unsafe.Pointer(salt), 16, C.GCRY_STRONG_RANDOM)
	C.gcry_randomize(unsafe.Pointer(iv), 8, C.GCRY_STRONG_RANDOM)
	key.salt = C.pkider_bytes_t{data: salt, size: 16}
	key.iv = C.pkider_bytes_t{data: iv, size: 8}
	key.iterations = iterations

	var contents C.pkider_bytes_t
	cipher := openCipher(goBytes(salt, 16), iterations, goBytes(iv, 8))
	defer C.gcry_cipher_close(cipher)
	if cipher == nil || C.pkider_der_read(C.PKIDER_TAG_OCTET_STRING, data, size, &contents) != C.PKIDER_OK {
		return C.PKIDER_CALLBACK_FAILED
	}
	encrypted := spanBytes(contents)
	if C.gcry_cipher_encrypt(cipher, pointer(encrypted), C.size_t(len(encrypted)), nil, 0) != 0 {
		return C.PKIDER_CALLBACK_FAILED
	}
	return give(encrypted, out)
}

type item struct {
	kind C.pkider_pkcs12_item_type_t
	data []byte
}

func readPkcs12(file []byte) (items []item, status C.pkider_status_t) {
	var record *C.pkider_pkcs12_t
	crypto := C.crypto_of_go()
	status = C.pkider_pkcs12_read((*C.uint8_t)(pointer(file)), C.uint64_t(len(file)), &crypto, &record)
	defer C.pkider_pkcs12_release(record)
	for number := C.uint64_t(0); number < C.pkider_pkcs12_num_items(record); number++ {
		read := C.pkider_pkcs12_item(record, number)
		items = append(items, item{read._type, spanBytes(read.data)})
	}
	return
}

func writePkcs12(key []byte) ([]byte, C.pkider_status_t) {
	row := (*C.pkider_pkcs12_item_t)(C.calloc(1, C.sizeof_pkider_pkcs12_item_t))
	row.data = C.pkider_bytes_t{data: (*C.uint8_t)(C.CBytes(key)), size: C.uint64_t(len(key))}
	defer C.free(unsafe.Pointer(row))
	defer C.free(unsafe.Pointer(row.data.data))
	contents := C.pkider_pkcs12_contents_t{protected_items: row, num_protected_items: 1}
	crypto, out := C.crypto_of_go(), output()
	defer C.free(unsafe.Pointer(out.data))
	status := C.pkider_pkcs12_write(&contents, &crypto, &out)
	return goBytes(out.data, out.size), status
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

func names() {
	der, status, _ := encode("CN=Server 1, O=\"Example, Ltd\", C=RU")
	check(status == C.PKIDER_OK && len(der) == 57, "encode")
	line, status, _ := print(der)
	check(status == C.PKIDER_OK && line == "C=RU,O=Example\\, Ltd,CN=Server 1", "print")
	_, status, fault := encode("CN=a;b")
	check(status == C.PKIDER_MALFORMED && fault.code == 10 && fault.position == 4, "fault of a line")
	_, status, fault = print([]byte{0x30, 2, 0x30, 0})
	check(status == C.PKIDER_MALFORMED && fault.code == 12 && fault.position == 2, "fault of DER")
}

func pkcs12Files(folder string) {
	C.gcry_check_version(nil)
	open := func(name string) []byte {
		file, err := os.ReadFile(filepath.Join(folder, name))
		check(err == nil, name)
		return file
	}
	file, key := open("three_certs.p12"), open("key.der")
	items, status := readPkcs12(file)
	check(status == C.PKIDER_OK && len(items) == 4, "read the file of OpenSSL")
	check(items[0].kind == C.PKIDER_PKCS12_ITEM_CERT && bytes.Equal(items[0].data, open("first_cert.der")), "certificate")
	check(items[3].kind == C.PKIDER_PKCS12_ITEM_KEY && bytes.Equal(items[3].data, key), "key")

	written, status := writePkcs12(key)
	check(status == C.PKIDER_OK, "write a file")
	items, status = readPkcs12(written)
	check(status == C.PKIDER_OK && len(items) == 1 && bytes.Equal(items[0].data, key), "read the file again")

	password = "Secret"
	_, status = readPkcs12(file)
	check(status == C.PKIDER_WRONG_MAC, "wrong password")
}

func main() {
	names()
	pkcs12Files(os.Args[1])
	fmt.Println("a host in Go")
}
