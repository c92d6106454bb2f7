#include "samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <stdexcept>

namespace {

using zxtest::cell;
using zxtest::Counted;
using zxtest::counted;
using zxtest::row;
using zxtest::structure;
using zxtest::text;

template <class T>
class Numbers : public testing::Test {};
using NumberTypes = testing::Types<double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                   std::uint32_t, std::int64_t, std::uint64_t>;
TYPED_TEST_SUITE(Numbers, NumberTypes);

TYPED_TEST(Numbers, KeepTheirExtremes) {
    using Limits = std::numeric_limits<TypeParam>;
    for (TypeParam const value : {Limits::lowest(), Limits::max(), TypeParam{0}, TypeParam{1}}) {
        zx::Array const array = row<TypeParam>({0, value});
        EXPECT_EQ(zx::valueAt<TypeParam>(array.get(), 1), value);
        EXPECT_EQ(zxGetNumber(array.get(), 1), static_cast<double>(value));
        EXPECT_EQ(zxGetElementSize(array.get()), sizeof(TypeParam));
        EXPECT_EQ(zx::valueAt<TypeParam>(zx::scalar(value).get()), value);
    }
}

TEST(Values, StartAtZeroAndStandColumnByColumn) {
    zx::Array const matrix(zxCreateNumericMatrix(100, 3, zxDoubleClass, 0));
    std::span<double> const values = zx::valuesForWriting<double>(matrix.get());
    EXPECT_EQ(std::count(values.begin(), values.end(), 0.0), 300);
    zx::Array const complex = zx::scalar(std::complex<float>(1, -2));
    auto const* const parts = static_cast<float const*>(zxGetData(complex.get()));
    EXPECT_EQ(parts[0], 1);
    EXPECT_EQ(parts[1], -2);
    EXPECT_EQ(zxGetElementSize(complex.get()), 8U);
    EXPECT_EQ(zxGetNumber(complex.get()), 1);
    EXPECT_EQ(zxGetNumber(zx::scalar(true).get()), 1);
    EXPECT_EQ(zxGetNumber(zx::scalar(u'A').get()), 65);
}

TEST(Values, AreReachedAsTheirOwnTypeOnly) {
    EXPECT_THROW(zx::values<float>(row<double>({1}).get()), std::invalid_argument);
    EXPECT_THROW(zx::values<std::uint8_t>(row<bool>({true}).get()), std::invalid_argument);
    EXPECT_THROW(zx::values<std::uint16_t>(text(u"a").get()), std::invalid_argument);
    EXPECT_THROW(zx::values<double>(zx::scalar(std::complex<double>(1, 2)).get()), std::invalid_argument);
    EXPECT_THROW(zx::values<std::complex<double>>(row<double>({1}).get()), std::invalid_argument);
    EXPECT_THROW(zx::values<double>(cell().get()), std::invalid_argument);
    EXPECT_THROW(zx::valueAt<double>(row<double>({1}).get(), 1), std::out_of_range);
    EXPECT_THROW(zxGetNumber(row<double>({}).get()), std::out_of_range);
    EXPECT_TRUE(zx::values<double>(row<double>({}).get()).empty());
    EXPECT_EQ(zxGetElementSize(cell().get()), 0U);
    EXPECT_THROW(zxCreateNumericMatrix(1, 1, zxCharClass, 1), std::invalid_argument);
    for (unsigned const code : {0U, 1U, 2U, 5U, 16U, 18U, 28U}) {
        EXPECT_THROW(zxCreateNumericMatrix(1, 1, static_cast<zxClassCode>(code), 0), std::invalid_argument);
    }
}

TEST(Cells, OwnWhatIsPutIntoThem) {
    zx::Array const array = cell(counted({1}), zx::Array());
    EXPECT_EQ(Counted::alive, 1);
    EXPECT_EQ(zxGetClassName(zxGetCell(array.get(), 1)), "double");
    EXPECT_TRUE(zxIsEmpty(zxGetCell(array.get(), 1)));
    zxSetCell(array.get(), 0, text(u"x").release());
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_EQ(zx::textOf(zxGetCell(array.get(), 0)), u"x");
    EXPECT_THROW(zxGetCell(array.get(), 2), std::out_of_range);
    EXPECT_THROW(zxGetField(array.get(), 0, "f"), std::invalid_argument);
}

TEST(Cells, RefuseWhatStandsElsewhereOrAboveThem) {
    zx::Array const outer = cell(cell(structure("f", cell(zx::Array()))), zx::Array());
    zx::Array const former = zx::copy(outer.get());
    zxArray* const structs = zxGetCellForWriting(zxGetCellForWriting(outer.get(), 0), 0);
    zxArray* const inner = zxGetFieldForWriting(structs, 0, "f");
    zx::Array const other = cell(zx::Array());
    for (zxArray* const value : {outer.get(), structs, inner}) {
        EXPECT_THROW(zxSetCell(inner, 0, value), std::invalid_argument);
        if (value != outer.get()) {
            EXPECT_THROW(zxSetCell(other.get(), 0, value), std::invalid_argument);
        }
        EXPECT_THROW(zxSetField(structs, 0, "new", value), std::invalid_argument);
    }
    EXPECT_TRUE(zxIsEqual(outer.get(), former.get()));
}

TEST(Structs, KeepTheirFieldsInOrder) {
    zx::Array const array = structure("b", row<double>({1}), "a", counted({2}), "c", text(u"x"));
    zxArray* const s = array.get();
    EXPECT_EQ(zxAddField(s, "a"), 1U);
    EXPECT_EQ(zxAddField(s, "d"), 3U);
    EXPECT_TRUE(zxIsEmpty(zxGetField(s, 0, "d")));
    EXPECT_EQ(Counted::alive, 1);
    EXPECT_TRUE(zxRemoveField(s, "a"));
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_FALSE(zxRemoveField(s, "a"));
    std::string names;
    for (std::size_t i = 0; i < zxGetNumberOfFields(s); ++i) {
        names += zxGetFieldName(s, i);
    }
    EXPECT_EQ(names, "bcd");
    EXPECT_EQ(zx::textOf(zxGetFieldByNumber(s, 0, *zxFindField(s, "c"))), u"x");
    EXPECT_EQ(zxGetField(s, 0, "a"), nullptr);
    EXPECT_EQ(zxGetFieldForWriting(s, 0, "a"), nullptr);
    EXPECT_FALSE(zxFindField(s, "a"));
    EXPECT_THROW(zxGetFieldName(s, 3), std::out_of_range);
    EXPECT_THROW(zxGetFieldByNumber(s, 0, 3), std::out_of_range);
    EXPECT_THROW(zxGetField(s, 1, "b"), std::out_of_range);
    EXPECT_THROW(zxAddField(s, ""), std::invalid_argument);
    EXPECT_THROW(zxSetField(s, 1, "new", nullptr), std::out_of_range);
    EXPECT_EQ(zxGetNumberOfFields(s), 3U);
}

TEST(Structs, AreAsGoodWithManyFieldsAsWithFew) {
    std::mt19937 draw(1);  // NOLINT(bugprone-random-generator-seed): the same in each run
    zx::Array array(zxCreateStructMatrix(1, 2));
    std::vector<std::string> names;
    for (int step = 0; step < 3000; ++step) {
        // Mostly adds and mostly removes in turns, so that the number passes all sizes in both directions.
        bool const comes = draw() % 10 < (step / 600 % 2 == 0 ? 8U : 1U);
        std::string const name = "f" + std::to_string(draw() % 100);
        auto const place = std::find(names.begin(), names.end(), name);
        auto const number = static_cast<std::size_t>(place - names.begin());
        bool const isNew = place == names.end();
        ASSERT_EQ(zxFindField(array.get(), name), isNew ? std::nullopt : std::optional(number));
        if (comes) {
            ASSERT_EQ(zxAddField(array.get(), name), number);
            if (isNew) {
                names.push_back(name);
                zxSetField(array.get(), 1, name, zxCreateString_UTF8(name));
            }
        } else {
            ASSERT_EQ(zxRemoveField(array.get(), name), !isNew);
            if (!isNew) {
                names.erase(place);
            }
        }
        if (step % 100 == 0) {
            array = zx::copy(array.get());
        }
        ASSERT_EQ(zxGetNumberOfFields(array.get()), names.size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            ASSERT_EQ(zxGetFieldName(array.get(), i), names[i]);
            ASSERT_EQ(zx::utf8Of(zxGetFieldByNumber(array.get(), 1, i)), names[i]);
        }
    }
    zx::Array backward(zxCreateStructMatrix(1, 2));
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        zxSetField(backward.get(), 1, *name, zxCreateString_UTF8(*name));
    }
    EXPECT_GT(names.size(), 20U);
    EXPECT_TRUE(zxIsEqual(array.get(), backward.get()));
}

TEST(Structs, HaveTheSameFieldsInEachElement) {
    zx::Array const array(zxCreateStructMatrix(2, 2));
    zxSetField(array.get(), 3, "f", row<double>({4}).release());
    EXPECT_TRUE(zxIsEmpty(zxGetField(array.get(), 0, "f")));
    EXPECT_EQ(zx::valueAt<double>(zxGetField(array.get(), 3, "f")), 4);
}

TEST(Objects, AreBasedOnNumbersOfTheSameShape) {
    zx::Array const array = zxtest::based(row<std::int32_t>({3, 1}));
    EXPECT_EQ(zx::valueAt<std::int32_t>(zxGetUnderlyingArray(array.get()), 1), 1);
    EXPECT_EQ(zxGetNumberOfElements(array.get()), 2U);
    zx::Array const empty(zxCreateEmptyObject("test.Colour"));
    EXPECT_TRUE(zxIsEmpty(empty.get()));
    EXPECT_EQ(zxGetUnderlyingArray(empty.get()), nullptr);
    zx::Array const cells = cell();
    EXPECT_THROW(zxCreateObjectFromUnderlying("test.Colour", cells.get()), std::invalid_argument);
    EXPECT_THROW(zxCreateEmptyObject(""), std::invalid_argument);
    zx::Array const outer = cell(row<double>({1}));
    EXPECT_THROW(zxCreateObjectFromUnderlying("test.Colour", zxGetCellForWriting(outer.get(), 0)),
                 std::invalid_argument);
}

TEST(Objects, OwnTheirNativesAndCopyThem) {
    {
        zx::Array const array = counted({1, 2, 3});
        zxSetNative(array.get(), 1, nullptr);
        EXPECT_EQ(Counted::alive, 2);
        zxSetNative(array.get(), 0, zxGetNative(array.get(), 0));
        EXPECT_EQ(Counted::alive, 2);
        zx::Array const copied = zx::copy(array.get());
        EXPECT_EQ(Counted::alive, 4);
        EXPECT_NE(zxGetNative(copied.get(), 0), zxGetNative(array.get(), 0));
        EXPECT_EQ(static_cast<Counted*>(zxGetNative(copied.get(), 2))->number, 3);
        EXPECT_EQ(zxGetNative(copied.get(), 1), nullptr);
        EXPECT_THROW(zxGetNative(array.get(), 3), std::out_of_range);
        EXPECT_EQ(&zxGetNativeOperations(copied.get()), &zxtest::byNumber);
        EXPECT_THROW(zxGetNative(text(u"a").get()), std::invalid_argument);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(Objects, LeaveNothingBehindWhenACopyFails) {
    zx::Array const array = cell(counted({1, 2, 3}), structure("f", counted({4})));
    int const copies = Counted::copiesLeft;
    for (int possible = 0; possible < 4; ++possible) {
        Counted::copiesLeft = possible;
        EXPECT_THROW(zxDuplicateArray(array.get()), std::bad_alloc);
        EXPECT_EQ(Counted::alive, 4);
    }
    Counted::copiesLeft = copies;
}

TEST(Errors, AreRaisedByIdentifier) {
    try {
        zxRaiseErrorById("ZELDRA:class", "InvalidHandle");
        FAIL();
    } catch (keel::core::except::Error const& error) {
        EXPECT_EQ(error.GetID(), "ZELDRA:class:InvalidHandle");
    }
}

}  // namespace
