// Listeners: what a change set tells, to whom, and what may not be done meanwhile.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/node.h"

#include <quay/zero/change_set.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

/// "created a b; destroyed c; p of d: old -> new".
std::string textOf(ChangeSet const& changes) {
    Names const names;
    std::string text;
    for (auto const& e : changes.created()) text += "created " + names.of(e.impl()) + "; ";
    for (auto const& e : changes.destroyed()) text += "destroyed " + names.of(e.impl()) + "; ";
    for (auto const& change : changes.changed()) {
        for (auto const& p : change.properties()) {
            text += names.of(change.element().impl()) + "." + std::to_string(p->getIndex()) + ": " +
                    show(change.oldValue(p)) + " -> " + show(change.newValue(p)) + "; ";
        }
    }
    return text;
}

struct Sample {
    Model model = Model::create();
    Special root = Special::create(model, idOf(1));
    Node a = Node::create(model, idOf(2));
    std::vector<std::string> told;

    void listen() {
        model->addListener([this](ChangeSet const& c) { told.push_back(textOf(c)); });
    }
    template <class F>
    void inTransaction(F&& f) {
        Transaction transaction = model->beginTransaction(false);
        f();
        transaction.commit(boost::none);
    }
};

TEST(Listeners, MayNotWriteByAnyDoor) {
    std::function<void(Sample&)> const doors[] = {
        [](Sample& s) { s.a->setRank(3); },
        [](Sample& s) { s.a->notifyModifying(kRank); },
        [](Sample& s) { s.root->children().basicClear(); },
        [](Sample& s) { s.root->children().basicAdd(s.a); },
        [](Sample& s) { s.root->basicDisassociateAll(); },
        [](Sample& s) { s.a->basicSetContainer(nullptr, 0); },
    };
    for (auto const& door : doors) {
        Sample s;
        s.model->enableHistory(10);
        s.root->children().add(s.a);
        int refused = 0;
        s.model->addListener([&](ChangeSet const& changes) {
            EXPECT_TRUE(failsWith<msg::ListenerMayNotWrite>([&] { door(s); }));
            ++refused;
            textOf(changes);  // which is still whole
        });
        s.root->setText(u"t");
        std::string const before = dump(s.model);
        ASSERT_TRUE(s.model->undo());
        ASSERT_TRUE(s.model->redo());
        EXPECT_EQ(dump(s.model), before);
        EXPECT_EQ(refused, 3);
    }
}

TEST(Listeners, AreToldWhatChanged) {
    struct Case {
        char const* name;
        void (*change)(Sample&);
        char const* told;
    };
    Case const cases[] = {
        {"a value", [](Sample& s) { s.root->setText(u"t"); }, "#1.1: \"\" -> \"t\"; "},
        {"an optional", [](Sample& s) { s.root->setCount(3); }, "#1.3: none -> 3; "},
        {"properties by index",
         [](Sample& s) {
             s.root->setNote("n");
             s.root->numbers().push_back(1);
             s.root->setRank(2);
             s.root->setRank(3);
             s.root->setText(u"t");
             s.root->setText(u"");
         },
         "#1.4: 0 -> 3; #1.6: [] -> [1]; #1.12: \"\" -> \"n\"; "},
        {"creations in order",
         [](Sample& s) {
             s.root->children().add(Node::create(s.model, idOf(9)));
             s.root->children().add(Node::create(s.model, idOf(8)));
             s.root->children()[0]->setRank(7);
         },
         "created #9; created #8; #1.8: [] -> [#9, #8]; "},
        {"a move",
         [](Sample& s) {
             s.root->children().add(s.a);
             s.root->parts().add(s.a);
         },
         "#1.13: [] -> [#2]; "},
        {"a destruction",
         [](Sample& s) {
             s.a->setRank(5);
             s.a->destroy();
         },
         "destroyed +#2; "},
        {"destructions in order",
         [](Sample& s) {
             s.a->children().add(Node::create(s.model, idOf(9)));
             s.a->destroy();
             s.root->destroy();
         },
         "destroyed +#2; destroyed +#1; "},
        {"what came and went",
         [](Sample& s) {
             Node const gone = Node::create(s.model);
             s.root->children().add(gone);
             gone->setRank(1);
             gone->destroy();
             s.root->setRank(1);
         },
         "#1.4: 0 -> 1; "},
        {"nothing",
         [](Sample& s) {
             s.root->setRank(1);
             s.root->setRank(0);
             s.root->children().add(s.a);
             s.root->children().clear();
             Node::create(s.model)->destroy();
         },
         nullptr},
        {"inner work that stayed",
         [](Sample& s) {
             s.inTransaction([&] { s.root->setRank(1); });
             Transaction const rolledBack = s.model->beginTransaction(false);
             s.root->setRank(2);
             s.root->setText(u"t");
         },
         "#1.4: 0 -> 1; "},
        {"old contents",
         [](Sample& s) {
             s.root->numbers().assign({4, 5, 6});
             s.inTransaction([&] {
                 s.root->numbers().eraseAt(1);
                 s.root->numbers().insertAt(0, 3);
             });
             s.root->numbers().replaceAt(2, 9);
         },
         "#1.6: [] -> [3, 4, 9]; "},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        Sample s;
        s.listen();
        s.inTransaction([&] { c.change(s); });
        EXPECT_EQ(s.told, c.told == nullptr ? std::vector<std::string>{} : std::vector<std::string>{c.told});
    }
}

TEST(Listeners, AreToldOfUndoAndRedo) {
    Sample s;
    s.model->enableHistory(10);
    s.listen();
    s.inTransaction([&] {
        s.root->children().add(Node::create(s.model, idOf(9)));
        Node::create(s.model, idOf(8))->destroy();
        s.root->setRank(4);
        s.a->destroy();
    });
    s.model->undo();
    s.model->redo();
    std::vector<std::string> const expected{
        "created #9; destroyed +#2; #1.4: 0 -> 4; #1.8: [] -> [#9]; ",
        "created #2; destroyed +#9; #1.4: 4 -> 0; #1.8: [+#9] -> []; ",
        "created #9; destroyed +#2; #1.4: 0 -> 4; #1.8: [] -> [#9]; ",
    };
    EXPECT_EQ(s.told, expected);
}

TEST(Listeners, CanAskForOldValuesAgain) {
    Sample s;
    s.root->numbers().push_back(1);
    auto const& properties = nodeMeta().properties;
    int asked = 0;
    s.model->addListener([&](ChangeSet const& changes) {
        ASSERT_EQ(changes.changed().size(), 1U);
        ElementChange const& change = changes.changed()[0];
        Value const first = change.oldValue(properties[kNumbers]);
        Value const second = change.oldValue(properties[kNumbers]);
        EXPECT_EQ(first.data(), second.data()) << "one copy, which lives as long as the change set";
        EXPECT_EQ(show(first), "[1]");
        EXPECT_EQ(change.newValue(properties[kNumbers]).data(), &s.root->numbers());
        EXPECT_EQ(show(change.oldValue(properties[kRank])), "nothing") << "unchanged";
        EXPECT_EQ(show(change.oldValue(meta::Property())), "nothing");
        EXPECT_EQ(show(change.newValue(properties[kRank])), "0");
        ++asked;
    });
    for (int i = 2; i < 5; ++i) {
        s.root->numbers().assign({i, i, i});
        s.model->removeListener(1);
        s.root->numbers().assign({1});
        s.model->addListener([](ChangeSet const&) {});
    }
    EXPECT_EQ(asked, 1);
}

TEST(Listeners, MayNotWrite) {
    Sample s;
    s.model->enableHistory(5);
    s.root->setRank(1);
    std::function<void()> const doors[] = {
        [&] { s.root->setRank(9); },
        [&] { s.root->setText(u"9"); },
        [&] { s.root->children().add(s.a); },
        [&] { s.root->byName().insert(s.a); },
        [&] { s.root->numbers().push_back(9); },
        [&] { s.root->tags().clear(); },
        [&] { Node::create(s.model); },
        [&] { s.a->destroy(); },
        [&] { (void)s.model->beginTransaction(false); },
        [&] { (void)s.model->beginTransaction(true); },
        [&] { s.model->undo(); },
        [&] { s.model->redo(); },
        [&] { s.model->enableHistory(0); },
    };
    int refused = 0;
    s.model->addListener([&](ChangeSet const&) {
        std::string const before = dump(s.model);
        for (auto const& door : doors) {
            if (failsWith<msg::ListenerMayNotWrite>(door)) ++refused;
            EXPECT_EQ(dump(s.model), before) << refused;
        }
        Node const other = Node::create(Model::create());  // another model is another matter
        other->setRank(1);
    });
    s.root->setRank(2);
    EXPECT_EQ(refused, static_cast<int>(std::size(doors)));
    s.model->undo();
    EXPECT_EQ(refused, 2 * static_cast<int>(std::size(doors)));
    EXPECT_EQ(s.root->rank(), 1);
    s.a->setRank(1);
    EXPECT_EQ(s.a->rank(), 1);
}

TEST(Listeners, AreToldWhateverTheOthersThrow) {
    Sample s;
    int told = 0;
    s.model->addListener([&](ChangeSet const&) { throw std::runtime_error("mine"); });
    s.model->addListener([&](ChangeSet const&) { ++told; });
    s.model->addListener([&](ChangeSet const&) { throw 1; });
    s.model->addListener([&](ChangeSet const&) { ++told; });
    s.root->setRank(1);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(s.root->rank(), 1);
}

TEST(Listeners, ComeAndGoWhileOthersAreTold) {
    Sample s;
    std::string told;
    std::uint64_t second = 0;
    std::uint64_t first = s.model->addListener([&](ChangeSet const&) {
        told += 'a';
        s.model->removeListener(first);
        s.model->removeListener(second);
        s.model->addListener([&](ChangeSet const&) { told += 'c'; });
    });
    second = s.model->addListener([&](ChangeSet const&) { told += 'b'; });
    EXPECT_NE(first, second);
    s.root->setRank(1);
    EXPECT_EQ(told, "ab") << "who was there at the commit is told of it";
    s.root->setRank(2);
    EXPECT_EQ(told, "abc");
    s.model->removeListener(99);
}

}  // namespace
