// Undo and redo: what is kept and for how long, and that what comes back is the very same.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/node.h"

#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

TEST(History, KeepsTheLatest) {
    for (int limit : {0, 1, 2, 5, 100}) {
        for (int commits : {0, 1, 5, 12}) {
            SCOPED_TRACE(std::to_string(limit) + " of " + std::to_string(commits));
            Model const model = Model::create();
            Node const e = Node::create(model);
            model->enableHistory(static_cast<std::size_t>(limit));
            for (int i = 1; i <= commits; ++i) e->setRank(i);
            int const kept = std::min(limit, commits);
            for (int round = 0; round < 2; ++round) {
                EXPECT_EQ(model->undoDepth(), static_cast<std::size_t>(kept));
                EXPECT_FALSE(model->redo());
                for (int i = 1; i <= kept; ++i) {
                    EXPECT_TRUE(model->undo());
                    EXPECT_EQ(e->rank(), commits - i);
                    EXPECT_EQ(model->redoDepth(), static_cast<std::size_t>(i));
                }
                EXPECT_FALSE(model->undo());
                for (int i = kept; i-- > 0;) {
                    EXPECT_TRUE(model->redo());
                    EXPECT_EQ(e->rank(), commits - i);
                }
            }
        }
    }
}

TEST(History, DropsWhatCouldBeRedoneWithTheNextCommit) {
    Model const model = Model::create();
    model->enableHistory(10);
    Node const e = Node::create(model);
    e->setRank(1);
    e->setRank(2);
    model->undo();
    {
        Transaction const rolledBack = model->beginTransaction(false);
        e->setRank(9);
    }
    e->setRank(1);  // no event
    {
        Transaction transaction = model->beginTransaction(false);
        e->setRank(7);
        e->setRank(1);
        Node::create(model)->destroy();
        transaction.commit(boost::none);  // nothing is left
    }
    EXPECT_EQ(model->redoDepth(), 1U);
    EXPECT_TRUE(model->redo());
    EXPECT_EQ(e->rank(), 2);
    model->undo();
    e->setRank(3);
    EXPECT_FALSE(model->redo());
    EXPECT_EQ(model->undoDepth(), 3U);
}

TEST(History, LetsGoOfWhatItNoLongerKeeps) {
    int const living = Node::Impl::living;
    Model const model = Model::create();
    model->enableHistory(2);
    Node const e = Node::create(model);
    Node::create(model)->destroy();
    EXPECT_EQ(Node::Impl::living, living + 2) << "kept, to be brought back";
    e->setRank(1);
    EXPECT_EQ(Node::Impl::living, living + 2);
    e->setRank(2);
    EXPECT_EQ(Node::Impl::living, living + 1) << "its destruction fell out";

    e->children().add(Node::create(model));
    model->undo();
    model->undo();
    EXPECT_EQ(Node::Impl::living, living + 2) << "undone, and may be redone";
    e->setRank(3);
    EXPECT_EQ(Node::Impl::living, living + 1);

    Node::create(model)->destroy();
    model->enableHistory(1);
    EXPECT_EQ(model->undoDepth(), 1U);
    EXPECT_TRUE(model->undo());
    EXPECT_EQ(model->elementCount(), 2U);
    EXPECT_TRUE(model->redo());
    model->enableHistory(3);
    EXPECT_EQ(model->undoDepth(), 1U) << "a larger limit keeps what there was";
    model->enableHistory(0);
    EXPECT_EQ(Node::Impl::living, living + 1);
    EXPECT_FALSE(model->undo());
    e->setRank(4);
    EXPECT_EQ(model->undoDepth(), 0U);
}

TEST(History, IsNotForTheInsideOfTransactions) {
    Model const model = Model::create();
    model->enableHistory(5);
    Node const e = Node::create(model);
    e->setRank(1);
    Transaction transaction = model->beginTransaction(false);
    EXPECT_TRUE(failsWith<msg::TransactionIsOpen>([&] { model->undo(); }));
    EXPECT_TRUE(failsWith<msg::TransactionIsOpen>([&] { model->redo(); }));
    e->setRank(2);
    model->enableHistory(1);
    transaction.commit(boost::none);
    EXPECT_EQ(model->undoDepth(), 1U);
    EXPECT_TRUE(model->undo());
    EXPECT_EQ(e->rank(), 1);
}

TEST(History, BringsTheSameElementsBack) {
    Model const model = Model::create();
    model->enableHistory(10);
    Special const root = Special::create(model, idOf(1));
    auto* const child = Node::create(model, idOf(2)).impl();
    root->parts().add(Node::of(child));
    root->parts().insert(0, Node::create(model, idOf(3)));
    std::string const before = dump(model);
    child->destroy();
    EXPECT_FALSE(model->findElement(idOf(2), FindElementBehavior::InMemoryOnly));
    EXPECT_TRUE(model->undo());
    EXPECT_EQ(model->findElement(idOf(2), FindElementBehavior::InMemoryOnly).impl(), child);
    EXPECT_EQ(root->parts()[1].impl(), child);
    root->destroy();
    EXPECT_EQ(model->elementCount(), 0U);
    model->undo();
    std::string const after = dump(model);
    EXPECT_EQ(after.substr(0, after.rfind("closed")), before.substr(0, before.rfind("closed")));
    model->redo();
    EXPECT_FALSE(root);
    EXPECT_TRUE(model->getElements().empty());
}

TEST(History, OutlivesEntriesThatLeaveAndComeAgain) {
    // The first transaction knows an entry's place; the second leaves nothing, yet the entry was another meanwhile.
    struct Case {
        char const* name;
        void (*first)(Special const&, Node const&);
        void (*leave)(Special const&, Node const&);
        void (*comeAgain)(Special const&, Node const&);
    };
    Case const cases[] = {
        {"set", [](Special const& r, Node const&) { r->tags().insert(u"a tag that is too long for the spot"); },
         [](Special const& r, Node const&) { r->tags().erase(u"a tag that is too long for the spot"); },
         [](Special const& r, Node const&) { r->tags().insert(u"a tag that is too long for the spot"); }},
        {"map", [](Special const& r, Node const& e) { r->byName().insert(e); },
         [](Special const& r, Node const& e) { r->byName().remove(e); },
         [](Special const& r, Node const& e) { r->byName().insert(e); }},
        {"multimap", [](Special const& r, Node const& e) { r->byRank().insert(e); },
         [](Special const& r, Node const&) { r->byRank().clear(); },
         [](Special const& r, Node const& e) { r->byRank().insert(e); }},
        {"neighbour",
         [](Special const& r, Node const& e) {
             Node const first = Node::create(r->getModel());
             first->setRank(-1);
             r->byRank().insert(first);
             r->byRank().insert(e);
             r->byRank().remove(first);
         },
         [](Special const& r, Node const& e) { r->byRank().remove(e); },
         [](Special const& r, Node const& e) { r->byRank().insert(e); }},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        Model const model = Model::create();
        model->enableHistory(10);
        Special const root = Special::create(model, idOf(1));
        Node const e = Node::create(model, idOf(2));
        std::size_t const depth = model->undoDepth();
        std::vector<std::string> states{dump(model)};
        c.first(root, e);
        for (int i = 0; i < 3; ++i) {
            Transaction transaction = model->beginTransaction(false);
            c.leave(root, e);
            c.comeAgain(root, e);
            transaction.commit(boost::none);
        }
        std::string const last = dump(model);
        while (model->undoDepth() > depth) model->undo();
        std::string first = dump(model);
        EXPECT_EQ(first.substr(0, first.rfind("redo")), states[0].substr(0, states[0].rfind("redo")));
        while (model->redo()) continue;
        EXPECT_EQ(dump(model), last);
    }
}

}  // namespace
