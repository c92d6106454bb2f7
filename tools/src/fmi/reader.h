// The common part of reading both versions.
#pragma once

#include <limits>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "description.h"
#include "xml.h"

namespace modelref::fmi {

/// The attributes of a declared type, which apply to the variables that name it.
struct DeclaredType {
    Type type = Type::Float64;
    pugi::xml_node attributes;
};

/// Fills a description from a document. Derived classes read what differs between the versions.
class Reader {
public:
    Reader(Xml const& xml, Description& description) : xml_(xml), d_(description) {}
    virtual ~Reader() = default;
    Reader(Reader const&) = delete;
    Reader& operator=(Reader const&) = delete;

    void read();

protected:
    static constexpr std::uint64_t kMostElements = std::numeric_limits<std::int32_t>::max();
    static constexpr std::size_t kMostAttributes = 1'000;  ///< of an interface kind, which are fields of one struct

    virtual void readTypes(pugi::xml_node const& definitions) = 0;
    virtual void readVariable(pugi::xml_node const& node, Variable& variable) = 0;
    /// Called when all variables are known.
    virtual void resolve(pugi::xml_node const& node, Variable& variable) = 0;
    virtual void readStructure(pugi::xml_node const& structure) = 0;
    virtual void enterReference(pugi::xml_node const& node, std::uint64_t reference, std::size_t position) = 0;

    void readHead();
    void readKind(pugi::xml_node const& node);
    void readVariables();
    /// Reads the attributes that both versions have, from the variable's own element or from the one of its type.
    void readCommon(pugi::xml_node const& node, Variable& variable) const;
    void readTyped(pugi::xml_node const& node, Variable& variable) const;
    void readEnumeration(std::string const& name, pugi::xml_node const& node);
    void declare(pugi::xml_node const& node, std::string const& name, DeclaredType type);
    /// The XML element that has an attribute of the variable: its own or, if the attribute is missing, its declared
    /// type's.
    pugi::xml_node holderOf(pugi::xml_node const& node, char const* attribute) const;
    /// Throws Failure unless each listed derivative is a derivative, is listed once, and has a state of its own.
    void checkDerivatives(pugi::xml_node const& node) const;
    void checkStart(pugi::xml_node const& node, Variable const& variable);
    void warn(pugi::xml_node const& node, std::string const& text) {
        d_.warnings.push_back(xml_.placeOf(node) + ": " + text);
    }

    Xml const& xml_;
    Description& d_;
    std::unordered_map<std::string, DeclaredType> types_;
    std::unordered_map<std::string, std::unordered_set<std::int64_t>> items_;  ///< by enumeration
};

/// Each function fills a description from a document of its version.
void readVersion2(Xml const& xml, Description& description);
void readVersion3(Xml const& xml, Description& description);

}  // namespace modelref::fmi
