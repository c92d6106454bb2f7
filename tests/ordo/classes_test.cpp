// Packages, definition of classes on first use, and script objects with their native objects.
#include "support/workshop.h"
#include "support/workshop_collections.h"

#include <zx/objects.h>
#include <zx/text.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using ordo::internName;
using ordo::OrdoClass;
using ordo::OrdoObject;
using ordo::OrdoPackage;
using ordo::OrdoValue;
using ordo::factory::basic::BindingRegistry;
using workshop::Item;
using workshop::ItemRef;
using workshop::Record;

class Workshop : public testing::Test {
protected:
    static void SetUpTestSuite() { workshop::registerPackage(); }
    void SetUp() override { ASSERT_EQ(Record::instance().items, 0); }
    void TearDown() override {
        EXPECT_EQ(Record::instance().items, 0);
        EXPECT_EQ(BindingRegistry::size(), 0U);
    }

    static OrdoClass& classNamed(char const* name) { return *OrdoClass::getClass(internName(name)); }
    static OrdoValue make(char const* name) { return classNamed(name).construct({}); }
    static OrdoValue get(OrdoValue const& object, char const* property) {
        return find(object, property).get(object.object()->native());
    }
    static void set(OrdoValue const& object, char const* property, OrdoValue const& value) {
        find(object, property).set(object.object()->native(), value);
    }
    static ordo::OrdoPropInfo& find(OrdoValue const& object, char const* property) {
        return *object.object()->getClass().findProperty(internName(property));
    }
    static OrdoValue call(OrdoValue const& object, char const* method, OrdoValue argument = {}) {
        OrdoValue const arguments[] = {object, std::move(argument)};
        ordo::MethodCall call(arguments);
        object.object()->getClass().findMethod(internName(method))->call(call);
        return std::move(call.result());
    }
    static std::string failureId(auto const& work) {
        try {
            work();
        } catch (keel::core::except::Error const& error) {
            return error.GetID();
        }
        return "none";
    }
};

TEST_F(Workshop, KeepsWhatStandsWhenItIsRegisteredAgain) {
    OrdoPackage* const package = OrdoPackage::getPackage(internName("workshop"));
    std::size_t const classes = package->classNames().size();
    OrdoClass const* const item = &classNamed("workshop.Item");
    workshop::registerPackage();
    EXPECT_EQ(OrdoPackage::getPackage(internName("workshop")), package);
    EXPECT_EQ(package->classNames().size(), classes);
    EXPECT_EQ(&classNamed("workshop.Item"), item);
    EXPECT_EQ(package->subPackages().size(), 1U);
    EXPECT_EQ(OrdoPackage::getPackage(internName("workshop.cellar"))->parent(), package);
    EXPECT_EQ(OrdoPackage::getPackage(internName("workshop.attic")), nullptr);
    EXPECT_EQ(OrdoClass::getClass(internName("workshop.Attic")), nullptr);
    EXPECT_FALSE(internName("")) << "an empty name is none";
}

TEST_F(Workshop, DefinesAClassOnFirstUseAndAgainAfterAFailure) {
    EXPECT_THROW(OrdoClass::getClass(internName("workshop.Fragile")), std::runtime_error);
    OrdoClass const* const fragile = OrdoClass::getClass(internName("workshop.Fragile"));
    ASSERT_TRUE(fragile->isDefined());
    EXPECT_EQ(fragile->superclasses().size(), 1U) << "what the failed definition added is gone";
    EXPECT_NE(fragile->findProperty(internName("count")), nullptr);
    EXPECT_NE(fragile->validityCheck(), nullptr);
}

TEST_F(Workshop, InheritsMembersButNoConstructor) {
    OrdoClass& tool = classNamed("workshop.Tool");
    EXPECT_EQ(tool.findProperty(internName("name")), classNamed("workshop.Item").findProperty(internName("name")));
    EXPECT_EQ(tool.findMethod(internName("Item")), nullptr);
    EXPECT_TRUE(tool.isA(internName("workshop.Item")));
    EXPECT_FALSE(classNamed("workshop.Item").isA(tool));
    EXPECT_EQ(failureId([] { make("workshop.Idea"); }), "ordo:messages:AbstractClass");
    OrdoValue const made = make("workshop.Tool");
    EXPECT_TRUE(zxIsA(made.toArray().get(), "workshop.Item"));
    EXPECT_NE(made.native(internName("workshop.Item")), nullptr);
    EXPECT_EQ(made.native(internName("workshop.Parts")), nullptr);
}

TEST_F(Workshop, BindsOneScriptObjectAndOneReferenceToEachItem) {
    OrdoValue const item = make("workshop.Item");
    auto* const native = static_cast<Item*>(item.object()->native());
    EXPECT_EQ(native->references, 1);
    OrdoValue const part = call(item, "createPart", OrdoValue::text(u"p"));
    auto* const partNative = static_cast<Item*>(part.object()->native());
    EXPECT_EQ(partNative->references, 2);
    OrdoValue const parts = get(item, "parts");
    EXPECT_EQ(native->references, 2) << "a collection keeps its owner";
    EXPECT_EQ(get(item, "parts").object(), parts.object());
    EXPECT_EQ(workshop::sequenceOfItems().at(parts.object()->native(), 0).object(), part.object());
    EXPECT_EQ(BindingRegistry::size(), 3U);
    {
        OrdoObject held(part.object());
        zx::Array const array = OrdoValue::fromObject(held).toArray();
        zx::Array const copy = zx::copy(array.get());
        EXPECT_EQ(ordo::objectAt(copy.get()), part.object()) << "copies of arrays share it";
        EXPECT_EQ(partNative->references, 2);
    }
}

TEST_F(Workshop, AnnouncesNullAsAnEmptyObjectThatIsStoredNowhere) {
    bool isNew = true;
    OrdoObject const none = BindingRegistry::announce(static_cast<void*>(nullptr), internName("workshop.Item"), isNew);
    EXPECT_FALSE(isNew);
    EXPECT_EQ(none->native(), nullptr);
    zx::Array const array = ordo::toArray(*none);
    EXPECT_TRUE(zxIsEmpty(array.get()));
    EXPECT_TRUE(zxIsClass(array.get(), "workshop.Item"));
    EXPECT_EQ(failureId([&] {
                  int place = 0;
                  BindingRegistry::announce(&place, internName("workshop.Attic"), isNew);
              }),
              "ordo:messages:NoSuchClass");
}

TEST_F(Workshop, TellsObjectsAtOneAddressApartByTheirClasses) {
    ItemRef const item(new Item);
    OrdoClass& first = classNamed("workshop.Item");
    bool isNew = false;
    OrdoObject one = BindingRegistry::announce(item.get(), first.name(), isNew);
    item->addReference();
    OrdoObject other = BindingRegistry::announce(item.get(), internName("workshop.Tool"), isNew);
    item->addReference();
    EXPECT_TRUE(isNew);
    EXPECT_NE(one, other);
    EXPECT_EQ(BindingRegistry::size(), 2U);
    one = OrdoObject();
    EXPECT_EQ(BindingRegistry::find(item.get(), internName("workshop.Tool")), other.get());
    EXPECT_EQ(item->references, 2);
    EXPECT_TRUE(BindingRegistry::remove(item.get()));
    EXPECT_FALSE(BindingRegistry::remove(item.get()));
    item->dropReference();  // the reference that the removed binding owned
    OrdoObject const again = BindingRegistry::announce(item.get(), first.name(), isNew);
    item->addReference();
    OrdoValue arguments[1];
    ordo::MethodCall const call(arguments);
    OrdoObject const constructed = ordo::OrdoInterface::make(first);
    EXPECT_FALSE(BindingRegistry::announceForConstructor(item.get(), first.name(), *constructed, true));
    EXPECT_EQ(constructed->native(), nullptr);
}

TEST_F(Workshop, RemovesTheBindingOfAnObjectWhoseDescriptionLeavesIt) {
    int native = 0;
    bool isNew = false;
    OrdoObject object = BindingRegistry::announce(&native, internName("workshop.Color"), isNew);
    EXPECT_EQ(BindingRegistry::find(&native, internName("workshop.Color")), object.get());
    object = OrdoObject();
    EXPECT_EQ(BindingRegistry::find(&native, internName("workshop.Color")), nullptr);
}

TEST_F(Workshop, ReadsAndWritesEveryTypeOfProperty) {
    OrdoValue const item = make("workshop.Item");
    struct Case {
        char const* property;
        char const* typeWord;
        OrdoValue value;
        OrdoValue refused;
    };
    Case const cases[] = {
        {"ready", "logical scalar", OrdoValue::logical(true), OrdoValue::text(u"1")},
        {"count", "int32 scalar", OrdoValue::int32(-7), OrdoValue::real(0.5)},
        {"size", "uint32 scalar", OrdoValue::uint32(7), OrdoValue::int32(-1)},
        {"serial", "uint64 scalar", OrdoValue::uint64(~0ULL), OrdoValue::real(1e30)},
        {"weight", "double scalar", OrdoValue::real(-0.25), OrdoValue()},
        {"name", "OrdoFactoryString scalar", OrdoValue::text(u"\xD800x"), OrdoValue::int32(1)},
        {"label", "char", OrdoValue::bytes("\xFF y"), OrdoValue::text(u"\xD800")},
        {"limit", "logical", OrdoValue::logical(true), OrdoValue::text(u"")},
        {"rank", "int32", OrdoValue::int32(1), OrdoValue::real(1e10)},
        {"stamp", "uint64", OrdoValue::uint64(1), OrdoValue::int32(-1)},
    };
    for (Case const& row : cases) {
        SCOPED_TRACE(row.property);
        EXPECT_EQ(find(item, row.property).getTypeWord(), row.typeWord);
        set(item, row.property, row.value);
        EXPECT_NE(failureId([&] { set(item, row.property, row.refused); }), "none");
        zx::Array const now = get(item, row.property).toArray();
        EXPECT_TRUE(zxIsEqual(now.get(), row.value.toArray().get())) << "changed by what was refused";
    }
    set(item, "rank", OrdoValue());
    EXPECT_TRUE(get(item, "rank").isNothing());
    EXPECT_EQ(failureId([&] { find(item, "count").set(nullptr, OrdoValue()); }), "ZELDRA:class:InvalidHandle");
    EXPECT_TRUE(find(item, "parts").isReadOnly());
}

TEST_F(Workshop, SaysWhichPropertyRefusedAValue) {
    OrdoValue const item = make("workshop.Item");
    try {
        set(item, "count", OrdoValue::real(2.5));
        FAIL();
    } catch (keel::core::except::Exception<ordo::Failure> const& failure) {
        EXPECT_STREQ(failure.what(),
                     "ordo:messages:NotInteger: Item.count: 2.5 isn't an integer, which an int32 wants");
        EXPECT_EQ(ordo::errorKindOf(failure.GetID()), ordo::ErrorKind::Value);
    }
}

TEST_F(Workshop, TakesForAnEnumerationWhatNamesALiteral) {
    OrdoClass& color = classNamed("workshop.Color");
    OrdoValue const item = make("workshop.Item");
    OrdoValue const blue = OrdoValue::enumeration(color, 5);
    for (OrdoValue const& given : {blue, OrdoValue::fromArray(blue.toArray()), OrdoValue::text(u"Blue"),
                                   OrdoValue::int32(5), OrdoValue::real(5)}) {
        set(item, "color", OrdoValue::int32(1));
        set(item, "color", given);
        EXPECT_EQ(get(item, "color").enumerationNumber(), 5) << given.describe();
    }
    for (OrdoValue const& given : {OrdoValue::int32(3), OrdoValue::text(u"Mauve"), item, OrdoValue::real(1.5)}) {
        EXPECT_NE(failureId([&] { set(item, "color", given); }), "none") << given.describe();
    }
    EXPECT_EQ(get(item, "color").enumerationNumber(), 5);
    set(item, "color", OrdoValue());
    EXPECT_EQ(get(item, "color").enumerationNumber(), 0) << "nothing is the zero literal";
    EXPECT_EQ(failureId([&] { color.construct(std::vector<OrdoValue>(1)); }), "ordo:messages:NoValue");
    EXPECT_TRUE(zxIsEqual(color.findEnumeration(5)->getValue(), blue.toArray().get()));
    EXPECT_TRUE(zxIsA(blue.toArray().get(), "int32"));
}

/// Converts every value to the literal green.
class ToGreen final : public ordo::OrdoTypeConverter {
public:
    zx::Array convert(zxArray const*) override {
        return OrdoValue::enumeration(*OrdoClass::getClass(internName("workshop.Color")), 2).toArray();
    }
};

TEST_F(Workshop, AsksTheConversionTableForTexts) {
    auto const any = internName("any");
    auto const target = internName("workshop.Color property");
    ordo::OrdoTypeRepository::addConversion(any, target, std::make_unique<ToGreen>());
    OrdoValue const item = make("workshop.Item");
    set(item, "color", OrdoValue::text(u"grass"));
    EXPECT_EQ(get(item, "color").enumerationNumber(), 2);
    EXPECT_NE(ordo::OrdoTypeRepository::removeConversion(any, target), nullptr);
    EXPECT_EQ(ordo::OrdoTypeRepository::getConversion(any, target), nullptr);
    EXPECT_NE(failureId([&] { set(item, "color", OrdoValue::text(u"grass")); }), "none");
}

TEST_F(Workshop, CopiesValuesWhereverTheyGo) {
    OrdoValue const item = make("workshop.Item");
    OrdoValue const extent = get(item, "extent");
    set(extent, "width", OrdoValue::real(9));
    EXPECT_EQ(get(get(item, "extent"), "width").toDouble(), 1) << "the item keeps its own";
    set(item, "extent", extent);
    EXPECT_EQ(get(get(item, "extent"), "width").toDouble(), 9);
    zx::Array const array = extent.toArray();
    zx::Array const copy = zx::copy(array.get());
    EXPECT_EQ(ordo::objectAt(array.get()), extent.object());
    EXPECT_NE(ordo::objectAt(copy.get()), extent.object());
    OrdoValue const made = make("workshop.Extent");
    EXPECT_TRUE(call(made, "eq", get(make("workshop.Item"), "extent")).toLogical());
    EXPECT_FALSE(call(made, "eq", extent).toLogical());
}

TEST_F(Workshop, RefusesTheDead) {
    OrdoValue const item = make("workshop.Item");
    OrdoValue const parts = get(item, "parts");
    OrdoClass const& ordoClass = item.object()->getClass();
    EXPECT_NO_THROW(ordoClass.checkValid(item.object()->native()));
    call(item, "destroy");
    EXPECT_EQ(failureId([&] { ordoClass.checkValid(item.object()->native()); }), "ZELDRA:class:InvalidHandle");
    EXPECT_EQ(failureId([&] { parts.object()->getClass().checkValid(parts.object()->native()); }),
              "ZELDRA:class:InvalidHandle");
}

TEST_F(Workshop, HoldsACallToTheSignature) {
    std::vector<OrdoValue> const tooMany(2);
    EXPECT_EQ(failureId([&] { classNamed("workshop.Item").construct(tooMany); }), "ordo:messages:WrongArguments");
    auto const signature = ordo::OrdoMethodSignature::createMethodSignature("model opt_init", "A", {"M", "any"}, 1);
    EXPECT_EQ(signature.describe("A"), "A(model: M, opt_init: any = None) -> A");
    EXPECT_TRUE(signature.accepts(1) && signature.accepts(2));
    EXPECT_FALSE(signature.accepts(0) || signature.accepts(3));
}

}  // namespace
