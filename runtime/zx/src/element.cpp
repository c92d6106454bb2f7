// Taking one element out of an array.
#include "elements.h"

#include <zx/array.h>

#include <cstring>

namespace zx {
namespace {

// Makes a 1 by 1 array with one element of a content, by kind of content.
struct Element {
    std::size_t index;

    Array operator()(Plain const& plain) const {
        Array one = make<Plain>(Shape(1, 1), plain.classCode(), plain.isComplex(), 1U);
        std::size_t const size = plain.elementSize();
        std::memcpy(std::get<Plain>(one->content).bytes(), plain.bytes() + index * size, size);
        return one;
    }

    Array operator()(Cells const& cells) const {
        Array one = make<Cells>(Shape(1, 1), 1U);
        put(*one, std::get<Cells>(one->content).elements[0], zxDuplicateArray(cells.elements[index]));
        return one;
    }

    Array operator()(Structs const& structs) const {
        Array one = make<Structs>(Shape(1, 1));
        for (Structs::Field const& field : structs.fields()) {
            Structs::Field& taken = std::get<Structs>(one->content).add(field.name, 1);
            put(*one, taken.values[0], zxDuplicateArray(field.values[index]));
        }
        return one;
    }

    Array operator()(Texts const& texts) const {
        Array one = make<Texts>(Shape(1, 1), 1U);
        std::get<Texts>(one->content).elements[0] = texts.elements[index];
        return one;
    }

    Array operator()(Based const& based) const {
        Array one = make<Based>(Shape(1, 1), based.className);
        put(*one, std::get<Based>(one->content).underlying, zxDuplicateElement(based.underlying, index));
        return one;
    }

    Array operator()(Natives const& natives) const {
        Array one = make<Natives>(Shape(1, 1), natives.className(), natives.operations(), 1U);
        void* const native = natives.at(index);
        std::get<Natives>(one->content).set(0, native != nullptr ? natives.operations().copy(native) : nullptr);
        return one;
    }
};

}  // namespace
}  // namespace zx

zxArray* zxDuplicateElement(zxArray const* array, std::size_t index) {
    zx::checkIndex(zx::notNull(array), index);
    return std::visit(zx::Element{index}, array->content).release();
}
