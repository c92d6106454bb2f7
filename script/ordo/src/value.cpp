// Copying and destroying values in transit, and converting them to arrays.
#include <ordo/class_identity.h>
#include <ordo/factory/encoding.h>
#include <ordo/value.h>

#include <zx/containers.h>
#include <zx/objects.h>
#include <zx/text.h>
#include <zx/values.h>

#include <algorithm>
#include <memory>

namespace ordo {
namespace {

template <class Unit>
Unit const* copyUnits(std::basic_string_view<Unit> text) {
    auto units = std::make_unique<Unit[]>(text.size());
    std::copy(text.begin(), text.end(), units.get());
    return units.release();
}

}  // namespace

OrdoValue::OrdoValue(OrdoValue const& other)
    : word_(other.word_), kind_(other.kind_), emptyClass_(other.emptyClass_), extra_(other.extra_) {
    switch (kind_) {
        case Kind::Text:
            word_.text = copyUnits(other.textContent());
            owns_ = true;
            break;
        case Kind::Bytes:
            word_.bytes = copyUnits(other.bytesContent());
            owns_ = true;
            break;
        case Kind::Object:
            word_.object->addReference();
            owns_ = true;
            break;
        case Kind::Array:
            word_.array = zxDuplicateArray(other.word_.array);
            owns_ = true;
            break;
        default:
            break;
    }
}

void OrdoValue::drop() noexcept {
    switch (kind_) {
        case Kind::Text:
            delete[] word_.text;
            break;
        case Kind::Bytes:
            delete[] word_.bytes;
            break;
        case Kind::Object:
            word_.object->dropReference();
            break;
        case Kind::Array:
            zxDestroyArray(const_cast<zxArray*>(word_.array));  // an owned array was given as non-const
            break;
        default:
            break;
    }
}

OrdoValue OrdoValue::text(std::u16string_view text) {
    OrdoValue result = borrowedText(text);
    result.own();
    return result;
}

OrdoValue OrdoValue::bytes(std::string_view text) {
    OrdoValue result = borrowedBytes(text);
    result.own();
    return result;
}

OrdoValue OrdoValue::fromObject(OrdoObject object) noexcept {
    if (!object || object->native() == nullptr) {
        return OrdoValue();
    }
    OrdoValue result(Kind::Object);
    result.word_.object = object.release();
    result.owns_ = true;
    return result;
}

OrdoValue OrdoValue::fromArray(zx::Array array) noexcept {
    OrdoValue result = borrowedArray(array.release());
    result.owns_ = result.kind_ == Kind::Array;
    return result;
}

OrdoValue OrdoValue::borrowedArray(zxArray const* array) noexcept {
    if (array == nullptr) {
        return OrdoValue();
    }
    OrdoValue result(Kind::Array);
    result.word_.array = array;
    return result;
}

std::size_t OrdoValue::count() const noexcept {
    switch (kind_) {
        case Kind::Nothing:
            return 0;
        case Kind::Text:
        case Kind::Bytes:
            return extra_;
        case Kind::Array:
            return zxGetNumberOfElements(word_.array);
        default:
            return 1;
    }
}

OrdoInterface* OrdoValue::object() const noexcept {
    return kind_ == Kind::Object ? word_.object : kind_ == Kind::Array ? objectAt(word_.array) : nullptr;
}

void* OrdoValue::native(InternedName className) const noexcept {
    OrdoInterface const* const found = object();
    return found != nullptr ? found->getNativePointer(className) : nullptr;
}

bool OrdoValue::enumerationOf(ClassIdentity const& enumeration, std::int32_t& number) const noexcept {
    if (kind_ == Kind::Enumeration) {
        number = enumerationNumber();
        return word_.enumeration == &enumeration;
    }
    if (kind_ != Kind::Array || !zxIsClass(word_.array, enumeration.name().text()) || isEmpty()) {
        return false;
    }
    zxArray const* const underlying = zxGetUnderlyingArray(word_.array);
    if (underlying == nullptr || zxGetClassCode(underlying) != zxInt32Class) {
        return false;
    }
    number = *static_cast<std::int32_t const*>(zxGetData(underlying));
    return true;
}

bool OrdoValue::isText() const noexcept {
    return kind_ == Kind::Text || kind_ == Kind::Bytes || (kind_ == Kind::Array && zxIsText(word_.array));
}

bool OrdoValue::isStruct() const noexcept { return kind_ == Kind::Array && zxIsStruct(word_.array); }

zxArray const* OrdoValue::array(zx::Array& storage) const {
    if (kind_ == Kind::Array) {
        return word_.array;
    }
    storage = toArray();
    return storage.get();
}

zx::Array OrdoValue::toArray() const {
    switch (kind_) {
        case Kind::Nothing: {
            zxClassCode const code = emptyClass();
            if (code == zxCellClass) {
                return zx::Array(zxCreateCellMatrix(0, 0));
            }
            return zx::Array(code == zxStructClass ? zxCreateStructMatrix(0, 0) : zxCreateNumericMatrix(0, 0, code));
        }
        case Kind::Logical:
            return zx::scalar(logicalContent());
        case Kind::Int32:
            return zx::scalar(static_cast<std::int32_t>(word_.int64));
        case Kind::UInt32:
            return zx::scalar(static_cast<std::uint32_t>(word_.int64));
        case Kind::Int64:
            return zx::scalar(word_.int64);
        case Kind::UInt64:
            return zx::scalar(word_.uint64);
        case Kind::Double:
            return zx::scalar(word_.real);
        case Kind::Text:
            return zx::Array(zxCreateString_UTF16(textContent()));
        case Kind::Bytes:
            return zx::Array(zxCreateString_UTF16(factory::unitsOf(bytesContent())));
        case Kind::Enumeration: {
            zx::Array number = zx::scalar(enumerationNumber());
            zx::Array result(zxCreateObjectFromUnderlying(word_.enumeration->name().text(), number.get()));
            static_cast<void>(number.release());  // the object array owns it now
            return result;
        }
        case Kind::Object:
            return ordo::toArray(*word_.object);
        case Kind::Array:
            break;
    }
    return zx::copy(word_.array);
}

std::string OrdoValue::describe() const {
    switch (kind_) {
        case Kind::Nothing:
            return "nothing";
        case Kind::Logical:
            return "a logical";
        case Kind::Text:
        case Kind::Bytes:
            return "a text";
        case Kind::Enumeration:
            return "a value of '" + std::string(word_.enumeration->name().text()) + "'";
        case Kind::Object:
            return "an object of class '" + std::string(word_.object->classIdentity().name().text()) + "'";
        case Kind::Array:
            break;
        default:
            return "a number";
    }
    if (isText()) {
        return "a text";
    }
    return "an array of " + std::to_string(count()) + " (" + std::string(zxGetClassName(word_.array)) + ")";
}

}  // namespace ordo
