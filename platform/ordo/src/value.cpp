// The life of values in transit, and their form as arrays.
#include <ordo/class.h>
#include <ordo/factory/text.h>
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
    : content_(other.content_), kind_(other.kind_), emptyClass_(other.emptyClass_) {
    switch (kind_) {
        case Kind::Text:
            content_.text.units = copyUnits(other.textContent());
            owns_ = true;
            break;
        case Kind::Bytes:
            content_.bytes.units = copyUnits(other.bytesContent());
            owns_ = true;
            break;
        case Kind::Object:
            content_.object->addReference();
            owns_ = true;
            break;
        case Kind::Array:
            content_.array = zxDuplicateArray(other.content_.array);
            owns_ = true;
            break;
        default:
            break;
    }
}

void OrdoValue::drop() noexcept {
    switch (kind_) {
        case Kind::Text:
            delete[] content_.text.units;
            break;
        case Kind::Bytes:
            delete[] content_.bytes.units;
            break;
        case Kind::Object:
            content_.object->dropReference();
            break;
        case Kind::Array:
            zxDestroyArray(const_cast<zxArray*>(content_.array));  // what is owned came in as not const
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
    result.content_.object = object.release();
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
    result.content_.array = array;
    return result;
}

std::size_t OrdoValue::count() const noexcept {
    switch (kind_) {
        case Kind::Nothing:
            return 0;
        case Kind::Text:
            return content_.text.size;
        case Kind::Bytes:
            return content_.bytes.size;
        case Kind::Array:
            return zxGetNumberOfElements(content_.array);
        default:
            return 1;
    }
}

OrdoInterface* OrdoValue::object() const noexcept {
    return kind_ == Kind::Object ? content_.object : kind_ == Kind::Array ? objectAt(content_.array) : nullptr;
}

void* OrdoValue::native(InternedName className) const noexcept {
    OrdoInterface const* const found = object();
    return found != nullptr ? found->getNativePointer(className) : nullptr;
}

bool OrdoValue::enumerationOf(OrdoClass const& enumeration, std::int32_t& number) const noexcept {
    if (kind_ == Kind::Enumeration) {
        number = content_.enumeration.number;
        return content_.enumeration.ordoClass == &enumeration;
    }
    if (kind_ != Kind::Array || !zxIsClass(content_.array, enumeration.name().text()) || isEmpty()) {
        return false;
    }
    zxArray const* const underlying = zxGetUnderlyingArray(content_.array);
    if (underlying == nullptr || zxGetClassCode(underlying) != zxInt32Class) {
        return false;
    }
    number = *static_cast<std::int32_t const*>(zxGetData(underlying));
    return true;
}

bool OrdoValue::isText() const noexcept {
    return kind_ == Kind::Text || kind_ == Kind::Bytes || (kind_ == Kind::Array && zxIsText(content_.array));
}

bool OrdoValue::isStruct() const noexcept { return kind_ == Kind::Array && zxIsStruct(content_.array); }

zxArray const* OrdoValue::array(zx::Array& storage) const {
    if (kind_ == Kind::Array) {
        return content_.array;
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
            return zx::scalar(static_cast<std::int32_t>(content_.int64));
        case Kind::UInt32:
            return zx::scalar(static_cast<std::uint32_t>(content_.int64));
        case Kind::Int64:
            return zx::scalar(content_.int64);
        case Kind::UInt64:
            return zx::scalar(content_.uint64);
        case Kind::Double:
            return zx::scalar(content_.real);
        case Kind::Text:
            return zx::Array(zxCreateString_UTF16(textContent()));
        case Kind::Bytes:
            return zx::Array(zxCreateString_UTF16(factory::unitsOf(bytesContent())));
        case Kind::Enumeration: {
            zx::Array number = zx::scalar(enumerationNumber());
            zx::Array result(zxCreateObjectFromUnderlying(enumerationClass().name().text(), number.get()));
            static_cast<void>(number.release());  // the object array has it
            return result;
        }
        case Kind::Object:
            return ordo::toArray(*content_.object);
        case Kind::Array:
            break;
    }
    return zx::copy(content_.array);
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
            return "a value of '" + std::string(enumerationClass().name().text()) + "'";
        case Kind::Object:
            return "an object of class '" + std::string(content_.object->getClass().name().text()) + "'";
        case Kind::Array:
            break;
        default:
            return "a number";
    }
    if (isText()) {
        return "a text";
    }
    return "an array of " + std::to_string(count()) + " (" + std::string(zxGetClassName(content_.array)) + ")";
}

}  // namespace ordo
