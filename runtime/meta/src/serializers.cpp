#include <keel/text.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>

#include <boost/lexical_cast.hpp>
#include <charconv>
#include <typeinfo>

namespace quay::zero::meta {

PropertySerializer::~PropertySerializer() = default;
DatatypeSerializer::~DatatypeSerializer() = default;

std::u16string PropertySerializer::serializeOptionalValue(Value const& value) const {
    return value.hasPayload() ? serializeValue(value) : std::u16string();
}

Value PropertySerializer::toOptionalValue(Value const& value) const {
    return value.hasPayload() ? value : Value(value.getType(), ValueFlags::Optional);
}

Value PropertySerializer::parseOptionalValue(std::u16string const& text, Type const& type) const {
    return text.empty() ? createEmptyOptionalValue(type) : parseValue(text, type);
}

Value PropertySerializer::createEmptyOptionalValue(Type const& type) const { return {type, ValueFlags::Optional}; }

void PropertySerializer::releaseValue(Value&& value, Type const& /*type*/) const { Value const gone(std::move(value)); }

Value DatatypeSerializer::fromOptionalValue(Value const& value) const {
    return value.hasPayload() ? value : createDefaultValue();
}

Value DatatypeSerializer::toOptionalValue(Value const& value) const {
    return value.hasPayload() ? value : createEmptyOptionalValue();
}

// --- Enumerations ---------------------------------------------------------------------------------------------------

std::u16string EnumTexts::nameOf(int value, Type const& type) {
    EnumLiteral const literal = Enum::cast(type)->findLiteral(value);
    return literal ? literal->getName() : std::u16string();
}

int EnumTexts::valueOf(std::u16string const& name, Type const& type) {
    for (EnumLiteral const& literal : *Enum::cast(type)->getLiterals()) {
        if (literal->getName() == name) return literal->getValue();
    }
    throw boost::bad_lexical_cast(typeid(std::u16string), typeid(int));
}

std::u16string EnumTexts::keyOf(int value, Type const& type) {
    auto const& literals = *Enum::cast(type)->getLiterals();
    for (auto i = literals.begin(); i != literals.end(); ++i) {
        if ((*i)->getValue() == value) return i.key();
    }
    return {};
}

int EnumTexts::valueOfKey(std::u16string const& key, Type const& type) {
    EnumLiteral const literal = Enum::cast(type)->getLiterals()->find(key);
    if (!literal) throw boost::bad_lexical_cast(typeid(std::u16string), typeid(int));
    return literal->getValue();
}

namespace {

/// The text's ASCII digits as a number of type N; the whole text must be one.
template <class N>
N parseNumber(std::u16string const& text) {
    std::string ascii;
    for (char16_t const unit : text) ascii.push_back(unit < 0x80 ? static_cast<char>(unit) : '?');
    N value{};
    auto const [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), value);
    if (error != std::errc() || end != ascii.data() + ascii.size()) {
        throw boost::bad_lexical_cast(typeid(std::u16string), typeid(N));
    }
    return value;
}

template <class N>
std::u16string formatNumber(N value) {
    char buffer[40];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

/// The primitive types: numbers in decimal, truth values as "true" and "false", texts as they are.
template <class T>
class PrimitiveSerializer final : public DefaultPropertySerializer<T> {
protected:
    std::u16string toText(T const& value, Type const& /*type*/) const override {
        if constexpr (std::is_same_v<T, bool>) {
            return value ? u"true" : u"false";
        } else if constexpr (std::is_arithmetic_v<T>) {
            return formatNumber(value);
        } else {
            return textOf(value);
        }
    }
    T fromText(std::u16string const& text, Type const& /*type*/) const override {
        if constexpr (std::is_same_v<T, bool>) {
            if (text == u"true") return true;
            if (text == u"false") return false;
            throw boost::bad_lexical_cast(typeid(std::u16string), typeid(bool));
        } else if constexpr (std::is_arithmetic_v<T>) {
            return parseNumber<T>(text);
        } else if constexpr (std::is_same_v<T, std::string>) {
            return keel::toUtf8(text);
        } else {
            return text;
        }
    }
};

}  // namespace

std::u16string EnumTexts::decimalOf(int value) { return formatNumber(value); }
int EnumTexts::valueOfDecimal(std::u16string const& text) {
    bool const hasPlus = text.size() > 1 && text[0] == u'+' && text[1] != u'-';
    return parseNumber<int>(hasPlus ? text.substr(1) : text);
}

// --- The registry ---------------------------------------------------------------------------------------------------

PropertySerializerRegistry* PropertySerializerRegistry::getInstance() {
    static auto* const instance = new PropertySerializerRegistry;
    return instance;
}

PropertySerializerRegistry::PropertySerializerRegistry() {
    // The first use of the MetaRegistry creates the standard types.
    MetaRegistry::getInstance()->setForgetHook([](ModelElement::Impl const* type) { getInstance()->forget(type); });
    auto const add = [&]<class T>(T const& /*tag*/) {
        registerPropertySerializer(StandardTypes::of<T>(), std::make_unique<PrimitiveSerializer<T>>(), "");
    };
    add(bool());
    add(int());
    add(unsigned());
    add(0UL);
    add(double());
    add(std::u16string());
    add(std::string());
}

void PropertySerializerRegistry::registerPropertySerializer(Type const& type,
                                                            std::unique_ptr<PropertySerializer> serializer,
                                                            std::string form) {
    std::lock_guard const lock(mutex_);
    types_[type.impl()].byForm[std::move(form)] = std::move(serializer);
}

void PropertySerializerRegistry::registerDatatypeSerializer(DataType const& type,
                                                            std::unique_ptr<DatatypeSerializer> serializer) {
    std::lock_guard const lock(mutex_);
    types_[type.impl()].fields = std::move(serializer);
}

PropertySerializer const* PropertySerializerRegistry::getPropertySerializer(Type const& type,
                                                                            std::string_view form) const {
    std::lock_guard const lock(mutex_);
    auto const found = types_.find(type.impl());
    if (found == types_.end()) return nullptr;
    auto const serializer = found->second.byForm.find(form);
    return serializer == found->second.byForm.end() ? nullptr : serializer->second.get();
}

DatatypeSerializer const* PropertySerializerRegistry::getDatatypeSerializer(Type const& type) const {
    std::lock_guard const lock(mutex_);
    auto const found = types_.find(type.impl());
    return found == types_.end() ? nullptr : found->second.fields.get();
}

void PropertySerializerRegistry::forget(ModelElement::Impl const* type) {
    Serializers gone;
    {
        std::lock_guard const lock(mutex_);
        auto const found = types_.find(type);
        if (found == types_.end()) return;
        gone = std::move(found->second);
        types_.erase(found);
    }
    // MetaRegistry::keep locks another mutex, which the caller may hold already; so it is called without holding this
    // one.
    for (auto& [form, serializer] : gone.byForm) MetaRegistry::getInstance()->keep(serializer.release());
    MetaRegistry::getInstance()->keep(gone.fields.release());
}

}  // namespace quay::zero::meta
