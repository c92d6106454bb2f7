// Savepoints and transactions: the effect of commit and rollback, what listeners are told, and who may open one.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/change_set.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

/// "old->new" of every changed property in the change sets, one after the other.
class Told {
public:
    explicit Told(Model const& model) {
        model->addListener([this](ChangeSet const& changes) {
            ++times;
            for (auto const& e : changes.changed()) {
                for (auto const& p : e.properties()) {
                    text += (text.empty() ? "" : " ") + show(e.oldValue(p)) + "->" + show(e.newValue(p));
                }
            }
        });
    }
    int times = 0;
    std::string text;
};

/// A property that can hold a digit, for each way of recording changes: a value in a cell, a value on the heap, steps.
struct Holder {
    char const* name;
    void (*write)(Node const&, int);
    std::function<std::string(int)> shown;
};

Holder const kHolders[] = {
    {"in place", [](Node const& e, int v) { e->setRank(v); }, [](int v) { return show(v); }},
    {"a text", [](Node const& e, int v) { e->setText(std::u16string(v == 0 ? 0 : 20, char16_t(u'0' + v))); },
     [](int v) { return show(std::string(v == 0 ? 0 : 20, char('0' + v))); }},
    {"on the heap", [](Node const& e, int v) { e->setBox({{double(v)}}); }, [](int v) { return show(double(v)); }},
    {"by steps",
     [](Node const& e, int v) {
         if (v == 0) {
             e->numbers().clear();
         } else if (e->numbers().empty()) {
             e->numbers().push_back(v);
         } else {
             e->numbers().replaceAt(0, v);
         }
     },
     [](int v) { return v == 0 ? "[]" : "[" + show(v) + "]"; }},
};

TEST(Transactions, EndOnceAndWithTheOneAround) {
    Model const model = Model::create();
    Node const e = Node::create(model);
    Told const told(model);
    {
        Transaction outer = model->beginTransaction(false);
        Transaction inner = model->beginTransaction(false);
        e->setRank(1);
        Transaction moved(std::move(inner));
        EXPECT_FALSE(inner.isOpen());
        EXPECT_TRUE(moved.isOpen());
        inner.commit(boost::none);
        EXPECT_TRUE(moved.isOpen());

        outer.commit(boost::none);  // the inner one was never committed
        EXPECT_FALSE(moved.isOpen());
        EXPECT_TRUE(outer.wasCommitted() && !moved.wasCommitted());
        EXPECT_EQ(e->rank(), 0);
        EXPECT_FALSE(model->inTransaction());
        moved.commit(boost::none);

        Transaction next = model->beginTransaction(false);
        e->setRank(2);
        outer.commit(boost::none);
        moved.commit(boost::none);
        EXPECT_TRUE(next.isOpen());
        next.commit(boost::none);
        next.commit(boost::none);
    }
    EXPECT_EQ(told.text, "0->2");
    EXPECT_EQ(e->rank(), 2);
}

TEST(Transactions, KeepTheirModel) {
    Node e;
    {
        Model model = Model::create();
        e = Node::create(model);
        Transaction transaction = model->beginTransaction(false);
        model = Model();
        EXPECT_TRUE(e);
        e->setRank(1);
        transaction.commit(boost::none);
        EXPECT_EQ(e->rank(), 1);
    }
    EXPECT_FALSE(e);
}

TEST(Transactions, ReportNaNOverNaNAndNotMinusZeroOverZero) {
    Model const model = Model::create();
    Node const e = Node::create(model);
    e->setNumber(std::numeric_limits<double>::quiet_NaN());
    Told const told(model);
    e->setNumber(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(told.times, 1);
    EXPECT_EQ(told.text, "nan->nan");
    e->setNumber(0.0);
    e->setNumber(-0.0);
    EXPECT_EQ(told.times, 2);
    EXPECT_FALSE(std::signbit(e->number()));
}

TEST(Transactions, GiveBackTheBitsOfValuesThatCameBack) {
    Model const model = Model::create();
    Node const e = Node::create(model);
    e->setBox({{0.0}});
    model->enableHistory(5);
    for (bool const isNested : {false, true}) {
        Transaction transaction = model->beginTransaction();
        e->setNumber(5.5);
        e->setBox({{5.5}});
        {
            Transaction inner = model->beginTransaction();
            e->setNumber(-0.0);
            e->setBox({{-0.0}});
            if (isNested) inner.commit();
        }
        if (!isNested) {
            e->setNumber(-0.0);
            e->setBox({{-0.0}});
        }
        transaction.commit();
        EXPECT_FALSE(std::signbit(e->number()));
        EXPECT_FALSE(std::signbit(e->box().sides[0]));
        EXPECT_EQ(model->undoDepth(), 0U);
    }
}

TEST(Transactions, OfTheSystemThatLeaveNothingKeepTheHistory) {
    Model const model = Model::create();
    Node const e = Node::create(model);
    model->enableHistory(5);
    e->setRank(1);
    auto const inSystem = [&](auto const& work) {
        Transaction transaction = model->beginTransaction(true);
        work();
        transaction.commit();
    };
    inSystem([] {});
    inSystem([&] {
        e->setRank(2);
        e->setRank(1);
        Node::create(model)->destroy();
    });
    EXPECT_EQ(model->undoDepth(), 1U);
    inSystem([&] { e->setRank(3); });
    EXPECT_EQ(model->undoDepth(), 0U);
}

TEST(Transactions, NestDeep) {
    constexpr int kDepth = 100'000;
    Model const model = Model::create();
    Node const e = Node::create(model);
    model->enableHistory(1);
    std::vector<Transaction> open;
    for (int i = 1; i <= kDepth; ++i) {
        open.push_back(model->beginTransaction());
        e->setRank(i);
    }
    while (!open.empty()) {
        open.back().commit();
        EXPECT_TRUE(open.back().wasCommitted());
        open.pop_back();
    }
    EXPECT_EQ(e->rank(), kDepth);
    EXPECT_TRUE(model->undo());
    EXPECT_EQ(e->rank(), 0);
}

}  // namespace
