#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/owned_collection_descriptor.h>
#include <quay/zero/report.h>
#include <quay/zero/value_descriptor.h>

#include <quay0/messages.h>

#include <mutex>

namespace quay::zero::meta {

// --- Descriptors
// -----------------------------------------------------------------------------------------------------------

namespace {

template <class T>
class FieldDescriptor final : public ValueDescriptor<T> {
public:
    using ValueDescriptor<T>::ValueDescriptor;
};

/// A sequence of values. Only its collection is ever asked for: steps restore the content.
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

/// The properties of the meta classes, by class. References to other meta objects are plain pointers.
struct MetaDescriptors {
    static constexpr FieldDescriptor<std::u16string> name{1, &MetaElement::Impl::name_};
    static constexpr PropertyDescriptor const* element[] = {&name};

    static constexpr FieldDescriptor<std::u16string> uri{2, &Package::Impl::uri_};
    static constexpr TextsDescriptor imports{3, &Package::Impl::importedPackageURIs_};
    static constexpr SequenceDescriptor<Type> ownedTypes{4, &Package::Impl::ownedTypes_};
    static constexpr SequenceDescriptor<Package> packages{5, &Package::Impl::packages_};
    static constexpr PropertyDescriptor const* package[] = {&uri, &imports, &ownedTypes, &packages};

    static constexpr FieldDescriptor<std::string> scriptName{2, &Type::Impl::scriptName_};
    static constexpr SequenceDescriptor<Property> ownedProperties{3, &Type::Impl::ownedProperties_};
    static constexpr PropertyDescriptor const* type[] = {&scriptName, &ownedProperties};

    static constexpr FieldDescriptor<bool> classAbstract{4, &Class::Impl::abstract_};
    static constexpr FieldDescriptor<ModelElement::Impl*> superclass{5, &Class::Impl::superclass_};
    static constexpr SequenceDescriptor<Operation> ownedOperations{6, &Class::Impl::ownedOperations_};
    static constexpr PropertyDescriptor const* classDescriptors[] = {&classAbstract, &superclass, &ownedOperations};

    static constexpr FieldDescriptor<ModelElement::Impl*> underlyingType{4, &Enum::Impl::underlyingType_};
    static constexpr LiteralsDescriptor literals{5, &Enum::Impl::literals_};
    static constexpr PropertyDescriptor const* enumDescriptors[] = {&underlyingType, &literals};

    static constexpr FieldDescriptor<int> literalValue{2, &EnumLiteral::Impl::value_};
    static constexpr PropertyDescriptor const* literal[] = {&literalValue};

    static constexpr FieldDescriptor<ModelElement::Impl*> typeOf{2, &TypedElement::Impl::type_};
    static constexpr FieldDescriptor<int> lower{3, &TypedElement::Impl::lower_};
    static constexpr FieldDescriptor<int> upper{4, &TypedElement::Impl::upper_};
    static constexpr FieldDescriptor<bool> ordered{5, &TypedElement::Impl::ordered_};
    static constexpr PropertyDescriptor const* typed[] = {&typeOf, &lower, &upper, &ordered};

    static constexpr FieldDescriptor<int> flags{6, &Property::Impl::flags_};
    static constexpr FieldDescriptor<bool> composite{7, &Property::Impl::composite_};
    static constexpr FieldDescriptor<bool> unique{8, &Property::Impl::unique_};
    static constexpr FieldDescriptor<bool> derived{9, &Property::Impl::derived_};
    static constexpr FieldDescriptor<boost::optional<std::u16string>> defaultValue{10, &Property::Impl::defaultValue_};
    static constexpr FieldDescriptor<int> index{11, &Property::Impl::index_};
    static constexpr FieldDescriptor<ModelElement::Impl*> qualifiedBy{12, &Property::Impl::qualifiedBy_};
    static constexpr FieldDescriptor<bool> qualificationUnique{13, &Property::Impl::qualificationUnique_};
    static constexpr PropertyDescriptor const* property[] = {
        &flags, &composite, &unique, &derived, &defaultValue, &index, &qualifiedBy, &qualificationUnique};

    static constexpr FieldDescriptor<bool> operationAbstract{6, &Operation::Impl::abstract_};
    static constexpr FieldDescriptor<bool> operationStatic{7, &Operation::Impl::static_};
    static constexpr FieldDescriptor<bool> operationPublic{8, &Operation::Impl::public_};
    static constexpr FieldDescriptor<bool> operationEvent{9, &Operation::Impl::event_};
    static constexpr SequenceDescriptor<Argument> arguments{10, &Operation::Impl::arguments_};
    static constexpr PropertyDescriptor const* operation[] = {&operationAbstract, &operationStatic, &operationPublic,
                                                              &operationEvent, &arguments};

    static constexpr FieldDescriptor<bool> input{6, &Argument::Impl::input_};
    static constexpr PropertyDescriptor const* argument[] = {&input};
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

/// The object that is to own another. InvalidValue for an empty handle.
template <class Handle>
auto& given(Handle const& owner) {
    if (owner.impl() == nullptr) reportException(quay0::messages::InvalidValue().about(u"the owner of a meta object"));
    return *owner.impl();
}

}  // namespace

ClassTable const& MetaElement::classTable() {
    static constexpr ClassTable table{&ModelElement::classTable, 1, MetaDescriptors::element, nullptr, nullptr};
    return table;
}
ClassTable const& Package::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, MetaDescriptors::package, nullptr, nullptr};
    return table;
}
ClassTable const& Type::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, MetaDescriptors::type, nullptr, nullptr};
    return table;
}
ClassTable const& Class::classTable() {
    static constexpr ClassTable table{&Type::classTable, 4, MetaDescriptors::classDescriptors, nullptr, nullptr};
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
    static constexpr ClassTable table{&Type::classTable, 4, MetaDescriptors::enumDescriptors, nullptr, nullptr};
    return table;
}
ClassTable const& EnumLiteral::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, MetaDescriptors::literal, nullptr, nullptr};
    return table;
}
ClassTable const& TypedElement::classTable() {
    static constexpr ClassTable table{&MetaElement::classTable, 2, MetaDescriptors::typed, nullptr, nullptr};
    return table;
}
ClassTable const& Property::classTable() {
    static constexpr ClassTable table{&TypedElement::classTable, 6, MetaDescriptors::property, nullptr, nullptr};
    return table;
}
ClassTable const& Operation::classTable() {
    static constexpr ClassTable table{&TypedElement::classTable, 6, MetaDescriptors::operation, nullptr, nullptr};
    return table;
}
ClassTable const& Argument::classTable() {
    static constexpr ClassTable table{&TypedElement::classTable, 6, MetaDescriptors::argument, nullptr, nullptr};
    return table;
}

Class const& MetaElement::metaClass() { return MetaRegistry::getInstance()->ownClasses().metaElement; }
Class const& Package::metaClass() { return MetaRegistry::getInstance()->ownClasses().package; }
Class const& Type::metaClass() { return MetaRegistry::getInstance()->ownClasses().type; }
Class const& Class::metaClass() { return MetaRegistry::getInstance()->ownClasses().classClass; }
Class const& DataType::metaClass() { return MetaRegistry::getInstance()->ownClasses().dataType; }
Class const& PrimitiveType::metaClass() { return MetaRegistry::getInstance()->ownClasses().primitiveType; }
Class const& Enum::metaClass() { return MetaRegistry::getInstance()->ownClasses().enumClass; }
Class const& EnumLiteral::metaClass() { return MetaRegistry::getInstance()->ownClasses().enumLiteral; }
Class const& TypedElement::metaClass() { return MetaRegistry::getInstance()->ownClasses().typedElement; }
Class const& Property::metaClass() { return MetaRegistry::getInstance()->ownClasses().property; }
Class const& Operation::metaClass() { return MetaRegistry::getInstance()->ownClasses().operation; }
Class const& Argument::metaClass() { return MetaRegistry::getInstance()->ownClasses().argument; }

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

/// Every meta object that was ever made, so that none counts as lost.
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
    addRef();  // the process's own reference, never dropped
}

void MetaElement::Impl::removeRef() const noexcept { changeCount(static_cast<std::uint32_t>(-1)); }

std::u16string MetaElement::Impl::identifier() const { return name_; }

void MetaElement::Impl::setName(std::u16string const& name) { MetaDescriptors::name.write(*this, name); }

// --- Package --------------------------------------------------------------------------------------------------------

void Package::Impl::setUri(std::u16string const& uri) { MetaDescriptors::uri.write(*this, uri); }

Package Package::Impl::getParentPackage() const { return Package::cast(basicContainer()); }

void Package::Impl::setParentPackage(Package const& parent) { given(parent).packages_.add(Package::of(this)); }

std::u16string Package::Impl::getQualifiedName() const {
    Package const parent = getParentPackage();
    std::u16string const above = parent ? parent->getQualifiedName() : std::u16string();
    return above.empty() || getName().empty() ? above + getName() : above + u"." + getName();
}

// --- Types ----------------------------------------------------------------------------------------------------------

Package Type::Impl::getOwningPackage() const { return Package::cast(basicContainer()); }

void Type::Impl::setOwningPackage(Package const& package) { given(package).ownedTypes_.add(Type::of(this)); }

std::u16string Type::Impl::getQualifiedName() const {
    Package const package = getOwningPackage();
    std::u16string const above = package ? package->getQualifiedName() : std::u16string();
    return above.empty() ? getName() : above + u"." + getName();
}

bool Type::Impl::isEnum() const noexcept { return Enum::cast(ModelElement(const_cast<Impl*>(this))).impl() != nullptr; }

void Type::Impl::setScriptName(std::string const& name) { MetaDescriptors::scriptName.write(*this, name); }

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

void Class::Impl::setIsAbstract(bool abstract) { MetaDescriptors::classAbstract.write(*this, abstract); }
void Class::Impl::setSuperclass(Class const& superclass) {
    if (superclass.impl() != nullptr && superclass->conformsTo(Class::of(this))) {
        reportException(
            quay0::messages::InvalidValue().about(u"the superclass of " + getName()).withValue(superclass->getName()));
    }
    MetaDescriptors::superclass.write(*this, superclass.impl());
}

bool Class::Impl::isKindOf(ModelElement::Impl const* type) const noexcept {
    for (Class::Impl const* level = this; level != nullptr; level = level->superclass()) {
        if (level == type) return true;
    }
    return false;
}

Property Class::Impl::getPropertyByIndex(unsigned long index) const {
    if (index == 0) return {};
    for (Class::Impl const* level = this; level != nullptr; level = level->superclass()) {
        // Derived properties have no index and stand between the others, so a property stands as far behind the first
        // indexed one as the numbers tell, or further.
        auto const& own = *level->getOwnedProperties();
        std::size_t at = 0;
        while (at < own.size() && own[at]->getIndex() == 0) ++at;
        if (at == own.size() || index < own[at]->getIndex()) continue;
        for (at += index - own[at]->getIndex(); at < own.size(); ++at) {
            if (own[at]->getIndex() == index) return own[at];
        }
        return {};
    }
    return {};
}

unsigned long Class::Impl::getHighestIndex() const noexcept {
    for (Class::Impl const* level = this; level != nullptr; level = level->superclass()) {
        auto const& own = *level->getOwnedProperties();
        for (std::size_t i = own.size(); i-- > 0;) {
            if (own[i]->getIndex() != 0) return own[i]->getIndex();
        }
    }
    return 0;
}

// --- Enumerations ---------------------------------------------------------------------------------------------------

void Enum::Impl::setUnderlyingType(Type const& type) { MetaDescriptors::underlyingType.write(*this, type.impl()); }

EnumLiteral Enum::Impl::findLiteral(int value) const {
    for (EnumLiteral const& literal : literals_) {
        if (literal->getValue() == value) return literal;
    }
    return {};
}

void EnumLiteral::Impl::setValue(int value) { MetaDescriptors::literalValue.write(*this, value); }
Enum EnumLiteral::Impl::getParentEnum() const { return Enum::cast(basicContainer()); }
void EnumLiteral::Impl::setParentEnum(Enum const& parent) { given(parent).literals_.insert(EnumLiteral::of(this)); }

// --- Typed elements -------------------------------------------------------------------------------------------------

void TypedElement::Impl::setType(Type const& type) { MetaDescriptors::typeOf.write(*this, type.impl()); }
void TypedElement::Impl::setIsOrdered(bool ordered) { MetaDescriptors::ordered.write(*this, ordered); }
void TypedElement::Impl::setLower(int lower) { MetaDescriptors::lower.write(*this, lower); }
void TypedElement::Impl::setUpper(int upper) { MetaDescriptors::upper.write(*this, upper); }

void Property::Impl::setFlags(ValueFlags flags) {
    MetaDescriptors::flags.write(*this, static_cast<int>(flags));
    setLower(flags == ValueFlags::One ? 1 : 0);
    setUpper(static_cast<int>(flags) <= 1 ? 1 : UNBOUNDED);
}
void Property::Impl::setIsComposite(bool composite) { MetaDescriptors::composite.write(*this, composite); }
void Property::Impl::setIsUnique(bool unique) { MetaDescriptors::unique.write(*this, unique); }
void Property::Impl::setIsDerived(bool derived) { MetaDescriptors::derived.write(*this, derived); }
void Property::Impl::setDefaultValue(boost::optional<std::u16string> const& text) {
    MetaDescriptors::defaultValue.write(*this, text);
}
void Property::Impl::setIndex(int index) { MetaDescriptors::index.write(*this, index); }
void Property::Impl::setQualifiedBy(Property const& key) { MetaDescriptors::qualifiedBy.write(*this, key.impl()); }
void Property::Impl::setIsQualificationUnique(bool unique) {
    MetaDescriptors::qualificationUnique.write(*this, unique);
}
Type Property::Impl::getOwningType() const { return Type::cast(basicContainer()); }
void Property::Impl::setOwningType(Type const& owner) { given(owner).ownedProperties_.add(Property::of(this)); }

void Operation::Impl::setIsAbstract(bool value) { MetaDescriptors::operationAbstract.write(*this, value); }
void Operation::Impl::setIsStatic(bool value) { MetaDescriptors::operationStatic.write(*this, value); }
void Operation::Impl::setIsPublic(bool value) { MetaDescriptors::operationPublic.write(*this, value); }
void Operation::Impl::setIsEvent(bool value) { MetaDescriptors::operationEvent.write(*this, value); }
Class Operation::Impl::getOwningType() const { return Class::cast(basicContainer()); }
void Operation::Impl::setOwningType(Class const& owner) { given(owner).ownedOperations_.add(Operation::of(this)); }

void Argument::Impl::setIsInput(bool value) { MetaDescriptors::input.write(*this, value); }
Operation Argument::Impl::getOperation() const { return Operation::cast(basicContainer()); }
void Argument::Impl::setOperation(Operation const& operation) { given(operation).arguments_.add(Argument::of(this)); }

}  // namespace quay::zero::meta
