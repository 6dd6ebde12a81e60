// A host in Rust, without a crate: it encodes and prints a Name, reports a fault, and reads and writes PKCS#12 files
// with a crypto object of its own, by libgcrypt. The declarations repeat include/pkider/c/pkider.h and gcrypt.h.
//
//     names FOLDER    with the files of tests/tools/fixtures, which OpenSSL made
use std::ffi::c_void;
use std::os::raw::{c_char, c_int, c_uint, c_ulong};
use std::ptr::{null, null_mut};

#[repr(C)]
#[derive(Clone, Copy)]
struct Bytes {
    data: *const u8,
    size: u64,
}

type Write = extern "C" fn(*mut c_void, *const u8, u64) -> c_int;

#[repr(C)]
#[derive(Clone, Copy)]
struct Sink {
    write: Option<Write>,
    context: *mut c_void,
}

#[repr(C)]
struct Output {
    sink: Sink,
    data: *mut u8,
    capacity: u64,
    size: u64,
}

#[repr(C)]
#[derive(Default, Debug, PartialEq)]
struct Fault {
    code: u16,
    position: u16,
}

#[repr(C)]
struct Mac {
    digest_alg: Bytes,
    digest: Bytes,
    salt: Bytes,
    iterations: u32,
}

#[repr(C)]
struct EncryptedKey {
    salt: Bytes,
    iterations: u32,
    iv: Bytes,
    encrypted: Bytes,
}

#[repr(C)]
struct Item {
    kind: u32,
    data: Bytes,
    friendly_name: Bytes,
    local_key_id: Bytes,
}

#[repr(C)]
struct Contents {
    plain_items: *const Item,
    num_plain_items: u64,
    protected_items: *const Item,
    num_protected_items: u64,
    mac: Mac,
}

#[repr(C)]
struct Crypto {
    check_mac: extern "C" fn(*mut c_void, *const Mac, *const u8, u64) -> c_int,
    make_mac: extern "C" fn(*mut c_void, *const u8, u64, *mut Mac) -> c_int,
    decrypt: extern "C" fn(*mut c_void, *const EncryptedKey, *const u8, u64, *const Sink) -> c_int,
    encrypt: extern "C" fn(*mut c_void, *const u8, u64, *mut EncryptedKey, *const Sink) -> c_int,
    context: *mut c_void,
}

const REFUSED: c_int = 1;
const FAILED: c_int = 2;

#[link(name = "pkider_c")]
extern "C" {
    fn pkider_der_read(tag: u32, data: *const u8, size: u64, contents: *mut Bytes) -> c_int;
    fn pkider_oid_map_default() -> *const c_void;
    fn pkider_dn_encode(map: *const c_void, line: *const u8, size: u64, out: *mut Output, fault: *mut Fault) -> c_int;
    fn pkider_dn_print(
        map: *const c_void, der: *const u8, size: u64, order: u32, out: *mut Output, fault: *mut Fault,
    ) -> c_int;
    fn pkider_pkcs12_read(data: *const u8, size: u64, crypto: *const Crypto, out: *mut *mut c_void) -> c_int;
    fn pkider_pkcs12_num_items(record: *const c_void) -> u64;
    fn pkider_pkcs12_item(record: *const c_void, number: u64) -> *const Item;
    fn pkider_pkcs12_release(record: *mut c_void);
    fn pkider_pkcs12_write(contents: *const Contents, crypto: *const Crypto, out: *mut Output) -> c_int;
}

const NONE: Bytes = Bytes { data: null(), size: 0 };

fn span(bytes: &[u8]) -> Bytes {
    Bytes { data: bytes.as_ptr(), size: bytes.len() as u64 }
}

unsafe fn slice<'a>(data: *const u8, size: u64) -> &'a [u8] {
    if size == 0 { &[] } else { std::slice::from_raw_parts(data, size as usize) }
}

extern "C" fn collect(context: *mut c_void, bytes: *const u8, count: u64) -> c_int {
    unsafe { (*(context as *mut Vec<u8>)).extend_from_slice(slice(bytes, count)) };
    0
}

/// What a function gives to a sink, or its status.
fn collected(call: impl FnOnce(*mut Output) -> c_int) -> Result<Vec<u8>, c_int> {
    let mut bytes: Vec<u8> = Vec::new();
    let sink = Sink { write: Some(collect), context: &mut bytes as *mut Vec<u8> as *mut c_void };
    let mut out = Output { sink, data: null_mut(), capacity: 0, size: 0 };
    match call(&mut out) {
        0 => Ok(bytes),
        status => Err(status),
    }
}

fn encode(line: &str, fault: &mut Fault) -> Result<Vec<u8>, c_int> {
    collected(|out| unsafe {
        pkider_dn_encode(pkider_oid_map_default(), line.as_ptr(), line.len() as u64, out, fault)
    })
}

fn print(der: &[u8], fault: &mut Fault) -> Result<Vec<u8>, c_int> {
    collected(|out| unsafe { pkider_dn_print(pkider_oid_map_default(), der.as_ptr(), der.len() as u64, 1, out, fault) })
}

// The cryptography of PKCS#12: PBKDF2 with HMAC GOST R 34.11-94, and GOST 28147-89 with the set 1.2.643.2.2.31.1. It
// reads what other programs make; docs/crypto_object.md describes the OCTET STRING around the contents.

#[link(name = "gcrypt")]
extern "C" {
    fn gcry_check_version(required: *const c_char) -> *const c_char;
    fn gcry_randomize(buffer: *mut u8, length: usize, level: c_int);
    fn gcry_kdf_derive(
        password: *const u8, password_len: usize, kdf: c_int, hash: c_int, salt: *const u8, salt_len: usize,
        iterations: c_ulong, key_len: usize, key: *mut u8,
    ) -> c_uint;
    fn gcry_mac_open(handle: *mut *mut c_void, algorithm: c_int, flags: c_uint, context: *mut c_void) -> c_uint;
    fn gcry_mac_setkey(handle: *mut c_void, key: *const u8, length: usize) -> c_uint;
    fn gcry_mac_write(handle: *mut c_void, data: *const u8, length: usize) -> c_uint;
    fn gcry_mac_read(handle: *mut c_void, mac: *mut u8, length: *mut usize) -> c_uint;
    fn gcry_mac_verify(handle: *mut c_void, mac: *const u8, length: usize) -> c_uint;
    fn gcry_mac_close(handle: *mut c_void);
    fn gcry_cipher_open(handle: *mut *mut c_void, algorithm: c_int, mode: c_int, flags: c_uint) -> c_uint;
    fn gcry_cipher_ctl(handle: *mut c_void, command: c_int, buffer: *const c_char, length: usize) -> c_uint;
    fn gcry_cipher_setkey(handle: *mut c_void, key: *const u8, length: usize) -> c_uint;
    fn gcry_cipher_setiv(handle: *mut c_void, iv: *const u8, length: usize) -> c_uint;
    fn gcry_cipher_encrypt(h: *mut c_void, out: *mut u8, size: usize, input: *const u8, length: usize) -> c_uint;
    fn gcry_cipher_decrypt(h: *mut c_void, out: *mut u8, size: usize, input: *const u8, length: usize) -> c_uint;
    fn gcry_cipher_close(handle: *mut c_void);
}

const PBKDF2: c_int = 34;
const GOSTR3411_CP: c_int = 311;
const HMAC_GOSTR3411_CP: c_int = 119;
const GOST28147_MESH: c_int = 317;
const CFB: c_int = 2;
const SET_SBOX: c_int = 73;
const STRONG_RANDOM: c_int = 1;

const ITERATIONS: u32 = 2000;
const MAX_ITERATIONS: u32 = 1_000_000;

/// What the callbacks work with, and what they give to the writer, which needs it until it returns.
struct Host {
    password: &'static [u8],
    salt: [u8; 16],
    iv: [u8; 8],
    digest: [u8; 32],
}

impl Host {
    fn new(password: &'static str) -> Host {
        Host { password: password.as_bytes(), salt: [0; 16], iv: [0; 8], digest: [0; 32] }
    }

    unsafe fn of<'a>(context: *mut c_void) -> &'a mut Host {
        &mut *(context as *mut Host)
    }

    fn crypto(&mut self) -> Crypto {
        Crypto { check_mac, make_mac, decrypt, encrypt, context: self as *mut Host as *mut c_void }
    }

    /// Derives `out.len()` bytes. A file can ask for any count.
    unsafe fn derive(&self, salt: &[u8], iterations: u32, out: &mut [u8]) -> bool {
        iterations <= MAX_ITERATIONS
            && gcry_kdf_derive(
                self.password.as_ptr(), self.password.len(), PBKDF2, GOSTR3411_CP, salt.as_ptr(), salt.len(),
                iterations as c_ulong, out.len(), out.as_mut_ptr(),
            ) == 0
    }

    /// The HMAC over the contents of an OCTET STRING, whose key is the last of 96 derived bytes.
    unsafe fn mac(
        &self, salt: &[u8], iterations: u32, element: &[u8], finish: impl FnOnce(*mut c_void) -> bool,
    ) -> bool {
        let mut key = [0u8; 96];
        let mut contents = NONE;
        let mut handle = null_mut();
        if pkider_der_read(0x04, element.as_ptr(), element.len() as u64, &mut contents) != 0
            || !self.derive(salt, iterations, &mut key)
            || gcry_mac_open(&mut handle, HMAC_GOSTR3411_CP, 0, null_mut()) != 0
        {
            return false;
        }
        let is_done = gcry_mac_setkey(handle, key[64..].as_ptr(), 32) == 0
            && gcry_mac_write(handle, contents.data, contents.size as usize) == 0
            && finish(handle);
        gcry_mac_close(handle);
        is_done
    }

    /// Encrypts or decrypts in place.
    unsafe fn cipher(&self, salt: &[u8], iterations: u32, iv: &[u8], bytes: &mut [u8], is_decryption: bool) -> bool {
        let mut key = [0u8; 32];
        let mut handle = null_mut();
        if !self.derive(salt, iterations, &mut key) || gcry_cipher_open(&mut handle, GOST28147_MESH, CFB, 0) != 0 {
            return false;
        }
        let run = if is_decryption { gcry_cipher_decrypt } else { gcry_cipher_encrypt };
        let is_done = gcry_cipher_ctl(handle, SET_SBOX, b"1.2.643.2.2.31.1\0".as_ptr() as *const c_char, 0) == 0
            && gcry_cipher_setkey(handle, key.as_ptr(), key.len()) == 0
            && gcry_cipher_setiv(handle, iv.as_ptr(), iv.len()) == 0
            && run(handle, bytes.as_mut_ptr(), bytes.len(), null(), 0) == 0;
        gcry_cipher_close(handle);
        is_done
    }
}

/// The header of an OCTET STRING (X.690 8.1.3).
fn octet_string_header(length: usize) -> Vec<u8> {
    let octets: Vec<u8> = length.to_be_bytes().into_iter().skip_while(|octet| *octet == 0).collect();
    match length {
        0..=0x7F => vec![0x04, length as u8],
        _ => [vec![0x04, 0x80 | octets.len() as u8], octets].concat(),
    }
}

unsafe fn give(bytes: &[u8], sink: *const Sink) -> c_int {
    FAILED * ((*sink).write.unwrap())((*sink).context, bytes.as_ptr(), bytes.len() as u64)
}

unsafe fn of_span<'a>(span: Bytes) -> &'a [u8] {
    slice(span.data, span.size)
}

extern "C" fn check_mac(context: *mut c_void, mac: *const Mac, data: *const u8, size: u64) -> c_int {
    const GOSTR3411_94: [u8; 8] = [0x06, 0x06, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x09];
    unsafe {
        let mac = &*mac;
        let digest = of_span(mac.digest);
        let is_right = of_span(mac.digest_alg).starts_with(&GOSTR3411_94)
            && Host::of(context).mac(of_span(mac.salt), mac.iterations, slice(data, size), |handle| {
                gcry_mac_verify(handle, digest.as_ptr(), digest.len()) == 0
            });
        if is_right { 0 } else { REFUSED }
    }
}

extern "C" fn make_mac(context: *mut c_void, data: *const u8, size: u64, mac: *mut Mac) -> c_int {
    unsafe {
        let host = Host::of(context);
        let mut digest = [0u8; 32];
        let mut length = digest.len();
        let is_made = host.mac(&host.salt, ITERATIONS, slice(data, size), |handle| {
            gcry_mac_read(handle, digest.as_mut_ptr(), &mut length) == 0
        });
        host.digest = digest;
        (*mac).digest = span(&host.digest);
        (*mac).salt = span(&host.salt);
        (*mac).iterations = ITERATIONS;
        if is_made { 0 } else { FAILED }
    }
}

extern "C" fn decrypt(
    context: *mut c_void, key: *const EncryptedKey, data: *const u8, size: u64, plain: *const Sink,
) -> c_int {
    unsafe {
        let key = &*key;
        let mut bytes = slice(data, size).to_vec();
        if !Host::of(context).cipher(of_span(key.salt), key.iterations, of_span(key.iv), &mut bytes, true) {
            return REFUSED;
        }
        let is_contents = key.encrypted.data.is_null();
        give(&[if is_contents { octet_string_header(bytes.len()) } else { vec![] }, bytes].concat(), plain)
    }
}

extern "C" fn encrypt(
    context: *mut c_void, data: *const u8, size: u64, key: *mut EncryptedKey, out: *const Sink,
) -> c_int {
    unsafe {
        let host = Host::of(context);
        gcry_randomize(host.salt.as_mut_ptr(), host.salt.len(), STRONG_RANDOM);
        gcry_randomize(host.iv.as_mut_ptr(), host.iv.len(), STRONG_RANDOM);
        let mut contents = NONE;
        if pkider_der_read(0x04, data, size, &mut contents) != 0 {
            return FAILED;
        }
        let mut bytes = of_span(contents).to_vec();
        if !host.cipher(&host.salt, ITERATIONS, &host.iv, &mut bytes, false) {
            return FAILED;
        }
        (*key).salt = span(&host.salt);
        (*key).iv = span(&host.iv);
        (*key).iterations = ITERATIONS;
        give(&bytes, out)
    }
}

/// The type and the bytes of each item of a file, or the status.
fn read_pkcs12(file: &[u8], password: &'static str) -> Result<Vec<(u32, Vec<u8>)>, c_int> {
    let mut host = Host::new(password);
    let mut record: *mut c_void = null_mut();
    unsafe {
        match pkider_pkcs12_read(file.as_ptr(), file.len() as u64, &host.crypto(), &mut record) {
            0 => (),
            status => return Err(status),
        }
        let items = (0..pkider_pkcs12_num_items(record)).map(|number| &*pkider_pkcs12_item(record, number));
        let out = items.map(|item| (item.kind, of_span(item.data).to_vec())).collect();
        pkider_pkcs12_release(record);
        Ok(out)
    }
}

fn write_pkcs12(key: &[u8], password: &'static str) -> Result<Vec<u8>, c_int> {
    let item = Item { kind: 0, data: span(key), friendly_name: NONE, local_key_id: NONE };
    let mac = Mac { digest_alg: NONE, digest: NONE, salt: NONE, iterations: 0 };
    let contents =
        Contents { plain_items: null(), num_plain_items: 0, protected_items: &item, num_protected_items: 1, mac };
    let mut host = Host::new(password);
    collected(|out| unsafe { pkider_pkcs12_write(&contents, &host.crypto(), out) })
}

fn names() {
    let mut fault = Fault::default();
    let der = encode("CN=Server 1, O=\"Example, Ltd\", C=RU", &mut fault).expect("encode");
    assert_eq!(der.len(), 57);
    assert_eq!(print(&der, &mut fault).expect("print"), b"C=RU,O=Example\\, Ltd,CN=Server 1");
    assert_eq!(encode("CN=a;b", &mut fault), Err(1));
    assert_eq!(fault, Fault { code: 10, position: 4 });
    assert_eq!(print(&[0x30, 2, 0x30, 0], &mut fault), Err(1));
    assert_eq!(fault, Fault { code: 12, position: 2 });
}

fn pkcs12_files(folder: &str) {
    const KEY: u32 = 0;
    const CERT: u32 = 1;
    const WRONG_MAC: c_int = 7;

    unsafe { gcry_check_version(null()) };
    let open = |name: &str| std::fs::read(format!("{folder}/{name}")).expect(name);
    let (file, key) = (open("three_certs.p12"), open("key.der"));
    let items = read_pkcs12(&file, "secret").expect("read the file of OpenSSL");
    assert_eq!(items.iter().map(|item| item.0).collect::<Vec<_>>(), [CERT, CERT, CERT, KEY]);
    assert_eq!(items[0].1, open("first_cert.der"));
    assert_eq!(items[3].1, key);
    assert_eq!(read_pkcs12(&file, "Secret"), Err(WRONG_MAC));

    let written = write_pkcs12(&key, "secret").expect("write a file");
    assert_eq!(read_pkcs12(&written, "secret"), Ok(vec![(KEY, key)]));
}

fn main() {
    names();
    pkcs12_files(&std::env::args().nth(1).expect("the folder of the files"));
    println!("a host in Rust");
}
