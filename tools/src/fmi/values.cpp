#include "values.h"

#include <quay/zero/text.h>

#include "numbers.h"

namespace modelref::fmi {

using quay::zero::toUtf16;

namespace {

/// For each element in column-major order, its position in row-major order, which the FMI standard uses.
std::vector<std::size_t> columnMajor(std::vector<std::size_t> const& dimensions, std::size_t count) {
    std::vector<std::size_t> result(count);
    std::vector<std::size_t> index(dimensions.size(), 0);
    for (std::size_t& position : result) {
        position = 0;
        for (std::size_t d = 0; d < dimensions.size(); ++d) position = position * dimensions[d] + index[d];
        for (std::size_t d = 0; d < dimensions.size() && ++index[d] == dimensions[d]; ++d) index[d] = 0;
    }
    return result;
}

template <class N>
void fillNumbers(zxArray* array, std::vector<std::string> const& texts) {
    auto const values = zx::valuesForWriting<N>(array);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if constexpr (std::is_floating_point_v<N>) {
            parseReal(texts[i], values[i]);
        } else if constexpr (std::is_same_v<N, bool>) {
            parseBoolean(texts[i], values[i]);
        } else {
            parseInteger(texts[i], values[i]);
        }
    }
}

zx::Array bytesOf(std::string const& hex) {
    zx::Array array(zxCreateNumericMatrix(hex.empty() ? 0 : 1, hex.size() / 2, zxUint8Class));
    auto const bytes = zx::valuesForWriting<std::uint8_t>(array.get());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::from_chars(hex.data() + i * 2, hex.data() + i * 2 + 2, bytes[i], 16);
    }
    return array;
}

struct Numbers {
    zxClassCode code;
    void (*fill)(zxArray*, std::vector<std::string> const&);
};

template <class N>
constexpr Numbers numbersOf() {
    return {zx::classCodeOf<N>(), &fillNumbers<N>};
}

Numbers numbersFor(Type type, bool isVersion3) {
    constexpr Numbers byType[] = {numbersOf<double>(),        numbersOf<float>(),         numbersOf<std::int8_t>(),
                                  numbersOf<std::uint8_t>(),  numbersOf<std::int16_t>(),  numbersOf<std::uint16_t>(),
                                  numbersOf<std::int32_t>(),  numbersOf<std::uint32_t>(), numbersOf<std::int64_t>(),
                                  numbersOf<std::uint64_t>(), numbersOf<bool>()};
    if (type == Type::Enumeration) return isVersion3 ? numbersOf<std::int64_t>() : numbersOf<std::int32_t>();
    return byType[static_cast<int>(type)];
}

}  // namespace

zx::Array startArray(Variable const& variable, bool isVersion3) {
    if (variable.start.empty() || variable.type == Type::Clock) return {};
    std::vector<std::size_t> dimensions;
    for (Dimension const& dimension : variable.dimensions)
        dimensions.push_back(static_cast<std::size_t>(dimension.size));
    if (variable.start.size() != variable.width()) dimensions = {variable.start.size()};
    if (dimensions.empty()) dimensions = {1};
    std::vector<std::string> texts;
    for (std::size_t const position : columnMajor(dimensions, variable.start.size())) {
        texts.push_back(variable.start[position]);
    }
    if (dimensions.size() == 1) dimensions.insert(dimensions.begin(), 1);

    bool const isScalar = variable.dimensions.empty() && texts.size() == 1;
    if (variable.type == Type::String) {
        if (isScalar) return zx::Array(zxCreateString_UTF8(texts.front()));
        zx::Array array(zxCreateStringObjectArray(dimensions));
        for (std::size_t i = 0; i < texts.size(); ++i) zxSetStringElement(array.get(), i, toUtf16(texts[i]));
        return array;
    }
    if (variable.type == Type::Binary) {
        if (isScalar) return bytesOf(texts.front());
        zx::Array array(zxCreateCellArray(dimensions));
        for (std::size_t i = 0; i < texts.size(); ++i) zxSetCell(array.get(), i, bytesOf(texts[i]).release());
        return array;
    }
    Numbers const numbers = numbersFor(variable.type, isVersion3);
    zx::Array array(zxCreateNumericArray(dimensions, numbers.code));
    numbers.fill(array.get(), texts);
    return array;
}

std::string typeNameOf(Variable const& variable) {
    return variable.type == Type::Enumeration ? variable.declaredType : nameOf(variable.type);
}

std::vector<int> dimensionsOf(Variable const& variable) {
    if (variable.dimensions.empty()) return {1};
    std::vector<int> result;
    for (Dimension const& dimension : variable.dimensions) result.push_back(static_cast<int>(dimension.size));
    return result;
}

int builtInIdOf(Type type) noexcept {
    if (type == Type::Boolean) return 8;
    return type <= Type::UInt32 ? static_cast<int>(type) : -1;
}

}  // namespace modelref::fmi
