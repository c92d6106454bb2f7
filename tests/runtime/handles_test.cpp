// Handles: counting, identity and casts.
#include "support/node.h"

#include <gtest/gtest.h>

#include <set>
#include <unordered_set>
#include <utility>

namespace {

using namespace nodes;
using namespace quay::zero;

TEST(Handles, CountTheirElement) {
    Model const model = Model::create();
    Node a = Node::create(model);
    Node const b = Node::create(model);
    auto const count = [](Node const& e) { return e.impl()->refCount(); };
    EXPECT_EQ(count(a), 2U) << "the model's and the handle's";
    Node copy = a;
    EXPECT_EQ(count(a), 3U);
    Node moved = std::move(copy);
    EXPECT_EQ(copy.impl(), nullptr);
    EXPECT_EQ(count(a), 3U);
    copy = std::move(moved);
    EXPECT_EQ(moved.impl(), nullptr) << "moving leaves the source empty";
    copy = b;
    EXPECT_EQ(count(a), 2U);
    EXPECT_EQ(count(b), 3U);
    moved = copy;
    copy = std::move(moved);  // onto a handle of the same element
    EXPECT_EQ(count(b), 3U);
    Node& self = copy;
    copy = self;
    copy = std::move(self);
    EXPECT_EQ(copy, b);
    EXPECT_EQ(count(b), 3U);
    copy = Node();
    EXPECT_EQ(count(b), 2U);
    a.addRef();
    EXPECT_EQ(count(a), 3U);
    a.removeRef();
    Node().addRef();
    Node().removeRef();
    EXPECT_EQ(count(a), 2U);
}

TEST(Handles, MayBeAssignedFromWithinWhatTheyHold) {
    int const living = Node::Impl::living;
    Model model = Model::create();
    Node chain = Node::create(model);
    Node const last = Node::create(model);
    chain->children().add(last);
    model = Model();
    chain = chain->children()[0];  // the assigned handle is in the element that the assignment releases
    EXPECT_EQ(chain, last);
    EXPECT_EQ(Node::Impl::living, living + 1);
}

TEST(Handles, CastByClassAndCompareByIdentity) {
    Model const model = Model::create();
    Node const plain = Node::create(model);
    Special const special = Special::create(model);
    ModelElement const elements[] = {plain, special};
    EXPECT_EQ(Node::cast(elements[0]), plain);
    EXPECT_EQ(Node::cast(elements[1]), special);
    EXPECT_FALSE(Special::cast(elements[0]));
    EXPECT_EQ(Special::cast(elements[1]), special);
    EXPECT_FALSE(Special::cast(ModelElement()));
    EXPECT_FALSE(Node::cast(nodeMeta().node)) << "a meta object is an element of another class";
    EXPECT_EQ(plain.impl()->refCount(), 3U) << "a failed cast keeps no reference";

    EXPECT_NE(plain, special);
    std::set<ModelElement> const ordered{plain, special, plain};
    std::unordered_set<ModelElement> const hashed{plain, special, plain};
    EXPECT_EQ(ordered.size(), 2U);
    EXPECT_EQ(hashed.size(), 2U);
    plain->destroy();
    EXPECT_EQ(elements[0], plain) << "a dead element is still itself";

    EXPECT_TRUE(Node::Uuid().is_nil());
    EXPECT_NE(&Node::Uuid(), &Special::Uuid());
}

}  // namespace
