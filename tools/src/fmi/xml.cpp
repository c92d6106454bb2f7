#include "xml.h"

#include <keel/text.h>
#include <quay/zero/text.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <set>

#include "../failure.h"
#include "numbers.h"

namespace modelref::fmi {

namespace {

// Parse as a fragment: otherwise the parser ignores text outside the root.
constexpr unsigned kFlags = pugi::parse_default | pugi::parse_doctype | pugi::parse_fragment;

constexpr char kNoCharacter[] = "this isn't XML: there is a character that XML doesn't have";

bool isCharacter(std::uint32_t code) {
    if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
    return code < 0xd800 || (code > 0xdfff && code < 0xfffe) || (code > 0xffff && code < 0x110000);
}

/// The length of a predefined or numeric reference, such as "&amp;" or "&#65;", at the beginning of a text; 0 if there
/// is none.
std::size_t referenceLength(std::string_view text) {
    for (char const* name : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"}) {
        if (text.starts_with(name)) return std::strlen(name);
    }
    if (!text.starts_with("&#")) return 0;
    bool const isHex = text.substr(2).starts_with('x');
    std::size_t const begin = isHex ? 3 : 2;
    std::uint32_t code = 0;
    auto const [end, error] = std::from_chars(text.data() + begin, text.data() + text.size(), code, isHex ? 16 : 10);
    auto const length = static_cast<std::size_t>(end - text.data());
    bool const isWhole = error == std::errc() && length < text.size() && *end == ';';
    return isWhole && isCharacter(code) ? length + 1 : 0;
}

}  // namespace

Xml::Xml(std::string file, std::string text, char const* root) : file_(std::move(file)), text_(std::move(text)) {
    for (std::size_t i = 0; i < text_.size(); ++i) {
        if (text_[i] == '\n') lineEnds_.push_back(i);
    }
    // First parse without replacing references, to check which there are.
    parse(document_, kFlags & ~pugi::parse_escapes);
    requireSound();
    parse(document_, kFlags);
    if (std::strcmp(this->root().name(), root) != 0) {
        fail(this->root(), "expected a <" + std::string(root) + ">, found <" + this->root().name() + ">");
    }
}

void Xml::parse(pugi::xml_document& document, unsigned flags) const {
    pugi::xml_parse_result const result = document.load_buffer(text_.data(), text_.size(), flags);
    if (!result) failAt(result.offset, std::string("this isn't XML: ") + result.description());
    // The parser stops at a zero byte; in encodings of wider units most characters contain one.
    bool const isOfBytes = result.encoding == pugi::encoding_utf8 || result.encoding == pugi::encoding_latin1;
    std::size_t const zero = isOfBytes ? text_.find('\0') : std::string::npos;
    if (zero != std::string::npos) failAt(static_cast<std::ptrdiff_t>(zero), kNoCharacter);
}

/// Walks the document without recursion, since its depth isn't limited.
void Xml::requireSound() {
    std::size_t elements = 0;
    for (pugi::xml_node const node : document_.children()) {
        if (node.type() == pugi::node_doctype) fail(node, "document types and entities aren't read");
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
            fail(node, "this isn't XML: there is text outside of the root element");
        }
        if (node.type() == pugi::node_element && ++elements > 1) fail(node, "there is a second root element");
    }
    if (elements == 0) failAt(static_cast<std::ptrdiff_t>(text_.size()), "this isn't XML: there is no element");
    struct Walker final : pugi::xml_tree_walker {
        explicit Walker(Xml const& x) : xml(x) {}
        bool for_each(pugi::xml_node& node) override {
            if (node.type() == pugi::node_doctype) xml.fail(node, "document types and entities aren't read");
            xml.requirePlain(node, node.value());
            if (node.type() == pugi::node_pcdata && std::strstr(node.value(), "]]>") != nullptr) {
                xml.fail(node, "this isn't XML: there is a ']]>' in a text");
            }
            std::set<std::string_view> names;
            for (pugi::xml_attribute const attribute : node.attributes()) {
                if (!names.insert(attribute.name()).second) {
                    xml.fail(node, "the attribute " + inQuotes(attribute.name()) + " stands twice");
                }
                if (std::strchr(attribute.value(), '<') != nullptr) {
                    xml.fail(node, "this isn't XML: there is a '<' in the attribute " + inQuotes(attribute.name()));
                }
                xml.requirePlain(node, attribute.value());
            }
            return true;
        }
        Xml const& xml;
    };
    Walker walker(*this);
    document_.traverse(walker);
}

void Xml::requirePlain(pugi::xml_node const& node, std::string_view text) const {
    bool const isCharacterData = node.type() == pugi::node_cdata || node.type() == pugi::node_comment;
    for (std::size_t at = text.find('&'); !isCharacterData && at != std::string_view::npos;
         at = text.find('&', at + 1)) {
        if (referenceLength(text.substr(at)) == 0) {
            fail(node, "the reference " + inQuotes(std::string(text.substr(at, 20))) + " isn't one of XML's own");
        }
    }
    if (std::none_of(text.begin(), text.end(), [](char c) { return static_cast<signed char>(c) < 0x20; })) return;
    std::u16string const wide = quay::zero::toUtf16(text);
    if (keel::toUtf8(wide) != text) fail(node, "there is a text that isn't UTF-8");
    bool const isXml =
        std::all_of(wide.begin(), wide.end(), [](char16_t c) { return (c >= 0xd800 && c < 0xe000) || isCharacter(c); });
    if (!isXml) fail(node, kNoCharacter);
}

std::size_t Xml::lineOf(std::ptrdiff_t offset) const {
    // The offset is correct for UTF-8; for another encoding it may be off by a few characters.
    auto const place = static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0));
    auto const line = std::lower_bound(lineEnds_.begin(), lineEnds_.end(), place);
    return 1 + static_cast<std::size_t>(line - lineEnds_.begin());
}

std::string Xml::placeOf(pugi::xml_node const& node) const {
    return file_ + ": line " + std::to_string(lineOf(node.offset_debug()));
}

void Xml::fail(pugi::xml_node const& node, std::string const& reason) const { failAt(node.offset_debug(), reason); }

void Xml::failAt(std::ptrdiff_t offset, std::string const& reason) const {
    throw Failure(file_ + ": line " + std::to_string(lineOf(offset)) + ": " + reason);
}

// --- Attributes -----------------------------------------------------------------------------------------------------

std::string Xml::required(pugi::xml_node const& node, char const* attribute) const {
    std::string value = node.attribute(attribute).value();
    if (value.empty()) fail(node, std::string("<") + node.name() + "> has no " + attribute);
    return value;
}

bool Xml::flag(pugi::xml_node const& node, char const* attribute, bool otherwise) const {
    pugi::xml_attribute const found = node.attribute(attribute);
    if (!found) return otherwise;
    bool value = false;
    if (!parseBoolean(found.value(), value)) {
        fail(node, std::string(attribute) + " is " + inQuotes(found.value()) + ", which is neither true nor false");
    }
    return value;
}

std::optional<double> Xml::number(pugi::xml_node const& node, char const* attribute) const {
    pugi::xml_attribute const found = node.attribute(attribute);
    if (!found) return {};
    double value = 0;
    if (!parseReal(found.value(), value)) {
        fail(node, std::string(attribute) + " is " + inQuotes(found.value()) + ", which is no number");
    }
    return value;
}

std::optional<std::uint64_t> Xml::natural(pugi::xml_node const& node, char const* attribute) const {
    pugi::xml_attribute const found = node.attribute(attribute);
    if (!found) return {};
    std::uint64_t value = 0;
    if (!parseInteger(found.value(), value)) {
        fail(node, std::string(attribute) + " is " + inQuotes(found.value()) + ", which is no natural number");
    }
    return value;
}

std::vector<std::uint64_t> Xml::naturals(pugi::xml_node const& node, char const* attribute) const {
    std::vector<std::uint64_t> result;
    for (std::string const& word : words(node.attribute(attribute).value())) {
        std::uint64_t value = 0;
        if (!parseInteger(word, value)) {
            fail(node, std::string(attribute) + " has " + inQuotes(word) + ", which is no natural number");
        }
        result.push_back(value);
    }
    return result;
}

pugi::xml_node Xml::child(pugi::xml_node const& node, char const* name) const {
    pugi::xml_node const found = node.child(name);
    if (pugi::xml_node const second = found.next_sibling(name)) {
        fail(second, std::string("there is a second <") + name + ">");
    }
    return found;
}

std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> result;
    constexpr char kSpace[] = " \t\r\n";
    for (std::size_t begin = text.find_first_not_of(kSpace); begin != std::string_view::npos;) {
        std::size_t const end = std::min(text.find_first_of(kSpace, begin), text.size());
        result.emplace_back(text.substr(begin, end - begin));
        begin = text.find_first_not_of(kSpace, end);
    }
    return result;
}

}  // namespace modelref::fmi
