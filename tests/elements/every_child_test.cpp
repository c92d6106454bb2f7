// Every property of every class that owns elements, one or several.
#include "support/trial.h"

#include <quay/zero/builder.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>
#include <quay/zero/primitive_collection.h>

#include <algorithm>

namespace {

using namespace records;

class ChildTrial final : public Trial {
public:
    using Trial::Trial;

private:
    void check() override { isSingle() ? checkChild() : checkChildren(); }
    std::function<void()> anyWrite() override {
        ModelElement const child = makeChild(9);
        return [this, child] {
            if (isSingle()) {
                set(Value::createElementValue(property_, child));
            } else {
                children().getGenericInterface()->genericAdd(child);
            }
        };
    }

    void checkChild() {
        auto const type = property_->getType();
        EXPECT_TRUE(property_->isComposite());
        EXPECT_FALSE(has());
        EXPECT_EQ(shown(), "-");
        EXPECT_EQ(get().getType(), type);

        ModelElement const a = make(type, model_);
        ModelElement const b = make(type, model_);
        hearer_.take();
        auto const give = [&](ModelElement const& e) { set(Value::createElementValue(property_, e)); };
        give(a);
        EXPECT_EQ(hearer_.take(), name() + ": - -> " + show(Value::createElementValue(property_, a)) + " ;");
        EXPECT_EQ(get().getType(), a->getMetaClass());
        expectContained(a);
        give(a);
        EXPECT_EQ(hearer_.take(), "");
        changes([&] { give(b); });
        expectContained(b);
        expectFree(a);
        ModelElement const owner = make(class_, model_);
        changes([&] { owner->setPropertyValue(property_, Value::createElementValue(property_, b), kPublic); });
        EXPECT_FALSE(has()) << "a child moves, it isn't shared";
        EXPECT_EQ(b->basicContainer(), owner);
        changes([&] { give(b); });
        checkRefusedElements(give, [&](ModelElement const& e) { set(Value(e->getMetaClass(), e, ValueFlags::One)); });
        refuses<CannotCastIncompatibleTypes>([&] { set(wrongValue(type)); });
        checkStorage([&] { give(a); });
        give(b);
        changes([&] { give({}); });
        EXPECT_FALSE(has());
        expectFree(b);
        give(b);
        changes([&] { b->destroy(); });
        EXPECT_FALSE(has()) << "a destroyed child leaves";
        give(a);
        buildChildren();
    }

    void expectContained(ModelElement const& child) {
        EXPECT_TRUE(child);
        EXPECT_EQ(child->basicContainer(), element_);
        EXPECT_EQ(child->containmentFeature(), property_);
    }
    static void expectFree(ModelElement const& child) {
        EXPECT_TRUE(child);
        EXPECT_EQ(child->basicContainer().impl(), nullptr);
        EXPECT_EQ(child->containmentFeature().impl(), nullptr);
    }

    /// What can't be a child leaves no trace: `give` takes elements of the class, `giveAny` any.
    template <class Give, class GiveAny>
    void checkRefusedElements(Give&& give, GiveAny&& giveAny) {
        auto const type = property_->getType();
        Model const elsewhere = Model::create();
        ModelElement const foreign = make(type, elsewhere);
        refuses<CannotCreateCrossModelAssociation>([&] { give(foreign); });
        EXPECT_EQ(foreign->basicContainer().impl(), nullptr);
        ModelElement const stranger = makeStranger(type, model_);
        hearer_.take();
        if (property_->getFlags() == ValueFlags::One) {
            refuses<CannotCastIncompatibleTypes>([&] { giveAny(stranger); });
        } else {
            refuses<CannotAddIncompatibleTypes>([&] { giveAny(stranger); });
        }
    }

    // --- Several children --------------------------------------------------------------------------------------------

    ReferenceCollection& children() const {
        return dynamic_cast<ReferenceCollection&>(*get().getCollection<AbstractOwnedCollection>());
    }
    /// A child whose key, where there is one, is the n-th sample.
    ModelElement makeChild(unsigned n) {
        ModelElement const child = make(property_->getType(), model_);
        if (auto const key = property_->getQualifiedBy(); key.impl() != nullptr) {
            child->setPropertyValue(key, sample(key->getType(), n), kPublic);
        }
        hearer_.take();
        return child;
    }

    void checkChildren() {
        auto const type = property_->getType();
        EXPECT_TRUE(property_->isComposite());
        EXPECT_FALSE(has());
        EXPECT_EQ(children().getCollectionType(), type);
        auto& generic = *children().getGenericInterface();
        ModelElement const a = makeChild(0);
        ModelElement const b = makeChild(2);
        ModelElement const c = makeChild(4);

        generic.genericAdd(a);
        EXPECT_NE(hearer_.take().find(name() + ": [] -> ["), std::string::npos);
        EXPECT_TRUE(has());
        expectContained(a);
        changes([&] { generic.genericAdd(b); });
        expectContained(b);
        EXPECT_EQ(generic.genericSize(), 2U);
        EXPECT_TRUE(generic.genericContains(b));
        EXPECT_FALSE(generic.genericContains(c));
        changes([&] { generic.genericRemove(a); });
        expectFree(a);
        EXPECT_FALSE(generic.genericContains(a));
        hearer_.take();
        generic.genericRemove(a);
        generic.genericAdd({});
        generic.genericRemove({});
        EXPECT_FALSE(generic.genericContains({}));
        EXPECT_EQ(hearer_.take(), "") << "nothing to remove or add";
        changes([&] { generic.genericEnsureAt(a, 0); });
        expectContained(a);
        checkRefusedElements([&](ModelElement const& e) { generic.genericAdd(e); },
                             [&](ModelElement const& e) { generic.genericAdd(e); });
        ModelElement const stranger = makeStranger(type, model_);
        hearer_.take();
        refuses<CannotAddIncompatibleTypes>([&] { generic.genericRemove(stranger); });
        refuses<CannotAddIncompatibleTypes>([&] { generic.genericEnsureAt(stranger, 0); });
        EXPECT_FALSE(generic.genericContains(stranger));

        if (auto* const sequence = dynamic_cast<GenericSequenceInterface*>(&generic)) checkSequence(*sequence, a, b, c);
        if (property_->getQualifiedBy().impl() != nullptr)
            checkKeys(generic, a, b);
        else if (!generic.isSequenceInterface()) {
            generic.genericAdd(a);
            EXPECT_EQ(generic.genericSize(), 2U);
        }

        checkStorage([&] { generic.genericAdd(c); });
        ModelElement const d = makeChild(6);
        changes([&] { generic.genericAdd(d); });
        changes([&] { d->destroy(); });
        EXPECT_FALSE(generic.genericContains(d));

        // Members move to another owner, by reflection all at once.
        ModelElement const other = make(class_, model_);
        auto const view = get();
        std::size_t const count = generic.genericSize();
        changes([&] { other->setPropertyValue(property_, view, kPublic); });
        EXPECT_EQ(generic.genericSize(), 0U);
        EXPECT_EQ(dynamic_cast<ReferenceCollection&>(
                      *other->getPropertyValue(property_, kPublic).getCollection<AbstractOwnedCollection>())
                      .size(),
                  count);
        changes([&] { set(other->getPropertyValue(property_, kPublic)); });
        EXPECT_EQ(generic.genericSize(), count);
        refuses<CannotCastIncompatibleTypes>([&] { set(wrongValue(type)); });
        refuses<CannotCastIncompatibleTypes>([&] { set(Value::createElementValue(property_, a)); });
        changes([&] { generic.genericClear(); });
        expectFree(a);
        EXPECT_FALSE(has());
        generic.genericAdd(a);
        generic.genericAdd(b);
        buildChildren();
    }

    void checkSequence(GenericSequenceInterface& s, ModelElement const& a, ModelElement const& b,
                       ModelElement const& c) {
        auto const order = [&](std::vector<ModelElement> const& expected) {
            EXPECT_EQ(children().getAllValues(), expected);
        };
        order({a, b});
        changes([&] { s.genericInsertAt(c, 1); });
        order({a, c, b});
        EXPECT_EQ(s.genericIndexOf(b), 2U);
        EXPECT_EQ(s.genericAt(1), c);
        changes([&] { s.genericRemoveAt(1); });
        order({a, b});
        expectFree(c);
        EXPECT_EQ(s.genericIndexOf(c), GenericCollectionInterface::NONE);
        changes([&] { s.genericSetAt(c, 0); });
        order({c, b});
        expectFree(a);
        changes([&] { s.genericInsertAt(a, 0); });
        order({a, c, b});
        changes([&] { s.genericRemove(c); });
        hearer_.take();
        s.genericSetAt(a, 0);
        EXPECT_EQ(hearer_.take(), "");
        refuses<CannotAddNonExistentObject>([&] { s.genericSetAt({}, 0); });
        ModelElement const stranger = makeStranger(property_->getType(), model_);
        hearer_.take();
        refuses<CannotAddIncompatibleTypes>([&] { s.genericInsertAt(stranger, 0); });
        refuses<CannotAddIncompatibleTypes>([&] { s.genericSetAt(stranger, 0); });
        EXPECT_EQ(s.genericIndexOf(stranger), GenericCollectionInterface::NONE);
        EXPECT_TRUE(throws<std::out_of_range>([&] { s.genericAt(2); }));
        EXPECT_TRUE(throws<std::out_of_range>([&] { s.genericSetAt(c, 2); }));
        EXPECT_TRUE(throws<std::out_of_range>([&] { s.genericInsertAt(c, 3); }));
        EXPECT_TRUE(throws<std::out_of_range>([&] { s.genericRemoveAt(2); }));
        // One element may stand twice; it stays contained until the last one is gone.
        changes([&] { s.genericAdd(a); });
        order({a, b, a});
        changes([&] { s.genericRemove(a); });
        order({b, a});
        expectContained(a);
        changes([&] { s.genericRemove(a); });
        expectFree(a);
        changes([&] { s.genericAdd(a); });
    }

    void checkKeys(GenericCollectionInterface& generic, ModelElement const& a, ModelElement const& b) {
        auto const key = property_->getQualifiedBy();
        auto const& keyed = dynamic_cast<GenericKeyedInterface&>(generic);
        bool const unique = property_->getFlags() == ValueFlags::Map;
        EXPECT_EQ(generic.isMapInterface(), unique);
        EXPECT_EQ(generic.isMultimapInterface(), !unique);
        EXPECT_EQ(keyed.getQualifierType(), key->getType());
        auto const keyOf = [&](ModelElement const& e) { return e->getPropertyValue(key, kPublic); };
        auto const rekey = [&](ModelElement const& e, Value const& value) { e->setPropertyValue(key, value, kPublic); };
        auto const find = [&](Value const& value) -> std::vector<ModelElement> {
            if (!unique) return dynamic_cast<GenericMultimapInterface&>(generic).genericGet(value);
            ModelElement const found = dynamic_cast<GenericMapInterface&>(generic).genericGet(value);
            return found.impl() == nullptr ? std::vector<ModelElement>() : std::vector{found};
        };
        EXPECT_EQ(find(keyOf(a)), std::vector{a});
        EXPECT_EQ(find(sample(key->getType(), 5)), std::vector<ModelElement>());
        EXPECT_TRUE(failsWith<CannotCastIncompatibleTypes>([&] { find(wrongValue(key->getType())); }));

        changes([&] { rekey(a, sample(key->getType(), 7)); });
        EXPECT_EQ(find(sample(key->getType(), 7)), std::vector{a});
        EXPECT_EQ(find(sample(key->getType(), 0)), std::vector<ModelElement>());
        expectContained(a);
        changes([&] { rekey(a, sample(key->getType(), 0)); });
        ModelElement const twin = makeChild(0);
        generic.genericAdd(a);
        EXPECT_EQ(hearer_.take(), "") << "it is there";
        if (unique) {
            refuses<UniquenessConstraint>([&] { generic.genericAdd(twin); });
            refuses<UniquenessConstraint>([&] { rekey(a, keyOf(b)); });
            expectFree(twin);
            // Moving is refused as well, and leaves the element where it was.
            ModelElement const other = make(class_, model_);
            dynamic_cast<ReferenceCollection&>(
                *other->getPropertyValue(property_, kPublic).getCollection<AbstractOwnedCollection>())
                .getGenericInterface()
                ->genericAdd(twin);
            hearer_.take();
            refuses<UniquenessConstraint>([&] { generic.genericAdd(twin); });
            EXPECT_EQ(twin->basicContainer(), other);
        } else {
            changes([&] { generic.genericAdd(twin); });
            EXPECT_EQ(find(keyOf(a)), (std::vector{a, twin}));
            changes([&] { rekey(b, keyOf(a)); });
            EXPECT_EQ(find(keyOf(a)), (std::vector{a, twin, b})) << "a re-keyed one goes last";
            changes([&] { generic.genericRemove(twin); });
        }
        if (key->getType() == meta::StandardTypes::realMeta) {
            Value const nan(key->getType(), std::numeric_limits<double>::quiet_NaN(), ValueFlags::One);
            refuses<InvalidValue>([&] { rekey(a, nan); });
            ModelElement const lone = makeChild(0);
            rekey(lone, nan);
            refuses<InvalidValue>([&] { generic.genericAdd(lone); });
        }
        EXPECT_EQ(keyed.genericKeys().size(), generic.genericSize());
    }

    void buildChildren() {
        auto const builder = class_->instantiateBuilder(model_);
        auto child = builderOf(property_->getType(), Model());
        builder->setOrAdd(property_, child);
        EXPECT_EQ(child, nullptr);
        EXPECT_TRUE(builder->given().test(property_->getIndex()));
        auto stranger = (makeStranger(property_->getType(), model_)->getMetaClass())->instantiateBuilder(model_);
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { builder->setOrAdd(property_, stranger); }));
        EXPECT_NE(stranger, nullptr);
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { builder->setOrAdd(property_, wrongValue(property_->getType())); }));
        ModelElement built;
        changes([&] { built = builder->create({}); });
        EXPECT_TRUE(built->hasPropertyValue(property_, kPublic));
        if (property_->getFlags() == ValueFlags::Map) {
            auto twin = builderOf(property_->getType(), Model());
            builder->setOrAdd(property_, twin);
            hearer_.take();
            refuses<UniquenessConstraint>([&] { builder->create({}); });
        }
        hearer_.take();
    }
};

TEST(EveryChild, HoldsWhatItsShapePromises) {
    tryEvery<ChildTrial>([](meta::Property const& p) { return isElement(p); });
}

}  // namespace
