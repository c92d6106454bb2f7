// Elements come and go: ids, the order of creation, handles, and the end of a model.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/node.h"

#include <quay/zero/change_set.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

constexpr auto kInMemory = FindElementBehavior::InMemoryOnly;

TEST(Lives, KeepTheOrderOfCreation) {
    // A letter is created, one with a minus before it destroyed; parentheses and exclamation marks as for transactions;
    // `u` and `r` are undo and redo.
    struct Case {
        char const* script;
        char const* left;
    };
    Case const cases[] = {
        {"abc", "abc"},         {"abc-b", "ac"},         {"abc(-b!", "abc"},      {"abc(-a-c!", "abc"},
        {"abc(-a-b-c!", "abc"}, {"abc(-c-b-a!", "abc"},  {"a(bc!", "a"},          {"a(b-a!", "a"},
        {"a(b-ac-b!", "a"},     {"a(b-ac-b)", "c"},      {"a(b-b!", "a"},         {"a(b-b)", "a"},
        {"a(b(c-a!d)", "abd"},  {"a(b(c)(d))", "abcd"},  {"a(b(c)(d!)", "abc"},   {"a(b(c)(d-c))", "abd"},
        {"a(b(c)(d-c)!", "a"},  {"ab(-a(-b!)", "b"},     {"ab(-a(-b)!", "ab"},    {"(ab)(-a)uu", ""},
        {"(ab)(-a)uurr", "b"},  {"(ab-a)u", ""},         {"(ab-a)ur", "b"},       {"ab-au-bu", "ab"},
        {"ab-auc-bu", "abc"},   {"abc-b-a-cuuu", "abc"}, {"abc-b-a-cuuurrr", ""}, {"abc(-b)u(d-a!(-c)u", "abc"},
    };
    for (bool const indexed : {false, true}) {
        for (Case const& c : cases) {
            SCOPED_TRACE(c.script);
            Model const model = Model::create();
            model->enableHistory(100);
            std::map<char, boost::uuids::uuid> ids;
            auto const find = [&](char name) {
                ModelElement found;
                model->forEachElement([&](ModelElement::Impl& e) {
                    if (e.uuid() == ids.at(name)) found = ModelElement(&e);
                });
                return found;
            };
            std::vector<Transaction> open;
            for (char const* s = c.script; *s != 0; ++s) {
                if (*s == '(') open.push_back(model->beginTransaction(false));
                if (*s == ')') open.back().commit(boost::none);
                if (*s == ')' || *s == '!') open.pop_back();
                if (*s == '-') {
                    find(*++s)->destroy();
                } else if (*s == 'u') {
                    EXPECT_TRUE(model->undo());
                } else if (*s == 'r') {
                    EXPECT_TRUE(model->redo());
                } else if (*s >= 'a' && *s <= 'e') {
                    ids[*s] = Node::create(model)->uuid();
                }
                if (indexed) model->findElement(idOf(1), kInMemory);
            }
            std::string left;
            for (auto const& e : model->getElements()) {
                for (auto const& [name, id] : ids) {
                    if (id == e->uuid()) left += name;
                }
            }
            EXPECT_EQ(left, c.left);
            EXPECT_EQ(model->elementCount(), left.size());
            for (auto const& [name, id] : ids) {
                bool const there = left.find(name) != std::string::npos;
                EXPECT_EQ(model->findElement(id, kInMemory), there ? find(name) : ModelElement()) << name;
            }
        }
    }
}

TEST(Lives, AreFoundByIdHoweverManyComeAndGo) {
    Model const model = Model::create();
    constexpr unsigned kMany = 1000;
    auto const check = [&](auto&& expected) {
        for (unsigned i = 1; i <= kMany; ++i) {
            ModelElement const found = model->findElement(idOf(i), kInMemory);
            ASSERT_EQ(bool(found), expected(i)) << i;
            if (found) {
                ASSERT_EQ(found->uuid(), idOf(i));
            }
        }
    };
    for (unsigned i = 1; i <= kMany; ++i) Node::create(model, idOf(i));
    check([](unsigned) { return true; });
    {
        Transaction transaction = model->beginTransaction(false);
        for (unsigned i = 1; i <= kMany; i += 3) model->findElement(idOf(i), kInMemory)->destroy();
        check([](unsigned i) { return i % 3 != 1; });
    }
    check([](unsigned) { return true; });
    for (unsigned i = 1; i <= kMany; i += 2) model->findElement(idOf(i), kInMemory)->destroy();
    check([](unsigned i) { return i % 2 == 0; });
    for (unsigned i = 1; i <= kMany; i += 2) Node::create(model, idOf(i));
    check([](unsigned) { return true; });
}

TEST(Lives, HaveAnIdOfTheirOwn) {
    Model const model = Model::create();
    Node const first = Node::create(model, idOf(1));
    Node const drawn = Node::create(model);
    EXPECT_FALSE(drawn->uuid().is_nil());
    EXPECT_EQ(drawn->uuid().version(), boost::uuids::uuid::version_random_number_based);
    EXPECT_EQ(drawn->uuid().variant(), boost::uuids::uuid::variant_rfc_4122);

    std::string const before = dump(model, {.referenceCounts = true});
    EXPECT_TRUE(failsWith<msg::UniquenessConstraint>([&] { Node::create(model, idOf(1)); }));
    EXPECT_TRUE(failsWith<msg::UniquenessConstraint>([&] { Node::create(model, drawn->uuid()); }));
    EXPECT_EQ(dump(model, {.referenceCounts = true}), before);
    Node::create(Model::create(), idOf(1));  // another model has ids of its own

    {
        Transaction transaction = model->beginTransaction(false);
        first->destroy();
        Node const second = Node::create(model, idOf(1));
        EXPECT_EQ(model->findElement(idOf(1), kInMemory), second);
    }
    EXPECT_EQ(model->findElement(idOf(1), kInMemory), first);
    {
        Transaction transaction = model->beginTransaction(false);
        Node::create(model, idOf(2));
    }
    EXPECT_TRUE(Node::create(model, idOf(2))) << "an id is free again once its creation was undone";
}

TEST(Lives, LeaveSafeHandlesBehind) {
    Model const model = Model::create();
    Node const owner = Node::create(model);
    Node created;
    {
        Transaction transaction = model->beginTransaction(false);
        created = Node::create(model, idOf(7));
        created->setText(u"kept");
        owner->children().add(created);
        EXPECT_EQ(created->container(), owner);
    }
    EXPECT_FALSE(created);
    EXPECT_FALSE(created->container());
    EXPECT_FALSE(created->containmentFeature());
    EXPECT_FALSE(created->getModel());
    EXPECT_EQ(created->text(), u"kept");
    EXPECT_EQ(created->uuid(), idOf(7));
    EXPECT_EQ(owner->children().size(), 0U);
    created->destroy();

    Node const child = Node::create(model);
    owner->children().add(child);
    child->destroy();
    EXPECT_FALSE(child);
    EXPECT_FALSE(child->container());
    EXPECT_EQ(child.impl()->refCount(), 1U) << "only this handle is left";
}

TEST(Lives, RefuseWritesOnceOver) {
    Model model = Model::create();
    Node const alive = Node::create(model);
    Special const destroyed = Special::create(model);
    Special undone;
    {
        Transaction transaction = model->beginTransaction(false);
        undone = Special::create(model);
    }
    destroyed->destroy();
    Model ended = Model::create();
    Special const orphan = Special::create(ended);
    orphan->numbers().push_back(1);
    ended = Model();

    struct Door {
        char const* name;
        std::function<void(Special const&)> write;
    };
    auto const& properties = nodeMeta().properties;
    auto const value = [](auto const& type, auto v) { return Value(type, v, ValueFlags::One); };
    Door const doors[] = {
        {"a number", [](Special const& e) { e->setNumber(1); }},
        {"a text", [](Special const& e) { e->setText(u"t"); }},
        {"an optional", [](Special const& e) { e->setCount(1); }},
        {"a large value", [](Special const& e) { e->setBox({{1}}); }},
        {"in a subclass", [](Special const& e) { e->setNote("n"); }},
        {"push_back", [](Special const& e) { e->numbers().push_back(1); }},
        {"assign",
         [](Special const& e) {
             e->numbers().assign({1, 2});
         }},
        {"clear numbers", [](Special const& e) { e->numbers().clear(); }},
        {"insert a tag", [](Special const& e) { e->tags().insert(u"t"); }},
        {"erase a tag", [](Special const& e) { e->tags().erase(u"t"); }},
        {"add", [&](Special const& e) { e->children().add(alive); }},
        {"clear children", [](Special const& e) { e->children().clear(); }},
        {"add to a map", [&](Special const& e) { e->byName().insert(alive); }},
        {"clear a map", [](Special const& e) { e->byRank().clear(); }},
        {"generic add", [&](Special const& e) { e->parts().getGenericInterface()->genericAdd(alive); }},
        {"copy contents", [&](Special const& e) { e->children().copyContents(alive->children()); }},
        {"reflection",
         [&](Special const& e) {
             e->setPropertyValue(properties[kRank], value(meta::StandardTypes::integerMeta, 1),
                                 ReflectionPrivateTag::PUBLIC_ACCESS);
         }},
        {"notifyModifying", [](Special const& e) { e->notifyModifying(kRank); }},
    };
    for (auto const& dead : {std::pair{"destroyed", destroyed}, {"undone", undone}, {"its model ended", orphan}}) {
        char const* const how = dead.first;
        Special const& e = dead.second;
        for (Door const& door : doors) {
            SCOPED_TRACE(std::string(how) + ", " + door.name);
            std::string const before = dump(model, {.referenceCounts = true});
            EXPECT_TRUE(failsWith<msg::CannotAddNonExistentObject>([&] { door.write(e); }));
            EXPECT_EQ(dump(model, {.referenceCounts = true}), before);
            Transaction transaction = model->beginTransaction(false);
            EXPECT_TRUE(failsWith<msg::CannotAddNonExistentObject>([&] { door.write(e); }));
        }
        EXPECT_EQ(e->number(), 0);
        EXPECT_EQ(e->rank(), 0);
        EXPECT_EQ(e->text(), u"");
        EXPECT_EQ(e->numbers().size(), e == orphan ? 1U : 0U);
        EXPECT_TRUE(e->tags().empty() && e->children().empty() && e->byName().empty() && e->parts().empty());
    }
}

TEST(Lives, EndWithTheirModel) {
    int const living = Node::Impl::living;
    {
        Model model = Model::create();
        model->enableHistory(3);
        Node const root = Node::create(model);
        Node child = Node::create(model);
        root->children().add(child);
        Node::create(model)->destroy();
        Node const gone = Node::create(model);
        gone->destroy();
        model->undo();
        EXPECT_EQ(Node::Impl::living, living + 4);
        model = Model();
        EXPECT_FALSE(root);
        EXPECT_FALSE(child);
        EXPECT_FALSE(gone);
        EXPECT_FALSE(root->getModel());
        EXPECT_FALSE(child->container());
        EXPECT_EQ(root->children().size(), 1U);
        EXPECT_EQ(Node::Impl::living, living + 3);
        root->destroy();
    }
    EXPECT_EQ(Node::Impl::living, living);
}

TEST(Lives, EndWithAModelThatAListenerLetsGo) {
    int const living = Node::Impl::living;
    for (bool const history : {false, true}) {
        for (bool const undo : {false, true}) {
            Model model = Model::create();
            if (history) model->enableHistory(2);
            Node const e = Node::create(model);
            bool armed = false;
            int told = 0;
            for (int i = 0; i < 2; ++i) {
                model->addListener([&](ChangeSet const& changes) {
                    if (!armed) return;
                    model = Model();
                    told += static_cast<int>(changes.changed().size());
                    EXPECT_TRUE(e);
                });
            }
            if (history) e->setText(std::u16string(40, u'x'));
            armed = true;
            if (undo && history) {
                EXPECT_TRUE(model->undo());
            } else {
                e->setText(u"y");
            }
            EXPECT_EQ(told, 2) << "the second listener is told of a model that still stands";
            EXPECT_FALSE(e);
        }
    }
    EXPECT_EQ(Node::Impl::living, living);
}

}  // namespace
