// Every property of every class that holds values, one or several.
#include "support/trial.h"

#include <quay/zero/builder.h>
#include <quay/zero/generic_collection.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>
#include <quay/zero/primitive_collection.h>

#include <algorithm>

namespace {

using namespace records;

class ValueTrial final : public Trial {
public:
    using Trial::Trial;

private:
    void check() override { isSingle() ? checkValue() : checkValues(); }
    std::function<void()> anyWrite() override {
        return [this] {
            isSingle() ? set(sample(property_->getType(), 6)) : values().genericAdd(sample(property_->getType(), 0));
        };
    }

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

    // --- Several values ----------------------------------------------------------------------------------------------

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
};

TEST(EveryValue, HoldsWhatItsShapePromises) {
    tryEvery<ValueTrial>([](meta::Property const& p) { return !isElement(p); });
}

}  // namespace
