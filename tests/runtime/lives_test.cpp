// Creating and destroying elements: ids, the order of creation, handles, and destruction of a model.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/change_set.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

constexpr auto kInMemory = FindElementBehavior::InMemoryOnly;

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
    Node::create(model, idOf(1));
    Node const drawn = Node::create(model);
    EXPECT_FALSE(drawn->uuid().is_nil());
    EXPECT_EQ(drawn->uuid().version(), boost::uuids::uuid::version_random_number_based);
    EXPECT_EQ(drawn->uuid().variant(), boost::uuids::uuid::variant_rfc_4122);

    Node::create(Model::create(), idOf(1));  // ids are unique per model only
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

TEST(Lives, EndWhenTheHistoryLetsThemGo) {
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
