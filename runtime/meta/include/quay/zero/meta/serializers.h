// Values as text, and fields of structured values, by type.
#pragma once

#include <quay/zero/meta/datatype_serializer.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/text.h>
#include <quay/zero/value.h>

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quay::zero::meta {

/// Converts the values of one type to text and back. A text that isn't one of the type's is boost::bad_lexical_cast, a
/// value of another type CannotCastIncompatibleTypes.
class QUAY_ZERO_API PropertySerializer {
public:
    virtual ~PropertySerializer();

    /// The text of a value, and an empty one for an empty value.
    virtual std::u16string serializeOptionalValue(Value const& value) const;
    /// The value with count 0 if it is empty.
    virtual Value toOptionalValue(Value const& value) const;
    virtual std::u16string serializeValue(Value const& value) const = 0;
    virtual Value parseValue(std::u16string const& text, Type const& type) const = 0;
    /// An empty text gives an empty value.
    virtual Value parseOptionalValue(std::u16string const& text, Type const& type) const;
    virtual Value createEmptyOptionalValue(Type const& type) const;
    virtual Value createDefaultValue(Type const& type) const = 0;
    virtual void releaseValue(Value&& value, Type const& type) const;
    /// One value that holds a vector, or a set, of the given values' payloads.
    virtual Value combineAsUnmanagedSequenceValue(Type const& type, std::vector<Value> const& values) const = 0;
    virtual Value combineAsUnmanagedSetValue(Type const& type, std::vector<Value> const& values) const = 0;
};

/// The serializer of a type whose C++ type is T; a subclass says how one value is written and read.
template <class T>
class DefaultPropertySerializer : public PropertySerializer {
public:
    std::u16string serializeValue(Value const& value) const override {
        return toText(value.getValue<T>(), value.getType());
    }
    Value parseValue(std::u16string const& text, Type const& type) const override {
        requireType(type);
        return {type, fromText(text, type), ValueFlags::One};
    }
    Value createDefaultValue(Type const& type) const override {
        requireType(type);
        return {type, T(), ValueFlags::One};
    }
    Value combineAsUnmanagedSequenceValue(Type const& type, std::vector<Value> const& values) const override {
        std::vector<T> all;
        all.reserve(values.size());
        for (Value const& v : values) all.push_back(v.getValue<T>());
        return unmanaged({type, all, ValueFlags::Sequence});
    }
    Value combineAsUnmanagedSetValue(Type const& type, std::vector<Value> const& values) const override {
        std::set<T> all;
        for (Value const& v : values) all.insert(v.getValue<T>());
        return unmanaged({type, all, ValueFlags::Set});
    }

protected:
    virtual std::u16string toText(T const& value, Type const& type) const = 0;
    virtual T fromText(std::u16string const& text, Type const& type) const = 0;

private:
    /// CannotCastIncompatibleTypes unless T is how values of that type are held.
    static void requireType(Type const& type) { Value(type, ValueFlags::One).checkCompatible<T>(); }
    static Value unmanaged(Value value) {
        value.setUnmanaged();
        return value;
    }
};

/// Base of the three serializers of an enumeration, which search its literals.
class QUAY_ZERO_API EnumTexts {
public:
    static std::u16string nameOf(int value, Type const& type);
    static int valueOf(std::u16string const& name, Type const& type);
    static std::u16string keyOf(int value, Type const& type);
    static int valueOfKey(std::u16string const& key, Type const& type);
    static std::u16string decimalOf(int value);
    static int valueOfDecimal(std::u16string const& text);
};

/// Form "": the literal's name; an empty text for a value that no literal has.
template <class E>
class EnumPropertySerializerAsName final : public DefaultPropertySerializer<E> {
protected:
    std::u16string toText(E const& v, Type const& type) const override {
        return EnumTexts::nameOf(static_cast<int>(v), type);
    }
    E fromText(std::u16string const& text, Type const& type) const override {
        return static_cast<E>(EnumTexts::valueOf(text, type));
    }
};

/// Form "ID": the integer in decimal.
template <class E>
class EnumPropertySerializerAsValue final : public DefaultPropertySerializer<E> {
protected:
    std::u16string toText(E const& v, Type const& /*type*/) const override {
        return EnumTexts::decimalOf(static_cast<int>(v));
    }
    E fromText(std::u16string const& text, Type const& /*type*/) const override {
        return static_cast<E>(EnumTexts::valueOfDecimal(text));
    }
};

/// Form "PublicID": the literal's key in the enumeration's map of literals.
template <class E>
class EnumPropertySerializerAsPublicId final : public DefaultPropertySerializer<E> {
protected:
    std::u16string toText(E const& v, Type const& type) const override {
        return EnumTexts::keyOf(static_cast<int>(v), type);
    }
    E fromText(std::u16string const& text, Type const& type) const override {
        return static_cast<E>(EnumTexts::valueOfKey(text, type));
    }
};

/// The serializers by type. Made by the first call, never destroyed.
class QUAY_ZERO_API PropertySerializerRegistry {
public:
    /// Any thread may make the first call.
    static PropertySerializerRegistry* getInstance();

    /// Registers a serializer in place of any other for the type and form.
    void registerPropertySerializer(Type const& type, std::unique_ptr<PropertySerializer> serializer, std::string form);
    void registerDatatypeSerializer(DataType const& type, std::unique_ptr<DatatypeSerializer> serializer);

    /// The serializer of a type in a form ("" is the default one), or null.
    PropertySerializer const* getPropertySerializer(Type const& type, std::string_view form = {}) const;
    DatatypeSerializer const* getDatatypeSerializer(Type const& type) const;

    /// Forgets a type's serializers without calling or deleting them, since their library may be unloaded.
    void forget(ModelElement::Impl const* type);

private:
    PropertySerializerRegistry();

    struct Serializers {
        std::map<std::string, std::unique_ptr<PropertySerializer>, std::less<>> byForm;
        std::unique_ptr<DatatypeSerializer> fields;
    };
    mutable std::mutex mutex_;
    std::map<ModelElement::Impl const*, Serializers> types_;
};

}  // namespace quay::zero::meta
