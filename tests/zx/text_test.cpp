#include "samples.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using zxtest::strings;
using zxtest::text;

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
