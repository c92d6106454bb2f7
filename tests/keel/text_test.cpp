#include <keel/text.h>

#include <gtest/gtest.h>

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

}  // namespace
