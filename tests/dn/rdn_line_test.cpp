#include "dn/rdn_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

using namespace pkider;

namespace {

template <typename Line>
void put_exactly(Line& line, std::string_view rdn) {
    std::copy(rdn.begin(), rdn.end(), line.room(rdn.size()));
    line.take(rdn.size());
}

template <typename Line>
void put_piecewise(Line& line, std::string_view rdn) {
    text_sink_t& out = line.begin();
    for (const char c : rdn) out.put(c);
    line.end();
}

TEST(ForwardLine, PutsRdnsBehindTheOthers) {
    forward_line_t line(0);
    put_exactly(line, "C=a,");
    put_piecewise(line, "O=b");
    line.room(100); // begun, but not taken
    put_piecewise(line, "");
    put_exactly(line, "CN=c,");
    EXPECT_EQ(line.text(), "C=a,O=b,,CN=c,");
    line.begin().put('U');
    EXPECT_EQ(line.text(), "C=a,O=b,,CN=c,U");
}

TEST(ReversedLine, PutsRdnsInFrontOfTheOthers) {
    reversed_line_t line(0);
    put_exactly(line, "C=a,");
    put_piecewise(line, "O=b");
    line.room(100);
    put_piecewise(line, "");
    put_exactly(line, "CN=c,");
    EXPECT_EQ(line.text(), "CN=c,,O=b,C=a,");
    line.begin().put('U'); // not ended
    EXPECT_EQ(line.text(), "CN=c,,O=b,C=a,");
}

} // namespace
