// Values: payloads of every size, copies and moves, what is compatible with what.
#include "../common/expect.h"
#include "support/memory.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/text.h>
#include <quay/zero/value.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>
#include <boost/optional/optional_io.hpp>

#include <cmath>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace nodes;
using namespace quay::zero;
using meta::StandardTypes;
namespace msg = quay0::messages;

/// A small type whose move may throw, so that a value keeps it on the heap.
struct Fickle {
    int i = 0;
    Fickle() = default;
    explicit Fickle(int n) : i(n) {}
    Fickle(Fickle const& other) noexcept(false) : i(other.i) {}
    Fickle& operator=(Fickle const&) = default;
    friend bool operator==(Fickle const&, Fickle const&) = default;
};

}  // namespace

template <>
struct std::hash<Fickle> {
    std::size_t operator()(Fickle const& f) const noexcept { return std::hash<int>()(f.i); }
};
template <>
struct quay::zero::TypeOf<Fickle> {
    static meta::Type const& type() { return nodes::nodeMeta().box; }
};

namespace {

/// Two different payloads of a type.
template <class T>
void checkPayload(char const* name, meta::Type const& type, T const& one, T const& two) {
    SCOPED_TRACE(name);
    Value const a(type, one, ValueFlags::One);
    Value const b(type, two, ValueFlags::One);
    EXPECT_EQ(a.getValue<T>(), one);
    EXPECT_EQ(a.getType(), type);
    EXPECT_EQ(a.getCount(), 1);
    EXPECT_TRUE(a.isManaged() && a.hasPayload());
    EXPECT_NE(a, b);
    EXPECT_EQ(a, Value(type, one, ValueFlags::One));
    EXPECT_NE(a, Value(type, one, ValueFlags::Optional)) << "of another count";
    EXPECT_EQ(a.hash(), Value(type, one, ValueFlags::One).hash());
    EXPECT_NE(a.hash(), b.hash());

    Value copy = a;
    EXPECT_EQ(copy, a);
    EXPECT_NE(copy.data(), a.data()) << "a copy of its own";
    Value moved = std::move(copy);
    EXPECT_EQ(moved, a);
    EXPECT_FALSE(copy.hasPayload());  // NOLINT(bugprone-use-after-move)
    copy = b;
    moved.swap(copy);
    EXPECT_EQ(moved, b);
    EXPECT_EQ(copy, a);
    moved = std::move(copy);
    EXPECT_EQ(moved, a);
    Value& self = moved;
    moved = self;
    moved = std::move(self);
    moved.swap(self);
    EXPECT_EQ(moved.template getValue<T>(), one);
    Value other(StandardTypes::stringMeta, std::u16string(50, u'x'), ValueFlags::One);
    other.swap(moved);
    EXPECT_EQ(other, a);
    moved = a;
    EXPECT_EQ(moved, other);
    other = Value();
    EXPECT_FALSE(other.hasPayload());

    Value const empty(type, ValueFlags::One);
    EXPECT_FALSE(empty.hasPayload());
    EXPECT_EQ(empty.getValue<T>(), T()) << "reads as the type's zero";
    EXPECT_EQ(empty.hash(), 0U);
    EXPECT_EQ(empty, Value(type, ValueFlags::One));
    EXPECT_NE(empty, Value(type, T(), ValueFlags::One));
    EXPECT_NE(empty, Value());
    EXPECT_EQ(Value(empty), empty);

    void* const clone = Value::genericCloner<T>(const_cast<T*>(&one));
    EXPECT_TRUE(Value::genericComparator<T>(clone, const_cast<T*>(&one)));
    EXPECT_FALSE(Value::genericComparator<T>(clone, const_cast<T*>(&two)));
    EXPECT_FALSE(Value::genericComparator<T>(clone, nullptr));
    EXPECT_TRUE(Value::genericComparator<T>(nullptr, nullptr));
    EXPECT_EQ(Value::genericHasher<T>(clone), a.hash());
    EXPECT_EQ(Value::genericHasher<T>(nullptr), 0U);
    Value::genericDeleter<T>(clone);
    EXPECT_EQ(Value::genericCloner<T>(nullptr), nullptr);
}

TEST(Values, HoldAnyPayload) {
    checkPayload<bool>("bool", StandardTypes::booleanMeta, true, false);
    checkPayload<int>("int", StandardTypes::integerMeta, -7, 8);
    checkPayload<unsigned>("unsigned", StandardTypes::unlimitedNaturalMeta, 7, 4000000000U);
    checkPayload<unsigned long>("64 bits", StandardTypes::uinteger64Meta, 7, ~0UL);
    checkPayload<double>("double", StandardTypes::realMeta, 1.5, -1.5);
    checkPayload<std::u16string>("short text", StandardTypes::stringMeta, u"a", u"b");
    checkPayload<std::u16string>("long text", StandardTypes::stringMeta, std::u16string(99, u'a'), u"");
    checkPayload<std::string>("8-bit text", StandardTypes::stdstringMeta, std::string(99, 'a'), "b");
    checkPayload<Box>("on the heap", nodeMeta().box, Box{{1}}, Box{{2}});
    checkPayload<Fickle>("moves badly", nodeMeta().box, Fickle(1), Fickle(2));
}

TEST(Values, HashZerosAlikeAndCompareNaNAsItself) {
    auto const real = [](double d) { return Value(StandardTypes::realMeta, d, ValueFlags::One); };
    EXPECT_EQ(real(0.0).hash(), real(-0.0).hash());
    EXPECT_EQ(real(0.0), real(-0.0));
    EXPECT_NE(real(std::nan("")), real(std::nan("")));
}

TEST(Values, AskForNoMemoryForWhatIsSmall) {
    Model const model = Model::create();
    Node const e = Node::create(model);
    e->setText(u"short");
    auto const& properties = nodeMeta().properties;
    AllocationCount const count;
    long const before = count.soFar();
    for (Index i : {kText, kNumber, kCount, kRank}) {
        Value const v = e->getPropertyValue(properties[i], ReflectionPrivateTag::PUBLIC_ACCESS);
        Value copy = v;
        Value const moved = std::move(copy);
    }
    long const after = count.soFar();
    EXPECT_EQ(after, before);
}

TEST(Values, StayAsTheyAreWhenTheyCannotBeCopied) {
    Value target(StandardTypes::integerMeta, 3, ValueFlags::One);
    Value const source(nodeMeta().box, Box{{1}}, ValueFlags::One);
    EXPECT_TRUE(starve(0, [&] { target = source; }).failed);
    EXPECT_EQ(target.getValue<int>(), 3);
}

TEST(Values, AreCompatibleWithTheirTypeAlone) {
    Model const model = Model::create();
    Node const node = Node::create(model);
    Special const special = Special::create(model);
    auto const& properties = nodeMeta().properties;
    struct Case {
        char const* name;
        Value value;
        std::string fits;  // a letter for each compatible type of those below
    };
    Case const cases[] = {
        {"int", {StandardTypes::integerMeta, 1, ValueFlags::One}, "iI"},
        {"no int", {StandardTypes::integerMeta, ValueFlags::One}, "iI"},
        {"optional int", Value::createPrimitiveValue(properties[kCount], boost::optional<int>(1)), "iI"},
        {"unset", Value::createPrimitiveValue(properties[kCount], boost::optional<int>()), "I"},
        {"real", {StandardTypes::realMeta, 1.0, ValueFlags::One}, "r"},
        {"text", {StandardTypes::stringMeta, std::u16string(), ValueFlags::One}, "t"},
        {"box", {nodeMeta().box, Box(), ValueFlags::One}, "b"},
        {"several ints", {StandardTypes::integerMeta, std::vector<int>{1}, ValueFlags::Sequence}, ""},
        {"node", Value::createElementValue(properties[kChildren], node), "en"},
        {"special", Value::createElementValue(properties[kChildren], special), "ens"},
        {"no node", Value::createElementValue(properties[kChildren], Node()), "en"},
        {"untyped", {}, ""},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        auto const check = [&]<class T>(char letter, T const&) {
            bool const fits = c.fits.find(letter) != std::string::npos;
            EXPECT_EQ(c.value.isCompatible<T>(), fits) << letter;
            if (fits) {
                c.value.checkCompatible<T>();
                (void)c.value.getValue<T>();
            } else {
                EXPECT_TRUE(failsWith<msg::CannotCastIncompatibleTypes>([&] { (void)c.value.getValue<T>(); }));
            }
        };
        check('i', int());
        check('I', boost::optional<int>());
        check('r', double());
        check('t', std::u16string());
        check('b', Box());
        check('e', ModelElement());
        check('n', Node());
        check('s', Special());
    }
    EXPECT_EQ(cases[9].value.getValue<Special>(), special);
    EXPECT_EQ(cases[2].value.getValue<boost::optional<int>>(), boost::optional<int>(1));
    EXPECT_EQ(cases[3].value.getValue<boost::optional<int>>(), boost::none);
    EXPECT_EQ(cases[9].value.getType(), Special::metaClass()) << "the element's class";
    EXPECT_EQ(cases[10].value.getType(), Node::metaClass()) << "the property's type";
    try {
        cases[4].value.checkCompatible<int>();
    } catch (keel::core::except::Error const& e) {
        EXPECT_EQ(e.GetBaseMsgIDObj().arguments(), std::vector<std::u16string>{u"Real"});
    }
    EXPECT_TRUE(failsWith<msg::InvalidValue>([&] {
        Value::createPrimitiveValue(properties[kRank], boost::optional<int>());
    })) << "an empty optional for a property that needs a value";
}

TEST(Values, AreRefusedIfTheyAreNotOfTheGivenType) {
    auto const& properties = nodeMeta().properties;
    auto const refuses = [](auto const& make) { return failsWith<msg::CannotCastIncompatibleTypes>(make); };
    EXPECT_TRUE(refuses([&] { Value::createPrimitiveValue(properties[kRank], 3.7); }));
    EXPECT_TRUE(refuses([&] { Value::createPrimitiveValue(properties[kRank], 3U); }));
    EXPECT_TRUE(refuses([&] { Value::createPrimitiveValue(properties[kText], 3); }));
    EXPECT_TRUE(refuses([&] { Value::createPrimitiveValue(properties[kCount], boost::optional<double>(1.0)); }));
    EXPECT_TRUE(refuses([] { Value(StandardTypes::realMeta, 3, ValueFlags::One); }));
    EXPECT_TRUE(refuses([] { Value(StandardTypes::stringMeta, std::string(), ValueFlags::One); }));
    EXPECT_EQ(Value::createPrimitiveValue(properties[kRank], 3).getValue<int>(), 3);
}

TEST(Values, OfElementsCountThemAndHashTheirId) {
    Model const model = Model::create();
    Node const node = Node::create(model);
    auto const count = node.impl()->refCount();
    auto const& property = nodeMeta().properties[kChildren];
    {
        Value const v = Value::createElementValue(property, node);
        Value const copy = v;
        EXPECT_EQ(node.impl()->refCount(), count + 2);
        EXPECT_EQ(v, copy);
        EXPECT_EQ(v.hash(), boost::uuids::hash_value(node->uuid()));
        EXPECT_NE(v, Value::createElementValue(property, Node::create(model)));
        EXPECT_EQ(Value::createElementValue(property, Node()).hash(), 0U);
    }
    EXPECT_EQ(node.impl()->refCount(), count);
}

TEST(Values, PointAtCollectionsOrHoldSeveral) {
    Model const model = Model::create();
    Node const e = Node::create(model);
    e->numbers().push_back(1);
    Value const v = e->getPropertyValue(nodeMeta().properties[kNumbers], ReflectionPrivateTag::PUBLIC_ACCESS);
    Value const copy = v;
    EXPECT_FALSE(v.isManaged());
    EXPECT_EQ(v.getFlags(), ValueFlags::Sequence);
    EXPECT_EQ(copy.getCollection<AbstractOwnedCollection>(), &e->numbers());
    EXPECT_EQ(v, copy);
    EXPECT_EQ(v.hash(), 0U);

    Value const several(StandardTypes::integerMeta, std::vector<int>{3, 1, 3}, ValueFlags::Sequence);
    std::vector<Value> const parts = typeMapperBasedExtractor<std::vector<int>>(several);
    ASSERT_EQ(parts.size(), 3U);
    EXPECT_EQ(parts[2].getValue<int>(), 3);
    EXPECT_EQ(several.hash(), Value(several).hash());
    Value const set(StandardTypes::integerMeta, std::set<int>{3, 1}, ValueFlags::Set);
    EXPECT_EQ(typeMapperBasedExtractor<std::set<int>>(set).at(0).getValue<int>(), 1);
    EXPECT_TRUE(typeMapperBasedExtractor<std::set<int>>(Value()).empty());
}

TEST(Values, AreToldAsText) {
    EXPECT_EQ(textOf(-12), u"-12");
    EXPECT_EQ(textOf(0.1), u"0.1");
    EXPECT_EQ(textOf(-1e300), u"-1e+300");
    EXPECT_EQ(textOf(std::u16string(u"as it is")), u"as it is");
    EXPECT_EQ(textOf(std::string("\xc3\xa9")), u"\u00e9");
    EXPECT_EQ(textOf(boost::uuids::uuid{{0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef, 1, 2, 3, 4, 5, 6, 7, 8}}),
              u"01234567-89ab-cdef-0102-030405060708");
}

}  // namespace
