// An operation that runs out of memory changes nothing, wherever it fails.
#include "support/memory.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/change_set.h>

#include <gtest/gtest.h>

#include <optional>

namespace {

using namespace nodes;
using namespace quay::zero;

/// A model with a value or child in every property.
struct Sample {
    Model model = Model::create();
    Special root = Special::create(model, idOf(1));
    std::vector<Node> n;

    Sample() {
        n.resize(12);
        for (unsigned i = 2; i < 12; ++i) {
            n[i] = Node::create(model, i % 2 == 0 ? idOf(i) : boost::uuids::uuid{});
            n[i]->setText(std::u16string(i, u'n'));
            n[i]->setNumber(i);
            n[i]->setRank(static_cast<int>(i % 3));
        }
        free()->setText(n[4]->text());
        for (unsigned i : {2, 3, 2}) root->children().add(n[i]);
        for (unsigned i : {4, 5}) root->byName().insert(n[i]);
        for (unsigned i : {6, 7}) root->byRank().insert(n[i]);
        root->byNumber().insert(n[8]);
        n[10]->children().add(n[11]);
        root->parts().add(n[10]);
        for (int i : {1, 2, 3}) root->numbers().push_back(i);
        for (char16_t const* tag : {u"x", u"y"}) root->tags().insert(tag);
    }
    Node const& free() const { return n[9]; }
};

struct Case {
    char const* name;
    void (*run)(Sample&);
};

Case const kCases[] = {
    {"write a short text", [](Sample& s) { s.root->setText(u"t"); }},
    {"write a long text", [](Sample& s) { s.free()->setText(std::u16string(100, u't')); }},
    {"write a large value", [](Sample& s) { s.root->setBox({{1}}); }},
    {"write an optional", [](Sample& s) { s.root->setCount(1); }},
    {"write in a subclass", [](Sample& s) { s.root->setNote(std::string(40, 'n')); }},
    {"create", [](Sample& s) { Node::create(s.model); }},
    {"create under an id", [](Sample& s) { Special::create(s.model, idOf(100)); }},
    {"find", [](Sample& s) { s.model->findElement(idOf(4), FindElementBehavior::InMemoryOnly); }},
    {"add a child", [](Sample& s) { s.root->children().add(s.free()); }},
    {"move a child in", [](Sample& s) { s.root->children().insert(0, s.n[11]); }},
    {"move a child from a map", [](Sample& s) { s.n[10]->children().add(s.n[4]); }},
    {"replace a child", [](Sample& s) { s.root->children().set(1, s.n[11]); }},
    {"erase a child", [](Sample& s) { s.root->children().erase(std::size_t{1}); }},
    {"remove a child", [](Sample& s) { s.root->children().remove(s.n[2]); }},
    {"clear children", [](Sample& s) { s.root->children().clear(); }},
    {"insert by name", [](Sample& s) { s.root->byName().insert(s.n[8]); }},
    {"replace by name", [](Sample& s) { s.root->byName().insert(s.free(), InsertPolicy::Replace); }},
    {"insert by rank", [](Sample& s) { s.root->byRank().insert(s.n[4]); }},
    {"insert by number", [](Sample& s) { s.root->byNumber().insert(s.n[3]); }},
    {"remove from a map", [](Sample& s) { s.root->byName().remove(s.n[4]); }},
    {"clear a map", [](Sample& s) { s.root->byName().clear(); }},
    {"clear a multimap", [](Sample& s) { s.root->byRank().clear(); }},
    {"push a number", [](Sample& s) { s.root->numbers().push_back(4); }},
    {"insert a number", [](Sample& s) { s.root->numbers().insert(s.root->numbers().begin(), 0); }},
    {"erase a number", [](Sample& s) { s.root->numbers().erase(s.root->numbers().begin()); }},
    {"replace a number", [](Sample& s) { s.root->numbers().replaceAt(1, 9); }},
    {"clear numbers", [](Sample& s) { s.root->numbers().clear(); }},
    {"copy numbers", [](Sample& s) { s.free()->numbers().copyValues(s.root->numbers()); }},
    {"insert a tag", [](Sample& s) { s.root->tags().insert(std::u16string(50, u'z')); }},
    {"erase a tag", [](Sample& s) { s.root->tags().erase(u"x"); }},
    {"clear tags", [](Sample& s) { s.root->tags().clear(); }},
    {"destroy a leaf", [](Sample& s) { s.n[6]->destroy(); }},
    {"destroy a tree", [](Sample& s) { s.root->destroy(); }},
};

/// The state of the model in which the operation is called.
struct Mode {
    char const* name;
    bool history;
    bool listener;
    int savepoints;
    bool writtenBefore;
};

Mode const kModes[] = {
    {"quiet", false, false, 0, false},
    {"with a listener", false, true, 0, false},
    {"with a history", true, true, 0, false},
    {"with a history that nobody watches", true, false, 0, false},
    {"in a transaction", false, false, 1, false},
    {"written before", true, false, 1, true},
    {"in an inner transaction", false, false, 2, false},
    {"inside, written before", true, true, 2, true},
};

/// A sample in one of the modes.
struct Scene : Sample {
    explicit Scene(Mode const& mode) {
        if (mode.history) model->enableHistory(2);
        if (mode.listener) model->addListener([](ChangeSet const&) {});
        untouched = dump(model, {.referenceCounts = true});
        for (int i = 0; i < mode.savepoints; ++i) open.emplace_back(model->beginTransaction(false));
        if (mode.writtenBefore) {
            root->setCount(7);
            root->numbers().push_back(7);
            n[11]->setNumber(70);
        }
    }
    std::string now() const { return dump(model, {.referenceCounts = true}); }
    void leave() {
        while (!open.empty()) open.pop_back();
    }

    std::string untouched;
    std::vector<Transaction> open;
};

/// Runs the operation with memory running out at each allocation in turn; returns how often it failed.
int runWithLittle(Case const& c, Mode const& mode) {
    SCOPED_TRACE(std::string(c.name) + ", " + mode.name);
    for (int granted = 0;; ++granted) {
        Scene scene(mode);
        std::string const before = scene.now();
        auto const [ranOut, failed] = nodes::starve(granted, [&] { c.run(scene); });
        if (failed) {
            EXPECT_EQ(scene.now(), before) << "after " << granted;
            c.run(scene);
        }
        if (mode.savepoints > 0) {
            scene.leave();
            EXPECT_EQ(scene.now(), scene.untouched) << "rolled back after " << granted;
        }
        if (!ranOut || testing::Test::HasFailure()) return granted;
    }
}

TEST(OutOfMemory, LeavesNoTrace) {
    int const living = Node::Impl::living;
    for (Case const& c : kCases) {
        int failures = 0;
        for (Mode const& mode : kModes) failures += runWithLittle(c, mode);
        EXPECT_GT(failures, 0) << c.name << " never asks for memory";
    }
    EXPECT_EQ(Node::Impl::living, living);
}

/// An open transaction with a change of every kind.
Transaction busy(Sample& s) {
    Transaction transaction = s.model->beginTransaction(false);
    for (Case const& c : kCases) {
        std::string_view const name = c.name;
        if (name != "destroy a tree" && name != "create under an id") c.run(s);
    }
    s.n[10]->destroy();
    return transaction;
}

TEST(OutOfMemory, LeavesATransactionOpenThatCannotCommit) {
    int failures = 0;
    for (bool enough = false; !enough; ++failures) {
        Sample s;
        int told = 0;
        s.model->enableHistory(2);
        s.model->addListener([&](ChangeSet const&) { ++told; });
        std::string const before = dump(s.model, {.referenceCounts = true});
        {
            Transaction transaction = busy(s);
            std::string const busily = dump(s.model, {.referenceCounts = true});
            auto const [ranOut, failed] = nodes::starve(failures, [&] { transaction.commit(boost::none); });
            enough = !ranOut;
            ASSERT_EQ(failed, ranOut);
            ASSERT_EQ(told, failed ? 0 : 1);
            if (failed) {
                ASSERT_TRUE(transaction.isOpen());
                ASSERT_EQ(dump(s.model, {.referenceCounts = true}), busily);
            }
            if (failures % 2 == 1) {
                transaction.commit(boost::none);
                ASSERT_EQ(told, 1);
                continue;
            }
        }
        if (!enough) {
            ASSERT_EQ(dump(s.model, {.referenceCounts = true}), before);
        }
    }
    EXPECT_GT(failures, 10);
}

TEST(OutOfMemory, UndoesAndRedoesAllOrNothing) {
    int failures = 0;
    for (bool enough = false; !enough; ++failures) {
        Sample s;
        int told = 0;
        s.model->enableHistory(2);
        s.model->addListener([&](ChangeSet const&) { ++told; });
        std::string const before = dumpElements(s.model);
        busy(s).commit(boost::none);
        std::string const after = dump(s.model);
        told = 0;
        enough = true;
        for (bool const redo : {false, true}) {
            int const toldBefore = told;
            std::string const now = dump(s.model);
            auto const [ranOut, failed] = nodes::starve(failures, [&] { redo ? s.model->redo() : s.model->undo(); });
            enough = enough && !ranOut;
            if (failed) {
                ASSERT_EQ(told, toldBefore);
                ASSERT_EQ(dump(s.model), now) << (redo ? "redo" : "undo") << " after " << failures;
                redo ? s.model->redo() : s.model->undo();
            }
            ASSERT_EQ(told, toldBefore + 1);
        }
        ASSERT_EQ(dump(s.model), after);
        s.model->undo();
        ASSERT_EQ(dumpElements(s.model), before);
    }
    EXPECT_GT(failures, 10);
}

/// Without a listener, rolling back and undoing need no memory at all.
TEST(OutOfMemory, DoesNotKeepFromGoingBack) {
    Sample s;
    s.model->enableHistory(2);
    {
        std::optional<Transaction> rolledBack(busy(s));
        EXPECT_FALSE(nodes::starve(0, [&] { rolledBack.reset(); }).ranOut);
    }
    busy(s).commit(boost::none);
    EXPECT_FALSE(nodes::starve(0, [&] { s.model->undo(); }).ranOut);
    EXPECT_FALSE(nodes::starve(0, [&] { s.model->redo(); }).ranOut);
}

/// Three nested transactions, of which each writes some of three properties. Bit p of `writes[level]` is property p.
void writeNested(Sample& s, unsigned const (&writes)[3]) {
    Node const& e = s.free();
    auto const write = [&](unsigned level) {
        if ((writes[level] & 1U) != 0) e->setRank(10 + static_cast<int>(level));
        if ((writes[level] & 2U) != 0) e->setNumber(10 + level);
        if ((writes[level] & 4U) != 0) e->setText(std::u16string(level + 1, u'w'));
    };
    write(0);
    Transaction middle = s.model->beginTransaction(false);
    write(1);
    Transaction inner = s.model->beginTransaction(false);
    write(2);
    MemoryRunsOut const memory(0, true);
    inner.commit();
    middle.commit();
}

TEST(OutOfMemory, LosesNoOldValueOfNestedTransactions) {
    for (unsigned pattern = 0; pattern < 512; ++pattern) {
        SCOPED_TRACE(pattern);
        unsigned const writes[3] = {pattern & 7U, pattern >> 3U & 7U, pattern >> 6U};
        Sample s;
        s.model->enableHistory(2);
        std::string const before = dump(s.model);
        std::string const elements = dumpElements(s.model);
        {
            Transaction const rolledBack = s.model->beginTransaction(false);
            writeNested(s, writes);
        }
        EXPECT_EQ(dump(s.model), before);
        {
            Transaction outer = s.model->beginTransaction(false);
            writeNested(s, writes);
            outer.commit();
        }
        std::string const after = dumpElements(s.model);
        EXPECT_EQ(s.model->undo(), pattern != 0);
        EXPECT_EQ(dumpElements(s.model), elements);
        EXPECT_EQ(s.model->redo(), pattern != 0);
        EXPECT_EQ(dumpElements(s.model), after);
    }
}

TEST(OutOfMemory, KeepsWhatAnInnerCommitCannotMerge) {
    Sample s;
    std::string told;
    s.model->enableHistory(2);
    s.model->addListener([&](ChangeSet const& changes) {
        told.clear();
        for (auto const& e : changes.changed()) {
            for (auto const& p : e.properties()) told += show(e.oldValue(p)) + "->" + show(e.newValue(p)) + " ";
        }
    });
    auto const now = [&] {
        return show(s.root->text()) + show(s.root->count().value_or(0)) + show(s.root->rank()) +
               show(s.root->box().sides[0]) + show(s.root->number());
    };
    std::string const before = now();
    bool ranOut = false;
    {
        Transaction outer = s.model->beginTransaction(false);
        s.root->setText(u"outer");
        Transaction inner = s.model->beginTransaction(false);
        for (int i = 2; i < 4; ++i) {
            s.root->setText(u"inner");
            s.root->setCount(i);
            s.root->setRank(i);
            s.root->setBox({{1.0 * i}});
            s.root->setNumber(i);
        }
        {
            MemoryRunsOut const memory(0);
            inner.commit(boost::none);
            ranOut = memory.happened();
        }
        ASSERT_TRUE(ranOut);
        s.root->setText(u"later");
        s.root->setNumber(5);
        outer.commit(boost::none);
    }
    std::string const after = now();
    EXPECT_EQ(told, "\"\"->\"later\" 0->5 none->3 0->3 0->3 ");
    for (int i = 0; i < 2; ++i) {
        s.model->undo();
        EXPECT_EQ(now(), before);
        EXPECT_EQ(told, "\"later\"->\"\" 5->0 3->none 3->0 3->0 ");
        s.model->redo();
        EXPECT_EQ(now(), after);
        EXPECT_EQ(told, "\"\"->\"later\" 0->5 none->3 0->3 0->3 ");
    }
}

}  // namespace
