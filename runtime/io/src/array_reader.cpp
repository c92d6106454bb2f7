// Reads arrays from the JSON that array_writer.cpp describes.
#include <zx/zx.h>

#include <limits>

#include "failures.h"
#include "numeric_class.h"
#include "scalars.h"
#include "values.h"

namespace quay::zero::io {

namespace {

using Dimensions = std::vector<std::size_t>;

[[noreturn]] void refuse(std::string const& reason) { throw Refused("the array " + reason); }

Node const& require(Node const& node, std::string_view key, Node::Kind kind) {
    Node const* const found = node.find(key);
    if (found == nullptr || !found->is(kind)) refuse("has no proper " + inQuotes(key));
    return *found;
}

/// The node under "data", of any kind.
Node const& requireData(Node const& node) {
    Node const* const data = node.find("data");
    if (data == nullptr) refuse("has no 'data'");
    return *data;
}

/// The items under "data", which must be a list.
std::vector<Node> const& itemsOf(Node const& node) { return require(node, "data", Node::Kind::List).items; }

/// The dimensions of an array. Refused unless they are those of `count` elements.
Dimensions dimensionsOf(Node const& node, std::size_t count) {
    Dimensions result;
    std::size_t product = 1;
    for (Node const& item : require(node, "dims", Node::Kind::List).items) {
        std::size_t dimension = 0;
        if (!parseInteger(item, dimension)) refuse("has no proper 'dims'");
        if (dimension != 0 && product > std::numeric_limits<std::size_t>::max() / dimension) refuse("is too large");
        product *= dimension;
        result.push_back(dimension);
    }
    if (result.size() < 2) refuse("has fewer than two dimensions");
    if (product != count) {
        refuse("has dimensions for " + std::to_string(product) + " elements and " + std::to_string(count) +
               " elements");
    }
    return result;
}

template <class N>
void parseNumber(Node const& item, N& value) {
    bool fits = false;
    if constexpr (std::is_floating_point_v<N>) {
        fits = parseReal(item, value);
    } else {
        fits = parseInteger(item, value);
    }
    if (!fits)
        refuse("has " + std::string(describe(item)) + (item.text.empty() ? "" : " " + inQuotes(item.text)) +
               " where a number of its class is wanted");
}

template <class N>
zx::Array parseNumbers(Node const& node, zxClassCode code) {
    auto const& data = itemsOf(node);
    Node const* const imaginary = node.find("imag");
    if (imaginary != nullptr && (!imaginary->is(Node::Kind::List) || imaginary->items.size() != data.size())) {
        refuse("has other numbers of real and imaginary parts");
    }
    zx::Array array(zxCreateNumericArray(dimensionsOf(node, data.size()), code, imaginary != nullptr ? 1 : 0));
    auto* const parts = static_cast<N*>(zxGetDataForWriting(array.get()));
    std::size_t const step = imaginary != nullptr ? 2 : 1;
    for (std::size_t i = 0; i < data.size(); ++i) {
        parseNumber(data[i], parts[i * step]);
        if (imaginary != nullptr) parseNumber(imaginary->items[i], parts[i * 2 + 1]);
    }
    return array;
}

zx::Array parseLogicals(Node const& node) {
    auto const& data = itemsOf(node);
    zx::Array array(zxCreateNumericArray(dimensionsOf(node, data.size()), zxLogicalClass));
    auto const values = zx::valuesForWriting<bool>(array.get());
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (!data[i].is(Node::Kind::Boolean)) refuse("has " + std::string(describe(data[i])) + " for a truth value");
        values[i] = data[i].truth;
    }
    return array;
}

std::u16string requireText(Node const& node) {
    std::u16string text;
    if (!parseText(node, text)) refuse("has " + std::string(describe(node)) + " for a text");
    return text;
}

/// The name of a field or a class, which stands under `key`.
std::string requireName(Node const& node, std::string_view key) {
    std::string name;
    if (!parseBytes(node, name)) refuse("has no proper " + inQuotes(key));
    return name;
}

zx::Array parseChars(Node const& node) {
    std::u16string const text = requireText(requireData(node));
    zx::Array array(zxCreateNumericArray(dimensionsOf(node, text.size()), zxCharClass));
    auto const units = zx::valuesForWriting<char16_t>(array.get());
    std::copy(text.begin(), text.end(), units.begin());
    return array;
}

zx::Array parseCells(Node const& node) {
    auto const& data = itemsOf(node);
    zx::Array array(zxCreateCellArray(dimensionsOf(node, data.size())));
    for (std::size_t i = 0; i < data.size(); ++i) zxSetCell(array.get(), i, parseArray(data[i]));
    return array;
}

zx::Array parseStructs(Node const& node) {
    auto const& data = itemsOf(node);
    auto const& fields = require(node, "fields", Node::Kind::List).items;
    zx::Array array(zxCreateStructArray(dimensionsOf(node, data.size())));
    for (Node const& name : fields) {
        std::string const field = requireName(name, "fields");
        if (zxFindField(array.get(), field)) refuse("has a field " + inQuotes(field) + " twice");
        zxAddField(array.get(), field);
    }
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (!data[i].is(Node::Kind::List) || data[i].items.size() != fields.size()) {
            refuse("has a struct without a value for each field");
        }
        for (std::size_t f = 0; f < fields.size(); ++f) {
            zxSetFieldByNumber(array.get(), i, f, parseArray(data[i].items[f]));
        }
    }
    return array;
}

zx::Array parseStrings(Node const& node) {
    auto const& data = itemsOf(node);
    zx::Array array(zxCreateStringObjectArray(dimensionsOf(node, data.size())));
    for (std::size_t i = 0; i < data.size(); ++i) zxSetStringElement(array.get(), i, requireText(data[i]));
    return array;
}

zx::Array parseObjects(Node const& node, Node const& object) {
    std::string const name = requireName(object, "object");
    Node const& data = requireData(node);
    zx::Array array;
    if (data.is(Node::Kind::Null)) {
        array.reset(zxCreateEmptyObject(name));
    } else {
        zx::Array underlying(parseArray(data));
        array.reset(zxCreateObjectFromUnderlying(name, underlying.get()));
        static_cast<void>(underlying.release());
    }
    zxSetDimensions(array.get(), dimensionsOf(node, zxGetNumberOfElements(array.get())));
    return array;
}

void requireKnownKeys(Node const& node) {
    for (std::string const& key : node.keys) {
        bool const known =
            key == "class" || key == "object" || key == "data" || key == "dims" || key == "imag" || key == "fields";
        if (!known) refuse("has an unknown " + inQuotes(key));
    }
}

}  // namespace

zxArray* parseArray(Node const& node) {
    if (!node.is(Node::Kind::Object)) throw Refused(std::string("expected an array's object, found ") + describe(node));
    requireKnownKeys(node);
    if (Node const* const object = node.find("object")) return parseObjects(node, *object).release();
    std::string const& name = require(node, "class", Node::Kind::Text).text;
    zx::Array array;
    zxClassCode const code = numberClass(name);
    bool const isNumber = withNumberType(code, [&]<class N>(N) { array = parseNumbers<N>(node, code); });
    if (isNumber) return array.release();
    if (name == "logical") return parseLogicals(node).release();
    if (name == "char") return parseChars(node).release();
    if (name == "cell") return parseCells(node).release();
    if (name == "struct") return parseStructs(node).release();
    if (name == "string") return parseStrings(node).release();
    refuse("has the unknown class " + inQuotes(name));
}

}  // namespace quay::zero::io
