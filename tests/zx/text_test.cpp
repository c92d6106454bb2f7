#include "samples.h"

#include <keel/text.h>

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using zxtest::strings;
using zxtest::text;

std::u16string decoded(std::string_view bytes) {
    return std::u16string(zx::textOf(zx::Array(zxCreateString_UTF8(bytes)).get()));
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
        EXPECT_EQ(decoded(c.bytes), c.units) << testing::PrintToString(c.bytes);
    }
}

RC_GTEST_PROP(Text, ComesBackWellFormedFromAnyBytes, (std::vector<std::uint8_t> const& bytes)) {
    std::u16string const units = decoded(std::string(bytes.begin(), bytes.end()));
    std::string const wellFormed = keel::toUtf8(units);
    RC_ASSERT(decoded(wellFormed) == units);
    RC_ASSERT(keel::toUtf8(decoded(wellFormed)) == wellFormed);
}

TEST(Text, KeepsEveryUnit) {
    std::u16string const units{u'a', 0, 0xD800, u'b', 0xDC00, 0xD83D, 0xDE00};
    std::string const bytes(
        "a\0\xef\xbf\xbd"
        "b\xef\xbf\xbd\xf0\x9f\x98\x80",
        13);
    zx::Array const arrays[] = {text(units), zx::Array(zxCreateStringObject(units))};
    for (zx::Array const& array : arrays) {
        EXPECT_TRUE(zxIsText(array.get()));
        EXPECT_EQ(zx::textOf(array.get()), units);
        EXPECT_EQ(zx::utf8Of(array.get()), bytes);
        std::size_t length = 0;
        char* const memory = zxArrayToString_UTF8(array.get(), &length);
        EXPECT_EQ(std::string(memory, length + 1), bytes + '\0');
        zxFree(memory);
    }
}

TEST(Text, IsOneCharArrayOrOneStringObject) {
    zx::Array const empty = text(u"");
    EXPECT_TRUE(zxIsEmpty(empty.get()));
    EXPECT_TRUE(zxIsText(empty.get()));
    EXPECT_EQ(zx::textOf(empty.get()), u"");
    char* const memory = zxArrayToString_UTF8(empty.get());
    EXPECT_STREQ(memory, "");
    zxFree(memory);
    EXPECT_FALSE(zxIsEmpty(strings({u""}).get()));
    zx::Array const others[] = {strings({}), strings({u"a", u"b"}), zx::scalar(1.0), zxtest::cell(text(u"a"))};
    for (zx::Array const& other : others) {
        EXPECT_FALSE(zxIsText(other.get()));
        EXPECT_EQ(zxArrayToString_UTF8(other.get()), nullptr);
        EXPECT_THROW(zx::textOf(other.get()), std::invalid_argument);
    }
    EXPECT_EQ(zxArrayToString_UTF8(nullptr), nullptr);

    zx::Array const two = strings({u"a", u"b"});
    EXPECT_EQ(zxGetStringElement(two.get(), 1), u"b");
    EXPECT_THROW(zxGetStringElement(two.get(), 2), std::out_of_range);
    EXPECT_THROW(zxSetStringElement(text(u"a").get(), 0, u""), std::invalid_argument);
    zxSetStringElement(two.get(), 0, zxGetStringElement(two.get(), 1));
    EXPECT_EQ(zxGetStringElement(two.get(), 0), u"b");
}

}  // namespace
