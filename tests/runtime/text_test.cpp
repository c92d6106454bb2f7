// Values as readable text, for messages.
#include <quay/zero/text.h>

#include <gtest/gtest.h>
#include <boost/uuid/uuid.hpp>

namespace {

using quay::zero::textOf;

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
