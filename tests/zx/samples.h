// One array of each kind, for tests that run over all kinds.
#pragma once

#include <zx/zx.h>

#include <algorithm>
#include <complex>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace zxtest {

/// A native object whose class counts how many exist.
struct Counted {
    explicit Counted(int n) : number(n) { ++alive; }
    Counted(Counted const& other) : number(other.number) { ++alive; }
    Counted& operator=(Counted const&) = delete;
    ~Counted() { --alive; }

    int number;

    static inline int alive = 0;
    /// The number of copies that still succeed; negative: none.
    static inline int copiesLeft = 1000000;
};

inline void* copyCounted(void* native) {
    if (Counted::copiesLeft-- <= 0) {
        throw std::bad_alloc();
    }
    return new Counted(*static_cast<Counted*>(native));
}
inline void destroyCounted(void* native) noexcept { delete static_cast<Counted*>(native); }
inline bool equalCounted(void const* left, void const* right) {
    return static_cast<Counted const*>(left)->number == static_cast<Counted const*>(right)->number;
}
inline constexpr zx::NativeOperations byNumber{copyCounted, destroyCounted, equalCounted};
inline constexpr zx::NativeOperations byIdentity{copyCounted, destroyCounted, nullptr};

inline zx::Array counted(std::vector<int> const& numbers, zx::NativeOperations const& operations = byNumber) {
    std::size_t const dimensions[] = {1, numbers.size()};
    zx::Array array(zxCreateNativeObjectArray("test.Counted", dimensions, operations));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        zxSetNative(array.get(), i, new Counted(numbers[i]));
    }
    return array;
}

template <class T>
zx::Array row(std::vector<T> const& numbers) {
    zx::Array array(
        zxCreateNumericMatrix(1, numbers.size(), zx::classCodeOf<T>(), zx::detail::IsComplex<T>::value ? 1 : 0));
    std::copy(numbers.begin(), numbers.end(), zx::valuesForWriting<T>(array.get()).begin());
    return array;
}

inline zx::Array text(std::u16string_view units) { return zx::Array(zxCreateString_UTF16(units)); }

inline zx::Array strings(std::vector<std::u16string> const& texts) {
    std::size_t const dimensions[] = {1, texts.size()};
    zx::Array array(zxCreateStringObjectArray(dimensions));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        zxSetStringElement(array.get(), i, texts[i]);
    }
    return array;
}

template <class... Arrays>
zx::Array cell(Arrays... elements) {
    zx::Array array(zxCreateCellMatrix(1, sizeof...(elements)));
    std::size_t next = 0;
    (zxSetCell(array.get(), next++, elements.release()), ...);
    return array;
}

/// A 1 by 1 struct: name, value, name, value and so on.
inline void addFields(zxArray*) {}
template <class... Rest>
void addFields(zxArray* array, std::string_view name, zx::Array value, Rest... rest) {
    zxSetField(array, 0, name, value.release());
    addFields(array, std::move(rest)...);
}
template <class... Arguments>
zx::Array structure(Arguments... fields) {
    zx::Array array(zxCreateStructMatrix(1, 1));
    addFields(array.get(), std::move(fields)...);
    return array;
}

inline zx::Array based(zx::Array underlying, std::string_view className = "test.Colour") {
    zx::Array array(zxCreateObjectFromUnderlying(className, underlying.get()));
    static_cast<void>(underlying.release());
    return array;
}

struct Sample {
    char const* name;
    std::function<zx::Array()> make;
    zxClassCode classCode;
    char const* className;
};

/// Each sample has at least two elements.
inline std::vector<Sample> samples() {
    using Complex = std::complex<double>;
    return {
        {"double",
         [] {
             return row<double>({1.5, -2, 1e300});
         },
         zxDoubleClass, "double"},
        {"complex",
         [] {
             return row<Complex>({{1, 2}, {3, 4}});
         },
         zxDoubleClass, "double"},
        {"single",
         [] {
             return row<float>({1.5F, 0});
         },
         zxSingleClass, "single"},
        {"int8",
         [] {
             return row<std::int8_t>({-128, 127});
         },
         zxInt8Class, "int8"},
        {"uint8",
         [] {
             return row<std::uint8_t>({0, 255});
         },
         zxUint8Class, "uint8"},
        {"int16",
         [] {
             return row<std::int16_t>({-1, 2});
         },
         zxInt16Class, "int16"},
        {"uint16",
         [] {
             return row<std::uint16_t>({1, 65535});
         },
         zxUint16Class, "uint16"},
        {"int32",
         [] {
             return row<std::int32_t>({-1, 2, 3, 4, 5, 6});
         },
         zxInt32Class, "int32"},
        {"uint32",
         [] {
             return row<std::uint32_t>({1, 2});
         },
         zxUint32Class, "uint32"},
        {"int64",
         [] {
             return row<std::int64_t>({-1, 2});
         },
         zxInt64Class, "int64"},
        {"uint64",
         [] {
             return row<std::uint64_t>({1, 2});
         },
         zxUint64Class, "uint64"},
        {"logical",
         [] {
             return row<bool>({true, false});
         },
         zxLogicalClass, "logical"},
        {"char", [] { return text(u"two"); }, zxCharClass, "char"},
        {"string",
         [] {
             return strings({u"one", u""});
         },
         zxObjectClass, "string"},
        {"cell", [] { return cell(text(u"a"), cell(row<double>({1})), zx::Array()); }, zxCellClass, "cell"},
        {"struct",
         [] {
             std::size_t const dimensions[] = {2, 1};
             zx::Array array(zxCreateStructArray(dimensions));
             zxSetField(array.get(), 0, "a", text(u"x").release());
             zxSetField(array.get(), 1, "b", cell(row<double>({1})).release());
             return array;
         },
         zxStructClass, "struct"},
        {"based",
         [] {
             return based(row<std::int32_t>({3, 1}));
         },
         zxObjectClass, "test.Colour"},
        {"native",
         [] {
             return counted({7, 8});
         },
         zxObjectClass, "test.Counted"},
    };
}

}  // namespace zxtest
