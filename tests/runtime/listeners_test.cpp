// Listeners: the content of change sets, which listeners get them, and what is forbidden while they are told.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/change_set.h>
#include <quay/zero/diagnostics.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

/// "created a b; destroyed c; p of d: old -> new".
std::string textOf(ChangeSet const& changes) {
    std::string text;
    for (auto const& e : changes.created()) text += "created " + nameOf(e) + "; ";
    for (auto const& e : changes.destroyed()) text += "destroyed " + nameOf(e) + "; ";
    for (auto const& change : changes.changed()) {
        for (auto const& p : change.properties()) {
            text += nameOf(change.element()) + "." + std::to_string(p->getIndex()) + ": " + show(change.oldValue(p)) +
                    " -> " + show(change.newValue(p)) + "; ";
        }
    }
    return text;
}

struct Sample {
    Model model = Model::create();
    Special root = Special::create(model, idOf(1));
    Node a = Node::create(model, idOf(2));
    std::vector<std::string> told;

    Sample() { a->children().add(Node::create(model, idOf(3))); }

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

TEST(Listeners, AreToldWhatChanged) {
    struct Case {
        char const* name;
        void (*change)(Sample&);
        char const* told;
    };
    Case const cases[] = {
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
        {"destructions in order",
         [](Sample& s) {
             s.a->destroy();
             s.root->destroy();
         },
         "destroyed +#3; destroyed +#2; destroyed +#1; "},
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
        EXPECT_EQ(s.told, std::vector<std::string>{c.told});
    }
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

TEST(Listeners, AreToldWhateverTheOthersThrow) {
    Sample s;
    int told = 0;
    s.model->addListener([&](ChangeSet const&) { throw std::runtime_error("mine"); });
    s.model->addListener([&](ChangeSet const&) { ++told; });
    s.model->addListener([&](ChangeSet const&) { throw 1; });
    s.model->addListener([&](ChangeSet const&) { ++told; });
    s.model->addListener([&](ChangeSet const&) { s.root->setRank(7); });
    std::vector<std::string> diagnostics;
    setDiagnosticHook([&](Diagnostic const& d) {
        EXPECT_EQ(d.level, DiagnosticLevel::Error);
        diagnostics.push_back(d.place + ": " + d.text.substr(0, d.text.rfind(':')));
        throw 2;  // is ignored
    });
    s.root->setRank(1);
    setDiagnosticHook({});
    s.root->setNumber(1);
    EXPECT_EQ(told, 4);
    EXPECT_EQ(s.root->rank(), 1);
    std::string const place = "a listener of a model: ";
    EXPECT_EQ(diagnostics, (std::vector<std::string>{place + "mine", place + "an exception of an unknown type",
                                                     place + "quay0:messages:ListenerMayNotWrite"}));
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
