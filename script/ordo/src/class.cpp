// Definition of classes, and look-up of their members.
#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/type_repository.h>

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

}  // namespace

constinit OrdoClass::Finder* OrdoClass::finder_ = nullptr;

OrdoClass* OrdoClass::getClass(InternedName name, OrdoPackage* context) {
    OrdoClass* const found = finder_ != nullptr ? finder_(name, context) : nullptr;
    // The definition of a class may ask for the class itself, which is then in another state.
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
    ancestors_.clear();
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
        ancestors_.push_back(superclass->name());
        ancestors_.insert(ancestors_.end(), superclass->ancestors_.begin(), superclass->ancestors_.end());
    } else if (isBuiltIn(name)) {
        builtInBase_ = internName(name);
        ancestors_.push_back(builtInBase_);
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
    std::int32_t number = 0;
    if (input.enumerationOf(*this, number)) {
        return OrdoValue::enumeration(*this, number);
    }
    std::string const name(name_.text());
    if (input.isNothing()) {
        raiseWith(failures::NoValue, {"a value of '" + name + "'"});
    }
    bool const foreign = input.kind() == OrdoValue::Kind::Object || input.kind() == OrdoValue::Kind::Enumeration;
    bool const array = input.kind() == OrdoValue::Kind::Array;
    if (!foreign && !input.isText() && (!array || zxIsNumeric(input.arrayContent()))) {
        number = input.toInt32();
        if (findEnumeration(number) == nullptr) {
            raiseWith(failures::NoSuchLiteral, {std::to_string(number), name});
        }
        return OrdoValue::enumeration(*this, number);
    }
    OrdoTypeConverter* const conversion =
        foreign ? nullptr : OrdoTypeRepository::getConversion(internName("any"), internName(name + " property"));
    if (conversion != nullptr) {
        zx::Array storage;
        zx::Array converted = conversion->convert(input.array(storage));
        OrdoValue const result = OrdoValue::fromArray(std::move(converted));
        if (result.enumerationOf(*this, number)) {
            return OrdoValue::enumeration(*this, number);
        }
    } else if (input.isText()) {
        std::string const text = input.toBytes();
        if (OrdoEnumInfo const* const literal = findEnumeration(LookupName(text))) {
            return OrdoValue::enumeration(*this, literal->getNumericValue());
        }
        raiseWith(failures::NoSuchLiteral, {text, name});
    }
    raiseWith(failures::WrongType, {input.describe(), "a value of '" + name + "'"});
}

void OrdoClass::raiseInvalid() { raiseInvalidHandle(); }

}  // namespace ordo
