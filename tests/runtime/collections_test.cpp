// Collections of elements and of values: their typed operations, and the generic ones that scripts use.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/primitive_collection.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace {

using namespace nodes;
using namespace quay::zero;
namespace msg = quay0::messages;

struct Sample {
    Model model = Model::create();
    Special owner = Special::create(model, idOf(1));
    std::vector<Node> n{Node()};

    Sample() {
        for (unsigned i = 1; i < 6; ++i) n.push_back(Node::create(model, idOf(i + 10)));
    }
    std::string now() const { return dump(model, {.referenceCounts = true}); }
    std::string shown(Index index) const { return show(*owner.impl(), index); }
};

// --- Elements -------------------------------------------------------------------------------------------------------

TEST(Sequences, AreVisitedByPosition) {
    Sample s;
    auto& children = s.owner->children();
    for (int i : {3, 1, 2}) children.add(s.n[i]);
    std::vector<Node> const visited(children.begin(), children.end());
    EXPECT_EQ(visited, (std::vector<Node>{s.n[3], s.n[1], s.n[2]}));
    auto i = children.begin();
    EXPECT_EQ(*i++, s.n[3]);
    EXPECT_EQ(*++i, s.n[2]);
    EXPECT_EQ(*--i, s.n[1]);
    EXPECT_EQ(i--, children.begin() + 1);
    EXPECT_EQ(i[2], s.n[2]);
    EXPECT_EQ(children.end() - i, 3);
    EXPECT_TRUE(i < 1 + i && (i += 2) > children.begin() && (i -= 1) == children.begin() + 1);
    EXPECT_EQ((*i)->uuid(), idOf(11));
    EXPECT_EQ(std::count_if(children.begin(), children.end(), [&](Node const& e) { return e == s.n[1]; }), 1);
    auto const second = children.begin() + 1;
    children.erase(children.begin());
    EXPECT_EQ(*second, s.n[2]) << "it stands for a position, not for a member";
    children.insert(children.begin() + 1, s.n[4]);
    EXPECT_EQ(s.shown(kChildren), "[#11, #14, #12]");
    EXPECT_TRUE(throws<std::out_of_range>([&] { children.erase(children.end()); }));
    EXPECT_TRUE(throws<std::out_of_range>([&] { (void)children.at(3); }));
    EXPECT_TRUE(children.contains(s.n[4]) && !children.contains(s.n[3]) && !children.contains(Node()));
}

TEST(Sequences, TakeTheirOwnMembersAsArguments) {
    Sample s;
    auto& children = s.owner->children();
    children.add(s.n[1]);
    for (int i = 0; i < 20; ++i) children.add(children[0]);  // the argument is a member; includes reallocations
    EXPECT_EQ(children.size(), 21U);
    children.insert(0, *children.begin());
    children.add(s.n[2]);
    children.set(0, children[22]);
    children.remove(children[0]);
    EXPECT_EQ(children.size(), 22U);
    EXPECT_EQ(children[21], s.n[2]);
    auto& numbers = s.owner->numbers();
    numbers.push_back(7);
    for (int i = 0; i < 20; ++i) numbers.push_back(numbers[0]);
    EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 7), 21);
}

TEST(Maps, GoByKey) {
    Sample s;
    char16_t const* const texts[] = {u"", u"b", u"\xe000", u"\xd83d\xde00", u"a", u"B"};
    for (int i = 1; i < 6; ++i) s.n[i]->setText(texts[i]);
    auto& map = s.owner->byName();
    for (int i = 1; i < 6; ++i) map.add(s.n[i]);
    std::vector<Node> const visited(map.begin(), map.end());
    EXPECT_EQ(visited, (std::vector<Node>{s.n[5], s.n[4], s.n[1], s.n[3], s.n[2]})) << "by code unit";
    EXPECT_EQ((--map.end()).key(), u"\xe000");
    EXPECT_EQ(map.find(u"a"), s.n[4]);
    EXPECT_EQ(map[u"b"], s.n[1]);
    EXPECT_FALSE(map.find(u"c"));
    EXPECT_FALSE(map.find(u""));
    EXPECT_TRUE(map.containsKey(u"B"));
    EXPECT_FALSE(map.containsKey(u"C"));
    EXPECT_TRUE(map.isTaken(u"a", s.n[1].impl()));
    EXPECT_FALSE(map.isTaken(u"a", s.n[4].impl()));
    map.insert(s.n[4]);  // is a member already
    map.erase(map.begin());
    EXPECT_FALSE(map.contains(s.n[5]));
    EXPECT_EQ(map.size(), 4U);

    auto& byNumber = s.owner->byNumber();
    double const numbers[] = {0, -1.5, 1e300, -0.0, 0.0};
    for (int i : {1, 2, 3}) {
        s.n[i]->setNumber(numbers[i]);
        byNumber.add(s.n[i]);
    }
    EXPECT_EQ(s.shown(kByNumber), "[-1.5: #11, 0: #13, 1e+300: #12]") << "minus zero was never written over zero";
    EXPECT_TRUE(failsWith<msg::UniquenessConstraint>([&] { byNumber.add(s.n[4]); }));
    EXPECT_EQ(byNumber.find(-0.0), s.n[3]);
}

TEST(Collections, UndoWhatFailsInsideAnOperationOfACaller) {
    Model const model = Model::create();
    Special const root = Special::create(model);
    root->byName().insert(Node::create(model));
    std::size_t const before = model->elementCount();
    Transaction transaction = model->beginTransaction(false);
    {
        AbstractOwnedCollection::Operation operation(root->children());
        Hook const hook(Node::Impl::whenCreated, [](Node::Impl&) { throw 1; });
        EXPECT_EQ(failureOf([&] { Node::create(model); }), "int");
        operation.commit();
    }
    transaction.commit(boost::none);
    EXPECT_EQ(model->elementCount(), before);
}

TEST(Collections, KeepTheirMembersIfAnAssignmentIsRefused) {
    Model const model = Model::create();
    Model const other = Model::create();
    Special const source = Special::create(other);
    Special const target = Special::create(model);
    for (std::uint16_t const index : {kChildren, kByName, kByRank, kParts}) {
        SCOPED_TRACE(index);
        meta::Property const& property = nodeMeta().properties[index];
        auto const contentOf = [&](Special const& e) {
            return e->getPropertyValue(property, ReflectionPrivateTag::PUBLIC_ACCESS);
        };
        auto* const members = contentOf(source).getCollection<ReferenceCollection>();
        members->getGenericInterface()->genericAdd(Node::create(other));
        EXPECT_TRUE(failsWith<msg::CannotCreateCrossModelAssociation>(
            [&] { target->setPropertyValue(property, contentOf(source), ReflectionPrivateTag::PUBLIC_ACCESS); }));
        EXPECT_EQ(members->size(), 1U);
        EXPECT_TRUE(failsWith<msg::CannotCastIncompatibleTypes>(
            [&] { contentOf(source).getCollection<AbstractPrimitiveCollection>(); }));
    }
    EXPECT_TRUE(failsWith<msg::InvalidValue>([&] { target->byName().insert(Node::create(model), 7); }));
    EXPECT_TRUE(target->byName().empty());
}

TEST(DetachedCollections, HoldAnElementOnceIfUnique) {
    Model const model = Model::create();
    Node const a = Node::create(model);
    Node const b = Node::create(model);
    ElementSequence<Node> s(meta::Property(), true);
    for (Node const& e : {a, a, b}) s.add(e);
    s.insert(0, b);
    EXPECT_EQ(s.getAllValues(), (std::vector<ModelElement>{a, b}));
    EXPECT_TRUE(failsWith<msg::CannotAddSecondObject>([&] { s.set(0, b); }));
    s.set(0, a);
    EXPECT_EQ(s.size(), 2U);
}

TEST(DetachedCollections, StandAlone) {
    Sample s;
    for (int i : {1, 2, 1}) s.owner->children().add(s.n[i]);
    s.owner->byRank().insert(s.n[3]);
    s.owner->numbers().push_back(4);
    AbstractOwnedCollection* const all[] = {&s.owner->children(), &s.owner->byRank(), &s.owner->numbers()};
    for (auto* const c : all) {
        auto const copy = c->detachedCopy();
        EXPECT_EQ(copy->owner(), nullptr);
        EXPECT_EQ(copy->size(), c->size());
        EXPECT_EQ(copy->getCollectionProperty(), c->getCollectionProperty());
        EXPECT_EQ(copy->getCollectionType(), c->getCollectionType());
        copy->clear();
        EXPECT_TRUE(copy->empty());
        EXPECT_FALSE(c->empty());
        copy->copyContents(*c);
        EXPECT_EQ(copy->size(), c->size());
    }
    EXPECT_EQ(s.n[1]->container(), s.owner);

    ElementSequence<Node> loose{meta::Property()};
    loose.add(s.n[1]);
    EXPECT_EQ(s.n[1]->container(), s.owner) << "what nobody owns contains nothing";
    EXPECT_TRUE(s.owner->children().contains(s.n[1]));
    ElementMap<std::u16string, Node> const keyless{meta::Property()};
    EXPECT_EQ(keyless.getQualifierType(), meta::StandardTypes::stringMeta);
}

// --- Values ---------------------------------------------------------------------------------------------------------

TEST(PrimitiveSequences, KeepTheirPositions) {
    Sample s;
    auto& numbers = s.owner->numbers();
    for (int i : {1, 2, 1}) numbers.push_back(i);
    EXPECT_EQ(*numbers.insert(numbers.begin() + 1, 5), 5);
    EXPECT_EQ(*numbers.erase(numbers.begin()), 5);
    numbers.replaceAt(1, 7);
    EXPECT_EQ(s.shown(kNumbers), "[5, 7, 1]");
    EXPECT_EQ(numbers.at(2), 1);
    EXPECT_TRUE(numbers.contains(7));
    EXPECT_FALSE(numbers.contains(8));

    std::function<void()> const beyond[] = {
        [&] { numbers.insertAt(4, 1); },
        [&] { numbers.eraseAt(3); },
        [&] { numbers.replaceAt(3, 1); },
        [&] { (void)numbers.at(3); },
    };
    for (auto const& f : beyond) EXPECT_TRUE(throws<std::out_of_range>(f));
}

TEST(PrimitiveSequences, DropDuplicatesIfUnique) {
    PrimitiveSequence<int> unique(meta::Property(), true);
    for (int i : {3, 1, 3}) unique.push_back(i);
    EXPECT_EQ(unique.size(), 2U);
    EXPECT_EQ(unique.insertAt(0, 1), 1U) << "the position of the value that is there";
    unique.replaceAt(0, 1);
    EXPECT_EQ(unique[0], 3);
    unique.replaceAt(0, 2);
    EXPECT_EQ(unique[0], 2);
}

TEST(PrimitiveSets, SortAndDropDuplicates) {
    Sample s;
    auto& tags = s.owner->tags();
    for (char16_t const* tag : {u"b", u"\xe000", u"a", u"\xd83d\xde00"}) EXPECT_TRUE(tags.insert(tag).second);
    auto const [position, fresh] = tags.insert(u"a");
    EXPECT_FALSE(fresh);
    EXPECT_EQ(position, tags.begin());
    std::vector<std::u16string> const all(tags.begin(), tags.end());
    EXPECT_EQ(all, (std::vector<std::u16string>{u"a", u"b", u"\xd83d\xde00", u"\xe000"})) << "by code unit";
    EXPECT_EQ(tags.getAllValues().at(2).getValue<std::u16string>(), u"\xd83d\xde00");
    EXPECT_EQ(tags.erase(u"a"), 1U);
    EXPECT_EQ(tags.erase(u"a"), 0U);
    tags.erase(*tags.begin());  // the argument is its own member
    EXPECT_TRUE(tags.contains(u"\xe000"));
    EXPECT_EQ(tags.size(), 2U);
}

}  // namespace
