// What reading the two versions has in common.
#pragma once

#include <limits>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "description.h"
#include "xml.h"

namespace modelref::fmi {

/// What a declared type says of the variables that name it.
struct DeclaredType {
    Type type = Type::Float64;
    pugi::xml_node attributes;
};

/// Fills a description from a document. A version says how variables, types and the model's structure are told.
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
    /// After all variables are known.
    virtual void resolve(pugi::xml_node const& node, Variable& variable) = 0;
    virtual void readStructure(pugi::xml_node const& structure) = 0;
    virtual void enterReference(pugi::xml_node const& node, std::uint64_t reference, std::size_t position) = 0;

    void readHead();
    void readKind(pugi::xml_node const& node);
    void readVariables();
    /// The attributes that both versions have, on the variable's own element or on the one of its type.
    void readCommon(pugi::xml_node const& node, Variable& variable) const;
    void readTyped(pugi::xml_node const& node, Variable& variable) const;
    void readEnumeration(std::string const& name, pugi::xml_node const& node);
    void declare(pugi::xml_node const& node, std::string const& name, DeclaredType type);
    /// An attribute of the variable or, where it is missing, of its declared type.
    pugi::xml_node holderOf(pugi::xml_node const& node, char const* attribute) const;
    /// Failure unless each derivative is one, is listed once, and is that of a state of its own.
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

/// Each makes a description of its version.
void readVersion2(Xml const& xml, Description& description);
void readVersion3(Xml const& xml, Description& description);

}  // namespace modelref::fmi
