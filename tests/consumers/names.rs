// A host in Rust, without a crate: it encodes and prints a Name, reports a fault, and writes and reads a PKCS#12 file with
// a crypto object of its own. The declarations repeat include/pkider/c/pkider.h.
use std::ffi::c_void;
use std::os::raw::c_int;
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

#[link(name = "pkider_c")]
extern "C" {
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

// The cipher turns every bit, the MAC is a sum. Not for real files.

static SALT: [u8; 8] = [1, 2, 3, 4, 5, 6, 7, 8];

fn sum(bytes: &[u8]) -> u8 {
    bytes.iter().fold(0, |sum: u8, byte| sum.wrapping_add(*byte))
}

fn turn(bytes: &[u8], sink: *const Sink) -> c_int {
    let turned: Vec<u8> = bytes.iter().map(|byte| !byte).collect();
    let sink = unsafe { &*sink };
    2 * (sink.write.unwrap())(sink.context, turned.as_ptr(), turned.len() as u64)
}

extern "C" fn check_mac(_: *mut c_void, mac: *const Mac, data: *const u8, size: u64) -> c_int {
    unsafe { (slice((*mac).digest.data, (*mac).digest.size) != [sum(slice(data, size))]) as c_int }
}

extern "C" fn make_mac(context: *mut c_void, data: *const u8, size: u64, mac: *mut Mac) -> c_int {
    unsafe {
        let digest = &mut *(context as *mut [u8; 1]);
        digest[0] = sum(slice(data, size));
        (*mac).digest = span(digest);
        (*mac).salt = span(&SALT);
        (*mac).iterations = 2000;
    }
    0
}

extern "C" fn decrypt(_: *mut c_void, _: *const EncryptedKey, data: *const u8, size: u64, plain: *const Sink) -> c_int {
    turn(unsafe { slice(data, size) }, plain)
}

extern "C" fn encrypt(_: *mut c_void, data: *const u8, size: u64, key: *mut EncryptedKey, out: *const Sink) -> c_int {
    unsafe {
        (*key).salt = span(&SALT);
        (*key).iv = span(&SALT);
        (*key).iterations = 2000;
        turn(slice(data, size), out)
    }
}

fn main() {
    let mut fault = Fault::default();
    let der = encode("CN=Server 1, O=\"Example, Ltd\", C=RU", &mut fault).expect("encode");
    assert_eq!(der.len(), 57);
    assert_eq!(print(&der, &mut fault).expect("print"), b"C=RU,O=Example\\, Ltd,CN=Server 1");
    assert_eq!(encode("CN=a;b", &mut fault), Err(1));
    assert_eq!(fault, Fault { code: 10, position: 4 });
    assert_eq!(print(&[0x30, 2, 0x30, 0], &mut fault), Err(1));
    assert_eq!(fault, Fault { code: 12, position: 2 });

    let mut digest = [0u8; 1];
    let context = &mut digest as *mut [u8; 1] as *mut c_void;
    let crypto = Crypto { check_mac, make_mac, decrypt, encrypt, context };
    let key = [0x30, 3, 2, 1, 0x22];
    let item = Item { kind: 0, data: span(&key), friendly_name: NONE, local_key_id: NONE };
    let mac = Mac { digest_alg: NONE, digest: NONE, salt: NONE, iterations: 0 };
    let contents =
        Contents { plain_items: null(), num_plain_items: 0, protected_items: &item, num_protected_items: 1, mac };
    let file = collected(|out| unsafe { pkider_pkcs12_write(&contents, &crypto, out) }).expect("write PKCS#12");

    let mut record: *mut c_void = null_mut();
    unsafe {
        assert_eq!(pkider_pkcs12_read(file.as_ptr(), file.len() as u64, &crypto, &mut record), 0);
        assert_eq!(pkider_pkcs12_num_items(record), 1);
        let read = (*pkider_pkcs12_item(record, 0)).data;
        assert_eq!(slice(read.data, read.size), key);
        pkider_pkcs12_release(record);
    }
    println!("a host in Rust");
}
