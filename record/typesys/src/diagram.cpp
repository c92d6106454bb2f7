#include <typesys/diagram.h>

#include "report.h"
#include "string_expression.h"

namespace VWTypeSys {

BlockOwner::~BlockOwner() = default;

vwsvDiagnosticImpl* Diagram::registerByName(VWBlock* /*block*/, char const* name, int* id) {
    return reporting([&] {
        auto found = table_->find(name);
        if (!found && dictionary_ != nullptr) {
            if (auto const known = dictionary_->find(name)) found = table_->addCopy(*dictionary_, *known);
        }
        if (!found) throw DataTypeException(DataTypeMessage("NoSuchType", {name}));
        *id = *found;
    });
}

vwsvDiagnosticImpl* Diagram::resolveWithOptions(VWBlock* /*block*/, char const* expression, char const* parameter,
                                                ResolveOptions const& /*options*/, int* id) {
    return reporting([&] {
        if (!isStringExpression(expression)) {
            throw DataTypeException(DataTypeMessage("InvalidStringType", {expression, parameter}));
        }
        auto const found = table_->find(expression);
        if (found && table_->get(*found).category() == Category::String &&
            table_->get(*found).expression() == expression) {
            *id = *found;
        } else {
            *id = table_->addString(expression);
        }
    });
}

}  // namespace VWTypeSys
