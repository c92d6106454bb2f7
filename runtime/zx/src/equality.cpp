// Comparing contents, without recursion.
#include "array_data.h"

#include <zx/array.h>

namespace zx {
namespace {

using Pairs = std::vector<std::pair<zxArray const*, zxArray const*>>;

void addPairs(Pairs& pending, std::vector<zxArray*> const& left, std::vector<zxArray*> const& right) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (left[i] != nullptr || right[i] != nullptr) {
            pending.emplace_back(&orEmpty(left[i]), &orEmpty(right[i]));
        }
    }
}

// Whether two arrays of one shape are equal but for their elements that are arrays, which are noted down.
struct Compare {
    zxArray const& right;
    zxNanRule nans;
    Pairs& pending;

    bool operator()(Plain const& plain) const { return plain.equals(std::get<Plain>(right.content), nans); }

    bool operator()(Cells const& cells) const {
        addPairs(pending, cells.elements, std::get<Cells>(right.content).elements);
        return true;
    }

    bool operator()(Structs const& structs) const {
        auto const& others = std::get<Structs>(right.content);
        if (structs.fields().size() != others.fields().size()) {
            return false;
        }
        for (std::size_t number = 0; number < structs.fields().size(); ++number) {
            Structs::Field const& field = structs.fields()[number];
            bool const sameOrder = others.fields()[number].name == field.name;
            std::optional<std::size_t> const other = sameOrder ? number : others.find(field.name);
            if (!other) {
                return false;
            }
            addPairs(pending, field.values, others.fields()[*other].values);
        }
        return true;
    }

    bool operator()(Texts const& texts) const { return texts.elements == std::get<Texts>(right.content).elements; }

    bool operator()(Based const& based) const {
        auto const& other = std::get<Based>(right.content);
        if (based.className != other.className) {
            return false;
        }
        if (right.shape.count() != 0) {
            pending.emplace_back(based.underlying, other.underlying);
        }
        return true;
    }

    bool operator()(Natives const& natives) const { return natives.equals(std::get<Natives>(right.content)); }
};

bool equalButForElements(zxArray const& left, zxArray const& right, zxNanRule nans, Pairs& pending) {
    if (left.shape != right.shape) {
        return false;
    }
    if (left.content.index() != right.content.index()) {
        // Two empty object arrays of the same class are equal, even if they hold different kinds of content.
        return left.shape.count() == 0 && zxIsObject(&left) && zxIsObject(&right) &&
               zxIsClass(&right, zxGetClassName(&left));
    }
    return std::visit(Compare{right, nans, pending}, left.content);
}

}  // namespace
}  // namespace zx

bool zxIsEqual(zxArray const* left, zxArray const* right, zxNanRule nans) {
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    zx::Pairs pending{{left, right}};
    while (!pending.empty()) {
        auto const [one, other] = pending.back();
        pending.pop_back();
        if (!zx::equalButForElements(*one, *other, nans, pending)) {
            return false;
        }
    }
    return true;
}
