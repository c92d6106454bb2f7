// For every class and every property of every class: what reflection, builders and storages guarantee. The effect of
// writes on the model is tested in random_test.cpp.
#include "../common/expect.h"
#include "support/dump.h"
#include "support/listener.h"
#include "support/samples.h"

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <keel/text.h>
#include <quay/zero/changes.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>
#include <quay/zero/primitive_collection.h>
#include <quay/zero/storage.h>
#include <quay0/messages.h>

#include <functional>
#include <memory>

namespace {

using namespace records;
using namespace quay::zero;
using namespace quay0::messages;

constexpr auto const& kPublic = ReflectionPrivateTag::PUBLIC_ACCESS;
using Elements = std::vector<ModelElement>;

/// Tests one property of one element.
class Trial {
public:
    Trial(meta::Class const& c, meta::Property const& p)
        : class_(c), property_(p), type_(p->getType()), element_(make(c, model_)) {
        model_->enableHistory(100);
    }

    void run() {
        checkIdentity();
        checkStart();
        if (isSingle() && !isElement()) checkValues();
        if (!isSingle() && isElement()) checkChildren();
        if (!property_->isDerived()) checkStorage();
        checkBuilder();
        checkDestruction();
    }

private:
    bool isElement() const { return meta::Class::cast(type_).impl() != nullptr; }
    bool isSingle() const {
        return property_->getFlags() == ValueFlags::One || property_->getFlags() == ValueFlags::Optional;
    }
    Value get() const { return element_->getPropertyValue(property_, kPublic); }
    std::string shown() const { return show(get()); }
    bool has() const { return element_->hasPropertyValue(property_, kPublic); }
    void set(Value const& value) { element_->setPropertyValue(property_, value, kPublic); }
    template <class C>
    C& collection() const {
        return dynamic_cast<C&>(*get().getCollection<AbstractOwnedCollection>());
    }
    /// A child whose key, if it has one, is the n-th sample.
    ModelElement makeChild(unsigned n) {
        ModelElement const child = make(type_, model_);
        if (auto const key = property_->getQualifiedBy())
            child->setPropertyValue(key, sample(key->getType(), n), kPublic);
        return child;
    }
    /// A function that writes the n-th sample, or adds it. What the write needs is made beforehand.
    std::function<void()> writing(unsigned n) {
        if (!isElement()) {
            return [this, value = sample(type_, n)] {
                isSingle() ? set(value) : collection<AbstractPrimitiveCollection>().genericAdd(value);
            };
        }
        return [this, child = makeChild(n)] {
            isSingle() ? set(Value::createElementValue(property_, child))
                       : collection<ReferenceCollection>().getGenericInterface()->genericAdd(child);
        };
    }
    /// Expects M, and that nothing changed.
    template <class M, class F>
    void refuses(F&& f) {
        std::string const before = dump(model_);
        EXPECT_TRUE(failsWith<M>(f));
        EXPECT_EQ(dump(model_), before);
    }

    void checkIdentity() {
        EXPECT_EQ(element_->getPropertyByIndex(property_->getIndex()).impl(),
                  property_->isDerived() ? nullptr : property_.impl());
        EXPECT_EQ(class_->findProperty(property_->getName()), property_);
        EXPECT_EQ(property_->isComposite(), isElement());
        // A property of another class is unknown, even if it has the same name.
        meta::Property const foreign =
            *(*MetaPackageVw_modelref_info::getInstance()->RateInfo->getOwnedProperties()).begin();
        EXPECT_FALSE(element_->hasPropertyValue(foreign, kPublic));
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { element_->getPropertyValue(foreign, kPublic); }));
    }

    /// Checks the initial state.
    void checkStart() {
        auto const* const serializers = meta::PropertySerializerRegistry::getInstance();
        std::string expected;
        if (!isSingle()) {
            expected = "[]";
            EXPECT_EQ(collection<AbstractOwnedCollection>().getCollectionType(), type_);
        } else if (isElement()) {
            expected = "-";
            EXPECT_EQ(get().getType(), type_);
        } else if (property_->getFlags() == ValueFlags::Optional) {
            expected = "none";
            EXPECT_EQ(get().getCount(), 0);
        } else if (type_ == meta::StandardTypes::zxArrayMeta) {
            expected = "null";
        } else if (auto const* const fields = serializers->getDatatypeSerializer(type_)) {
            expected = show(fields->createDefaultValue());
        } else {
            auto const* const texts = serializers->getPropertySerializer(type_);
            auto const text = property_->getDefaultValue();
            expected = show(text ? texts->parseValue(*text, type_) : texts->createDefaultValue(type_));
        }
        EXPECT_EQ(shown(), expected);
        bool const isEmpty = expected == "[]" || expected == "-" || expected == "none" || expected == "null";
        EXPECT_EQ(has(), !isEmpty);
        if (type_->getOwningPackage() == class_->getOwningPackage()) checkFactory();
        if (isElement() || isSingle()) return;
        bool const isSequence = property_->getFlags() == ValueFlags::Sequence;
        auto& values = collection<AbstractPrimitiveCollection>();
        EXPECT_EQ(values.getKind() == AbstractPrimitiveCollection::Kind::Sequence, isSequence);
        EXPECT_EQ(values.getGenericInterface() != nullptr, isSequence);
        refuses<CannotCastIncompatibleTypes>([&] { set(sample(type_, 0)); });
        refuses<CannotCastIncompatibleTypes>([&] { set(Value()); });
    }

    /// Checks a collection without owner, of the kind that the property has.
    void checkFactory() {
        auto const made = meta::MetaRegistry::getInstance()->makeCollection({}, property_);
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->owner(), nullptr);
        EXPECT_EQ(made->getCollectionProperty(), property_);
        EXPECT_EQ(made->getCollectionType(), type_);
        auto const* const children = dynamic_cast<ReferenceCollection const*>(made.get());
        auto const* const values = dynamic_cast<AbstractPrimitiveCollection const*>(made.get());
        EXPECT_EQ(children != nullptr, isElement());
        EXPECT_EQ(isElement() ? children->getGenericInterface()->isSequenceInterface()
                              : values->getKind() == AbstractPrimitiveCollection::Kind::Sequence,
                  property_->isOrdered());
    }

    void checkValues() {
        Value const one = anotherThan(Value(get()));
        set(one);
        EXPECT_EQ(shown(), show(one));
        EXPECT_EQ(get().getCount(), 1);
        EXPECT_EQ(get().getType(), type_);
        EXPECT_TRUE(has());
        refuses<CannotCastIncompatibleTypes>([&] { set(Value()); });
        refuses<CannotCastIncompatibleTypes>([&] { set(Value(type_, ValueFlags::Sequence)); });
        // A value of the right type without a payload is the type's zero.
        set(Value(type_, ValueFlags::One));
        std::string const zero = shown();
        EXPECT_EQ(get().getCount(), 1);
        set(one);
        set(Value(type_, ValueFlags::One));
        EXPECT_EQ(shown(), zero);
    }

    void checkChildren() {
        auto& generic = *collection<ReferenceCollection>().getGenericInterface();
        ModelElement const child = makeChild(0);
        ModelElement const stranger = makeStranger(type_, model_);
        ModelElement const dead = makeChild(1);
        dead->destroy();
        generic.genericAdd(child);
        EXPECT_TRUE(has() && generic.genericContains(child));
        std::string const before = dump(model_);
        for (ModelElement const& nothing : {ModelElement(), dead}) {
            generic.genericAdd(nothing);
            generic.genericEnsureAt(nothing, 0);
            generic.genericRemove(nothing);
            EXPECT_FALSE(generic.genericContains(nothing));
        }
        EXPECT_EQ(dump(model_), before);
        refuses<CannotAddIncompatibleTypes>([&] { generic.genericEnsureAt(stranger, 0); });
        refuses<CannotAddIncompatibleTypes>([&] { generic.genericRemove(stranger); });
        refuses<CannotCastIncompatibleTypes>([&] { set(Value::createElementValue(property_, child)); });
        EXPECT_FALSE(generic.genericContains(stranger));
        if (auto* const sequence = dynamic_cast<GenericSequenceInterface*>(&generic)) {
            refuses<CannotAddIncompatibleTypes>([&] { sequence->genericInsertAt(stranger, 0); });
            refuses<CannotAddIncompatibleTypes>([&] { sequence->genericSetAt(stranger, 0); });
            for (ModelElement const& nothing : {ModelElement(), dead}) {
                refuses<CannotAddNonExistentObject>([&] { sequence->genericSetAt(nothing, 0); });
            }
            EXPECT_EQ(sequence->genericAt(0), child);
            EXPECT_EQ(sequence->genericIndexOf(child), 0U);
            EXPECT_EQ(sequence->genericIndexOf(stranger), GenericCollectionInterface::NONE);
            EXPECT_TRUE(throws<std::out_of_range>([&] { sequence->genericAt(1); }));
        }
        EXPECT_EQ(generic.isSequenceInterface(), property_->getFlags() == ValueFlags::Sequence);
        EXPECT_EQ(generic.isMapInterface(), property_->getFlags() == ValueFlags::Map);
        EXPECT_EQ(generic.isMultimapInterface(), property_->getFlags() == ValueFlags::Multimap);
        if (auto const key = property_->getQualifiedBy()) checkKeys(generic, key, child);
        generic.genericClear();
    }

    void checkKeys(GenericCollectionInterface& generic, meta::Property const& key, ModelElement const& child) {
        auto const& keyed = dynamic_cast<GenericKeyedInterface&>(generic);
        EXPECT_EQ(keyed.getQualifierType(), key->getType());
        auto const find = [&](Value const& value) -> Elements {
            if (auto* const map = dynamic_cast<GenericMultimapInterface*>(&generic)) return map->genericGet(value);
            ModelElement const found = dynamic_cast<GenericMapInterface&>(generic).genericGet(value);
            return found.impl() == nullptr ? Elements() : Elements{found};
        };
        EXPECT_EQ(find(child->getPropertyValue(key, kPublic)), Elements{child});
        EXPECT_EQ(find(sample(key->getType(), 5)), Elements());
        EXPECT_TRUE(failsWith<CannotCastIncompatibleTypes>([&] { find(wrongValue(key->getType())); }));
        EXPECT_EQ(keyed.genericKeys().size(), 1U);
    }

    /// Checks a separate storage: it keeps the present value and restores it.
    void checkStorage() {
        unsigned long const index = property_->getIndex();
        std::unique_ptr<Storage> const storage(element_->createStorage());
        auto const write = writing(2);
        auto const more = writing(4);
        write();
        EXPECT_FALSE(storage->has(index));
        EXPECT_EQ(show(storage->getOldValue(property_, kPublic)), "nothing");
        std::string const before = shown();
        element_->copyValue(storage.get(), index);
        element_->copyValue(storage.get(), 9999);
        EXPECT_EQ(storage->indices(), std::vector{index});
        // Restoring doesn't repair containers, so everything is rolled back at the end.
        auto const transaction = model_->beginTransaction(false);
        more();
        if (shown() == before) return;  // for types with no more than two values
        EXPECT_EQ(show(storage->getOldValue(property_, kPublic)), before);
        storage->revertUnchanged(element_.impl());
        EXPECT_TRUE(storage->has(index));
        element_->copyStateFromStorage(storage.get());
        EXPECT_EQ(shown(), before);
        std::unique_ptr<ModelElement::Impl::Changes> const changes(element_->createChanges());
        EXPECT_EQ(changes->changed().size(), class_->getHighestIndex() + 1);
    }

    void checkBuilder() {
        auto const builder = class_->instantiateBuilder(model_);
        auto child = isElement() ? builderOf(type_, Model()) : nullptr;
        auto stranger = makeStranger(type_, Model::create())->getMetaClass()->instantiateBuilder(model_);
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { builder->setOrAdd(property_, stranger); }));
        EXPECT_NE(stranger, nullptr);
        if (isElement() || property_->isDerived()) {
            EXPECT_TRUE(failsWith<NoSuchProperty>([&] { builder->setOrAdd(property_, wrongValue(type_)); }));
            if (!isElement()) return;
            builder->setOrAdd(property_, child);
            EXPECT_EQ(child, nullptr);
        } else {
            EXPECT_TRUE(
                failsWith<CannotCastIncompatibleTypes>([&] { builder->setOrAdd(property_, wrongValue(type_)); }));
            for (unsigned n : {1U, 0U}) builder->setOrAdd(property_, sample(type_, n));
        }
        EXPECT_TRUE(builder->given().test(property_->getIndex()));
        EXPECT_EQ(builder->given().count(), 1U);
        for (int i = 0; i < 2; ++i) {
            ModelElement const built = builder->create({});
            Value const value = built->getPropertyValue(property_, kPublic);
            EXPECT_TRUE(built->hasPropertyValue(property_, kPublic));
            if (!isSingle()) {
                EXPECT_EQ(value.getCollection<AbstractOwnedCollection>()->size(), isElement() ? 1U : 2U);
            } else if (!isElement()) {
                EXPECT_EQ(show(value), show(sample(type_, 0)));
            }
        }
        if (property_->getFlags() != ValueFlags::Map) return;
        auto twin = builderOf(type_, Model());
        builder->setOrAdd(property_, twin);
        refuses<UniquenessConstraint>([&] { builder->create({}); });
    }

    /// With a history, dead elements keep their values; without one they don't. They always refuse writes.
    void checkDestruction() {
        writing(1)();
        Elements below;
        model_->forEachElement([&](ModelElement::Impl& e) {
            if (e.containerImpl() == element_.impl()) below.emplace_back(&e);
        });
        EXPECT_EQ(below.empty(), !isElement());
        std::string const before = dumpElements(model_);
        element_->destroy();
        EXPECT_FALSE(element_);
        for (auto const& e : below) EXPECT_FALSE(e);
        element_->destroy();
        auto const write = writing(3);
        refuses<CannotAddNonExistentObject>(write);
        while (!element_) ASSERT_TRUE(model_->undo());
        EXPECT_EQ(dumpElements(model_), before);
        for (auto const& e : below) EXPECT_EQ(e->basicContainer(), element_);
        model_->enableHistory(0);
        element_->destroy();
        refuses<CannotAddNonExistentObject>(writing(3));
    }

    Model model_ = Model::create();
    meta::Class class_;
    meta::Property property_;
    meta::Type type_;
    ModelElement element_;
};

TEST(EveryProperty, HoldsWhatItsShapePromises) {
    for (meta::Class const& c : schemaClasses()) {
        if (c->isAbstract()) continue;
        for (meta::Property const& p : c->getProperties()) {
            SCOPED_TRACE(keel::toUtf8(c->getName() + u"." + p->getName()));
            Trial(c, p).run();
        }
    }
}

TEST(EveryClass, IsMadeByItsRegisteredBuilder) {
    for (meta::Class const& c : schemaClasses()) {
        SCOPED_TRACE(keel::toUtf8(c->getName()));
        Model const model = Model::create();
        auto const makeBuilder = meta::MetaRegistry::getInstance()->builderFactory(c);
        EXPECT_EQ(makeBuilder == nullptr, c->isAbstract());
        EXPECT_EQ(c->instantiateBuilder(model) == nullptr, c->isAbstract());
        if (makeBuilder == nullptr) continue;
        auto const builder = makeBuilder(model);
        auto const id = ElementImpl::generateNewUuid();
        ModelElement const e = builder->create(id);
        EXPECT_EQ(e->getMetaClass(), c);
        EXPECT_EQ(model->findElement(id, FindElementBehavior::InMemoryOnly), e);
        EXPECT_EQ(model->getRoots(), std::vector{e});
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { builder->create(id); }));
        EXPECT_EQ(model->elementCount(), 1U);
        EXPECT_TRUE(failsWith<CannotCreateWithoutModel>([&] { c->instantiateBuilder(Model())->create({}); }));
    }
}

}  // namespace
