#include <keel/text.h>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

TEST(Text, BecomesWellFormedUtf8) {
    struct Case {
        std::u16string text;
        std::string expected;
    };
    Case const cases[] = {
        {u"", ""},
        {u"plain", "plain"},
        {std::u16string(u"a\0b", 3), std::string("a\0b", 3)},
        {u"\u007f\u0080\u07ff\u0800\uffff", "\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf"},
        {u"\U00010000\U0010ffff", "\xf0\x90\x80\x80\xf4\x8f\xbf\xbf"},
        {{u'a', 0xD800}, "a\xef\xbf\xbd"},
        {{0xDBFF, u'a'},
         "\xef\xbf\xbd"
         "a"},
        {{0xDC00, u'a'},
         "\xef\xbf\xbd"
         "a"},
        {{0xD83D, 0xD83D, 0xDE00}, "\xef\xbf\xbd\xf0\x9f\x98\x80"},
        {{0xDE00, 0xD83D}, "\xef\xbf\xbd\xef\xbf\xbd"},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(keel::toUtf8(c.text), c.expected);
    }
}

TEST(Text, IsReadFromUtf8) {
    struct Case {
        std::string bytes;
        std::u16string units;
    };
    Case const cases[] = {
        {"", u""},
        {"plain", u"plain"},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
        {"\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf", u"\u007f\u0080\u07ff\u0800\uffff"},
        {"\xf0\x90\x80\x80\xf4\x8f\xbf\xbf", u"\U00010000\U0010ffff"},
        {"\xed\x9f\xbf\xee\x80\x80", u"\ud7ff\ue000"},
        {"\x80z", u"\ufffdz"},                      // nothing that it could follow
        {"\xc3", u"\ufffd"},                        // cut off
        {"\xe2\x82z", u"\ufffdz"},                  // three bytes, the last one missing
        {"\xf0\x9f\x98\xc3\xa9", u"\ufffd\u00e9"},  // four bytes, the last one missing
        {"\xc0\x80", u"\ufffd\ufffd"},              // overlong
        {"\xe0\x80\x80", u"\ufffd\ufffd\ufffd"},    // overlong
        {"\xf0\x8f\xbf\xbf", u"\ufffd\ufffd\ufffd\ufffd"},
        {"\xed\xa0\x80", u"\ufffd\ufffd\ufffd"},            // a surrogate
        {"\xf4\x90\x80\x80", u"\ufffd\ufffd\ufffd\ufffd"},  // past the last code
        {"\xf5\xff", u"\ufffd\ufffd"},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(keel::toUtf16(c.bytes), c.units) << testing::PrintToString(c.bytes);
    }
}

RC_GTEST_PROP(Text, ComesBackWellFormedFromAnyBytes, (std::vector<std::uint8_t> const& bytes)) {
    std::u16string const units = keel::toUtf16(std::string(bytes.begin(), bytes.end()));
    std::string const wellFormed = keel::toUtf8(units);
    RC_ASSERT(keel::toUtf16(wellFormed) == units);
    RC_ASSERT(keel::toUtf8(keel::toUtf16(wellFormed)) == wellFormed);
}

}  // namespace
