// No answer of the library depends on a locale: not on the letters, the blanks and the case that it has, nor on how it
// writes numbers.
#include <pkider/pkider.h>

#include "tests/support/hex.h"
#include "tests/support/parsed_map.h"
#include "tests/support/scratch_dir.h"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

using namespace pkider_test;

namespace {

// In ISO 8859-9 the capital letter of "i" is DD and the small letter of "I" is FD; A0 is a blank there.
constexpr int capital_of_i = 0xDD;

std::string oid_answers() {
    std::string out;
    for (const std::string_view text : {"1.2.840.113549.1.1.1", "2.5.4294967295", "1,2", "1.2\xA0", "1.2.\xB2"}) {
        uint8_t contents[512];
        const uint64_t size = oid_str_to_asn_(text.data(), text.data() + text.size(), contents);
        out += to_hex(bytes_t(contents, contents + size)) + ' ';
        oid_asn_to_str_(contents, contents + size, out);
        out += '\n';
    }
    const bytes_t sha256 = "06 09 60 86 48 01 65 03 04 02 01"_hex;
    std::string printed;
    asn_oid_to_printable(sha256.data(), static_cast<uint32_t>(sha256.size()), printed, true, OID_MAP_HANDLE_DEFAULT);
    return out + printed + '\n';
}

std::string map_answers() {
    const parsed_map_t map("1.2.3 = initials\n1.2.4 = \xFDlk\xA0, \xE7\n1.2\xA0=X\n");
    std::string out;
    for (const std::string_view name :
         {"initials", "INITIALS", "\xDDN\xDDT\xDD\x41LS", "\xFDn\xFDt\xFD\x61ls", "\xFDLK\xA0", "ILK\xA0", "X"}) {
        const OIDdescr_t* const entry = oid_map_find_sn(map, name.data(), name.size());
        out += entry == nullptr ? "none" : to_hex(std::string(entry->sn, entry->sn + entry->sn_len));
        out += '\n';
    }
    return out;
}

std::string normal_form(const std::string& line) {
    std::string out;
    const asn_dn_result_t result = printable_dn_normalize_r(line, out, nullptr, OID_MAP_HANDLE_DEFAULT);
    return std::to_string(result.code) + '@' + std::to_string(result.position) + ' ' + to_hex(out) + '\n';
}

std::string printed_value(uint8_t string_tag, uint8_t byte) {
    const bytes_t der = {0x30, 0x0C, 0x31, 0x0A, 0x30, 0x08, 0x06, 0x03, 0x55, 0x04, 0x2B, string_tag, 0x01, byte};
    std::string out;
    asn_dn_to_printable(der.data(), static_cast<uint32_t>(der.size()), out, DN_ORDER_AS_ENCODED,
                        OID_MAP_HANDLE_DEFAULT);
    return to_hex(out) + '\n';
}

// Each byte in a type, in a value, after a backslash, and as a NumericString and a TeletexString.
std::string name_answers() {
    std::string out = normal_form("i=#0c02c3a9,initials=x");
    for (int byte = 1; byte < 256; ++byte) {
        const std::string character(1, static_cast<char>(byte));
        out += normal_form("i=a" + character + "b");
        out += normal_form(character + "i=a");
        out += normal_form("i=\\" + character + "f");
        out += printed_value(0x12, static_cast<uint8_t>(byte)) + printed_value(0x14, static_cast<uint8_t>(byte));
    }
    return out;
}

std::string all_answers() {
    return oid_answers() + map_answers() + name_answers();
}

class Locale : public testing::Test {
  protected:
    ~Locale() override { std::locale::global(std::locale::classic()); } // of C as well

    const std::string m_answers = all_answers();
};

struct odd_numbers_t : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\1"; }
};

struct odd_letters_t : std::ctype<char> {
    using ctype::do_toupper;
    char do_toupper(char c) const override { return c == 'i' ? static_cast<char>(capital_of_i) : ctype::do_toupper(c); }
};

TEST_F(Locale, AnswersAreWrittenOut) {
    EXPECT_EQ(oid_answers(), "2A 86 48 86 F7 0D 01 01 01 1.2.840.113549.1.1.1\n"
                             "55 8F FF FF FF 7F 2.5.4294967295\n"
                             " \n \n \n"
                             "SHA256(2.16.840.1.101.3.4.2.1)\n");
    EXPECT_EQ(map_answers(), "49 4E 49 54 49 41 4C 53\n49 4E 49 54 49 41 4C 53\nnone\nnone\nFD 4C 4B A0\nnone\nnone\n");
}

TEST_F(Locale, OfCxxChangesNothing) {
    const std::locale letters(std::locale::classic(), new odd_letters_t);
    std::locale::global(std::locale(letters, new odd_numbers_t));
    std::ostringstream number;
    number << 123;
    ASSERT_EQ(number.str(), "1,2,3");
    ASSERT_EQ(std::toupper('i', std::locale()), static_cast<char>(capital_of_i));
    EXPECT_EQ(all_answers(), m_answers);
}

#ifdef __GLIBC__
TEST_F(Locale, OfUtf8ChangesNothing) {
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) GTEST_SKIP() << "no locale C.UTF-8";
    EXPECT_EQ(all_answers(), m_answers);
}

TEST_F(Locale, OfTurkeyChangesNothing) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    GTEST_SKIP() << "localedef may run on a machine with the other order of bytes, and then makes locales for that one";
#endif
    const scratch_dir_t dir;
    const std::string make = "localedef -i tr_TR -f ISO-8859-9 " + (dir.path() / "tr_TR.ISO-8859-9").string();
    if (std::system((make + " 2> /dev/null").c_str()) != 0) GTEST_SKIP() << "localedef cannot make the locale";
    setenv("LOCPATH", dir.path().c_str(), 1);
    ASSERT_NE(std::setlocale(LC_ALL, "tr_TR.ISO-8859-9"), nullptr);
    unsetenv("LOCPATH");
    ASSERT_EQ(std::toupper('i'), capital_of_i);
    EXPECT_EQ(all_answers(), m_answers);
}
#endif

} // namespace
