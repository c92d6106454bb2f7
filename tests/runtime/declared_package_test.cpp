// A package that is declared from tables: the order of creation, and the state after a failure.
#include "../common/expect.h"
#include "support/memory.h"
#include "support/node_dump.h"

#include <quay/zero/meta/declared_package.h>
#include <quay/zero/property_descriptor.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>
#include <boost/uuid/string_generator.hpp>

#include <functional>
#include <thread>

namespace {

using namespace nodes;
using namespace quay::zero;
using meta::MetaRegistry;
namespace msg = quay0::messages;
namespace declare = meta::declare;
using declare::Shape;

// --- Tables: a class, one below it, a data type and an enumeration ---------------------------------------------------

enum class Colour : int { Red = 0, Blue = 3 };

}  // namespace

template <>
struct quay::zero::TypeOf<Colour> {
    static meta::Type const& type() { return meta::StandardTypes::integerMeta; }
};

namespace {

class Colours final : public meta::DatatypeSerializer {
public:
    Value getPropertyValue(Value const&, meta::Property const&) const override { return {}; }
    Value setPropertyValue(Value const& v, meta::Property const&, Value const&) const override { return v; }
    Value createEmptyOptionalValue() const override { return {}; }
    Value createDefaultValue() const override { return {}; }
    Value combineAsUnmanagedSequenceValue(meta::Type const&, std::vector<Value> const&) const override { return {}; }
    Value combineAsUnmanagedSetValue(meta::Type const&, std::vector<Value> const&) const override { return {}; }
};

class Descriptor final : public PropertyDescriptor {
public:
    using PropertyDescriptor::PropertyDescriptor;
};

constexpr Descriptor kName{1, PropertyKind::Value};
constexpr Descriptor kByName{2, PropertyKind::ElementCollection};
constexpr Descriptor kText{3, PropertyKind::Value};
constexpr PropertyDescriptor const* kThing[] = {&kName, &kByName};
constexpr PropertyDescriptor const* kWide[] = {&kText};

AbstractOwnedCollection* makeNumbers(ModelElement const&, meta::Property const& p) {
    return new PrimitiveSequence<int>(p);
}

ClassTable const& thingTable() {
    static constexpr ClassTable table{&ModelElement::classTable, 1, kThing, &makeNumbers, nullptr};
    return table;
}
ClassTable const& wideTable() {
    static constexpr ClassTable table{&thingTable, 3, kWide, nullptr, nullptr};
    return table;
}

/// Mistakes that a test can put into the tables.
struct Faults {
    char16_t const* primitive = u"StdString";
    char16_t const* childType = u"Thing";
    char16_t const* superclass = u"ModelElement";
    char const* lastId = "00000000-0000-3000-8000-0000000000ff";
    declare::EnumSerializers (*serializers)() = &declare::makeEnumSerializers<Colour>;
};

class Made final : public meta::DeclaredPackage {
public:
    /// The tables are never destroyed, like those of a library.
    static Made& make(Faults const& faults);
    ~Made() = delete;

    void declareAll(
        std::function<void()> const& bringUp = [] {}, std::function<void()> const& between = [] {}) {
        declareInRegistry(
            bringUp,
            [&](MetaRegistry* registry) {
                instantiate(registry);
                between();
            },
            [&](MetaRegistry* registry, meta::PropertySerializerRegistry* serializers) {
                weave(registry, serializers);
            });
    }

    meta::Package root, schema;
    meta::Class thing, wide;
    meta::DataType pair;
    meta::Enum colour;
    meta::EnumLiteral red, blue;
    meta::PrimitiveType stdString;
    meta::Property name, byName, text, first;
    meta::Operation measure;
    meta::Argument unit;

private:
    struct Tables;
    explicit Made(declare::Package const& tables) : DeclaredPackage(tables) {}
};

template <class H>
auto slot(H Made::*member) {
    return declare::slot(member);
}

struct Made::Tables {
    explicit Tables(Faults const& f) : lastId(f.lastId) {
        things[1].type = f.childType;
        primitives[0].name = f.primitive;
        enums[0].makeSerializers = f.serializers;
        classes[0].base = f.superclass;
        literals[1].id = lastId.c_str();
    }
    std::string lastId;
    declare::Property things[2] = {{u"name", Shape::Single, u"String", 1, u"none", nullptr,
                                    "00000000-0000-3000-8000-000000000011", slot(&Made::name)},
                                   {u"byName", Shape::MultimapOwned, u"Thing", 2, nullptr, u"name",
                                    "00000000-0000-3000-8000-000000000015", slot(&Made::byName)}};
    declare::Property wides[1] = {{u"text", Shape::Single, u"StdString", 3, nullptr, nullptr,
                                   "00000000-0000-3000-8000-000000000017", slot(&Made::text)}};
    declare::Property fields[1] = {{u"first", Shape::Single, u"Colour", 0, u"Blue", nullptr,
                                    "00000000-0000-3000-8000-000000000019", slot(&Made::first)}};
    declare::Argument arguments[1] = {{u"unit", u"String", "00000000-0000-3000-8000-00000000001b", slot(&Made::unit)}};
    declare::Operation operations[1] = {
        {u"measure", u"Thing", "00000000-0000-3000-8000-00000000001c", arguments, slot(&Made::measure)}};
    declare::Class classes[2] = {
        {u"Thing", false, u"ModelElement", "00000000-0000-3000-8000-00000000001d", things, operations,
         slot(&Made::thing), &thingTable, "Other.Thing"},
        {u"Wide", true, u"Thing", "00000000-0000-3000-8000-00000000001e", wides, {}, slot(&Made::wide), &wideTable}};
    declare::DataType dataTypes[1] = {{u"Pair", "00000000-0000-3000-8000-00000000001f", fields, slot(&Made::pair),
                                       &makeNumbers, &declare::makeSerializer<Colours>}};
    declare::Primitive primitives[1] = {{u"StdString", slot(&Made::stdString)}};
    declare::Literal literals[2] = {{u"Red", 0, "00000000-0000-3000-8000-000000000021", slot(&Made::red)},
                                    {u"Blue", 3, nullptr, slot(&Made::blue)}};
    declare::Enum enums[1] = {
        {u"Colour", "00000000-0000-3000-8000-000000000022", literals, slot(&Made::colour), nullptr, nullptr}};
    char16_t const* imports[2] = {u"/imported/one", u"/imported/two"};
    declare::Package package{"00000000-0000-3000-8000-000000000020",
                             u"/tests/declared",
                             imports,
                             u"declared",
                             u"/tests/declared/declared",
                             "declared::",
                             "Script.",
                             slot(&Made::root),
                             slot(&Made::schema),
                             classes,
                             dataTypes,
                             primitives,
                             enums};
};

Made& Made::make(Faults const& faults) {
    static auto& all = *new std::vector<std::unique_ptr<Tables>>;
    return *new Made(all.emplace_back(std::make_unique<Tables>(faults))->package);
}

/// Removes a declared package.
void remove(Made& made) {
    auto* const registry = MetaRegistry::getInstance();
    std::lock_guard const lock(registry->mutex());
    Model::Thawer const thawer = registry->freezer().thaw();
    registry->unregisterRootPackage(u"/tests/declared");
    made.root->destroy();
}

// --- What is made ---------------------------------------------------------------------------------------------------

// --- What a failure leaves ------------------------------------------------------------------------------------------

/// Checks that the registry is unchanged and can be written after thawing it.
void checkUntouched(std::string const& before, Made const& made) {
    auto* const registry = MetaRegistry::getInstance();
    EXPECT_EQ(dump(registry->model()), before);
    EXPECT_TRUE(failsWith<msg::ModelIsFrozen>([&] { meta::Package::create(registry->model(), {}); }));
    EXPECT_FALSE(registry->findRootPackage(u"/tests/declared"));
    EXPECT_TRUE(failsWith<msg::NoSuchType>([&] { (void)registry->getType(u"declared.Thing"); }));
    EXPECT_FALSE(registry->findTypeByScriptName("Script.Wide"));
    for (ModelElement const& e :
         {ModelElement(made.root), ModelElement(made.schema), ModelElement(made.thing), ModelElement(made.pair),
          ModelElement(made.colour), ModelElement(made.blue), ModelElement(made.stdString), ModelElement(made.name),
          ModelElement(made.first), ModelElement(made.measure), ModelElement(made.unit)}) {
        EXPECT_EQ(e.impl(), nullptr) << "a slot was left full";
    }
    bool unlocked = false;
    std::thread([&] {
        unlocked = registry->mutex().try_lock();
        if (unlocked) registry->mutex().unlock();
    }).join();
    EXPECT_TRUE(unlocked);
}

void checkDeclares() {
    Made& made = Made::make({});
    made.declareAll();
    EXPECT_EQ(MetaRegistry::getInstance()->getType(u"declared.Thing"), made.thing);
    remove(made);
}

TEST(DeclaredPackages, LeaveNothingWhenTheyFail) {
    meta::PropertySerializerRegistry::getInstance();
    std::string const before = dump(MetaRegistry::getInstance()->model());
    using Check = testing::AssertionResult (*)(std::function<void()> const&);
    Check const noSuchType = [](std::function<void()> const& f) { return failsWith<msg::NoSuchType>(f); };
    Check const notUnique = [](std::function<void()> const& f) { return failsWith<msg::UniquenessConstraint>(f); };
    Check const anything = [](std::function<void()> const& f) { return throws<std::runtime_error>(f); };
    auto const fail = [] { throw std::runtime_error("mine"); };
    struct Case {
        char const* name;
        Faults faults;
        std::function<void()> bringUp;
        std::function<void()> between;
        Check check;
    };
    auto const nothing = [] {};
    Case const cases[] = {
        {"a missing primitive", {.primitive = u"Complex"}, nothing, nothing, noSuchType},
        {"an unknown type", {.childType = u"elsewhere.Thing"}, nothing, nothing, noSuchType},
        {"an unknown superclass", {.superclass = u"elsewhere.Base"}, nothing, nothing, noSuchType},
        {"an id in use", {.lastId = "00000000-0000-3000-8000-000000000011"}, nothing, nothing, notUnique},
        {"an id that is none", {.lastId = "eleven"}, nothing, nothing, anything},
        {"serializers that can't be made",
         {.serializers = []() -> declare::EnumSerializers { throw std::runtime_error("mine"); }},
         nothing,
         nothing,
         anything},
        {"a package below", {}, fail, nothing, anything},
        {"between the phases", {}, nothing, fail, anything},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        Made& made = Made::make(c.faults);
        EXPECT_TRUE(c.check([&] { made.declareAll(c.bringUp, c.between); }));
        checkUntouched(before, made);
        checkDeclares();
        EXPECT_EQ(dump(MetaRegistry::getInstance()->model()), before);
    }
}

/// Declares with memory running out at each allocation in turn; returns how often the declaration failed.
int declareWithLittle(std::string const& before) {
    for (int granted = 0;; ++granted) {
        Made& made = Made::make({});
        if (!nodes::starve(granted, [&] { made.declareAll(); }).failed) {
            remove(made);
            return granted;
        }
        checkUntouched(before, made);
        if (testing::Test::HasFailure()) return granted;
    }
}

TEST(DeclaredPackages, LeaveNothingWhenMemoryRunsOut) {
    auto* const registry = MetaRegistry::getInstance();
    meta::PropertySerializerRegistry::getInstance();
    // With more and more other packages, so that the registry's own tables have to grow at each place once.
    std::vector<meta::Package> others;
    for (int i = 0; i < 6; ++i) {
        EXPECT_GT(declareWithLittle(dump(registry->model())), 50);
        if (HasFailure()) return;
        std::lock_guard const lock(registry->mutex());
        Model::Thawer const thawer = registry->freezer().thaw();
        others.push_back(meta::Package::create(registry->model(), {}));
        others.back()->setUri(u"/tests/other" + std::u16string(static_cast<std::size_t>(i), u'r'));
        registry->registerRootPackage(others.back());
    }
    checkDeclares();
    std::lock_guard const lock(registry->mutex());
    Model::Thawer const thawer = registry->freezer().thaw();
    for (auto const& other : others) {
        registry->unregisterRootPackage(other->getUri());
        other->destroy();
    }
}

TEST(DeclaredPackages, MayBeDeclaredWithinOneAnother) {
    // The outer one refers to a type of the inner one, which it brings up first.
    struct Outer final : meta::DeclaredPackage {
        explicit Outer(declare::Package const& tables) : DeclaredPackage(tables) {}
        void declareAll(Made& inner) {
            declareInRegistry([&] { inner.declareAll(); }, [&](MetaRegistry* r) { instantiate(r); },
                              [&](MetaRegistry* r, meta::PropertySerializerRegistry* s) { weave(r, s); });
        }
        meta::Package root, schema;
        meta::Class user;
        meta::Property uses;
    };
    static declare::Property const properties[] = {{u"uses", Shape::SequenceOwned, u"declared.Thing", 4, nullptr,
                                                    nullptr, "00000000-0000-3000-8000-000000000031",
                                                    declare::slot(&Outer::uses)}};
    static ClassTable::TableFunction const table = &wideTable;
    static declare::Class const classes[] = {{u"User",
                                              false,
                                              u"declared.Wide",
                                              "00000000-0000-3000-8000-000000000032",
                                              properties,
                                              {},
                                              declare::slot(&Outer::user),
                                              table}};
    static declare::Package const package{"00000000-0000-3000-8000-000000000030",
                                          u"/tests/outer",
                                          {},
                                          u"outer",
                                          u"/tests/outer/outer",
                                          "outer::",
                                          "Outer.",
                                          declare::slot(&Outer::root),
                                          declare::slot(&Outer::schema),
                                          classes,
                                          {},
                                          {},
                                          {}};
    auto* const registry = MetaRegistry::getInstance();
    Made& inner = Made::make({});
    auto& outer = *new Outer(package);
    outer.declareAll(inner);
    EXPECT_EQ(outer.uses->getType(), inner.thing);
    EXPECT_TRUE(outer.uses->isComposite() && outer.uses->isOrdered() && !outer.uses->isUnique());
    EXPECT_EQ(outer.user->getSuperclass(), inner.wide);
    EXPECT_EQ(registry->getType(u"outer.User"), outer.user);

    // The library loaded again: a new object of the same tables replaces the former one.
    Made& again = Made::make({});
    again.declareAll();
    EXPECT_FALSE(inner.thing);
    EXPECT_EQ(registry->getType(u"declared.Thing"), again.thing);
    EXPECT_EQ(registry->findTypeByScriptName("Script.Pair"), again.pair);
    EXPECT_EQ(registry->findRootPackage(u"/tests/declared"), again.root);
    EXPECT_NE(meta::PropertySerializerRegistry::getInstance()->getPropertySerializer(again.colour), nullptr);
    EXPECT_EQ(registry->getType(u"outer.User"), outer.user);
    remove(again);
    std::lock_guard const lock(registry->mutex());
    Model::Thawer const thawer = registry->freezer().thaw();
    registry->unregisterRootPackage(u"/tests/outer");
    outer.root->destroy();
}

}  // namespace
