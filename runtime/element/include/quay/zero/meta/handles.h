// Handles to meta objects. Their Impl classes are in <quay/zero/meta/types.h>.
#pragma once

#include <quay/zero/typed_handle.h>

namespace quay::zero::meta {

/// Base of all meta objects. They live as long as the process, even if they were destroyed or replaced, so a plain
/// pointer to one never dangles. Frequently used code holds such pointers to avoid counting references.
class QUAY_ZERO_API MetaElement : public TypedHandle<MetaElement, ModelElement> {
public:
    class Impl;
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// A package: owns types and packages, and is known by its URI.
class QUAY_ZERO_API Package : public TypedHandle<Package, MetaElement> {
public:
    class Impl;
    static Package create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// Base of everything that a property or a value can have as its type.
class QUAY_ZERO_API Type : public TypedHandle<Type, MetaElement> {
public:
    class Impl;
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// A class of elements.
class QUAY_ZERO_API Class : public TypedHandle<Class, Type> {
public:
    class Impl;
    static Class create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// A structured value type: fields, but no identity.
class QUAY_ZERO_API DataType : public TypedHandle<DataType, Type> {
public:
    class Impl;
    static DataType create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// A value type without parts, such as Integer.
class QUAY_ZERO_API PrimitiveType : public TypedHandle<PrimitiveType, Type> {
public:
    class Impl;
    static PrimitiveType create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// An enumeration: a value type whose values have names.
class QUAY_ZERO_API Enum : public TypedHandle<Enum, Type> {
public:
    class Impl;
    static Enum create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// One named value of an enumeration.
class QUAY_ZERO_API EnumLiteral : public TypedHandle<EnumLiteral, MetaElement> {
public:
    class Impl;
    static EnumLiteral create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// Base of what has a name, a type and bounds.
class QUAY_ZERO_API TypedElement : public TypedHandle<TypedElement, MetaElement> {
public:
    class Impl;
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// A property of a class or a field of a data type.
class QUAY_ZERO_API Property : public TypedHandle<Property, TypedElement> {
public:
    class Impl;
    static Property create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// An operation of a class; its type and bounds are those of its result.
class QUAY_ZERO_API Operation : public TypedHandle<Operation, TypedElement> {
public:
    class Impl;
    static Operation create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

/// An argument of an operation.
class QUAY_ZERO_API Argument : public TypedHandle<Argument, TypedElement> {
public:
    class Impl;
    static Argument create(Model const& model, boost::uuids::uuid const& id);
    static Class const& metaClass();
    static ClassTable const& classTable();
};

}  // namespace quay::zero::meta
