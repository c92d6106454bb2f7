// Every property of every class, driven by reflection alone: default, write, event, rolling back, undo, old
// values, building, refusal, destruction.
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

#include <limits>

namespace {

using namespace quay::zero;
using namespace quay0::messages;
using namespace records;

constexpr auto const& kPublic = ReflectionPrivateTag::PUBLIC_ACCESS;

/// One element, about to be tried in one property.
class Trial {
public:
    Trial(meta::Class const& c, meta::Property const& p) : class_(c), property_(p) {
        element_ = make(c, model_);
        model_->enableHistory(100);
    }

    void run() {
        hearer_.take();
        checkIdentity();
        switch (property_->getFlags()) {
            case ValueFlags::One:
            case ValueFlags::Optional:
                isElement() ? checkChild() : checkValue();
                break;
            default:
                isElement() ? checkChildren() : checkValues();
        }
        checkDestroy();
    }

private:
    bool isElement() const { return meta::Class::cast(property_->getType()).impl() != nullptr; }
    std::string name() const { return keel::toUtf8(property_->getName()); }
    /// The property in which a write is recorded.
    std::string recordedName() const {
        if (!property_->isDerived()) return name();
        return name() == "rateInfo" ? "rateInfos" : "solverStatusFlags";
    }

    Value get() const { return element_->getPropertyValue(property_, kPublic); }
    std::string shown() const { return show(get()); }
    bool has() const { return element_->hasPropertyValue(property_, kPublic); }
    void set(Value const& value) { element_->setPropertyValue(property_, value, kPublic); }

    /// Expects M, and that nothing changed, also inside a transaction that goes on and commits.
    template <class M, class F>
    void refuses(F&& f) {
        std::string const before = dump(model_);
        hearer_.take();
        EXPECT_TRUE(failsWith<M>(f));
        EXPECT_EQ(dump(model_), before);
        {
            auto outer = model_->beginTransaction(false);
            EXPECT_TRUE(failsWith<M>(f));
            outer.commit(boost::none);
        }
        EXPECT_EQ(dump(model_), before);
        EXPECT_EQ(hearer_.take(), "");
    }

    /// `f` does something that changes the model: it is undone by rolling back and by undo, and comes back by
    /// redo.
    template <class F>
    void changes(F&& f) {
        std::string const before = dumpElements(model_);
        hearer_.take();
        {
            auto transaction = model_->beginTransaction(false);
            f();
            EXPECT_NE(dumpElements(model_), before);
        }
        EXPECT_EQ(dumpElements(model_), before) << "rolled back";
        {
            auto outer = model_->beginTransaction(false);
            {
                auto inner = model_->beginTransaction(false);
                f();
            }
            EXPECT_EQ(dumpElements(model_), before) << "rolled back inside";
            outer.commit(boost::none);
        }
        EXPECT_EQ(hearer_.take(), "");
        // In one transaction, so that one undo takes back however many steps f has.
        auto transaction = model_->beginTransaction(false);
        f();
        transaction.commit(boost::none);
        std::string const after = dumpElements(model_);
        ASSERT_TRUE(model_->undo());
        EXPECT_EQ(dumpElements(model_), before) << "undone";
        ASSERT_TRUE(model_->redo());
        EXPECT_EQ(dumpElements(model_), after) << "done again";
        hearer_.take();
    }

    void checkIdentity() {
        EXPECT_EQ(element_->getPropertyByIndex(property_->getIndex()).impl(),
                  property_->isDerived() ? nullptr : property_.impl());
        EXPECT_EQ(class_->findProperty(property_->getName()), property_);
        // A property of another class is unknown, whatever its name.
        meta::Property const foreign =
            *(*MetaPackageVw_modelref_info::getInstance()->RateInfo->getOwnedProperties()).begin();
        EXPECT_FALSE(element_->hasPropertyValue(foreign, kPublic));
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { element_->getPropertyValue(foreign, kPublic); }));
    }

    // --- One value
    // ------------------------------------------------------------------------------------------------

    void checkDefault() {
        auto const text = property_->getDefaultValue();
        auto const type = property_->getType();
        if (property_->getFlags() == ValueFlags::Optional) {
            EXPECT_FALSE(has());
            EXPECT_EQ(get().getCount(), 0);
            EXPECT_EQ(shown(), "none");
        } else if (type == meta::StandardTypes::zxArrayMeta) {
            EXPECT_FALSE(has());
            EXPECT_EQ(shown(), "null");
        } else {
            auto const* const serializers = meta::PropertySerializerRegistry::getInstance();
            auto const* const fields = serializers->getDatatypeSerializer(type);
            auto const* const texts = serializers->getPropertySerializer(type);
            Value const expected = fields != nullptr ? fields->createDefaultValue()
                                   : text            ? texts->parseValue(*text, type)
                                                     : texts->createDefaultValue(type);
            EXPECT_TRUE(has());
            EXPECT_EQ(shown(), show(expected));
        }
    }

    void checkValue() {
        checkDefault();
        auto const type = property_->getType();
        bool const optional = property_->getFlags() == ValueFlags::Optional;
        // Arrays, and the rates that a rate is read from, are never compared by content.
        bool const compared = type != meta::StandardTypes::zxArrayMeta && name() != "rateInfo";
        Value const zero = get();
        std::string const zeroShown = shown();
        Value const one = anotherThan(Value(zero));
        Value const two = anotherThan(one);

        set(one);
        if (compared) {
            EXPECT_EQ(hearer_.take(), recordedName() + ": " + zeroShown + " -> " + show(one) + " ;");
        }
        EXPECT_EQ(shown(), show(one));
        EXPECT_EQ(get().getCount(), 1);
        EXPECT_EQ(get().getType(), type);
        EXPECT_TRUE(has());
        hearer_.take();
        if (name() != "rateInfo") {
            set(one);
            set(get());
            EXPECT_EQ(hearer_.take(), "") << "an equal write is no event";
        }
        changes([&] { set(two); });
        EXPECT_EQ(shown(), show(two));
        if (compared) {
            {
                auto transaction = model_->beginTransaction(false);
                set(one);
                set(two);
                transaction.commit(boost::none);
            }
            EXPECT_EQ(hearer_.take(), "") << "written and written back";
        }
        refuses<CannotCastIncompatibleTypes>([&] { set(wrongValue(type)); });
        refuses<CannotCastIncompatibleTypes>([&] { set(Value()); });
        refuses<CannotCastIncompatibleTypes>([&] { set(Value(type, ValueFlags::Sequence)); });
        if (optional) {
            changes([&] { set(Value(type, ValueFlags::Optional)); });
            EXPECT_FALSE(has());
        }
        // A value of the right type without a payload is the type's zero.
        Value const empty(type, ValueFlags::One);
        set(empty);
        std::string const emptyShown = shown();
        set(anotherThan(get()));
        changes([&] { set(empty); });
        EXPECT_EQ(shown(), emptyShown);
        EXPECT_EQ(get().getCount(), 1);
        set(one);
        if (!property_->isDerived()) {
            checkStorage([&] { set(two); });
            buildWith(
                [&](ModelElement::Builder& b) {
                    b.setOrAdd(property_, two);
                    b.setOrAdd(property_, one);
                },
                show(one));
        } else {
            auto const builder = class_->instantiateBuilder(model_);
            EXPECT_TRUE(failsWith<NoSuchProperty>([&] { builder->setOrAdd(property_, one); }));
        }
    }

    // --- Several values
    // -------------------------------------------------------------------------------------------

    AbstractPrimitiveCollection& values() const {
        return dynamic_cast<AbstractPrimitiveCollection&>(*get().getCollection<AbstractOwnedCollection>());
    }

    void checkValues() {
        auto const type = property_->getType();
        bool const sequence = property_->getFlags() == ValueFlags::Sequence;
        auto const a = sample(type, 0);
        auto const b = sample(type, 1);
        // By rising value, which is the order of a set.
        auto const list = [&](std::vector<Value> all) {
            if (!sequence)
                std::sort(all.begin(), all.end(),
                          [&](auto const& x, auto const& y) { return position(x) < position(y); });
            std::string text = "[";
            for (auto const& v : all) text += (text.size() > 1 ? ", " : "") + show(v);
            return text + "]";
        };
        EXPECT_FALSE(has());
        EXPECT_EQ(shown(), "[]");
        EXPECT_EQ(values().getKind() == AbstractPrimitiveCollection::Kind::Sequence, sequence);
        EXPECT_EQ(values().getCollectionType(), type);

        values().genericAdd(a);
        EXPECT_EQ(hearer_.take(), name() + ": [] -> " + list({a}) + " ;");
        EXPECT_TRUE(has());
        changes([&] { values().genericAdd(b); });
        EXPECT_EQ(shown(), list({a, b}));
        if (sequence) {
            changes([&] { values().genericAdd(a); });
            EXPECT_EQ(shown(), list({a, b, a}));
            auto& positions = *values().getGenericInterface();
            changes([&] { positions.genericInsert(b, 0); });
            EXPECT_EQ(shown(), list({b, a, b, a}));
            EXPECT_EQ(positions.genericIndexOf(a), 1U);
            changes([&] { values().genericRemove(b); });
            EXPECT_EQ(shown(), list({a, b, a})) << "the first one went";
            changes([&] { positions.genericReplace(b, 0); });
            changes([&] { positions.genericRemoveAt(2); });
            EXPECT_EQ(shown(), list({b, b}));
            EXPECT_EQ(show(positions.genericAt(1)), show(b));
            EXPECT_EQ(positions.genericIndexOf(a), GenericPrimitiveSequenceInterface::NONE);
            for (unsigned long beyond : {2UL, GenericPrimitiveSequenceInterface::NONE}) {
                EXPECT_TRUE(throws<std::out_of_range>([&] { positions.genericAt(beyond); }));
                EXPECT_TRUE(throws<std::out_of_range>([&] { positions.genericReplace(a, beyond); }));
                EXPECT_TRUE(throws<std::out_of_range>([&] { positions.genericRemoveAt(beyond); }));
            }
            EXPECT_TRUE(throws<std::out_of_range>([&] { positions.genericInsert(a, 3); }));
            EXPECT_EQ(shown(), list({b, b}));
        } else {
            EXPECT_EQ(values().getGenericInterface(), nullptr);
            values().genericAdd(a);
            EXPECT_EQ(shown(), list({a, b}));
            changes([&] { values().genericRemove(a); });
            EXPECT_EQ(shown(), list({b}));
            hearer_.take();
            values().genericRemove(a);
            EXPECT_EQ(hearer_.take(), "");
            values().genericAdd(b);
            EXPECT_EQ(hearer_.take(), "") << "an insert of the only value that is there";
        }
        refuses<CannotCastIncompatibleTypes>([&] { values().genericAdd(wrongValue(type)); });
        refuses<CannotCastIncompatibleTypes>([&] { values().genericRemove(wrongValue(type)); });
        refuses<CannotCastIncompatibleTypes>([&] { set(a); });
        refuses<CannotCastIncompatibleTypes>([&] { set(Value()); });
        checkStorage([&] { values().genericAdd(sample(type, 3)); });
        std::string const full = shown();
        changes([&] { values().clear(); });
        EXPECT_FALSE(has());
        hearer_.take();
        values().clear();
        EXPECT_EQ(hearer_.take(), "");

        // Reflection replaces the content by that of another collection, or of a container; an empty value
        // empties.
        ModelElement const other = make(class_, model_);
        auto const given = other->getPropertyValue(property_, kPublic);
        dynamic_cast<AbstractPrimitiveCollection&>(*given.getCollection<AbstractOwnedCollection>()).genericAdd(b);
        dynamic_cast<AbstractPrimitiveCollection&>(*given.getCollection<AbstractOwnedCollection>()).genericAdd(a);
        changes([&] { set(given); });
        EXPECT_EQ(shown(), list({b, a}));
        set(get());
        EXPECT_EQ(shown(), list({b, a})) << "its own content";
        changes([&] { set(Value(type, property_->getFlags())); });
        EXPECT_EQ(shown(), "[]");
        buildWith(
            [&](ModelElement::Builder& builder) {
                builder.setOrAdd(property_, b);
                builder.setOrAdd(property_, a);
            },
            list({b, a}));
    }

    /// Where a value stands among others of its type: that of a detached set.
    std::size_t position(Value const& value) const {
        auto const everything = element_->getPropertyValue(property_, kPublic);
        auto const set = everything.getCollection<AbstractOwnedCollection>()->detachedCopy();
        auto& all = dynamic_cast<AbstractPrimitiveCollection&>(*set);
        for (unsigned n = 0; n < 4; ++n) all.genericAdd(sample(value.getType(), n));
        auto const sorted = all.getAllValues();
        return static_cast<std::size_t>(
            std::find_if(sorted.begin(), sorted.end(), [&](auto const& v) { return show(v) == show(value); }) -
            sorted.begin());
    }

    // --- One child
    // ------------------------------------------------------------------------------------------------

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

    // --- Several children
    // -----------------------------------------------------------------------------------------

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

    // --- What all shapes share
    // ------------------------------------------------------------------------------------

    /// A storage kept by hand takes the present value and gives it back.
    template <class F>
    void checkStorage(F&& change) {
        unsigned long const index = property_->getIndex();
        std::unique_ptr<Storage> const storage(element_->createStorage());
        EXPECT_FALSE(storage->has(index));
        EXPECT_EQ(show(storage->getOldValue(property_, kPublic)), "nothing");
        std::string const before = shown();
        element_->copyValue(storage.get(), index);
        element_->copyValue(storage.get(), 9999);
        EXPECT_EQ(storage->indices(), std::vector{index});
        // Giving back doesn't mend containers, so all of it is rolled back in the end.
        auto const transaction = model_->beginTransaction(false);
        change();
        std::string const after = shown();
        EXPECT_NE(after, before);
        EXPECT_EQ(show(storage->getOldValue(property_, kPublic)), before);
        storage->revertUnchanged(element_.impl());
        EXPECT_TRUE(storage->has(index));
        element_->copyStateFromStorage(storage.get());
        EXPECT_EQ(shown(), before);
        std::unique_ptr<ModelElement::Impl::Changes> const changes(element_->createChanges());
        EXPECT_EQ(changes->changed().size(), class_->getHighestIndex() + 1);
        hearer_.take();
    }

    template <class F>
    void buildWith(F&& fill, std::string const& expected) {
        auto const builder = class_->instantiateBuilder(model_);
        fill(*builder);
        EXPECT_TRUE(builder->given().test(property_->getIndex()));
        EXPECT_EQ(builder->given().count(), 1U);
        std::unique_ptr<ModelElement::Builder> none;
        refuses<CannotCastIncompatibleTypes>([&] { builder->setOrAdd(property_, wrongValue(property_->getType())); });
        EXPECT_TRUE(failsWith<NoSuchProperty>([&] { builder->setOrAdd(property_, none); }));
        for (int i = 0; i < 2; ++i) {
            ModelElement const built = builder->create({});
            EXPECT_EQ(show(built->getPropertyValue(property_, kPublic)), expected);
        }
        hearer_.take();
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

    void checkDestroy() {
        std::vector<ModelElement> below;
        model_->forEachElement([&](ModelElement::Impl& e) {
            if (e.containerImpl() == element_.impl()) below.emplace_back(&e);
        });
        changes([&] { element_->destroy(); });
        EXPECT_FALSE(element_);
        for (auto const& e : below) EXPECT_FALSE(e);
        EXPECT_EQ(model_->findElement(element_->uuid(), FindElementBehavior::InMemoryOnly).impl(), nullptr);
        element_->destroy();
        refuseWritesToTheDead();
        while (!element_) ASSERT_TRUE(model_->undo());
        EXPECT_TRUE(element_);
        for (auto const& e : below) EXPECT_EQ(e->basicContainer(), element_);
        // Without a history nobody keeps what the dead one was.
        model_->enableHistory(0);
        element_->destroy();
        refuseWritesToTheDead();
    }

    void refuseWritesToTheDead() {
        bool const single = property_->getFlags() == ValueFlags::One || property_->getFlags() == ValueFlags::Optional;
        ModelElement const child = isElement() ? makeChild(9) : ModelElement();
        refuses<CannotAddNonExistentObject>([&] {
            if (single) {
                set(isElement() ? Value::createElementValue(property_, child) : sample(property_->getType(), 6));
            } else if (isElement()) {
                children().getGenericInterface()->genericAdd(child);
            } else {
                values().genericAdd(sample(property_->getType(), 0));
            }
        });
        if (child) {
            EXPECT_EQ(child->basicContainer().impl(), nullptr);
        }
    }

    meta::Class class_;
    meta::Property property_;
    Model model_ = Model::create();
    ModelElement element_;
    Hearer hearer_{model_};
};

TEST(EveryClass, IsMadeByItsRegisteredBuilder) {
    auto const classes = schemaClasses();
    EXPECT_EQ(classes.size(), 103U);
    std::size_t properties = 0;
    for (meta::Class const& c : classes) {
        SCOPED_TRACE(keel::toUtf8(c->getName()));
        properties += c->getOwnedProperties()->size();
        Model const model = Model::create();
        auto const builder = meta::MetaRegistry::getInstance()->makeBuilder(c, model);
        EXPECT_EQ(builder == nullptr, c->isAbstract());
        EXPECT_EQ(c->instantiateBuilder(model) == nullptr, c->isAbstract());
        if (builder == nullptr) continue;
        auto const id = ElementImpl::generateNewUuid();
        ModelElement const e = builder->create(id);
        EXPECT_EQ(e->getMetaClass(), c);
        EXPECT_EQ(e->uuid(), id);
        EXPECT_EQ(model->findElement(id, FindElementBehavior::InMemoryOnly), e);
        EXPECT_EQ(model->getRoots(), std::vector{e});
        EXPECT_TRUE(failsWith<UniquenessConstraint>([&] { builder->create(id); }));
        EXPECT_EQ(model->elementCount(), 1U);
        EXPECT_TRUE(failsWith<CannotCreateWithoutModel>([&] { c->instantiateBuilder(Model())->create({}); }));
    }
    auto const* const package = MetaPackageVw_modelref_info::getInstance();
    properties +=
        package->RateInfo->getOwnedProperties()->size() + package->ServicePortKey->getOwnedProperties()->size();
    EXPECT_EQ(properties, 641U);
}

TEST(EveryProperty, HoldsWhatItsShapePromises) {
    int abstract = 0;
    for (meta::Class const& c : schemaClasses()) {
        abstract += c->isAbstract() ? 1 : 0;
        if (c->isAbstract()) continue;
        for (meta::Property const& p : c->getProperties()) {
            SCOPED_TRACE(keel::toUtf8(c->getName() + u"." + p->getName()));
            Trial(c, p).run();
        }
    }
    EXPECT_EQ(abstract, 1);
}

}  // namespace
