#include "samples.h"

#include <zx/array_holder.h>

#include <gtest/gtest.h>

#include <set>

namespace {

using zxtest::cell;
using zxtest::row;
using zxtest::Sample;
using zxtest::samples;
using zxtest::structure;
using zxtest::text;

TEST(Serial, IsDrawnAfreshForEveryArray) {
    std::set<std::uint64_t> seen;
    for (int round = 0; round < 3; ++round) {
        for (Sample const& sample : samples()) {
            zx::Array const array = sample.make();
            zx::Array const copied = zx::copy(array.get());
            EXPECT_TRUE(seen.insert(zx::serialOf(array.get())).second) << sample.name;
            EXPECT_TRUE(seen.insert(zx::serialOf(copied.get())).second) << sample.name;
        }
    }
}

TEST(Serial, ChangesWithEveryWriteAtAnyDepth) {
    struct Case {
        char const* name;
        zx::Array array;
        void (*write)(zxArray*);
    };
    std::size_t const two[] = {1, 2};
    std::vector<Case> cases;
    auto const add = [&](char const* name, zx::Array array, void (*write)(zxArray*)) {
        cases.push_back({name, std::move(array), write});
    };
    add("values", row<double>({1}), [](zxArray* a) { zx::valuesForWriting<double>(a)[0] = 2; });
    add("shape", row<double>({1, 2}), [](zxArray* a) {
        std::size_t const column[] = {2, 1};
        zxSetDimensions(a, column);
    });
    add("string", zxtest::strings({u"a"}), [](zxArray* a) { zxSetStringElement(a, 0, u"b"); });
    add("native", zxtest::counted({1}), [](zxArray* a) { zxSetNative(a, 0, nullptr); });
    add("cell", cell(text(u"a")), [](zxArray* a) { zxSetCell(a, 0, nullptr); });
    add("unset cell", zx::Array(zxCreateCellArray(two)), [](zxArray* a) { zxGetCellForWriting(a, 1); });
    add("new field", structure(), [](zxArray* a) { zxAddField(a, "f"); });
    add("former field", structure("f", text(u"a")), [](zxArray* a) { zxRemoveField(a, "f"); });
    add("field", structure("f", text(u"a")), [](zxArray* a) { zxSetField(a, 0, "f", nullptr); });
    add("field by number", structure("f", text(u"a")), [](zxArray* a) { zxSetFieldByNumber(a, 0, 0, nullptr); });
    add("below", cell(structure("f", cell(row<double>({1})))), [](zxArray* a) {
        zxArray* const inner = zxGetCellForWriting(zxGetFieldForWriting(zxGetCellForWriting(a, 0), 0, "f"), 0);
        zx::valuesForWriting<double>(inner)[0] = 2;
    });
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        zx::Array const former = zx::copy(c.array.get());
        zx::Array const copied = zx::copy(c.array.get());
        for (zxArray* const array : {c.array.get(), copied.get()}) {
            quay::zero::ArrayHolder const holder(array);
            std::uint64_t const serial = zx::serialOf(array);
            ASSERT_TRUE(holder.isSameAs(array));
            c.write(array);
            EXPECT_NE(zx::serialOf(array), serial);
            EXPECT_FALSE(holder.isSameAs(array));
            EXPECT_TRUE(zxIsEqual(holder.get(), former.get()));
        }
    }
}

TEST(Serial, ChangesWhenAnElementGotEarlierIsWritten) {
    zx::Array const outer = cell(cell(row<double>({1})));
    zxArray* const inner = zxGetCellForWriting(zxGetCellForWriting(outer.get(), 0), 0);
    quay::zero::ArrayHolder const holder(outer.get());
    zx::valuesForWriting<double>(inner)[0] = 2;
    EXPECT_FALSE(holder.isSameAs(outer.get()));
}

TEST(Serial, StaysWhenArraysAreReadOrAWriteIsRefused) {
    zx::Array const array = cell(structure("f", row<double>({1})), zx::Array());
    zxArray* const a = array.get();
    std::uint64_t const serial = zx::serialOf(a);
    zxArray const* const inner = zxGetCell(a, 0);
    EXPECT_EQ(zx::valueAt<double>(zxGetField(inner, 0, "f")), 1);
    EXPECT_TRUE(zxIsEmpty(zxGetCell(a, 1)));
    EXPECT_FALSE(zxIsText(a));
    zx::Array const copied = zx::copy(a);
    std::size_t const wrong[] = {3, 1};
    EXPECT_THROW(zxSetDimensions(a, wrong), std::invalid_argument);
    EXPECT_THROW(zxSetCell(a, 2, nullptr), std::out_of_range);
    EXPECT_THROW(zxSetCell(a, 0, a), std::invalid_argument);
    EXPECT_THROW(zx::valuesForWriting<double>(a), std::invalid_argument);
    EXPECT_EQ(zx::serialOf(a), serial);
}

}  // namespace
