// The conversions of values in transit, from every form that a value can have.
#include <ordo/factory/text.h>
#include <ordo/ordo.h>

#include <zx/containers.h>
#include <zx/objects.h>
#include <zx/text.h>
#include <zx/values.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

namespace {

using ordo::OrdoValue;

/// The id of the message with which `work` fails, "" if it doesn't.
std::string failure(std::function<void()> const& work) {
    try {
        work();
    } catch (keel::core::except::Error const& error) {
        EXPECT_GT(std::string(error.what()).size(), error.GetID().size() + 2) << "no sentence";
        return std::string(error.GetBaseMsgIDObj().id());
    }
    return {};
}

template <class T>
T taken(OrdoValue const& value) {
    return ordo::factory::ValueType<T>::fromScript(value);
}

/// The result of converting a value to `T`: the number, or the failure's id.
template <class T>
std::string outcome(OrdoValue const& value) {
    std::string result;
    std::string const failed = failure([&] { result = std::to_string(taken<T>(value)); });
    return failed.empty() ? result : failed;
}

std::vector<OrdoValue> formsOf(OrdoValue const& value) {
    std::vector<OrdoValue> forms{value};
    forms.push_back(OrdoValue::fromArray(value.toArray()));
    return forms;
}

constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 18446744073709551616.0;

TEST(Values, AreRefusedAsIntegersUnlessTheyAreOnesInRange) {
    struct Case {
        OrdoValue value;
        char const* int32;
        char const* uint32;
        char const* uint64;
    };
    double const nan = std::nan("");
    double const infinity = std::numeric_limits<double>::infinity();
    Case const cases[] = {
        {OrdoValue::logical(true), "1", "1", "1"},
        {OrdoValue::int32(-1), "-1", "OutOfRange", "OutOfRange"},
        {OrdoValue::int64(2147483647), "2147483647", "2147483647", "2147483647"},
        {OrdoValue::int64(2147483648), "OutOfRange", "2147483648", "2147483648"},
        {OrdoValue::int64(-2147483648LL), "-2147483648", "OutOfRange", "OutOfRange"},
        {OrdoValue::int64(-2147483649LL), "OutOfRange", "OutOfRange", "OutOfRange"},
        {OrdoValue::uint32(4294967295U), "OutOfRange", "4294967295", "4294967295"},
        {OrdoValue::int64(4294967296), "OutOfRange", "OutOfRange", "4294967296"},
        {OrdoValue::uint64(18446744073709551615U), "OutOfRange", "OutOfRange", "18446744073709551615"},
        {OrdoValue::real(3.0), "3", "3", "3"},
        {OrdoValue::real(-0.0), "0", "0", "0"},
        {OrdoValue::real(3.5), "NotInteger", "NotInteger", "NotInteger"},
        {OrdoValue::real(2147483648.0), "OutOfRange", "2147483648", "2147483648"},
        {OrdoValue::real(twoTo63), "OutOfRange", "OutOfRange", "9223372036854775808"},
        {OrdoValue::real(twoTo64), "OutOfRange", "OutOfRange", "OutOfRange"},
        {OrdoValue::real(nan), "OutOfRange", "OutOfRange", "OutOfRange"},
        {OrdoValue::real(-infinity), "OutOfRange", "OutOfRange", "OutOfRange"},
        {OrdoValue::text(u"3"), "WrongType", "WrongType", "WrongType"},
        {OrdoValue::bytes(""), "WrongType", "WrongType", "WrongType"},
        {OrdoValue(zxInt32Class), "NoValue", "NoValue", "NoValue"},
        {OrdoValue::fromArray(zx::Array(zxCreateNumericMatrix(1, 2, zxInt32Class))), "WrongType", "WrongType",
         "WrongType"},
        {OrdoValue::fromArray(zx::Array(zxCreateNumericMatrix(1, 1, zxDoubleClass, 1))), "WrongType", "WrongType",
         "WrongType"},
    };
    for (Case const& row : cases) {
        for (OrdoValue const& form : formsOf(row.value)) {
            SCOPED_TRACE(form.describe());
            EXPECT_EQ(outcome<std::int32_t>(form), row.int32);
            EXPECT_EQ(outcome<std::uint32_t>(form), row.uint32);
            EXPECT_EQ(outcome<std::uint64_t>(form), row.uint64);
        }
    }
}

TEST(Values, OfEveryClassOfNumberAreTakenForOneAnother) {
    zxClassCode const codes[] = {zxLogicalClass, zxDoubleClass, zxSingleClass, zxInt8Class,  zxUint8Class, zxInt16Class,
                                 zxUint16Class,  zxInt32Class,  zxUint32Class, zxInt64Class, zxUint64Class};
    for (zxClassCode const code : codes) {
        zx::Array array(zxCreateNumericMatrix(1, 1, code));
        EXPECT_FALSE(taken<bool>(OrdoValue::borrowedArray(array.get()))) << code;
        auto* const bytes = static_cast<unsigned char*>(zxGetDataForWriting(array.get()));
        if (code == zxDoubleClass) {
            *reinterpret_cast<double*>(bytes) = 1;
        } else if (code == zxSingleClass) {
            *reinterpret_cast<float*>(bytes) = 1;
        } else {
            *bytes = 1;
        }
        OrdoValue const value = OrdoValue::borrowedArray(array.get());
        EXPECT_TRUE(taken<bool>(value)) << code;
        EXPECT_EQ(taken<double>(value), 1) << code;
        EXPECT_EQ(taken<std::int32_t>(value), 1) << code;
    }
    EXPECT_TRUE(taken<bool>(OrdoValue::real(std::nan(""))));
    EXPECT_EQ(failure([] { taken<double>(OrdoValue()); }), "NoValue");
}

TEST(Values, GiveOptionalsTheFirstOfSeveralNumbers) {
    auto const take = [](zx::Array array) {
        return taken<boost::optional<std::int32_t>>(OrdoValue::fromArray(std::move(array)));
    };
    for (std::size_t const count : {1U, 2U, 1000U}) {
        zx::Array row(zxCreateNumericMatrix(1, count, zxInt32Class));
        std::iota(zx::valuesForWriting<std::int32_t>(row.get()).begin(),
                  zx::valuesForWriting<std::int32_t>(row.get()).end(), 7);
        zx::Array const copied = zx::copy(row.get());
        EXPECT_TRUE(take(std::move(row)) == 7) << count;
        EXPECT_EQ(failure([&] { taken<std::int32_t>(OrdoValue::borrowedArray(copied.get())); }),
                  count == 1 ? "" : "WrongType");
    }
    EXPECT_EQ(failure([&] { take(zx::Array(zxCreateCellMatrix(1, 2))); }), "WrongType");
    EXPECT_EQ(failure([&] { take(zx::Array(zxCreateStructMatrix(1, 2))); }), "WrongType");
    EXPECT_EQ(failure([&] { take(zx::Array(zxCreateNumericMatrix(1, 2, zxDoubleClass, 1))); }), "WrongType");
    EXPECT_EQ(failure([&] { take(zx::Array(zxCreateString_UTF8("12"))); }), "WrongType");
}

TEST(Values, LeaveOptionalsUnsetWhereTheyAreEmptyAndNoText) {
    EXPECT_FALSE(taken<boost::optional<bool>>(OrdoValue()));
    EXPECT_FALSE(taken<boost::optional<std::int32_t>>(OrdoValue(zxCellClass)));
    EXPECT_TRUE(taken<boost::optional<std::int32_t>>(OrdoValue::real(4)) == 4);
    EXPECT_EQ(failure([] { taken<boost::optional<std::int32_t>>(OrdoValue::text(u"")); }), "WrongType");
    OrdoValue const unset = ordo::factory::ValueType<boost::optional<std::uint64_t>>::toScript(boost::none);
    EXPECT_EQ(zxGetClassCode(unset.toArray().get()), zxUint64Class);
    EXPECT_EQ(ordo::factory::ValueType<boost::optional<bool>>::typeWord(), "logical");
}

TEST(Values, AsTextsKeepEveryUnit) {
    std::u16string whole = u"a\xD800\xDC00 \xDFFF\xD800\u00E4";
    whole.insert(1, 1, u'\0');
    for (OrdoValue const& form : formsOf(OrdoValue::text(whole))) {
        EXPECT_EQ(form.toText(), whole);
    }
    EXPECT_EQ(failure([] { OrdoValue::int32(1).toText(); }), "WrongType");
    EXPECT_EQ(failure([] { OrdoValue().toBytes(); }), "NoValue");
    EXPECT_EQ(failure([] { OrdoValue::text(u"a\xD800").toBytes(); }), "NotEncodable");
}

RC_GTEST_PROP(Values, AsBytesComeBackAsTheyWere, (std::string const& bytes)) {
    RC_ASSERT(ordo::factory::bytesOf(ordo::factory::unitsOf(bytes)) == bytes);
    RC_ASSERT(OrdoValue::fromArray(OrdoValue::bytes(bytes).toArray()).toBytes() == bytes);
}

TEST(Values, AsBytesReadWellFormedTextsAsUtf8) {
    struct Case {
        char const* bytes;
        std::u16string units;
    };
    Case const cases[] = {{"\xC3\xA4\xE2\x82\xAC", u"\u00E4\u20AC"},
                          {"\xF0\x9D\x84\x9E", u"\U0001D11E"},
                          {"\xC0\x80", u"\xDCC0\xDC80"},
                          {"\xED\xA0\x80", u"\xDCED\xDCA0\xDC80"},
                          {"\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},
                          {"\xE2\x82", u"\xDCE2\xDC82"}};
    for (auto const& [bytes, units] : cases) {
        EXPECT_EQ(ordo::factory::unitsOf(bytes), units) << bytes;
    }
}

TEST(Values, OwnWhatTheyWereCopiedFromOnceTheyAreCopies) {
    std::u16string text = u"before";
    OrdoValue const borrowed = OrdoValue::borrowedText(text);
    OrdoValue const copy = borrowed;  // NOLINT(performance-unnecessary-copy-initialization): the copy is the point
    text = u"beside";
    EXPECT_EQ(copy.toText(), u"before");
    EXPECT_EQ(borrowed.toText(), u"beside");
}

}  // namespace
