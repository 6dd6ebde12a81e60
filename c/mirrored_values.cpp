// The enumerations of the C header have the values of the C++ headers, every one of them. scripts/check_tables compares
// the names, so that none is missing here.
#include <pkider/c/pkider.h>
#include <pkider/pkider.h>

#include <type_traits>

namespace {

template <typename Enumeration>
constexpr uint32_t number(Enumeration value) {
    static_assert(std::is_enum_v<Enumeration>);
    return static_cast<uint32_t>(value);
}

static_assert(number(PKIDER_TAG_ANY) == number(asn_tag_t::ANY));
static_assert(number(PKIDER_TAG_INTEGER) == number(asn_tag_t::INTEGER));
static_assert(number(PKIDER_TAG_BIT_STRING) == number(asn_tag_t::BIT_STRING));
static_assert(number(PKIDER_TAG_OCTET_STRING) == number(asn_tag_t::OCTET_STRING));
static_assert(number(PKIDER_TAG_OBJECT_IDENTIFIER) == number(asn_tag_t::OBJECT_IDENTIFIER));
static_assert(number(PKIDER_TAG_SEQUENCE) == number(asn_tag_t::SEQUENCE));
static_assert(number(PKIDER_TAG_SET) == number(asn_tag_t::SET));
static_assert(number(PKIDER_TAG_CONTEXT_0) == number(asn_tag_t::CONTEXT_0));

static_assert(number(PKIDER_DN_FAULT_TYPE_SYNTAX) == number(DN_FAULT_TYPE_SYNTAX));
static_assert(number(PKIDER_DN_FAULT_TYPE_UNKNOWN) == number(DN_FAULT_TYPE_UNKNOWN));
static_assert(number(PKIDER_DN_FAULT_UNBALANCED_QUOTE) == number(DN_FAULT_UNBALANCED_QUOTE));
static_assert(number(PKIDER_DN_FAULT_HEX_COUNT) == number(DN_FAULT_HEX_COUNT));
static_assert(number(PKIDER_DN_FAULT_HEX_DIGIT) == number(DN_FAULT_HEX_DIGIT));
static_assert(number(PKIDER_DN_FAULT_HEX_ELEMENT) == number(DN_FAULT_HEX_ELEMENT));
static_assert(number(PKIDER_DN_FAULT_BACKSLASH_AT_END) == number(DN_FAULT_BACKSLASH_AT_END));
static_assert(number(PKIDER_DN_FAULT_ESCAPE_SECOND_DIGIT) == number(DN_FAULT_ESCAPE_SECOND_DIGIT));
static_assert(number(PKIDER_DN_FAULT_ESCAPE) == number(DN_FAULT_ESCAPE));
static_assert(number(PKIDER_DN_FAULT_UNESCAPED_SPECIAL) == number(DN_FAULT_UNESCAPED_SPECIAL));
static_assert(number(PKIDER_DN_FAULT_NOT_A_NAME) == number(DN_FAULT_NOT_A_NAME));
static_assert(number(PKIDER_DN_FAULT_NOT_A_SET) == number(DN_FAULT_NOT_A_SET));
static_assert(number(PKIDER_DN_FAULT_NOT_A_SEQUENCE) == number(DN_FAULT_NOT_A_SEQUENCE));
static_assert(number(PKIDER_DN_FAULT_NOT_AN_OID) == number(DN_FAULT_NOT_AN_OID));
static_assert(number(PKIDER_DN_FAULT_OID_UNPRINTABLE) == number(DN_FAULT_OID_UNPRINTABLE));
static_assert(number(PKIDER_DN_FAULT_VALUE_HEADER) == number(DN_FAULT_VALUE_HEADER));
static_assert(number(PKIDER_DN_FAULT_TELETEX) == number(DN_FAULT_TELETEX));
static_assert(number(PKIDER_DN_FAULT_WIDE_STRING) == number(DN_FAULT_WIDE_STRING));
static_assert(number(PKIDER_DN_FAULT_NUMERIC_STRING) == number(DN_FAULT_NUMERIC_STRING));
static_assert(number(PKIDER_DN_ORDER_AS_ENCODED) == number(DN_ORDER_AS_ENCODED));
static_assert(number(PKIDER_DN_ORDER_REVERSED) == number(DN_ORDER_REVERSED));
static_assert(number(PKIDER_DN_GET_ATTR_PAIR) == number(DN_GET_ATTR_PAIR));
static_assert(number(PKIDER_DN_GET_ATTR_VALUE) == number(DN_GET_ATTR_VALUE));

static_assert(number(PKIDER_ALG_NONE) == number(PKI_ALG_NONE));
static_assert(number(PKIDER_ALG_RSA) == number(PKI_ALG_RSA));
static_assert(number(PKIDER_ALG_DSA) == number(PKI_ALG_DSA));
static_assert(number(PKIDER_ALG_DH_KEY_AGREEMENT) == number(PKI_ALG_DH_KEY_AGREEMENT));
static_assert(number(PKIDER_ALG_OLD_DSA) == number(PKI_ALG_OLD_DSA));
static_assert(number(PKIDER_ALG_DH_PUBLIC_NUMBER) == number(PKI_ALG_DH_PUBLIC_NUMBER));
static_assert(number(PKIDER_ALG_RC2) == number(PKI_ALG_RC2));
static_assert(number(PKIDER_ALG_RC4) == number(PKI_ALG_RC4));
static_assert(number(PKIDER_ALG_RC5) == number(PKI_ALG_RC5));
static_assert(number(PKIDER_ALG_DES) == number(PKI_ALG_DES));
static_assert(number(PKIDER_ALG_3DES_2KEY) == number(PKI_ALG_3DES_2KEY));
static_assert(number(PKIDER_ALG_3DES_3KEY) == number(PKI_ALG_3DES_3KEY));
static_assert(number(PKIDER_ALG_GOST3410_94) == number(PKI_ALG_GOST3410_94));
static_assert(number(PKIDER_ALG_GOST3410_2001) == number(PKI_ALG_GOST3410_2001));
static_assert(number(PKIDER_ALG_GOST3410_2012_256) == number(PKI_ALG_GOST3410_2012_256));
static_assert(number(PKIDER_ALG_GOST3410_2012_512) == number(PKI_ALG_GOST3410_2012_512));
static_assert(number(PKIDER_ALG_GOST3410_94_TIK) == number(PKI_ALG_GOST3410_94_TIK));
static_assert(number(PKIDER_ALG_GOST3410_94_CPRO) == number(PKI_ALG_GOST3410_94_CPRO));
static_assert(number(PKIDER_ALG_GOST3410_2001_CPRO) == number(PKI_ALG_GOST3410_2001_CPRO));
static_assert(number(PKIDER_ALG_GOST3410_94_SIGNALCOM) == number(PKI_ALG_GOST3410_94_SIGNALCOM));
static_assert(number(PKIDER_ALG_GOST3410_2001_SIGNALCOM) == number(PKI_ALG_GOST3410_2001_SIGNALCOM));
static_assert(number(PKIDER_ALG_SHA) == number(PKI_ALG_SHA));
static_assert(number(PKIDER_ALG_SHA1) == number(PKI_ALG_SHA1));
static_assert(number(PKIDER_ALG_SHA224) == number(PKI_ALG_SHA224));
static_assert(number(PKIDER_ALG_SHA256) == number(PKI_ALG_SHA256));
static_assert(number(PKIDER_ALG_SHA384) == number(PKI_ALG_SHA384));
static_assert(number(PKIDER_ALG_SHA512) == number(PKI_ALG_SHA512));
static_assert(number(PKIDER_ALG_MD2) == number(PKI_ALG_MD2));
static_assert(number(PKIDER_ALG_MD5) == number(PKI_ALG_MD5));
static_assert(number(PKIDER_ALG_GOST3411_94) == number(PKI_ALG_GOST3411_94));
static_assert(number(PKIDER_ALG_GOST3411_2012_256) == number(PKI_ALG_GOST3411_2012_256));
static_assert(number(PKIDER_ALG_GOST3411_2012_512) == number(PKI_ALG_GOST3411_2012_512));
static_assert(number(PKIDER_ALG_GOST3411_94_TIK) == number(PKI_ALG_GOST3411_94_TIK));
static_assert(number(PKIDER_ALG_GOST3411_94_CPRO) == number(PKI_ALG_GOST3411_94_CPRO));
static_assert(number(PKIDER_ALG_GOST3411_94_SIGNALCOM) == number(PKI_ALG_GOST3411_94_SIGNALCOM));
static_assert(number(PKIDER_ALG_SHA_RSA) == number(PKI_ALG_SHA_RSA));
static_assert(number(PKIDER_ALG_SHA1_RSA) == number(PKI_ALG_SHA1_RSA));
static_assert(number(PKIDER_ALG_SHA224_RSA) == number(PKI_ALG_SHA224_RSA));
static_assert(number(PKIDER_ALG_SHA256_RSA) == number(PKI_ALG_SHA256_RSA));
static_assert(number(PKIDER_ALG_SHA384_RSA) == number(PKI_ALG_SHA384_RSA));
static_assert(number(PKIDER_ALG_SHA512_RSA) == number(PKI_ALG_SHA512_RSA));
static_assert(number(PKIDER_ALG_RSASSA_PSS) == number(PKI_ALG_RSASSA_PSS));
static_assert(number(PKIDER_ALG_RSASSA_PSS_SHA1) == number(PKI_ALG_RSASSA_PSS_SHA1));
static_assert(number(PKIDER_ALG_RSASSA_PSS_SHA224) == number(PKI_ALG_RSASSA_PSS_SHA224));
static_assert(number(PKIDER_ALG_RSASSA_PSS_SHA256) == number(PKI_ALG_RSASSA_PSS_SHA256));
static_assert(number(PKIDER_ALG_RSASSA_PSS_SHA384) == number(PKI_ALG_RSASSA_PSS_SHA384));
static_assert(number(PKIDER_ALG_RSASSA_PSS_SHA512) == number(PKI_ALG_RSASSA_PSS_SHA512));
static_assert(number(PKIDER_ALG_MD2_RSA) == number(PKI_ALG_MD2_RSA));
static_assert(number(PKIDER_ALG_MD5_RSA) == number(PKI_ALG_MD5_RSA));
static_assert(number(PKIDER_ALG_SHA_DSA) == number(PKI_ALG_SHA_DSA));
static_assert(number(PKIDER_ALG_SHA1_DSA) == number(PKI_ALG_SHA1_DSA));
static_assert(number(PKIDER_ALG_3DES_2KEY_SHA1) == number(PKI_ALG_3DES_2KEY_SHA1));
static_assert(number(PKIDER_ALG_3DES_3KEY_SHA1) == number(PKI_ALG_3DES_3KEY_SHA1));
static_assert(number(PKIDER_ALG_HMAC_SHA1) == number(PKI_ALG_HMAC_SHA1));
static_assert(number(PKIDER_ALG_GOST3411_94_GOST3410_94) == number(PKI_ALG_GOST3411_94_GOST3410_94));
static_assert(number(PKIDER_ALG_GOST3411_94_GOST3410_2001) == number(PKI_ALG_GOST3411_94_GOST3410_2001));
static_assert(number(PKIDER_ALG_GOST3411_2012_256_GOST3410_2012_256) ==
              number(PKI_ALG_GOST3411_2012_256_GOST3410_2012_256));
static_assert(number(PKIDER_ALG_GOST3411_2012_512_GOST3410_2012_512) ==
              number(PKI_ALG_GOST3411_2012_512_GOST3410_2012_512));
static_assert(number(PKIDER_ALG_GOST3411_94_GOST3410_94_TIK) == number(PKI_ALG_GOST3411_94_GOST3410_94_TIK));
static_assert(number(PKIDER_ALG_GOST3411_94_GOST3410_94_CPRO) == number(PKI_ALG_GOST3411_94_GOST3410_94_CPRO));
static_assert(number(PKIDER_ALG_GOST3411_94_GOST3410_2001_CPRO) == number(PKI_ALG_GOST3411_94_GOST3410_2001_CPRO));
static_assert(number(PKIDER_ALG_GOST3411_94_GOST3410_94_SIGNALCOM) ==
              number(PKI_ALG_GOST3411_94_GOST3410_94_SIGNALCOM));
static_assert(number(PKIDER_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM) ==
              number(PKI_ALG_GOST3411_94_GOST3410_2001_SIGNALCOM));

static_assert(number(PKIDER_PKCS12_ITEM_KEY) == number(PKCS12_ITEM_KEY));
static_assert(number(PKIDER_PKCS12_ITEM_CERT) == number(PKCS12_ITEM_CERT));

} // namespace
