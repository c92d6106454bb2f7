#include <keel/text.h>
#include <quay/zero/meta/declared_package.h>
#include <quay/zero/report.h>

#include <quay0/messages.h>

#include <algorithm>
#include <boost/uuid/string_generator.hpp>

namespace quay::zero::meta {

namespace {

using declare::Shape;

boost::uuids::uuid parseId(char const* text) { return boost::uuids::string_generator()(text); }

ValueFlags flagsOf(Shape shape) {
    switch (shape) {
        case Shape::Optional:
            return ValueFlags::Optional;
        case Shape::Sequence:
        case Shape::SequenceOwned:
            return ValueFlags::Sequence;
        case Shape::Set:
        case Shape::SetOwned:
            return ValueFlags::Set;
        case Shape::MapOwned:
            return ValueFlags::Map;
        case Shape::MultimapOwned:
            return ValueFlags::Multimap;
        default:
            return ValueFlags::One;
    }
}

bool isOwned(Shape shape) {
    return shape == Shape::SingleOwned || shape == Shape::SequenceOwned || shape == Shape::SetOwned ||
           shape == Shape::MapOwned || shape == Shape::MultimapOwned;
}

}  // namespace

DeclaredPackage::DeclaredPackage(declare::Package const& tables) : tables_(tables) {
    // The object is never deleted, since its library may be unloaded.
    MetaRegistry::getInstance()->keep(this);
}

/// Visits classes and data types together, in byte order of their names.
template <class F>
void DeclaredPackage::inDeclarationOrder(F&& visit) const {
    auto type = tables_.dataTypes.begin();
    for (declare::Class const& c : tables_.classes) {
        while (type != tables_.dataTypes.end() && std::u16string_view(type->name) < c.name) visit(*type++);
        visit(c);
    }
    while (type != tables_.dataTypes.end()) visit(*type++);
}

// --- The whole declaration ------------------------------------------------------------------------------------------

void DeclaredPackage::declareInRegistry(BringUp const& bringUp, Instantiate const& instantiate, Weave const& weave) {
    MetaRegistry* const registry = MetaRegistry::getInstance();
    std::lock_guard const lock(registry->mutex());
    Model const model = registry->model();
    Model::Thawer const thawer = registry->freezer().thaw();
    bringUp();
    PropertySerializerRegistry* const serializers = PropertySerializerRegistry::getInstance();
    replaceFormer(registry);
    try {
        Transaction transaction = model->beginTransaction(true);
        Package const root = Package::create(model, parseId(tables_.id));
        this->*tables_.root = root;
        root->setName(u"");
        root->setUri(tables_.uri);
        auto* const imports = root->getImportedPackageURIsMutable();
        std::vector<std::u16string> uris(tables_.imports.begin(), tables_.imports.end());
        imports->assign(std::move(uris));
        instantiate(registry);
        weave(registry, serializers);
        registerRootPackage(root);  // the last call that can fail
        transaction.commit(boost::none);
    } catch (...) {
        for (auto const& [name, type] : types_) registry->unregisterType(type);
        registry->withdrawRootPackage(this->*tables_.root);
        clearSlots();
        types_.clear();
        throw;
    }
    types_.clear();
}

/// Destroys an earlier declaration of this package, which exists if the package's library was unloaded and loaded
/// again.
void DeclaredPackage::replaceFormer(MetaRegistry* registry) {
    Package const former =
        Package::cast(registry->model()->findElement(parseId(tables_.id), FindElementBehavior::InMemoryOnly));
    if (!former) return;
    Transaction transaction = registry->model()->beginTransaction(true);
    unregisterRootPackage(former->getUri());
    former->destroy();
    transaction.commit(boost::none);
}

void DeclaredPackage::clearSlots() noexcept {
    auto const clear = [this](auto const& entry) { this->*entry.slot = {}; };
    for (auto e = tables_.enums.rbegin(); e != tables_.enums.rend(); ++e) {
        for (auto l = e->literals.rbegin(); l != e->literals.rend(); ++l) clear(*l);
        clear(*e);
    }
    for (auto p = tables_.primitives.rbegin(); p != tables_.primitives.rend(); ++p) clear(*p);
    for (declare::DataType const& d : tables_.dataTypes) {
        for (declare::Property const& p : d.fields) clear(p);
        clear(d);
    }
    for (declare::Class const& c : tables_.classes) {
        for (declare::Operation const& o : c.operations) {
            for (declare::Argument const& a : o.arguments) clear(a);
            clear(o);
        }
        for (declare::Property const& p : c.properties) clear(p);
        clear(c);
    }
    this->*tables_.schema = {};
    this->*tables_.root = {};
}

// --- Phase one: creating the meta objects ----------------------------------------------------------------------------

std::string DeclaredPackage::scriptNameOf(char16_t const* name, char const* given) const {
    return given != nullptr ? given : tables_.scriptPrefix + keel::toUtf8(name);
}

void DeclaredPackage::instantiate(MetaRegistry* registry) {
    std::lock_guard const lock(registry->mutex());
    Model::Thawer const thawer = registry->freezer().thaw();
    this->*tables_.schema = createPackage(tables_.schemaUri, tables_.schemaName);

    inDeclarationOrder([this](auto const& entry) {
        using Entry = std::decay_t<decltype(entry)>;
        std::string const script = scriptNameOf(entry.name, entry.scriptName);
        if constexpr (std::is_same_v<Entry, declare::Class>) {
            fill(entry, createClass(entry.name, script, entry.isAbstract, entry.id));
            for (declare::Property const& p : entry.properties) instantiateProperty(p, false);
            for (declare::Operation const& o : entry.operations) {
                fill(o, createOperation(o.name, parseId(o.id)));
                auto const& made = this->*o.slot;
                made->setIsAbstract(false);
                made->setIsStatic(true);
                made->setIsPublic(true);
                made->setIsEvent(false);
                for (declare::Argument const& a : o.arguments) {
                    fill(a, createArgument(a.name, parseId(a.id)));
                    (this->*a.slot)->setIsInput(true);
                }
            }
        } else {
            fill(entry, createDataType(entry.name, script, entry.id));
            for (declare::Property const& p : entry.fields) instantiateProperty(p, true);
        }
        types_.emplace(entry.name, this->*entry.slot);
    });

    for (declare::Primitive const& p : tables_.primitives) {
        fill(p, registry->getPrimitiveType(p.name));
        if (!(this->*p.slot)) reportException(quay0::messages::NoSuchType(p.name));
    }
    for (declare::Enum const& e : tables_.enums) {
        fill(e, createEnum(e.name, e.id));
        types_.emplace(e.name, this->*e.slot);
        for (declare::Literal const& l : e.literals) fill(l, createEnumLiteral(l.name, l.value, l.id));
    }
}

void DeclaredPackage::instantiateProperty(declare::Property const& p, bool isField) {
    Shape const shape = p.shape;
    fill(p, createProperty(p.name, flagsOf(shape), isOwned(shape), p.id));
    Property const& made = this->*p.slot;
    bool const derived = !isField && p.index == 0;
    bool const one = shape == Shape::Single || shape == Shape::Optional || shape == Shape::SingleOwned;
    if (derived) made->setIsDerived(true);
    if (one || shape == Shape::Sequence || shape == Shape::SequenceOwned) made->setIsOrdered(true);
    if (one || shape == Shape::Set || shape == Shape::SetOwned) made->setIsUnique(true);
    bool const value = shape == Shape::Single || shape == Shape::Optional;
    bool const structured = types_.contains(p.type) && DataType::cast(types_.find(p.type)->second);
    if (value && !derived && !structured) {
        made->setDefaultValue(p.defaultValue == nullptr ? boost::optional<std::u16string>()
                                                        : boost::optional<std::u16string>(p.defaultValue));
    }
    if (p.index != 0) setPropertyIndex(made, p.index);
}

// --- Phase two: connecting and registering them ----------------------------------------------------------------------

Type DeclaredPackage::typeOf(MetaRegistry* registry, char16_t const* name) const {
    auto const own = types_.find(name);
    if (own != types_.end()) return own->second;
    for (declare::Primitive const& p : tables_.primitives) {
        if (std::u16string_view(p.name) == name) return this->*p.slot;
    }
    return registry->getType(name);
}

void DeclaredPackage::weave(MetaRegistry* registry, PropertySerializerRegistry* serializers) {
    (this->*tables_.schema)->setParentPackage(this->*tables_.root);

    inDeclarationOrder([&](auto const& entry) {
        using Entry = std::decay_t<decltype(entry)>;
        auto const& type = this->*entry.slot;
        type->setOwningPackage(this->*tables_.schema);
        if constexpr (std::is_same_v<Entry, declare::Class>) {
            weaveClass(registry, entry);
            ClassTable const& table = entry.table();
            registry->registerType(type, table.collectionFactory(), table.builderFactory());
            registerNames(registry, type, entry.name, entry.scriptName);
        } else {
            for (declare::Property const& p : entry.fields) weaveProperty(registry, type, p);
            registry->registerType(type, entry.makeCollection, nullptr);
            registerNames(registry, type, entry.name, entry.scriptName);
            serializers->registerDatatypeSerializer(type, entry.makeSerializer());
        }
    });

    for (declare::Enum const& e : tables_.enums) {
        Enum const& type = this->*e.slot;
        type->setOwningPackage(this->*tables_.schema);
        type->setUnderlyingType(StandardTypes::integerMeta);
        for (declare::Literal const& l : e.literals) (this->*l.slot)->setParentEnum(type);
        registry->registerType(type, e.makeCollection, nullptr);
        registerNames(registry, type, e.name, e.scriptName);
        for (auto& [form, serializer] : e.makeSerializers()) {
            serializers->registerPropertySerializer(type, std::move(serializer), form);
        }
    }
}

void DeclaredPackage::weaveClass(MetaRegistry* registry, declare::Class const& c) {
    Class const& type = this->*c.slot;
    type->setSuperclass(Class::cast(typeOf(registry, c.base)));
    ClassTable const& table = c.table();
    auto const derived = [&table] {  // derived descriptors stand last, in the order of the derived properties
        return std::find_if(table.descriptors().begin(), table.descriptors().end(),
                            [](auto const* r) { return r->index() == 0; });
    };
    auto nextDerived = derived();
    for (declare::Property const& p : c.properties) {
        weaveProperty(registry, type, p);
        (this->*p.slot)->setDescriptor(table, p.index == 0 ? *nextDerived++ : table.descriptorAt(p.index));
    }
    for (declare::Operation const& o : c.operations) weaveOperation(registry, type, o);
}

void DeclaredPackage::weaveProperty(MetaRegistry* registry, Type const& owner, declare::Property const& p) {
    Property const& property = this->*p.slot;
    property->setOwningType(owner);
    Type const type = typeOf(registry, p.type);
    property->setType(type);
    if (p.key != nullptr) property->setQualifiedBy(keyOf(p.type, p.key));
    property->setIsQualificationUnique(p.shape != Shape::MultimapOwned);
}

/// The property that keys a map with children of that class of this package. It is searched for in the tables, since
/// the meta class may not have its properties yet.
Property DeclaredPackage::keyOf(std::u16string_view className, std::u16string_view key) const {
    for (declare::Class const& c : tables_.classes) {
        if (c.name != className) continue;
        for (declare::Property const& p : c.properties) {
            if (p.name == key) return this->*p.slot;
        }
        return keyOf(c.base, key);
    }
    return {};
}

void DeclaredPackage::weaveOperation(MetaRegistry* registry, Class const& owner, declare::Operation const& o) {
    Operation const& operation = this->*o.slot;
    operation->setOwningType(owner);
    for (declare::Argument const& a : o.arguments) {
        Argument const& argument = this->*a.slot;
        argument->setType(typeOf(registry, a.type));
        argument->setOperation(operation);
        argument->setLower(1);
        argument->setUpper(1);
    }
    operation->setType(typeOf(registry, o.result));
    operation->setLower(1);
    operation->setUpper(1);
}

void DeclaredPackage::registerNames(MetaRegistry* registry, Type const& type, char16_t const* name,
                                    char const* scriptName) {
    registry->registerTypeNames(type, tables_.nativePrefix + keel::toUtf8(name), scriptNameOf(name, scriptName), "");
}

}  // namespace quay::zero::meta
