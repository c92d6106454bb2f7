#include <quay/zero/class_chain.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/owned_collection_descriptor.h>
#include <quay/zero/report.h>
#include <quay/zero/value_descriptor.h>

#include <quay0/messages.h>

#include <mutex>

namespace quay::zero::meta {

// --- Descriptors ----------------------------------------------------------------------------------------------------

namespace {

template <class T>
class FieldDescriptor final : public ValueDescriptor<T> {
public:
    using ValueDescriptor<T>::ValueDescriptor;
};

/// A sequence of texts. Only its `collection` is called, since steps restore the content.
class TextsDescriptor final : public CollectionDescriptor {
public:
    constexpr TextsDescriptor(std::uint16_t index, PrimitiveSequence<std::u16string> Package::Impl::*field) noexcept
        : CollectionDescriptor(index, PropertyKind::PrimitiveCollection), field_(field) {}
    AbstractOwnedCollection* collection(ModelElement::Impl const& owner) const override {
        return const_cast<PrimitiveSequence<std::u16string>*>(&(static_cast<Package::Impl const&>(owner).*field_));
    }

private:
    PrimitiveSequence<std::u16string> Package::Impl::*field_;
};

template <class T>
class SequenceDescriptor final : public OwnedCollectionDescriptor<ElementSequence<T>> {
public:
    template <class X>
    constexpr SequenceDescriptor(std::uint16_t index, ElementSequence<T> X::*field) noexcept
        : OwnedCollectionDescriptor<ElementSequence<T>>(index, field, PropertyKind::ElementCollection) {}
};

std::u16string const& literalName(ModelElement::Impl const& e) {
    return static_cast<EnumLiteral::Impl const&>(e).getName();
}

class LiteralsDescriptor final
    : public OwnedCollectionDescriptor<ElementMap<std::u16string, EnumLiteral>, KeyedDescriptor<std::u16string>> {
public:
    template <class X>
    constexpr LiteralsDescriptor(std::uint16_t index, ElementMap<std::u16string, EnumLiteral> X::*field) noexcept
        : OwnedCollectionDescriptor<ElementMap<std::u16string, EnumLiteral>, KeyedDescriptor<std::u16string>>(
              index, field, &literalName) {}
};

}  // namespace

// References to other meta objects are plain pointers, since meta objects are never deleted.

struct MetaElement::Impl::Descriptors {
    static constexpr FieldDescriptor<std::u16string> name{1, &Impl::name_};
    static constexpr PropertyDescriptor const* all[] = {&name};
};

struct Package::Impl::Descriptors {
    static constexpr FieldDescriptor<std::u16string> uri{2, &Impl::uri_};
    static constexpr TextsDescriptor imports{3, &Impl::importedPackageURIs_};
    static constexpr SequenceDescriptor<Type> ownedTypes{4, &Impl::ownedTypes_};
    static constexpr SequenceDescriptor<Package> packages{5, &Impl::packages_};
    static constexpr PropertyDescriptor const* all[] = {&uri, &imports, &ownedTypes, &packages};
};

struct Type::Impl::Descriptors {
    static constexpr FieldDescriptor<std::string> scriptName{2, &Impl::scriptName_};
    static constexpr SequenceDescriptor<Property> ownedProperties{3, &Impl::ownedProperties_};
    static constexpr PropertyDescriptor const* all[] = {&scriptName, &ownedProperties};
};

struct Class::Impl::Descriptors {
    static constexpr FieldDescriptor<bool> isAbstract{4, &Impl::abstract_};
    static constexpr FieldDescriptor<ModelElement::Impl*> superclass{5, &Impl::superclass_};
    static constexpr SequenceDescriptor<Operation> ownedOperations{6, &Impl::ownedOperations_};
    static constexpr PropertyDescriptor const* all[] = {&isAbstract, &superclass, &ownedOperations};
};

struct Enum::Impl::Descriptors {
    static constexpr FieldDescriptor<ModelElement::Impl*> underlyingType{4, &Impl::underlyingType_};
    static constexpr LiteralsDescriptor literals{5, &Impl::literals_};
    static constexpr PropertyDescriptor const* all[] = {&underlyingType, &literals};
};

struct EnumLiteral::Impl::Descriptors {
    static constexpr FieldDescriptor<int> value{2, &Impl::value_};
    static constexpr PropertyDescriptor const* all[] = {&value};
};

struct TypedElement::Impl::Descriptors {
    static constexpr FieldDescriptor<ModelElement::Impl*> type{2, &Impl::type_};
    static constexpr FieldDescriptor<int> lower{3, &Impl::lower_};
    static constexpr FieldDescriptor<int> upper{4, &Impl::upper_};
    static constexpr FieldDescriptor<bool> ordered{5, &Impl::ordered_};
    static constexpr PropertyDescriptor const* all[] = {&type, &lower, &upper, &ordered};
};

struct Property::Impl::Descriptors {
    static constexpr FieldDescriptor<int> flags{6, &Impl::flags_};
    static constexpr FieldDescriptor<bool> composite{7, &Impl::composite_};
    static constexpr FieldDescriptor<bool> unique{8, &Impl::unique_};
    static constexpr FieldDescriptor<bool> derived{9, &Impl::derived_};
    static constexpr FieldDescriptor<std::optional<std::u16string>> defaultValue{10, &Impl::defaultValue_};
    static constexpr FieldDescriptor<int> index{11, &Impl::index_};
    static constexpr FieldDescriptor<ModelElement::Impl*> qualifiedBy{12, &Impl::qualifiedBy_};
    static constexpr FieldDescriptor<bool> qualificationUnique{13, &Impl::qualificationUnique_};
    static constexpr PropertyDescriptor const* all[] = {&flags,        &composite, &unique,      &derived,
                                                        &defaultValue, &index,     &qualifiedBy, &qualificationUnique};
};

struct Operation::Impl::Descriptors {
    static constexpr FieldDescriptor<bool> isAbstract{6, &Impl::abstract_};
    static constexpr FieldDescriptor<bool> isStatic{7, &Impl::static_};
    static constexpr FieldDescriptor<bool> isPublic{8, &Impl::public_};
    static constexpr FieldDescriptor<bool> isEvent{9, &Impl::event_};
    static constexpr SequenceDescriptor<Argument> arguments{10, &Impl::arguments_};
    static constexpr PropertyDescriptor const* all[] = {&isAbstract, &isStatic, &isPublic, &isEvent, &arguments};
};

struct Argument::Impl::Descriptors {
    static constexpr FieldDescriptor<bool> input{6, &Impl::input_};
    static constexpr PropertyDescriptor const* all[] = {&input};
};

// --- Classes of meta objects ----------------------------------------------------------------------------------------

namespace {

template <class X>
X make(Model const& model, boost::uuids::uuid const& id) {
    if (!model) return X::of(new typename X::Impl(model, id));  // reports the missing model
    Savepoint savepoint(model->journal());
    X made = X::of(new typename X::Impl(model, id));
    made->notifyCreated();
    savepoint.commit();
    return made;
}

/// Checks the future owner of a meta object: InvalidValue for an empty handle.
template <class Handle>
auto& given(Handle const& owner) {
    if (owner.impl() == nullptr) reportException(quay0::messages::InvalidValue().about(u"the owner of a meta object"));
    return *owner.impl();
}

}  // namespace

ClassTable const& MetaElement::classTable() {
    static constexpr ClassTable table{&ModelElement::classTable, 1, MetaElement::Impl::Descriptors::all, nullptr,
                                      nullptr};
    return table;
}
ClassTable const& Package::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, Package::Impl::Descriptors::all, nullptr, nullptr};
    return table;
}
ClassTable const& Type::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, Type::Impl::Descriptors::all, nullptr, nullptr};
    return table;
}
ClassTable const& Class::classTable() {
    static constexpr ClassTable table{&Type::classTable, 4, Class::Impl::Descriptors::all, nullptr, nullptr};
    return table;
}
ClassTable const& DataType::classTable() {
    static constexpr ClassTable table{&Type::classTable, 4, {}, nullptr, nullptr};
    return table;
}
ClassTable const& PrimitiveType::classTable() {
    static constexpr ClassTable table{&Type::classTable, 4, {}, nullptr, nullptr};
    return table;
}
ClassTable const& Enum::classTable() {
    static constexpr ClassTable table{&Type::classTable, 4, Enum::Impl::Descriptors::all, nullptr, nullptr};
    return table;
}
ClassTable const& EnumLiteral::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, EnumLiteral::Impl::Descriptors::all, nullptr,
                                      nullptr};
    return table;
}
ClassTable const& TypedElement::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, TypedElement::Impl::Descriptors::all, nullptr,
                                      nullptr};
    return table;
}
ClassTable const& Property::classTable() {
    static constexpr ClassTable table{&TypedElement::classTable, 6, Property::Impl::Descriptors::all, nullptr, nullptr};
    return table;
}
ClassTable const& Operation::classTable() {
    static constexpr ClassTable table{&TypedElement::classTable, 6, Operation::Impl::Descriptors::all, nullptr,
                                      nullptr};
    return table;
}
ClassTable const& Argument::classTable() {
    static constexpr ClassTable table{&TypedElement::classTable, 6, Argument::Impl::Descriptors::all, nullptr, nullptr};
    return table;
}

// The constructors of classes with collections stand here, so that clients instantiate none of these.
Package::Impl::Impl(Model const& model, boost::uuids::uuid const& id) : MetaElement::Impl(model, id) {}
Class::Impl::Impl(Model const& model, boost::uuids::uuid const& id) : Type::Impl(model, id) {}
Enum::Impl::Impl(Model const& model, boost::uuids::uuid const& id) : Type::Impl(model, id) {}
Operation::Impl::Impl(Model const& model, boost::uuids::uuid const& id) : TypedElement::Impl(model, id) {}
Type::Impl::Impl(Model const& model, boost::uuids::uuid const& id) : MetaElement::Impl(model, id) {}

Package Package::create(Model const& m, boost::uuids::uuid const& id) { return make<Package>(m, id); }
Class Class::create(Model const& m, boost::uuids::uuid const& id) { return make<Class>(m, id); }
DataType DataType::create(Model const& m, boost::uuids::uuid const& id) { return make<DataType>(m, id); }
PrimitiveType PrimitiveType::create(Model const& m, boost::uuids::uuid const& id) { return make<PrimitiveType>(m, id); }
Enum Enum::create(Model const& m, boost::uuids::uuid const& id) { return make<Enum>(m, id); }
EnumLiteral EnumLiteral::create(Model const& m, boost::uuids::uuid const& id) { return make<EnumLiteral>(m, id); }
Property Property::create(Model const& m, boost::uuids::uuid const& id) { return make<Property>(m, id); }
Operation Operation::create(Model const& m, boost::uuids::uuid const& id) { return make<Operation>(m, id); }
Argument Argument::create(Model const& m, boost::uuids::uuid const& id) { return make<Argument>(m, id); }

// --- MetaElement ----------------------------------------------------------------------------------------------------

namespace {

/// Holds all meta objects that were ever created, so that none counts as leaked.
struct Keepsakes {
    std::mutex mutex;
    std::vector<MetaElement::Impl const*> all;
};

Keepsakes& keepsakes() {
    static auto& made = *new Keepsakes;
    return made;
}

}  // namespace

MetaElement::Impl::Impl(Model const& model, boost::uuids::uuid const& id) : ModelElement::Impl(model, id) {
    std::lock_guard const lock(keepsakes().mutex);
    keepsakes().all.push_back(this);
    addRef();  // the process's own reference, never released
}

void MetaElement::Impl::removeRef() const noexcept { changeCount(static_cast<std::uint32_t>(-1)); }

std::u16string MetaElement::Impl::identifier() const { return name_; }

void MetaElement::Impl::setName(std::u16string const& name) { Descriptors::name.write(*this, name); }

// --- Package --------------------------------------------------------------------------------------------------------

void Package::Impl::setUri(std::u16string const& uri) { Descriptors::uri.write(*this, uri); }

Package Package::Impl::getParentPackage() const { return Package::cast(basicContainer()); }

void Package::Impl::setParentPackage(Package const& parent) {
    given(parent).getPackagesMutable()->add(Package::of(this));
}

std::u16string Package::Impl::getQualifiedName() const {
    Package const parent = getParentPackage();
    std::u16string const above = parent ? parent->getQualifiedName() : std::u16string();
    return above.empty() || getName().empty() ? above + getName() : above + u"." + getName();
}

// --- Types ----------------------------------------------------------------------------------------------------------

Package Type::Impl::getOwningPackage() const { return Package::cast(basicContainer()); }

void Type::Impl::setOwningPackage(Package const& package) {
    given(package).getOwnedTypesMutable()->add(Type::of(this));
}

std::u16string Type::Impl::getQualifiedName() const {
    Package const package = getOwningPackage();
    std::u16string const above = package ? package->getQualifiedName() : std::u16string();
    return above.empty() ? getName() : above + u"." + getName();
}

bool Type::Impl::isEnum() const noexcept { return Enum::cast(ModelElement(const_cast<Impl*>(this))).impl() != nullptr; }

void Type::Impl::setScriptName(std::string const& name) { Descriptors::scriptName.write(*this, name); }

Property Type::Impl::findProperty(std::u16string_view name) const {
    Property result;
    for (Property const& p : getProperties()) {
        if (p->getName() == name) result = p;
    }
    return result;
}

std::vector<Property> Type::Impl::getProperties() const {
    std::vector<Property> result;
    if (auto const* self = dynamic_cast<Class::Impl const*>(this); self != nullptr && self->superclass() != nullptr) {
        result = self->superclass()->getProperties();
    }
    for (Property const& p : ownedProperties_) result.push_back(p);
    return result;
}

void Class::Impl::setIsAbstract(bool abstract) { Descriptors::isAbstract.write(*this, abstract); }
void Class::Impl::setSuperclass(Class const& superclass) {
    if (superclass.impl() != nullptr && superclass->conformsTo(Class::of(this))) {
        reportException(
            quay0::messages::InvalidValue().about(u"the superclass of " + getName()).withValue(superclass->getName()));
    }
    Descriptors::superclass.write(*this, superclass.impl());
}

bool Class::Impl::isKindOf(ModelElement::Impl const* type) const noexcept { return conformsInChain(this, type); }

Property Class::Impl::getPropertyByIndex(unsigned long index) const {
    Class::Impl const* const level = index == 0 ? nullptr : levelOfIndex(this, index);
    if (level == nullptr) return {};
    // Derived properties stand between the others but have no index. So the distance of a property from the first
    // indexed one is the difference of their indices, or more.
    auto const& own = *level->getOwnedProperties();
    for (std::size_t at = *level->firstIndexed() + index - level->firstIndex(); at < own.size(); ++at) {
        if (own[at]->getIndex() == index) return own[at];
    }
    return {};
}

unsigned long Class::Impl::getHighestIndex() const noexcept { return highestIndexInChain(this); }

std::optional<std::size_t> Class::Impl::firstIndexed() const noexcept {
    auto const& own = *getOwnedProperties();
    for (std::size_t i = 0; i < own.size(); ++i) {
        if (own[i]->getIndex() != 0) return i;
    }
    return {};
}

std::uint16_t Class::Impl::firstIndex() const noexcept {
    auto const first = firstIndexed();
    return first ? (*getOwnedProperties())[*first]->getIndex() : std::uint16_t{0};
}

std::uint16_t Class::Impl::lastIndex() const noexcept {
    auto const& own = *getOwnedProperties();
    for (std::size_t i = own.size(); i-- > 0;) {
        if (std::uint16_t const index = own[i]->getIndex()) return index;
    }
    return 0;
}

// --- Enumerations ---------------------------------------------------------------------------------------------------

void Enum::Impl::setUnderlyingType(Type const& type) { Descriptors::underlyingType.write(*this, type.impl()); }

EnumLiteral Enum::Impl::findLiteral(int value) const {
    for (EnumLiteral const& literal : literals_) {
        if (literal->getValue() == value) return literal;
    }
    return {};
}

void EnumLiteral::Impl::setValue(int value) { Descriptors::value.write(*this, value); }
Enum EnumLiteral::Impl::getParentEnum() const { return Enum::cast(basicContainer()); }
void EnumLiteral::Impl::setParentEnum(Enum const& parent) {
    given(parent).getLiteralsMutable()->insert(EnumLiteral::of(this));
}

// --- Typed elements -------------------------------------------------------------------------------------------------

void TypedElement::Impl::setType(Type const& type) { Descriptors::type.write(*this, type.impl()); }
void TypedElement::Impl::setIsOrdered(bool ordered) { Descriptors::ordered.write(*this, ordered); }
void TypedElement::Impl::setLower(int lower) { Descriptors::lower.write(*this, lower); }
void TypedElement::Impl::setUpper(int upper) { Descriptors::upper.write(*this, upper); }

void Property::Impl::setFlags(ValueFlags flags) {
    Descriptors::flags.write(*this, static_cast<int>(flags));
    setLower(flags == ValueFlags::One ? 1 : 0);
    setUpper(static_cast<int>(flags) <= 1 ? 1 : UNBOUNDED);
}
void Property::Impl::setIsComposite(bool composite) { Descriptors::composite.write(*this, composite); }
void Property::Impl::setIsUnique(bool unique) { Descriptors::unique.write(*this, unique); }
void Property::Impl::setIsDerived(bool derived) { Descriptors::derived.write(*this, derived); }
boost::optional<std::u16string> Property::Impl::getDefaultValue() const {
    if (!defaultValue_) return boost::none;
    return *defaultValue_;
}
void Property::Impl::setDefaultValue(boost::optional<std::u16string> const& text) {
    Descriptors::defaultValue.write(*this, text ? std::optional(*text) : std::nullopt);
}
void Property::Impl::setIndex(int index) { Descriptors::index.write(*this, index); }
void Property::Impl::setQualifiedBy(Property const& key) { Descriptors::qualifiedBy.write(*this, key.impl()); }
void Property::Impl::setIsQualificationUnique(bool unique) { Descriptors::qualificationUnique.write(*this, unique); }
Type Property::Impl::getOwningType() const { return Type::cast(basicContainer()); }
void Property::Impl::setOwningType(Type const& owner) {
    given(owner).getOwnedPropertiesMutable()->add(Property::of(this));
}

void Operation::Impl::setIsAbstract(bool value) { Descriptors::isAbstract.write(*this, value); }
void Operation::Impl::setIsStatic(bool value) { Descriptors::isStatic.write(*this, value); }
void Operation::Impl::setIsPublic(bool value) { Descriptors::isPublic.write(*this, value); }
void Operation::Impl::setIsEvent(bool value) { Descriptors::isEvent.write(*this, value); }
Class Operation::Impl::getOwningType() const { return Class::cast(basicContainer()); }
void Operation::Impl::setOwningType(Class const& owner) {
    given(owner).getOwnedOperationsMutable()->add(Operation::of(this));
}

void Argument::Impl::setIsInput(bool value) { Descriptors::input.write(*this, value); }
Operation Argument::Impl::getOperation() const { return Operation::cast(basicContainer()); }
void Argument::Impl::setOperation(Operation const& operation) {
    given(operation).getArgumentsMutable()->add(Argument::of(this));
}

}  // namespace quay::zero::meta
