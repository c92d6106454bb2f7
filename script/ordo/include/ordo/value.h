// One value in transit between a script and native code, in the cheapest form that it has.
#pragma once

#include <ordo/export.h>
#include <ordo/interface.h>

#include <zx/array.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ordo {

class ClassIdentity;
class OrdoClass;

/// A value in transit. Every value has a form as an array, but numbers, texts and script objects, the most frequent
/// ones, are held without one: making and reading one of those allocates nothing.
///
/// A receiver asks for what it needs (`toInt32()`, `object()`, `array()`) without looking at the kind: the conversions
/// take every form that can mean such a value, check its range, and fail with the messages of failure.h.
class ORDO_API OrdoValue {
public:
    enum class Kind : std::uint8_t {
        Nothing,  ///< an empty array: an unset optional, no object, no argument
        Logical,
        Int32,
        UInt32,
        Int64,
        UInt64,
        Double,
        Text,         ///< UTF-16 units
        Bytes,        ///< a text in 8-bit units: UTF-8, or whatever bytes there are
        Enumeration,  ///< a number and the class of the enumeration
        Object,       ///< a script object, never null and never without a native object
        Array,        ///< anything else
    };

    /// The value "nothing": an empty array of this class.
    OrdoValue(zxClassCode emptyClass = zxDoubleClass) noexcept  // NOLINT(google-explicit-constructor)
        : emptyClass_(static_cast<std::uint8_t>(emptyClass)) {}
    /// The copy owns all of its content, even if `other` borrows it.
    OrdoValue(OrdoValue const& other);
    OrdoValue(OrdoValue&& other) noexcept
        : word_(other.word_), kind_(other.kind_), emptyClass_(other.emptyClass_), extra_(other.extra_) {
        owns_ = std::exchange(other.owns_, false);
        other.kind_ = Kind::Nothing;
    }
    OrdoValue& operator=(OrdoValue const& other) {
        OrdoValue copy(other);
        return *this = std::move(copy);
    }
    OrdoValue& operator=(OrdoValue&& other) noexcept {
        OrdoValue former(std::move(*this));  // destroyed last, on return
        word_ = other.word_;
        extra_ = other.extra_;
        emptyClass_ = other.emptyClass_;
        kind_ = std::exchange(other.kind_, Kind::Nothing);
        owns_ = std::exchange(other.owns_, false);
        return *this;
    }
    ~OrdoValue() {
        if (owns_) {
            drop();
        }
    }

    static OrdoValue logical(bool value) noexcept {
        OrdoValue result(Kind::Logical);
        result.word_.int64 = value ? 1 : 0;
        return result;
    }
    static OrdoValue int32(std::int32_t value) noexcept { return integer(Kind::Int32, value); }
    static OrdoValue uint32(std::uint32_t value) noexcept { return integer(Kind::UInt32, value); }
    static OrdoValue int64(std::int64_t value) noexcept { return integer(Kind::Int64, value); }
    static OrdoValue uint64(std::uint64_t value) noexcept {
        OrdoValue result(Kind::UInt64);
        result.word_.uint64 = value;
        return result;
    }
    static OrdoValue real(double value) noexcept {
        OrdoValue result(Kind::Double);
        result.word_.real = value;
        return result;
    }
    /// The text is copied.
    static OrdoValue text(std::u16string_view text);
    static OrdoValue bytes(std::string_view text);
    /// The value borrows the text, which must stay unchanged while the value exists.
    static OrdoValue borrowedText(std::u16string_view text) noexcept {
        OrdoValue result(Kind::Text);
        result.word_.text = text.data();
        result.extra_ = text.size();
        return result;
    }
    static OrdoValue borrowedBytes(std::string_view text) noexcept {
        OrdoValue result(Kind::Bytes);
        result.word_.bytes = text.data();
        result.extra_ = text.size();
        return result;
    }
    static OrdoValue enumeration(ClassIdentity& enumeration, std::int32_t number) noexcept {
        OrdoValue result(Kind::Enumeration);
        result.word_.enumeration = &enumeration;
        result.extra_ = static_cast<std::size_t>(number);
        return result;
    }
    /// A value for a script object; "nothing" if it is null or has no native object.
    static OrdoValue fromObject(OrdoObject object) noexcept;
    /// Takes ownership of the array; null becomes "nothing". An array stays an array, whatever its content.
    static OrdoValue fromArray(zx::Array array) noexcept;
    /// The value borrows the array, which must outlive it.
    static OrdoValue borrowedArray(zxArray const* array) noexcept;

    Kind kind() const noexcept { return kind_; }
    bool isNothing() const noexcept { return kind_ == Kind::Nothing; }
    /// The class of the empty array that "nothing" becomes.
    zxClassCode emptyClass() const noexcept { return static_cast<zxClassCode>(emptyClass_); }

    /// The number of elements of the array form: 0 for nothing, 1 for a number or an object.
    std::size_t count() const noexcept;
    bool isEmpty() const noexcept { return count() == 0; }

    // Each of these takes numbers of every class, single elements of arrays included, and refuses texts and objects.
    // An enumeration counts as its number.

    bool toLogical() const;  ///< any number but zero is true
    std::int32_t toInt32() const;
    std::uint32_t toUInt32() const;
    std::int64_t toInt64() const;
    std::uint64_t toUInt64() const;
    double toDouble() const;
    /// A count or a position: an integer from 0.
    std::size_t toSize() const;

    /// Whether the value is a text, of 16-bit or 8-bit units.
    bool isText() const noexcept;
    std::u16string toText() const;
    /// The text as UTF-8, in which a lone surrogate U+DC80 to U+DCFF stands for a byte that isn't UTF-8.
    std::string toBytes() const;

    /// Whether it is a struct array or an array of a host's plain objects. Objects of `ordo` classes are neither.
    bool isStruct() const noexcept;

    /// The script object, or the first one of an array; null if there is none.
    OrdoInterface* object() const noexcept;
    /// The native object behind `object()` if its class is `className` or derives from it, else null.
    void* native(InternedName className) const noexcept;
    /// Gets the number if the value is one of exactly this class: an enumeration, or the first of an object array.
    /// Returns false for anything else.
    bool enumerationOf(ClassIdentity const& enumeration, std::int32_t& number) const noexcept;

    // The content as its kind stores it; undefined for a value of another kind.
    bool logicalContent() const noexcept { return word_.int64 != 0; }
    std::int64_t integerContent() const noexcept { return word_.int64; }     ///< Int32, UInt32, Int64
    std::uint64_t unsignedContent() const noexcept { return word_.uint64; }  ///< UInt32, UInt64
    double realContent() const noexcept { return word_.real; }
    std::u16string_view textContent() const noexcept { return {word_.text, extra_}; }
    std::string_view bytesContent() const noexcept { return {word_.bytes, extra_}; }
    inline OrdoClass& enumerationClass() const noexcept;  ///< include <ordo/class.h> to call this
    std::int32_t enumerationNumber() const noexcept { return static_cast<std::int32_t>(extra_); }
    zxArray const* arrayContent() const noexcept { return word_.array; }

    /// The array form: the array that the value holds, or one that is made and kept in `storage`.
    zxArray const* array(zx::Array& storage) const;
    /// The array form as a copy that the caller owns.
    zx::Array toArray() const;

    /// Replaces borrowed content with a copy, so that the value may outlive its source.
    void own() {
        if (!owns_ && (kind_ == Kind::Text || kind_ == Kind::Bytes || kind_ == Kind::Array)) {
            *this = OrdoValue(static_cast<OrdoValue const&>(*this));
        }
    }

    /// The kind of value in words, for messages: "a number", "a text", "an object of class 'A'".
    std::string describe() const;

private:
    explicit OrdoValue(Kind kind) noexcept : kind_(kind) {}
    static OrdoValue integer(Kind kind, std::int64_t value) noexcept {
        OrdoValue result(kind);
        result.word_.int64 = value;
        return result;
    }
    void drop() noexcept;

    union Word {
        std::int64_t int64 = 0;
        std::uint64_t uint64;
        double real;
        char16_t const* text;
        char const* bytes;
        ClassIdentity* enumeration;
        OrdoInterface* object;
        zxArray const* array;
    };

    // The small members lie between `word_` and `extra_`, so that the compiler doesn't copy both in one load: that
    // would have to wait for a recent store to one of them.
    Word word_;
    Kind kind_ = Kind::Nothing;
    bool owns_ = false;
    std::uint8_t emptyClass_ = zxDoubleClass;
    std::size_t extra_ = 0;  // a text's size, or an enumeration's number
};

}  // namespace ordo
