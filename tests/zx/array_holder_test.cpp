#include <zx/array_holder.h>
#include <zx/values.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

using quay::zero::ArrayHolder;

static_assert(sizeof(ArrayHolder) <= 24);
static_assert(std::is_nothrow_move_constructible_v<ArrayHolder> && std::is_nothrow_move_assignable_v<ArrayHolder>);

TEST(ArrayHolder, KeepsACopyOfItsOwn) {
    zx::Array source = zx::scalar(1.5);
    ArrayHolder const holder(source.get());
    ASSERT_NE(holder.get(), source.get());
    zx::valuesForWriting<double>(source.get())[0] = 7;
    EXPECT_EQ(zx::valueAt<double>(holder.get()), 1.5);
    source.reset();
    EXPECT_EQ(zx::valueAt<double>(holder.get()), 1.5);
    EXPECT_EQ(ArrayHolder(nullptr).get(), nullptr);
}

TEST(ArrayHolder, KnowsItsSourceUntilThatIsWritten) {
    zx::Array const source = zx::scalar(1.5);
    zx::Array const equal = zx::scalar(1.5);
    ArrayHolder holder(source.get());
    EXPECT_TRUE(holder.isSameAs(source.get()));
    EXPECT_TRUE(holder.isSameAs(holder.get()));
    EXPECT_FALSE(holder.isSameAs(equal.get()));
    EXPECT_FALSE(holder.isSameAs(nullptr));

    ArrayHolder const copied = holder;
    EXPECT_TRUE(copied.isSameAs(source.get()));
    EXPECT_FALSE(copied.isSameAs(holder.get()));

    ArrayHolder const moved = std::move(holder);
    EXPECT_TRUE(moved.isSameAs(source.get()));
    EXPECT_TRUE(holder.isSameAs(nullptr));  // NOLINT(bugprone-use-after-move): moved from is null
    EXPECT_FALSE(holder.isSameAs(source.get()));

    zx::valuesForWriting<double>(source.get());
    EXPECT_FALSE(moved.isSameAs(source.get()));
}

TEST(ArrayHolder, TellsARecycledAddressFromItsSource) {
    // The allocator reuses the address sooner or later; usually at once.
    zx::Array source = zx::scalar(1.5);
    ArrayHolder const holder(source.get());
    zxArray const* const address = source.get();
    for (int i = 0; i < 100; ++i) {
        source.reset();
        source = zx::scalar(1.5);
        ASSERT_FALSE(holder.isSameAs(source.get())) << (source.get() == address);
    }
}

TEST(ArrayHolder, ComparesByIdentity) {
    zx::Array const source = zx::scalar(1.5);
    ArrayHolder const holder(source.get());
    ArrayHolder copy = holder;
    EXPECT_EQ(holder, holder);
    EXPECT_NE(holder, copy);
    EXPECT_NE(holder, ArrayHolder());
    EXPECT_EQ(ArrayHolder(), ArrayHolder());
    copy = ArrayHolder();
    EXPECT_EQ(copy.get(), nullptr);
    copy = holder;
    ArrayHolder const& same = copy;
    copy = same;
    EXPECT_EQ(zx::valueAt<double>(copy.get()), 1.5);
}

}  // namespace
