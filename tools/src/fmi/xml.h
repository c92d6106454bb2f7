// Parsing of XML that isn't trusted.
#pragma once

#include <pugixml.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace modelref::fmi {

/// A document without a document type, entities of its own, or text that isn't valid in XML and UTF-8; and failures
/// that name a line of it.
class Xml {
public:
    /// Parses the text. Throws Failure unless it is such a document with this root element.
    Xml(std::string file, std::string text, char const* root);

    pugi::xml_node root() const { return document_.first_child(); }
    std::string const& file() const noexcept { return file_; }
    /// "FILE: line 7", for warnings.
    std::string placeOf(pugi::xml_node const& node) const;
    [[noreturn]] void fail(pugi::xml_node const& node, std::string const& reason) const;

    // Attributes. All throw Failure if the text isn't a value of the type.
    std::string required(pugi::xml_node const& node, char const* attribute) const;
    bool flag(pugi::xml_node const& node, char const* attribute, bool otherwise) const;
    std::optional<double> number(pugi::xml_node const& node, char const* attribute) const;
    std::optional<std::uint64_t> natural(pugi::xml_node const& node, char const* attribute) const;
    std::vector<std::uint64_t> naturals(pugi::xml_node const& node, char const* attribute) const;
    /// The only child with this name, or an empty node. Throws Failure if there are several.
    pugi::xml_node child(pugi::xml_node const& node, char const* name) const;

private:
    [[noreturn]] void failAt(std::ptrdiff_t offset, std::string const& reason) const;
    std::size_t lineOf(std::ptrdiff_t offset) const;
    void parse(pugi::xml_document& document, unsigned flags) const;
    void requireSound();
    void requirePlain(pugi::xml_node const& node, std::string_view text) const;

    std::string file_;
    std::string text_;
    std::vector<std::size_t> lineEnds_;
    pugi::xml_document document_;
};

/// The words of a text, separated by white space.
std::vector<std::string> words(std::string_view text);

}  // namespace modelref::fmi
