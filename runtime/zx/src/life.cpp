// Copying and releasing, without recursion: arrays can be nested as deep as memory goes.
#include "array_data.h"

#include <zx/life.h>

#include <cassert>

namespace zx {
namespace {

// A copy whose elements that are arrays are still to be set.
Array copyWithoutElements(zxArray const& source) {
    struct Copy {
        Shape const& shape;

        Array operator()(Plain const& plain) const { return Array(create<Plain>(shape, plain)); }
        Array operator()(Cells const& cells) const { return Array(create<Cells>(shape, cells.elements.size())); }
        Array operator()(Structs const& structs) const {
            Array copy(create<Structs>(shape));
            for (Structs::Field const& field : structs.fields()) {
                std::get<Structs>(copy->content).add(field.name, shape.count());
            }
            return copy;
        }
        Array operator()(Texts const& texts) const { return Array(create<Texts>(shape, texts)); }
        Array operator()(Based const& based) const { return Array(create<Based>(shape, based.className)); }
        Array operator()(Natives const& natives) const { return Array(create<Natives>(shape, natives)); }
    };
    return std::visit(Copy{source.shape}, source.content);
}

struct Pending {
    zxArray const* source;
    zxArray* owner;
    zxArray** place;
};

// Notes which elements of `source` are to be copied into `copy`, which has the same structure.
void addElements(std::vector<Pending>& pending, zxArray const& source, zxArray& copy) {
    std::size_t const first = pending.size();
    forEachElement(copy, [&](zxArray*& place) { pending.push_back({nullptr, &copy, &place}); });
    std::size_t next = first;
    forEachElement(const_cast<zxArray&>(source), [&](zxArray* element) { pending[next++].source = element; });
}

}  // namespace
}  // namespace zx

zxArray* zxDuplicateArray(zxArray const* array) {
    if (array == nullptr) {
        return nullptr;
    }
    zx::Array copy = zx::copyWithoutElements(*array);
    std::vector<zx::Pending> pending;
    zx::addElements(pending, *array, *copy);
    while (!pending.empty()) {
        zx::Pending const next = pending.back();
        pending.pop_back();
        if (next.source != nullptr) {
            *next.place = zx::copyWithoutElements(*next.source).release();
            (*next.place)->parent = next.owner;
            zx::addElements(pending, *next.source, **next.place);
        }
    }
    return copy.release();
}

void zxDestroyArray(zxArray* array) noexcept {
    assert(array == nullptr || array->parent == nullptr);
    // Those still to be released are chained by their parent pointers, so that nothing is allocated.
    zxArray* chain = array;
    while (chain != nullptr) {
        zxArray* const next = chain;
        chain = std::exchange(next->parent, nullptr);
        zx::forEachElement(*next, [&](zxArray*& element) {
            if (element != nullptr) {
                element->parent = chain;
                chain = std::exchange(element, nullptr);
            }
        });
        delete next;
    }
}
