#include <quay/zero/text.h>
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

/// The dimensions, which must make as many elements as `count`.
Dimensions dimensionsOf(Node const& node, std::size_t count) {
    Dimensions result;
    std::size_t product = 1;
    for (Node const& item : require(node, "dims", Node::Kind::List).items) {
        std::size_t dimension = 0;
        if (!item.is(Node::Kind::Number) || !parseInteger(item.text, dimension)) refuse("has no proper 'dims'");
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
        Node const* const special = item.escape(kRealKey);
        fits = special != nullptr ? special->is(Node::Kind::Text) && parseSpecialReal(special->text, value)
                                  : item.is(Node::Kind::Number) && parseReal(item.text, value);
    } else {
        fits = item.is(Node::Kind::Number) && parseInteger(item.text, value);
    }
    if (!fits)
        refuse("has " + std::string(describe(item)) + (item.text.empty() ? "" : " " + inQuotes(item.text)) +
               " where a number of its class is wanted");
}

template <class N>
zx::Array parseNumbers(Node const& node, zxClassCode code) {
    auto const& data = require(node, "data", Node::Kind::List).items;
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
    auto const& data = require(node, "data", Node::Kind::List).items;
    zx::Array array(zxCreateNumericArray(dimensionsOf(node, data.size()), zxLogicalClass));
    auto const values = zx::valuesForWriting<bool>(array.get());
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (!data[i].is(Node::Kind::Boolean)) refuse("has " + std::string(describe(data[i])) + " for a truth value");
        values[i] = data[i].truth;
    }
    return array;
}

std::u16string parseText(Node const& node) {
    std::u16string text;
    Node const* const escaped = node.escape(kUtf16Key);
    if (node.is(Node::Kind::Text)) return toUtf16(node.text);
    if (escaped == nullptr || !escaped->is(Node::Kind::Text) || !parseUtf16(escaped->text, text)) {
        refuse("has " + std::string(describe(node)) + " for a text");
    }
    return text;
}

zx::Array parseChars(Node const& node) {
    Node const* const data = node.find("data");
    if (data == nullptr) refuse("has no 'data'");
    std::u16string const text = parseText(*data);
    zx::Array array(zxCreateNumericArray(dimensionsOf(node, text.size()), zxCharClass));
    auto const units = zx::valuesForWriting<char16_t>(array.get());
    std::copy(text.begin(), text.end(), units.begin());
    return array;
}

zx::Array parseCells(Node const& node) {
    auto const& data = require(node, "data", Node::Kind::List).items;
    zx::Array array(zxCreateCellArray(dimensionsOf(node, data.size())));
    for (std::size_t i = 0; i < data.size(); ++i) zxSetCell(array.get(), i, parseArray(data[i]));
    return array;
}

zx::Array parseStructs(Node const& node) {
    auto const& data = require(node, "data", Node::Kind::List).items;
    auto const& fields = require(node, "fields", Node::Kind::List).items;
    zx::Array array(zxCreateStructArray(dimensionsOf(node, data.size())));
    for (Node const& name : fields) {
        std::string bytes = name.text;
        if (Node const* const escaped = name.escape(kBytesKey)) {
            if (!parseBytes(escaped->text, bytes)) refuse("has no proper 'fields'");
        } else if (!name.is(Node::Kind::Text)) {
            refuse("has no proper 'fields'");
        }
        if (zxFindField(array.get(), bytes)) refuse("has a field " + inQuotes(bytes) + " twice");
        zxAddField(array.get(), bytes);
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
    auto const& data = require(node, "data", Node::Kind::List).items;
    zx::Array array(zxCreateStringObjectArray(dimensionsOf(node, data.size())));
    for (std::size_t i = 0; i < data.size(); ++i) zxSetStringElement(array.get(), i, parseText(data[i]));
    return array;
}

zx::Array parseObjects(Node const& node, Node const& object) {
    std::string name = object.text;
    if (Node const* const escaped = object.escape(kBytesKey)) {
        if (!parseBytes(escaped->text, name)) refuse("has no proper 'object'");
    } else if (!object.is(Node::Kind::Text)) {
        refuse("has no proper 'object'");
    }
    Node const* const data = node.find("data");
    if (data == nullptr) refuse("has no 'data'");
    zx::Array array;
    if (data->is(Node::Kind::Null)) {
        array.reset(zxCreateEmptyObject(name));
    } else {
        zx::Array underlying(parseArray(*data));
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
