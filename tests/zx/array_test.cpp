#include "samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace {

using testing::ElementsAreArray;
using zxtest::based;
using zxtest::cell;
using zxtest::counted;
using zxtest::row;
using zxtest::Sample;
using zxtest::samples;
using zxtest::strings;
using zxtest::structure;
using zxtest::text;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Array, TellsItsClass) {
    for (Sample const& sample : samples()) {
        SCOPED_TRACE(sample.name);
        zx::Array const array = sample.make();
        zxClassCode const code = sample.classCode;
        EXPECT_EQ(zxGetClassCode(array.get()), code);
        EXPECT_EQ(zxGetClassName(array.get()), sample.className);
        EXPECT_EQ(zxIsNumeric(array.get()), code >= zxDoubleClass && code <= zxUint64Class);
        EXPECT_EQ(zxIsLogical(array.get()), code == zxLogicalClass);
        EXPECT_EQ(zxIsChar(array.get()), code == zxCharClass);
        EXPECT_EQ(zxIsCell(array.get()), code == zxCellClass);
        EXPECT_EQ(zxIsStruct(array.get()), code == zxStructClass);
        EXPECT_EQ(zxIsObject(array.get()), code == 18U);
        EXPECT_EQ(zxIsComplex(array.get()), sample.name == std::string_view("complex"));
        for (Sample const& other : samples()) {
            EXPECT_EQ(zxIsClass(array.get(), other.className), sample.className == std::string_view(other.className));
        }
    }
}

TEST(Array, KnowsItsClassesAncestors) {
    zx::Array const colour = based(row<std::int32_t>({1}));
    zx::Array const none(zxCreateEmptyObject("test.Colour"));
    EXPECT_TRUE(zxIsA(colour.get(), "int32"));
    EXPECT_FALSE(zxIsClass(colour.get(), "int32"));
    EXPECT_FALSE(zxIsA(none.get(), "int32"));
    EXPECT_FALSE(zxIsA(colour.get(), "test.Paint"));
    EXPECT_TRUE(zxIsA(strings({u""}).get(), "string"));

    zx::DerivesFrom* const derivesFrom = [](std::string_view className, std::string_view ancestor) {
        return className == "test.Colour" && ancestor == "test.Paint";
    };
    EXPECT_EQ(zx::setClassHierarchy(derivesFrom), nullptr);
    EXPECT_TRUE(zxIsA(colour.get(), "test.Paint"));
    EXPECT_TRUE(zxIsA(none.get(), "test.Paint"));
    EXPECT_FALSE(zxIsA(counted({1}).get(), "test.Paint"));
    EXPECT_EQ(zx::setClassHierarchy(nullptr), derivesFrom);
    EXPECT_FALSE(zxIsA(colour.get(), "test.Paint"));
}

TEST(Array, HasTheShapeAskedFor) {
    struct Case {
        std::vector<std::size_t> asked;
        std::vector<std::size_t> dimensions;
        std::size_t elements;
        std::size_t columns;
    };
    std::size_t const huge = std::size_t{1} << 40U;
    Case const cases[] = {
        {{2, 3}, {2, 3}, 6, 3},       {{0, 0}, {0, 0}, 0, 0},          {{2, 3, 4}, {2, 3, 4}, 24, 12},
        {{2, 3, 1, 1}, {2, 3}, 6, 3}, {{1, 1, 1}, {1, 1}, 1, 1},       {{2, 1, 3, 1}, {2, 1, 3}, 6, 3},
        {{2, 0, 3}, {2, 0, 3}, 0, 0}, {{0, huge}, {0, huge}, 0, huge},
    };
    for (Case const& c : cases) {
        zx::Array const arrays[] = {zx::Array(zxCreateNumericArray(c.asked, zxInt8Class)),
                                    zx::Array(zxCreateCellArray(c.asked)), zx::Array(zxCreateStructArray(c.asked)),
                                    zx::Array(zxCreateStringObjectArray(c.asked)),
                                    zx::Array(zxCreateNativeObjectArray("test.Counted", c.asked, zxtest::byNumber))};
        for (zx::Array const& array : arrays) {
            EXPECT_THAT(zxGetDimensions(array.get()), ElementsAreArray(c.dimensions));
            EXPECT_EQ(zxGetNumberOfElements(array.get()), c.elements);
            EXPECT_EQ(zxIsEmpty(array.get()), c.elements == 0);
            EXPECT_EQ(zxGetRows(array.get()), c.asked[0]);
            EXPECT_EQ(zxGetColumns(array.get()), c.columns);
        }
    }
}

TEST(Array, RefusesShapesThatNoMemoryHolds) {
    std::size_t const max = SIZE_MAX;
    std::size_t const half = std::size_t{1} << 32U;
    std::vector<std::size_t> const shapes[] = {
        {max, 1}, {half, half}, {half, half, 2}, {0, half, half}, {std::size_t{1} << 61U, 1}, {max, max, max}};
    for (auto const& shape : shapes) {
        SCOPED_TRACE(testing::PrintToString(shape));
        EXPECT_THROW(zxCreateNumericArray(shape, zxDoubleClass, 1), std::length_error);
        if (shape[0] != std::size_t{1} << 61U) {
            EXPECT_THROW(zxCreateStructArray(shape), std::length_error);
        }
        EXPECT_THROW(zxCreateCellArray(shape), std::length_error);
        EXPECT_THROW(zxCreateStringObjectArray(shape), std::length_error);
        EXPECT_THROW(zxCreateNativeObjectArray("C", shape, zxtest::byNumber), std::length_error);
    }
    // The number of elements fits, the number of bytes doesn't.
    EXPECT_THROW(zxCreateNumericMatrix(std::size_t{1} << 59U, 1, zxDoubleClass, 1), std::length_error);
    for (auto const& shape : {std::vector<std::size_t>{}, std::vector<std::size_t>{3}}) {
        EXPECT_THROW(zxCreateCellArray(shape), std::invalid_argument);
    }
}

TEST(Array, ChangesItsShapeAndKeepsItsElements) {
    for (Sample const& sample : samples()) {
        SCOPED_TRACE(sample.name);
        zx::Array const array = sample.make();
        zx::Array const former = zx::copy(array.get());
        std::size_t const count = zxGetNumberOfElements(array.get());
        std::size_t const tooMany[] = {count, 2};
        EXPECT_THROW(zxSetDimensions(array.get(), tooMany), std::invalid_argument);
        EXPECT_TRUE(zxIsEqual(array.get(), former.get()));

        std::size_t const standing[] = {1, 1, count};
        zxSetDimensions(array.get(), standing);
        EXPECT_FALSE(zxIsEqual(array.get(), former.get()));
        EXPECT_THAT(zxGetDimensions(array.get()), ElementsAreArray(standing));
        if (zxArray const* const underlying = zxGetUnderlyingArray(array.get())) {
            EXPECT_THAT(zxGetDimensions(underlying), ElementsAreArray(standing));
        }
        zxSetDimensions(array.get(), zxGetDimensions(former.get()));
        EXPECT_TRUE(zxIsEqual(array.get(), former.get()));
    }
}

TEST(Array, ComparesClassShapeAndContents) {
    struct Case {
        zx::Array left;
        zx::Array right;
        bool differ;  // with NaNs that differ
        bool same;    // with NaNs that are the same
    };
    auto const empty = [](char const* name) { return zx::Array(zxCreateEmptyObject(name)); };
    auto const one = [] { return row<double>({1}); };
    std::vector<Case> cases;
    auto const add = [&](zx::Array left, zx::Array right, bool differ, bool same) {
        cases.push_back({std::move(left), std::move(right), differ, same});
    };
    add(row<double>({0.0}), row<double>({-0.0}), true, true);
    add(row<double>({1, nan}), row<double>({1, nan}), false, true);
    add(row<double>({1, nan}), row<double>({nan, 1}), false, false);
    add(row<float>({std::nanf("1")}), row<float>({-std::nanf("2")}), false, true);
    add(row<std::complex<double>>({{1, nan}}), row<std::complex<double>>({{1, nan}}), false, true);
    add(row<std::complex<double>>({{1, 0}}), row<double>({1, 0}), false, false);
    add(row<std::int32_t>({1}), row<std::uint32_t>({1}), false, false);
    add(row<double>({}), zx::Array(zxCreateNumericMatrix(0, 0, zxDoubleClass)), false, false);
    add(text(u"a"), text(u"b"), false, false);
    add(text(u"a"), strings({u"a"}), false, false);
    add(strings({u"a", u"b"}), strings({u"a", u"c"}), false, false);
    add(cell(zx::Array(), one()), cell(zx::Array(zxCreateNumericMatrix(0, 0, zxDoubleClass)), one()), true, true);
    add(cell(cell(row<double>({nan}))), cell(cell(row<double>({nan}))), false, true);
    add(cell(one()), cell(row<double>({2})), false, false);
    add(structure("a", one(), "b", text(u"x")), structure("b", text(u"x"), "a", one()), true, true);
    add(structure("a", one(), "b", one()), structure("a", one()), false, false);
    add(structure("a", one(), "b", one()), structure("a", one(), "c", one()), false, false);
    add(structure("a", one()), structure("a", text(u"x")), false, false);
    add(based(one()), based(one()), true, true);
    add(based(one()), based(one(), "test.Other"), false, false);
    add(based(one()), based(row<double>({2})), false, false);
    add(based(one()), one(), false, false);
    add(empty("A"), empty("A"), true, true);
    add(empty("A"), empty("B"), false, false);
    add(empty("A"), based(zx::Array(zxCreateNumericMatrix(0, 0, zxInt32Class)), "A"), true, true);
    std::size_t const none[] = {0, 0};
    add(empty("A"), zx::Array(zxCreateNativeObjectArray("A", none, zxtest::byNumber)), true, true);
    add(empty("double"), zx::Array(zxCreateNumericMatrix(0, 0, zxDoubleClass)), false, false);
    add(counted({1, 2}), counted({1, 2}), true, true);
    add(counted({1, 2}), counted({1, 3}), false, false);
    add(counted({1}, zxtest::byIdentity), counted({1}, zxtest::byIdentity), false, false);
    for (Case const& c : cases) {
        SCOPED_TRACE(&c - cases.data());
        EXPECT_EQ(zxIsEqual(c.left.get(), c.right.get()), c.differ);
        EXPECT_EQ(zxIsEqual(c.right.get(), c.left.get()), c.differ);
        EXPECT_EQ(zxIsEqual(c.left.get(), c.right.get(), zxNanRule::Same), c.same);
        EXPECT_EQ(zxIsEqual(c.right.get(), c.left.get(), zxNanRule::Same), c.same);
        EXPECT_FALSE(zxIsEqual(c.left.get(), nullptr));
    }
    EXPECT_TRUE(zxIsEqual(nullptr, nullptr));
}

TEST(Array, NoTwoKindsAreEqual) {
    std::vector<Sample> const all = samples();
    for (Sample const& left : all) {
        for (Sample const& right : all) {
            bool const equal = zxIsEqual(left.make().get(), right.make().get());
            EXPECT_EQ(equal, left.name == right.name) << left.name << " " << right.name;
        }
    }
}

TEST(Array, CopiesShareNothing) {
    for (Sample const& sample : samples()) {
        SCOPED_TRACE(sample.name);
        zx::Array original = sample.make();
        zx::Array const copied = zx::copy(original.get());
        EXPECT_TRUE(zxIsEqual(original.get(), copied.get()));
        original.reset();
        EXPECT_TRUE(zxIsEqual(sample.make().get(), copied.get()));
    }
    EXPECT_EQ(zxtest::Counted::alive, 0);
    EXPECT_EQ(zxDuplicateArray(nullptr), nullptr);
}

TEST(Array, ElementsAreArraysOfTheSameClass) {
    for (Sample const& sample : samples()) {
        SCOPED_TRACE(sample.name);
        zx::Array const array = sample.make();
        zx::Array const last(zxDuplicateElement(array.get(), zxGetNumberOfElements(array.get()) - 1));
        EXPECT_EQ(zxGetNumberOfElements(last.get()), 1U);
        EXPECT_EQ(zxGetClassName(last.get()), sample.className);
        EXPECT_EQ(zxIsComplex(last.get()), zxIsComplex(array.get()));
        EXPECT_TRUE(zxIsEqual(last.get(), zx::Array(zxDuplicateElement(last.get(), 0)).get()));
        EXPECT_FALSE(zxIsEqual(last.get(), zx::Array(zxDuplicateElement(array.get(), 0)).get()));
        EXPECT_THROW(zxDuplicateElement(array.get(), zxGetNumberOfElements(array.get())), std::out_of_range);
    }
    EXPECT_EQ(zx::valueAt<double>(zx::Array(zxDuplicateElement(row<double>({1, 2, 3}).get(), 1)).get()), 2);
}

TEST(Array, IsAsDeepAsMemoryGoes) {
    zx::Array deep = row<double>({1});
    for (int i = 0; i < 200000; ++i) {
        deep = i % 2 == 0 ? cell(std::move(deep)) : structure("f", std::move(deep));
    }
    zx::Array const copied = zx::copy(deep.get());
    EXPECT_TRUE(zxIsEqual(deep.get(), copied.get()));
}

TEST(Array, NullHasNoElementsAndNoClass) {
    EXPECT_TRUE(zxIsEmpty(nullptr));
    EXPECT_EQ(zxGetNumberOfElements(nullptr), 0U);
    for (auto const is : {zxIsNumeric, zxIsLogical, zxIsChar, zxIsCell, zxIsStruct, zxIsObject, zxIsComplex, zxIsText,
                          zxIsNativeObject}) {
        EXPECT_FALSE(is(nullptr));
    }
    EXPECT_FALSE(zxIsA(nullptr, "double"));
    EXPECT_FALSE(zxIsClass(nullptr, "double"));
    EXPECT_THROW(zxGetClassCode(nullptr), std::invalid_argument);
    EXPECT_THROW(zxGetCell(nullptr, 0), std::invalid_argument);
    EXPECT_THROW(zx::values<double>(nullptr), std::invalid_argument);
    zxDestroyArray(nullptr);
}

}  // namespace
