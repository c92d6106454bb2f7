#include "values.h"

#include "dump.h"

#include <quay/zero/meta/serializers.h>
#include <zx/zx.h>

#include <map>

namespace records {

using namespace quay::zero;

namespace {

/// The n-th array. It lives as long as the process, so that values may point to it.
zxArray_tag* arraySample(unsigned n) {
    static std::map<unsigned, zx::Array> arrays;
    auto& array = arrays[n];
    if (array == nullptr) array = zx::scalar(double(n));
    return array.get();
}

std::u16string textSample(meta::Type const& type, unsigned n) {
    using meta::StandardTypes;
    std::string const digits = std::to_string(n + 1);
    std::u16string number(digits.begin(), digits.end());
    if (type == StandardTypes::booleanMeta) return n % 2 == 0 ? u"true" : u"false";
    if (type == StandardTypes::integerMeta) return n % 2 == 0 ? number : u"-" + number;
    if (type == StandardTypes::realMeta) return number + u".5";
    if (type == StandardTypes::stringMeta || type == StandardTypes::stdstringMeta) {
        return n % 2 == 0 ? u"t" + number : u"a text that is too long to lie in place \u00e9 " + number;
    }
    return number;
}

}  // namespace

Value sample(meta::Type const& type, unsigned n) {
    if (type == meta::StandardTypes::zxArrayMeta) return {type, arraySample(n), ValueFlags::One};
    auto const* const serializers = meta::PropertySerializerRegistry::getInstance();
    if (auto const* const fields = serializers->getDatatypeSerializer(type)) {
        Value result = fields->createDefaultValue();
        for (meta::Property const& field : *type->getOwnedProperties()) {
            result = fields->setPropertyValue(result, field, sample(field->getType(), n));
        }
        return result;
    }
    auto const* const texts = serializers->getPropertySerializer(type);
    if (auto const enumeration = meta::Enum::cast(type); enumeration.impl() != nullptr) {
        auto const& literals = *enumeration->getLiterals();
        auto literal = literals.begin();
        std::advance(literal, n % literals.size());
        return texts->parseValue((*literal)->getName(), type);
    }
    return texts->parseValue(textSample(type, n), type);
}

Value anotherThan(Value const& value) {
    for (unsigned n = 0;; ++n) {
        Value candidate = sample(value.getType(), n);
        if (show(candidate) != show(value)) return candidate;
    }
}

Value wrongValue(meta::Type const& type) {
    using meta::StandardTypes;
    return type == StandardTypes::stringMeta ? sample(StandardTypes::stdstringMeta, 0)
                                             : sample(StandardTypes::stringMeta, 0);
}

}  // namespace records
