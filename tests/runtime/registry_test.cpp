// The registry of types and packages.
#include "../common/expect.h"
#include "support/node.h"
#include "support/node_dump.h"

#include <quay/zero/builder.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>

#include <functional>
#include <mutex>

namespace {

using namespace nodes;
using namespace quay::zero;
using meta::MetaRegistry;
using meta::StandardTypes;
namespace msg = quay0::messages;

/// A serializer that may be forgotten but not called: it stands for one whose library was unloaded.
class Unloaded final : public meta::DefaultPropertySerializer<int> {
public:
    ~Unloaded() override { ADD_FAILURE() << "a serializer was destroyed"; }

protected:
    std::u16string toText(int const&, meta::Type const&) const override { return {}; }
    int fromText(std::u16string const&, meta::Type const&) const override { return 0; }
};

/// A root package in the registry's model, with a package named `name` below it.
class Sandbox {
public:
    Sandbox(char16_t const* uri, char16_t const* name)
        : lock_(registry->mutex()),
          thawer_(registry->freezer().thaw()),
          root(meta::Package::create(registry->model(), {})),
          package(meta::Package::create(registry->model(), {})) {
        root->setUri(uri);
        package->setName(name);
        package->setParentPackage(root);
        registry->registerRootPackage(root);
    }
    ~Sandbox() {
        registry->unregisterRootPackage(root->getUri());
        if (root) root->destroy();
    }
    Sandbox(Sandbox const&) = delete;
    Sandbox& operator=(Sandbox const&) = delete;

    template <class X>
    X add(char16_t const* name) {
        X const type = X::create(registry->model(), {});
        type->setName(name);
        type->setOwningPackage(package);
        return type;
    }

    MetaRegistry* const registry = MetaRegistry::getInstance();

private:
    std::lock_guard<std::recursive_mutex> lock_;
    Model::Thawer thawer_;

public:
    meta::Package root;
    meta::Package package;
};

TEST(Registry, KnowsTheRuntimesOwnTypes) {
    auto* const registry = MetaRegistry::getInstance();
    EXPECT_EQ(registry, MetaRegistry::getInstance());
    for (char16_t const* name :
         {u"Boolean", u"Integer", u"UnlimitedNatural", u"UInteger64", u"Real", u"String", u"StdString", u"ZxArray",
          u"nativeTypes.DataTypeTablePtr", u"nativeTypes.VwBlockPtr"}) {
        meta::Type const type = registry->getType(name);
        EXPECT_TRUE(meta::PrimitiveType::cast(type));
        EXPECT_EQ(registry->getPrimitiveType(name), type);
        EXPECT_EQ(type->getQualifiedName(), name);
    }
    EXPECT_EQ(registry->getType(u"Integer"), StandardTypes::integerMeta);
    EXPECT_EQ(registry->getType(u"StdString"), StandardTypes::stdstringMeta);
    EXPECT_EQ(meta::internal::getPrimitiveTypeFromMetaRegistry(u"Real"), StandardTypes::realMeta);
    EXPECT_EQ(registry->getType(u"Model"), Model::metaClass());
    EXPECT_EQ(registry->getType(u"ModelElement"), ModelElement::metaClass());
    EXPECT_FALSE(registry->getPrimitiveType(u"Model")) << "a class";
    EXPECT_FALSE(registry->getPrimitiveType(u"Complex"));
    EXPECT_FALSE(meta::internal::getPrimitiveTypeFromMetaRegistry(u"Complex"));
    EXPECT_FALSE(registry->findTypeByScriptName("Varlow.Complex"));
    EXPECT_FALSE(registry->findRootPackage(u"/nowhere"));
    EXPECT_FALSE(registry->builderFactory(Node::metaClass()));
    try {
        (void)registry->getType(u"nodes.Absent");
        ADD_FAILURE();
    } catch (keel::core::except::Exception<msg::NoSuchType, std::exception, void> const& e) {
        EXPECT_EQ(e.message().arguments(), std::vector<std::u16string>{u"nodes.Absent"});
    }

    meta::Class const property = meta::Property::metaClass();
    EXPECT_EQ(registry->findTypeByScriptName("quay.zero.meta.Property"), property);
    EXPECT_TRUE(property->conformsTo(meta::TypedElement::metaClass()));
    EXPECT_TRUE(property->conformsTo(ModelElement::metaClass()));
    EXPECT_FALSE(property->conformsTo(meta::Type::metaClass()));
    EXPECT_EQ(property->getMetaClass(), meta::Class::metaClass()) << "a class is an object of the class of classes";
    EXPECT_EQ(StandardTypes::realMeta->getMetaClass(), meta::PrimitiveType::metaClass());
}

TEST(Registry, IsFrozenUnlessThawed) {
    auto* const registry = MetaRegistry::getInstance();
    std::string const before = dump(registry->model());
    std::function<void()> const writes[] = {
        [&] { meta::Package::create(registry->model(), {}); },
        [&] { StandardTypes::realMeta->setName(u"Unreal"); },
        [&] { Node::metaClass()->setSuperclass(meta::Class()); },
        [&] { nodeMeta().properties[kText]->setOwningType(Special::metaClass()); },
        [&] { nodeMeta().package->destroy(); },
    };
    for (auto const& write : writes) EXPECT_TRUE(failsWith<msg::ModelIsFrozen>(write));
    EXPECT_EQ(dump(registry->model()), before);
}

TEST(Registry, RegistersTypesUnderTheirNames) {
    Sandbox s(u"/tests/registry", u"registry");
    auto const type = s.add<meta::Enum>(u"Kind");
    EXPECT_TRUE(failsWith<msg::NoSuchType>([&] { (void)s.registry->getType(u"registry.Kind"); }));
    s.registry->registerType(
        type,
        [](ModelElement const&, meta::Property const& property) -> AbstractOwnedCollection* {
            return new PrimitiveSequence<int>(property);
        },
        nullptr);
    s.registry->registerTypeNames(type, "ns::Kind", "Some.Kind", "third");
    EXPECT_EQ(s.registry->getType(u"registry.Kind"), type);
    EXPECT_EQ(s.registry->findTypeByScriptName("Some.Kind"), type);
    auto const names = s.registry->getTypeNames(type);
    EXPECT_EQ(names.native + "," + names.script + "," + names.third, "ns::Kind,Some.Kind,third");
    EXPECT_EQ(s.registry->getTypeNames(Node::metaClass()).native, "");
    EXPECT_EQ(s.registry->findRootPackage(u"/tests/registry"), s.root);

    auto const property = meta::Property::create(s.registry->model(), {});
    property->setOwningType(s.add<meta::Class>(u"Owner"));
    property->setType(type);
    auto const collection = s.registry->makeCollection(ModelElement(), property);
    ASSERT_NE(collection, nullptr);
    EXPECT_EQ(collection->getCollectionProperty(), property);
    property->setType(StandardTypes::integerMeta);
    EXPECT_EQ(s.registry->makeCollection(ModelElement(), property), nullptr) << "no factory";

    s.registry->registerType(type, nullptr, nullptr);  // the same type again
    auto const second = s.add<meta::DataType>(u"Kind");
    EXPECT_TRUE(failsWith<msg::UniquenessConstraint>([&] { s.registry->registerType(second, nullptr, nullptr); }));
    EXPECT_EQ(s.registry->getType(u"registry.Kind"), type);
    type->destroy();
    EXPECT_TRUE(failsWith<msg::NoSuchType>([&] { (void)s.registry->getType(u"registry.Kind"); }));
    EXPECT_FALSE(s.registry->findTypeByScriptName("Some.Kind"));
    s.registry->registerType(second, nullptr, nullptr);
    EXPECT_EQ(s.registry->getType(u"registry.Kind"), second) << "a dead type's name is free";
}

TEST(Registry, ForgetsAPackageWithoutCallingIt) {
    meta::Enum type;
    auto* const serializers = meta::PropertySerializerRegistry::getInstance();
    {
        Sandbox s(u"/tests/forgotten", u"forgotten");
        type = s.add<meta::Enum>(u"Kind");
        s.registry->registerType(type, nullptr, nullptr);
        s.registry->registerTypeNames(type, "ns::Kind", "Forgotten.Kind", "");
        serializers->registerPropertySerializer(type, std::make_unique<Unloaded>(), "");
        serializers->registerPropertySerializer(type, std::make_unique<Unloaded>(), "ID");
        s.registry->unregisterRootPackage(u"/tests/nowhere");
        EXPECT_EQ(s.registry->getType(u"forgotten.Kind"), type);

        s.registry->unregisterRootPackage(u"/tests/forgotten");
        EXPECT_TRUE(type) << "forgotten, not destroyed";
        EXPECT_FALSE(s.registry->findRootPackage(u"/tests/forgotten"));
        EXPECT_TRUE(failsWith<msg::NoSuchType>([&] { (void)s.registry->getType(u"forgotten.Kind"); }));
        EXPECT_FALSE(s.registry->findTypeByScriptName("Forgotten.Kind"));
        EXPECT_EQ(s.registry->getTypeNames(type).native, "");
        EXPECT_EQ(serializers->getPropertySerializer(type), nullptr);
        s.registry->registerType(type, nullptr, nullptr);
        EXPECT_EQ(s.registry->getType(u"forgotten.Kind"), type);
        s.registry->registerRootPackage(s.root);
    }
    EXPECT_FALSE(type);
    EXPECT_EQ(type->getName(), u"Kind") << "a meta object stays readable for ever";
}

TEST(MetaObjects, NameThemselves) {
    Model const model = Model::create();
    auto const root = meta::Package::create(model, {});
    auto const outer = meta::Package::create(model, {});
    auto const inner = meta::Package::create(model, {});
    auto const type = meta::Class::create(model, {});
    type->setName(u"Type");
    EXPECT_EQ(type->getQualifiedName(), u"Type");
    type->setOwningPackage(root);
    EXPECT_EQ(type->getQualifiedName(), u"Type") << "a nameless package leaves no trace";
    outer->setName(u"outer");
    outer->setParentPackage(root);
    inner->setName(u"inner");
    inner->setParentPackage(outer);
    type->setOwningPackage(inner);
    EXPECT_EQ(type->getQualifiedName(), u"outer.inner.Type");
    EXPECT_EQ(type->getOwningPackage(), inner);
    EXPECT_TRUE(root->getOwnedTypes()->empty()) << "it has moved";
    EXPECT_TRUE(failsWith<msg::InvalidValue>([&] { root->setParentPackage(inner); }));
    EXPECT_EQ(type->identifier(), u"Type");
    EXPECT_FALSE(model->findElement(type->uuid(), FindElementBehavior::InMemoryOnly)->getMetaClass() ==
                 Node::metaClass());
}

TEST(MetaObjects, RefuseOwnersAndSuperclassesThatCannotBe) {
    Model const model = Model::create();
    auto const a = meta::Class::create(model, {});
    auto const b = meta::Class::create(model, {});
    auto const c = meta::Class::create(model, {});
    b->setSuperclass(a);
    c->setSuperclass(b);
    std::function<void()> const refused[] = {
        [&] { a->setSuperclass(a); },
        [&] { a->setSuperclass(c); },
        [&] { a->setOwningPackage({}); },
        [&] { meta::Package::create(model, {})->setParentPackage({}); },
        [&] { meta::Property::create(model, {})->setOwningType({}); },
        [&] { meta::Operation::create(model, {})->setOwningType({}); },
        [&] { meta::Argument::create(model, {})->setOperation({}); },
        [&] { meta::EnumLiteral::create(model, {})->setParentEnum({}); },
    };
    for (auto const& set : refused) EXPECT_TRUE(failsWith<msg::InvalidValue>(set)) << &set - refused;
    EXPECT_FALSE(a->getSuperclass());
    c->setSuperclass({});
    a->setSuperclass(c);
    EXPECT_TRUE(b->conformsTo(c));
}

TEST(MetaObjects, RefuseASecondLiteralOfOneName) {
    Model const model = Model::create();
    auto const type = meta::Enum::create(model, {});
    auto const literal = [&](char16_t const* name, int value) {
        auto const made = meta::EnumLiteral::create(model, {});
        made->setName(name);
        made->setValue(value);
        return made;
    };
    literal(u"b", 1)->setParentEnum(type);
    literal(u"a", 1)->setParentEnum(type);
    auto const second = literal(u"a", 2);
    EXPECT_TRUE(failsWith<msg::UniquenessConstraint>([&] { second->setParentEnum(type); }));
    EXPECT_FALSE(second->getParentEnum());
    EXPECT_EQ(type->findLiteral(1)->getName(), u"a") << "the first by name";
    EXPECT_FALSE(type->findLiteral(2));
    EXPECT_EQ(type->getLiterals()->size(), 2U);
}

}  // namespace
