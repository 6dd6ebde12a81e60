"""pkider from Python: names, object identifiers, keys and PKCS#12 files, by ctypes over the C interface.

    import pkider

    der = pkider.encode_name("CN=Server 1, O=Example")
    print(pkider.print_name(der, reverse=True))            # O=Example,CN=Server 1
    try:
        pkider.encode_name("CN=a;b")
    except pkider.NameFault as fault:
        print(fault.code, fault.position)                  # 10 4

The package needs Python 3.9 and the shared library pkider_c: the file that the environment variable PKIDER_C_LIBRARY
names, or the one that the system finds. Everything that is returned is a copy. Input that is malformed raises Error.
Functions may be called from any thread; an OidMap must not be closed while another thread uses it.
docs/c_interface.md describes the interface.
"""

from pkider._library import library as _library_c
from pkider.algorithms import (
    Alg,
    IkeSignature,
    algorithm_of_ike_signature,
    algorithm_of_oid,
    hash_of_oid,
    hash_oid,
    ike_identifier,
    key_of_oid,
    key_oid,
    read_digest_info,
    read_ike_signature,
    signature_of_oid,
    signature_oid,
    write_digest_info,
)
from pkider.der import Tag, read_element
from pkider.failures import DnFault, ElementFault, Error, NameFault, Refused, Status, WrongMac
from pkider.keys import (
    DsaSignature,
    EncryptedKey,
    GostKeyType,
    GostPrivateKey,
    GostPublicKey,
    PrivateKeyInfo,
    PublicKey,
    RsaPublicKey,
    read_dsa_signature,
    read_encrypted_gost_key,
    read_gost_private_key,
    read_gost_public_key,
    read_private_key_info,
    read_public_key,
    read_rsa_public_key,
    write_encrypted_gost_key,
    write_gost_private_key,
)
from pkider.names import (
    NamePair,
    attribute_of_name,
    encode_name,
    name_contains,
    name_has_country_first,
    normalize_name,
    print_name,
    reverse_name,
    split_name,
)
from pkider.oids import OidEntry, OidMap, decode_oid, encode_oid, print_oid, set_oid_file_directory
from pkider.pkcs12 import Crypto, Item, ItemType, Mac, Pkcs12, read_pkcs12, read_pkcs12_mac, write_pkcs12


def version() -> str:
    """The version of the library, such as 0.1.0."""
    return str(_library_c.pkider_version().decode())


__all__ = [
    "Alg", "Crypto", "DnFault", "DsaSignature", "ElementFault", "EncryptedKey", "Error", "GostKeyType",
    "GostPrivateKey", "GostPublicKey", "IkeSignature", "Item", "ItemType", "Mac", "NameFault", "NamePair", "OidEntry",
    "OidMap", "Pkcs12", "PrivateKeyInfo", "PublicKey", "Refused", "RsaPublicKey", "Status", "Tag", "WrongMac",
    "algorithm_of_ike_signature", "algorithm_of_oid", "attribute_of_name", "decode_oid", "encode_name", "encode_oid",
    "hash_of_oid", "hash_oid", "ike_identifier", "key_of_oid", "key_oid", "name_contains", "name_has_country_first",
    "normalize_name", "print_name", "print_oid", "read_digest_info", "read_dsa_signature", "read_element",
    "read_encrypted_gost_key", "read_gost_private_key", "read_gost_public_key", "read_ike_signature", "read_pkcs12",
    "read_pkcs12_mac", "read_private_key_info", "read_public_key", "read_rsa_public_key", "reverse_name",
    "set_oid_file_directory", "signature_of_oid", "signature_oid", "split_name", "version", "write_digest_info",
    "write_encrypted_gost_key", "write_gost_private_key", "write_pkcs12",
]
