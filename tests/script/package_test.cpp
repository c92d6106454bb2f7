// The script package of the record, as a host uses it.

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <ordo/ordo.h>
#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/meta_marshaler_registry.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zx/zx.h>

#include <string>
#include <vector>

extern "C" void ZLInitialize_vw_modelref_info();

namespace {

namespace qz = quay::zero;
using ordo::OrdoClass;
using ordo::OrdoValue;
using testing::ElementsAre;

constexpr std::string_view kPackage = "Varlow.ModelReference.internal.compileInfo";

std::string fullName(std::string_view name) { return std::string(kPackage) + "." + std::string(name); }

OrdoClass& classNamed(std::string const& name) {
    OrdoClass* const found = OrdoClass::getClass(ordo::internName(name));
    if (found == nullptr) throw std::runtime_error("no class " + name);
    return *found;
}
OrdoClass& recordClass(std::string_view name) { return classNamed(fullName(name)); }

class Scripts : public testing::Test {
protected:
    static void SetUpTestSuite() { ZLInitialize_vw_modelref_info(); }
};

std::vector<std::string> namesIn(std::string_view package) {
    std::vector<std::string> names;
    for (ordo::InternedName const name : ordo::OrdoPackage::getPackage(ordo::internName(package))->classNames()) {
        names.emplace_back(name.text());
    }
    return names;
}

TEST_F(Scripts, RegistersClassesEnumerationsAndDataTypesInOrder) {
    std::vector<std::string> const names = namesIn(kPackage);
    constexpr std::ptrdiff_t kOthers = 10;
    ASSERT_GT(names.size(), 100u);
    auto const classesEnd = names.end() - kOthers;
    EXPECT_TRUE(std::is_sorted(names.begin(), classesEnd));
    EXPECT_EQ(names.front(), "AUTOSARInportInfo");
    EXPECT_EQ(*(classesEnd - 1), "ZeroCrossingInfo");
    EXPECT_THAT(
        std::vector<std::string>(classesEnd, names.end()),
        ElementsAre("DataClass", "DenormalBehavior", "MessagePortType", "ModelWideEventType", "QueuePriorityOrder",
                    "QueueType", "SolverMode", "vwSolverType", "RateInfo", "ServicePortKey"));
    ZLInitialize_vw_modelref_info();
    EXPECT_EQ(namesIn(kPackage), names);
    for (char const* other : {"vwtp.mm.core.BlockSource", "vw.quayzero.treeNode.BlockAttributes",
                              "quay.zero.meta.Argument", "vw.type_info.BusElement", "vwexec.sto.BuiltInDTypeId",
                              "vwexec.sto.ClientDataRegistry", "ci.Model", "vwtp.mm.core.EventScope"}) {
        EXPECT_NE(OrdoClass::getClass(ordo::internName(other)), nullptr) << other;
    }
    EXPECT_EQ(OrdoClass::getClass(ordo::internName(fullName("NoSuchClass"))), nullptr);
}

/// The members that a class must have according to the meta-model, in order.
std::vector<std::string> expectedMembers(qz::meta::Class const& type) {
    std::vector<std::string> singles, several, into, intoSingle;
    for (qz::meta::Property const& p : *type->getOwnedProperties()) {
        std::string const name = ordo::factory::bytesOf(p->getName());
        std::string creator = "createInto" + name;
        creator[10] = static_cast<char>(std::toupper(creator[10]));
        bool const isSingle = p->getUpper() == 1;
        (isSingle ? singles : several).push_back(name);
        if (p->isComposite()) (isSingle ? intoSingle : into).push_back(creator);
    }
    std::vector<std::string> result;
    if (!type->isAbstract()) result.push_back(ordo::factory::bytesOf(type->getName()));
    for (auto const* part : {&singles, &several, &into, &intoSingle}) {
        result.insert(result.end(), part->begin(), part->end());
    }
    result.emplace_back("StaticMetaClass");
    return result;
}

TEST_F(Scripts, EveryClassHasTheMembersOfItsSchemaInOrder) {
    std::size_t creators = 0;
    for (qz::meta::Type const& type : *MetaPackageVw_modelref_info::getInstance()->ModelRefInfoRepo->getOwnedTypes()) {
        auto const metaClass = qz::meta::Class::cast(type);
        if (!metaClass) continue;
        OrdoClass& c = classNamed(metaClass->getScriptName());
        SCOPED_TRACE(c.name().text());
        ASSERT_EQ(c.superclasses().size(), 1u);
        auto const base = metaClass->getSuperclass();
        bool const isPlain = base == qz::ModelElement::metaClass();
        EXPECT_EQ(c.superclasses()[0]->name().text(), isPlain ? "quay.zero.ModelElement" : base->getScriptName());
        EXPECT_EQ(c.constructor() == nullptr, metaClass->isAbstract());
        std::vector<std::string> members;
        if (c.constructor() != nullptr) members.emplace_back(c.constructor()->name().text());
        for (auto const& p : c.properties()) {
            members.emplace_back(p->name().text());
            EXPECT_EQ(p->getAttributes(), 0u);
            EXPECT_FALSE(p->getDescription().empty()) << p->name().text();
        }
        for (auto const& m : c.methods()) {
            if (m.get() == c.constructor()) continue;
            members.emplace_back(m->name().text());
            creators += m->name().text().starts_with("createInto");
        }
        EXPECT_EQ(members, expectedMembers(metaClass));
        EXPECT_EQ(c.methods().back()->getAttributes(), 520u);
        EXPECT_FALSE(c.info().getDescription().empty());
    }
    EXPECT_EQ(creators, 114u);
    EXPECT_TRUE(recordClass("InterfaceParameter").info().isAbstract());
}

TEST_F(Scripts, PropertiesAndMethodsNameTheirTypes) {
    struct {
        char const* owner;
        char const* property;
        std::string word;
        bool readOnly;
    } const cases[] = {
        {"InportInformation", "isNotDerivPort", "logical scalar", false},
        {"ModelRefInfoRoot", "triggerType", "int32 scalar", false},
        {"InterfaceParameter", "numDimensions", "uint32 scalar", false},
        {"InterfaceParameter", "parameterName", "OrdoFactoryString scalar", false},
        {"InterfaceParameter", "datatypeName", "char", false},
        {"InterfaceParameter", "dimensions", "quay.zero.PrimitiveSet", true},
        {"InterfaceParameterInfo", "groupedArgumentMap", "quay.zero.Set", true},
        {"ModelRefInfoRoot", "inports", "quay.zero.Set", true},
        {"ModelRefInfoRoot", "dataTransferInfos", "any", false},
        {"CompServicePort", "servicePortKey", fullName("ServicePortKey"), false},
        {"VwtpEventData", "scope", "vwtp.mm.core.EventScope", false},
    };
    for (auto const& c : cases) {
        ordo::OrdoPropInfo const* const p = recordClass(c.owner).findProperty(ordo::internName(c.property));
        ASSERT_NE(p, nullptr) << c.property;
        EXPECT_EQ(p->getTypeWord(), c.word) << c.property;
        EXPECT_EQ(p->isReadOnly(), c.readOnly) << c.property;
    }
    auto const& constructor = recordClass("CompFunction").constructor()->signature();
    EXPECT_THAT(constructor.parameterNames, ElementsAre("model", "opt_init", "opt_uuid"));
    EXPECT_THAT(constructor.inputs, ElementsAre("quay.zero.Model", "any", "any"));
    EXPECT_EQ(constructor.optionalInputs, 2u);
    auto const& into = recordClass("ModelRefInfoRoot").findMethod(ordo::internName("createIntoInports"))->signature();
    EXPECT_TRUE(into.parameterNames.empty());
    EXPECT_EQ(into.result, fullName("InportInformation"));
    EXPECT_THAT(into.inputs, ElementsAre(fullName("ModelRefInfoRoot"), "any", "char"));
    EXPECT_EQ(into.optionalInputs, 2u);
}

TEST_F(Scripts, EnumerationsTakeNamesNumbersAndValues) {
    OrdoClass& type = recordClass("QueueType");
    EXPECT_EQ(type.builtInBase().text(), "int32");
    ASSERT_EQ(type.enumerations().size(), 3u);
    EXPECT_EQ(type.enumerations()[1]->getName().text(), "Q_TYPE_LIFO");
    EXPECT_EQ(zxGetClassName(type.enumerations()[1]->getValue()), fullName("QueueType"));
    for (std::string const ending : {"", " property", " scalar"}) {
        auto* const conversion = ordo::OrdoTypeRepository::getConversion(
            ordo::internName("any"), ordo::internName(fullName("QueueType") + ending));
        ASSERT_NE(conversion, nullptr);
        zx::Array const text(zxCreateString("Q_TYPE_PRIORITY"));
        EXPECT_EQ(zx::valueAt<std::int32_t>(zxGetUnderlyingArray(conversion->convert(text.get()).get())), 2);
    }
    OrdoValue const value = type.constructEnumeration(OrdoValue::bytes("Q_TYPE_LIFO"));
    ordo::MethodCall literal(std::span(&value, 1));
    type.findMethod(ordo::internName("getLiteral"))->call(literal);
    EXPECT_EQ(literal.result().toText(), u"Q_TYPE_LIFO");
    OrdoValue const strange = OrdoValue::enumeration(type, 77);
    ordo::MethodCall none(std::span(&strange, 1));
    type.findMethod(ordo::internName("getPublicIdentifier"))->call(none);
    EXPECT_EQ(none.result().toText(), u"");
}

}  // namespace
