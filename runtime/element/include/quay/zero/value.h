// Values of any property type, together with their type.
#pragma once

#include <quay/zero/cell.h>
#include <quay/zero/meta/handles.h>
#include <quay/zero/report.h>
#include <quay/zero/type_traits.h>
#include <quay/zero/value_flags.h>

#include <quay0/messages.h>

#include <boost/optional/optional_fwd.hpp>
#include <cstddef>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace quay::zero {

/// The hash of several values, from the hash of those before and the hash of the next one.
QUAY_ZERO_API std::size_t combineHashes(std::size_t before, std::size_t next) noexcept;

/// Type and count of a value.
class QUAY_ZERO_API ValueMeta {
public:
    ValueMeta() noexcept = default;
    ValueMeta(meta::Type const& type, ValueFlags flags) noexcept;
    ValueMeta(ModelElement::Impl* type, ValueFlags flags) noexcept : type_(type), flags_(flags) {}
    /// The type and count of a property's values.
    explicit ValueMeta(meta::Property const& property);

    meta::Type getType() const;
    ValueFlags getFlags() const noexcept { return flags_; }
    /// A managed value owns its payload; an unmanaged one points at it.
    bool isManaged() const noexcept { return managed_; }
    void setUnmanaged() noexcept { managed_ = false; }

private:
    friend class Value;
    ModelElement::Impl* type_ = nullptr;  // a meta object, which lives as long as the process
    ValueFlags flags_ = ValueFlags::Optional;
    bool managed_ = true;
};

/// Holds one value as a copy of its own (managed; up to 32 bytes in place), or points at a collection. An empty value
/// has a type but no payload, and reads as the type's zero. Copying a value copies what it owns.
class QUAY_ZERO_API Value {
public:
    /// A value without type and payload.
    Value() noexcept { pointAt(nullptr); }
    /// Wraps a copy of the payload. CannotCastIncompatibleTypes if the flags tell of one value and T isn't of that
    /// type.
    template <class T>
    Value(meta::Type const& type, T const& payload, ValueFlags flags) : meta_(type, flags) {
        if (flags == ValueFlags::One) checkCompatible<T>();
        emplace(payload);
    }
    /// An empty value of that type.
    Value(meta::Type const& type, ValueFlags flags) noexcept : meta_(type, flags) { pointAt(nullptr); }
    explicit Value(ValueMeta const& meta) noexcept : meta_(meta) { pointAt(nullptr); }
    /// Points at a collection, which must outlive the value.
    Value(ValueMeta const& meta, AbstractOwnedCollection* collection) noexcept : meta_(meta) {
        meta_.setUnmanaged();
        pointAt(collection);
    }

    Value(Value const& other);
    Value(Value&& other) noexcept;
    Value& operator=(Value const& other) {
        Value copy(other);
        swap(copy);
        return *this;
    }
    Value& operator=(Value&& other) noexcept {
        swap(other);
        return *this;
    }
    ~Value() {
        if (operations_ != nullptr && !operations_->trivial) operations_->drop(payload_);
    }
    void swap(Value& other) noexcept;

    meta::Type getType() const { return meta_.getType(); }
    ValueFlags getFlags() const noexcept { return meta_.getFlags(); }
    bool isManaged() const noexcept { return meta_.isManaged(); }
    /// The number behind the flags.
    int getCount() const noexcept { return static_cast<int>(meta_.getFlags()); }
    void setUnmanaged() noexcept { meta_.setUnmanaged(); }

    /// The payload, or null. The value's type and flags tell of which C++ type it is.
    void* data() const noexcept;
    bool hasPayload() const noexcept { return data() != nullptr; }
    /// The payload's hash, 0 without one.
    std::size_t hash() const;
    /// Same type, count and payload.
    friend bool operator==(Value const& a, Value const& b) { return a.equals(b); }

    /// Raises CannotCastIncompatibleTypes, with the type of the value, unless the value holds a T.
    template <class T>
    void checkCompatible() const {
        if (!isCompatible<T>()) reportIncompatible();
    }
    template <class T>
    bool isCompatible() const;
    /// Raises CannotCastIncompatibleTypes with the type of the value.
    [[noreturn]] void reportIncompatible() const;
    /// The payload, or T() without one. Fails as checkCompatible does.
    template <class T>
    T getValue() const {
        checkCompatible<T>();
        if constexpr (IsOptional<T>::value) {
            using U = typename T::value_type;
            return operations_ != nullptr ? T(payload_.get<U>()) : T();
        } else {
            return operations_ != nullptr ? T(payload_.get<T>()) : T();
        }
    }
    /// Whether the value points at a collection instead of having a payload of its own.
    bool pointsAtCollection() const noexcept { return collection() != nullptr; }
    /// The collection that the value points at; null if it points at none. CannotCastIncompatibleTypes if that isn't a
    /// C.
    template <class C>
    C* getCollection() const {
        if constexpr (std::is_same_v<std::remove_const_t<C>, AbstractOwnedCollection>) {
            return collection();
        } else {
            C* const found = dynamic_cast<C*>(collection());
            if (found == nullptr && collection() != nullptr) reportIncompatible();
            return found;
        }
    }

    /// A value of that property; defined in <quay/zero/property_value.h>. CannotCastIncompatibleTypes if T isn't of the
    /// property's type. An empty optional is InvalidValue unless the property's lower bound is 0.
    template <class T>
    static Value createPrimitiveValue(meta::Property const& property, T const& value);
    /// The same for a T that is known to be of the property's type.
    template <class T>
    static Value wrapUnchecked(meta::Property const& property, T const& value);
    /// A value that holds a handle; its type is the element's class, or the property's type for an empty handle.
    static Value createElementValue(meta::Property const& property, ModelElement const& element);

    // What a managed value can do with its payload without knowing its type.
    template <class T>
    static void* genericCloner(void* source) {
        return source == nullptr ? nullptr : new T(*static_cast<T const*>(source));
    }
    template <class T>
    static void genericDeleter(void* payload) {
        delete static_cast<T*>(payload);
    }
    template <class T>
    static std::size_t genericHasher(void* payload);
    template <class T>
    static bool genericComparator(void* a, void* b) {
        if (a == nullptr || b == nullptr) return a == b;
        return *static_cast<T const*>(a) == *static_cast<T const*>(b);
    }

private:
    /// Wraps a copy of a payload that is of that type.
    template <class T>
    Value(ModelElement::Impl* type, T const& payload, ValueFlags flags) : meta_(type, flags) {
        emplace(payload);
    }

    /// The operations on a payload whose type isn't known. There is one constant for each payload type and library;
    /// types are compared by their meta objects, not by this address.
    struct Operations {
        bool trivial;                              // copied as bytes, without a destructor
        void* (*outside)(Cell& payload) noexcept;  // address of a payload outside the cell; else null
        void (*copy)(Cell& to, Cell const& from);
        void (*move)(Cell& to, Cell& from) noexcept;
        void (*drop)(Cell& payload) noexcept;
        std::size_t (*hash)(void*);
        bool (*equal)(void*, void*);
    };
    template <class T>
    static Operations const& operationsOf() noexcept;

    void pointAt(AbstractOwnedCollection* collection) noexcept {
        payload_.emplace<AbstractOwnedCollection*>(collection);
    }
    AbstractOwnedCollection* collection() const noexcept {
        return operations_ == nullptr ? payload_.get<AbstractOwnedCollection*>() : nullptr;
    }
    template <class T>
    void emplace(T const& payload) {
        payload_.emplace<T>(payload);
        operations_ = &operationsOf<T>();
    }

    bool equals(Value const& other) const;
    bool isElementOf(meta::Class const& metaClass) const;
    static ModelElement::Impl* typeOf(meta::Property const& property) noexcept;
    /// Whether T, which isn't a class of elements, is the C++ type of that meta type.
    template <class T>
    static bool isTypeOf(ModelElement::Impl const* type) {
        if constexpr (PrimitiveValue<T>) {
            return type == meta::StandardTypes::of<T>().ModelElement::impl();
        } else {
            return type == TypeOf<T>::type().ModelElement::impl();
        }
    }
    static bool isRequired(meta::Property const& property);
    static std::size_t hashOf(ModelElement const& element) noexcept;

    ValueMeta meta_;
    Operations const* operations_ = nullptr;  // null: no payload of its own
    Cell payload_;                            // the address of a collection if there are no operations
};

template <class T>
bool Value::isCompatible() const {
    if constexpr (IsOptional<T>::value) {
        using U = typename T::value_type;
        if (getCount() == 0) {
            Value one(*this);
            one.meta_.flags_ = ValueFlags::One;
            return one.isCompatible<U>();
        }
        return isCompatible<U>();
    } else if constexpr (IsContainer<T>::value) {
        using Member = typename T::value_type;
        ValueFlags const flags = std::is_same_v<T, std::set<Member>> ? ValueFlags::Set : ValueFlags::Sequence;
        if (getFlags() != flags || pointsAtCollection()) return false;
        Value one(meta_);
        one.meta_.flags_ = ValueFlags::One;
        return one.isCompatible<Member>();
    } else if constexpr (ElementHandle<T>) {
        return getCount() < 2 && isElementOf(T::metaClass());
    } else {
        return getCount() == 1 && isTypeOf<T>(meta_.type_);
    }
}

template <class T>
std::size_t Value::genericHasher(void* payload) {
    if (payload == nullptr) return 0;
    T const& value = *static_cast<T const*>(payload);
    if constexpr (std::is_enum_v<T>) {
        return static_cast<std::size_t>(static_cast<std::underlying_type_t<T>>(value));
    } else if constexpr (ElementHandle<T>) {
        return hashOf(value);
    } else if constexpr (IsContainer<T>::value) {
        std::size_t seed = 0;
        for (typename T::value_type member : value) {
            seed = combineHashes(seed, genericHasher<typename T::value_type>(&member));
        }
        return seed;
    } else {
        return std::hash<T>()(value);
    }
}

template <class T>
Value::Operations const& Value::operationsOf() noexcept {
    constexpr bool inPlace = Cell::kInPlace<T>;
    static constexpr Operations operations{
        inPlace && std::is_trivially_copyable_v<T>,
        inPlace ? nullptr : +[](Cell& payload) noexcept -> void* { return &payload.get<T>(); },
        [](Cell& to, Cell const& from) { to.emplace<T>(from.get<T>()); },
        [](Cell& to, Cell& from) noexcept { from.moveTo<T>(to); },
        [](Cell& payload) noexcept { payload.drop<T>(); },
        &genericHasher<T>,
        &genericComparator<T>,
    };
    return operations;
}

/// The members of the container that a value holds, each as a value of its own.
template <class Container>
std::vector<Value> typeMapperBasedExtractor(Value const& value) {
    std::vector<Value> result;
    if (auto const* container = static_cast<Container const*>(value.data())) {
        for (auto const& member : *container) result.emplace_back(value.getType(), member, ValueFlags::One);
    }
    return result;
}

}  // namespace quay::zero
