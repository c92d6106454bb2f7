// Values as readable text, for messages.
#include <quay/zero/text.h>

#include <boost/uuid/uuid.hpp>
#include <gtest/gtest.h>

namespace {

using quay::zero::textOf;
using quay::zero::toUtf16;

TEST(Texts, BecomeUtf16) {
    struct Case {
        char const* bytes;
        char16_t const* text;
    };
    Case const cases[] = {
        {"", u""},
        {"plain", u"plain"},
        {"\xc3\xa9", u"\u00e9"},
        {"\xe2\x98\x83!", u"\u2603!"},
        {"\xf0\x9f\x98\x80", u"\U0001f600"},
        {"\xf4\x8f\xbf\xbf", u"\U0010ffff"},
        {"\xf4\x90\x80\x80", u"\ufffd\ufffd\ufffd\ufffd"},  // beyond the last code point
        {"\xed\xa0\x80", u"\ufffd\ufffd\ufffd"},            // half a surrogate pair
        {"\xc0\xaf", u"\ufffd\ufffd"},                      // longer than need be
        {"\xe0\x80\xaf", u"\ufffd\ufffd\ufffd"},
        {"\xff", u"\ufffd"},
        {"a\x80z", u"a\ufffdz"},
        {"\xe2\x98", u"\ufffd\ufffd"},  // cut off
        {"\xe2\x98z", u"\ufffd\ufffdz"},
    };
    for (Case const& c : cases) EXPECT_EQ(toUtf16(c.bytes), c.text) << c.bytes;
}

TEST(Texts, TellValues) {
    EXPECT_EQ(textOf(-12), u"-12");
    EXPECT_EQ(textOf(0.1), u"0.1");
    EXPECT_EQ(textOf(-1e300), u"-1e+300");
    EXPECT_EQ(textOf(std::u16string(u"as it is")), u"as it is");
    EXPECT_EQ(textOf(std::string("\xc3\xa9")), u"\u00e9");
    EXPECT_EQ(textOf(boost::uuids::uuid{{0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef, 1, 2, 3, 4, 5, 6, 7, 8}}),
              u"01234567-89ab-cdef-0102-030405060708");
}

}  // namespace
