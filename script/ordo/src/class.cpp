// How classes come to be defined, and what is found in them.
#include "class_table.h"

#include <ordo/error.h>
#include <ordo/factory/value_type.h>
#include <ordo/package.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace ordo {
namespace {

bool isBuiltIn(std::string_view name) {
    constexpr std::array<std::string_view, 12> names{"logical", "char",   "double", "single", "int8",  "uint8",
                                                     "int16",   "uint16", "int32",  "uint32", "int64", "uint64"};
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Looks for a class in a package, which may bring it in.
OrdoClass* findIn(OrdoPackage& package, std::string_view shortName) {
    InternedName const name = internName(std::string(package.name().text()) + '.' + std::string(shortName));
    OrdoClass* const found = ClassTable::find(name);
    return found != nullptr || !package.info().attemptToLoadClass(internName(shortName)) ? found
                                                                                         : ClassTable::find(name);
}

OrdoClass* findByName(InternedName name, OrdoPackage* context) {
    if (context != nullptr) {
        if (OrdoClass* const found = findIn(*context, name.text())) {
            return found;
        }
    }
    if (OrdoClass* const found = ClassTable::find(name)) {
        return found;
    }
    std::size_t const dot = name.text().rfind('.');
    if (dot == std::string_view::npos) {
        return nullptr;
    }
    OrdoPackage* const package = OrdoPackage::getPackage(internName(name.text().substr(0, dot)));
    return package != nullptr ? findIn(*package, name.text().substr(dot + 1)) : nullptr;
}

}  // namespace

OrdoClassInfo::~OrdoClassInfo() = default;
std::string OrdoClassInfo::describeInstance(void const*) const { return {}; }
OrdoPropInfo::~OrdoPropInfo() = default;
OrdoEnumInfo::~OrdoEnumInfo() = default;

OrdoClass::OrdoClass(InternedName name, OrdoClassInfo& info)
    : name_(name), shortName_(internName(info.getName())), info_(&info) {}

OrdoClass* OrdoClass::getClass(InternedName name, OrdoPackage* context) {
    OrdoClass* const found = findByName(name, context);
    // A class that is being defined may be asked for by what its definition needs.
    if (found != nullptr && found->state_ == State::Undefined) {
        found->define();
    }
    return found;
}

void OrdoClass::define() {
    state_ = State::Underway;
    try {
        info_->defineClass(*this);
        validityCheck_ = info_->validityCheck();
        collection_ = info_->collection();
        for (OrdoClass const* const superclass : superclasses_) {
            validityCheck_ = validityCheck_ != nullptr ? validityCheck_ : superclass->validityCheck_;
            collection_ = collection_ != nullptr ? collection_ : superclass->collection_;
        }
    } catch (...) {
        clear();
        throw;
    }
    state_ = State::Defined;
}

void OrdoClass::clear() noexcept {
    superclasses_.clear();
    superclassWords_.clear();
    properties_.clear();
    methods_.clear();
    enumerations_.clear();
    constructor_ = nullptr;
    builtInBase_ = InternedName();
    state_ = State::Undefined;
}

void OrdoClass::addSuperclass(std::string_view name, int first, int second, int third) {
    OrdoClass* const superclass = getClass(internName(name));
    if (superclass != nullptr) {
        if (superclass->state_ != State::Defined) {
            raiseWith(failures::Unexpected, {"class '" + std::string(name_.text()) + "' would derive from itself"});
        }
        superclasses_.push_back(superclass);
    } else if (isBuiltIn(name)) {
        builtInBase_ = internName(name);
    } else {
        raiseWith(failures::NoSuchClass, {std::string(name)});
    }
    superclassWords_.push_back({first, second, third});
}

OrdoPropInfo& OrdoClass::addProperty(std::unique_ptr<OrdoPropInfo> property) {
    property->definingClass_ = this;
    return *properties_.emplace_back(std::move(property));
}

OrdoMethodInfo& OrdoClass::addMethod(std::unique_ptr<OrdoMethodInfo> method) {
    method->definingClass_ = this;
    OrdoMethodInfo& added = *methods_.emplace_back(std::move(method));
    if (added.name() == shortName_) {
        constructor_ = &added;
    }
    return added;
}

OrdoEnumInfo& OrdoClass::addEnumeration(std::unique_ptr<OrdoEnumInfo> literal) {
    return *enumerations_.emplace_back(std::move(literal));
}

OrdoPropInfo* OrdoClass::findProperty(InternedName name) const noexcept {
    for (auto const& property : properties_) {
        if (property->name() == name) {
            return property.get();
        }
    }
    for (OrdoClass const* const superclass : superclasses_) {
        if (OrdoPropInfo* const found = superclass->findProperty(name)) {
            return found;
        }
    }
    return nullptr;
}

OrdoMethodInfo* OrdoClass::findMethod(InternedName name) const noexcept {
    for (auto const& method : methods_) {
        if (method->name() == name) {
            return method.get();
        }
    }
    for (OrdoClass const* const superclass : superclasses_) {
        OrdoMethodInfo* const found = superclass->findMethod(name);
        if (found != nullptr && found != superclass->constructor_) {
            return found;
        }
    }
    return nullptr;
}

OrdoEnumInfo* OrdoClass::findEnumeration(InternedName name) const noexcept {
    auto const found = std::find_if(enumerations_.begin(), enumerations_.end(),
                                    [&](auto const& literal) { return literal->getName() == name; });
    return found != enumerations_.end() ? found->get() : nullptr;
}

OrdoEnumInfo* OrdoClass::findEnumeration(std::int32_t number) const noexcept {
    auto const found = std::find_if(enumerations_.begin(), enumerations_.end(),
                                    [&](auto const& literal) { return literal->getNumericValue() == number; });
    return found != enumerations_.end() ? found->get() : nullptr;
}

bool OrdoClass::isA(OrdoClass const& other) const noexcept {
    return this == &other || std::any_of(superclasses_.begin(), superclasses_.end(),
                                         [&](OrdoClass const* superclass) { return superclass->isA(other); });
}

bool OrdoClass::isA(InternedName name) const noexcept {
    return name_ == name || (builtInBase_ && builtInBase_ == name) ||
           std::any_of(superclasses_.begin(), superclasses_.end(),
                       [&](OrdoClass const* superclass) { return superclass->isA(name); });
}

OrdoValue OrdoClass::construct(std::span<OrdoValue const> arguments) {
    if (constructor_ == nullptr || info_->isAbstract()) {
        raiseWith(failures::AbstractClass, {std::string(name_.text())});
    }
    if (!constructor_->signature().accepts(arguments.size())) {
        raiseWith(failures::WrongArguments,
                  {std::string(shortName_.text()), constructor_->signature().describe(shortName_.text())});
    }
    OrdoObject const made = OrdoInterface::make(*this);
    MethodCall call(arguments, true, made.get());
    constructor_->call(call);
    return made->native() != nullptr ? OrdoValue::fromObject(made) : std::move(call.result());
}

OrdoValue OrdoClass::constructEnumeration(OrdoValue const& input) {
    if (input.isNothing()) {
        raiseWith(failures::NoValue, {"a value of '" + std::string(name_.text()) + "'"});
    }
    return OrdoValue::enumeration(*this, factory::enumerationNumber(*this, input));
}

void OrdoClass::raiseInvalid() { raiseInvalidHandle(); }

}  // namespace ordo
