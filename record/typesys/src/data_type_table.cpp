#include <typesys/data_type_table.h>
#include <typesys/diagnostic.h>

#include "string_expression.h"

namespace VWTypeSys {
namespace {

[[noreturn]] void fail(std::string_view id, std::string_view argument) {
    throw DataTypeException(DataTypeMessage(id, {argument}));
}

std::string_view prefixOf(Override by) {
    switch (by) {
        case Override::Double:
            return "dto_double_";
        case Override::Single:
            return "dto_single_";
        case Override::ScaledDouble:
            return "dto_scaled_";
    }
    return {};
}

std::size_t positionOf(int id) { return static_cast<std::size_t>(std::int64_t{id} + 1); }

std::string textOf(fxpDataTypeProp const& type) {
    return fxpDataTypeToConstructorString(type, FxpDT::baseCtorPrefer::Constructor,
                                          FxpDT::scalingRepPrefer::FractionAndExponent);
}

}  // namespace

DataTypeTable::DataTypeTable() {
    types_.push_back(DataType("auto", Category::Inherited));
    for (fxpBuiltIn const& builtIn : fxpBuiltIns()) {
        DataType type(builtIn.name, Category::BuiltIn);
        type.number_ = builtIn.type;
        append(std::move(type));
    }
    append(DataType("pointer", Category::BuiltIn));
    append(DataType("event", Category::BuiltIn));
}

bool DataTypeTable::contains(int id) const noexcept { return id >= inheritedId && positionOf(id) < types_.size(); }

DataType const& DataTypeTable::get(int id) const {
    if (!contains(id)) fail("NoSuchId", std::to_string(id));
    return types_[positionOf(id)];
}

std::optional<int> DataTypeTable::find(std::string_view name) const {
    auto const found = ids_.find(name);
    if (found == ids_.end()) return std::nullopt;
    return found->second;
}

int DataTypeTable::add(std::string_view name, Category category) {
    return append(DataType(std::string(name), category));
}

int DataTypeTable::append(DataType type) {
    if (type.name_.empty() || type.name_.find('\0') != std::string::npos) fail("InvalidName", type.name_);
    if (type.name_ == types_.front().name_ || ids_.contains(type.name_)) fail("NameInUse", type.name_);
    int const id = static_cast<int>(types_.size()) - 1;
    DataType const& added = types_.emplace_back(std::move(type));
    try {
        ids_.emplace(added.name_, id);
    } catch (...) {
        types_.pop_back();
        throw;
    }
    return id;
}

int DataTypeTable::addAlias(std::string_view name, int of) {
    DataType alias = get(of);
    alias.name_ = name;
    alias.aliasOf_ = of;
    alias.prefixLength_ = 0;
    return append(std::move(alias));
}

int DataTypeTable::addString(std::string_view expression) {
    if (!isStringExpression(expression)) fail("InvalidStringType", expression);
    DataType type(std::string(expression), Category::String);
    type.expression_ = expression;
    return append(std::move(type));
}

int DataTypeTable::addFixedPoint(fxpDataTypeProp const& type) {
    DataType added(textOf(type), Category::FixedPoint);
    added.number_ = type;
    return append(std::move(added));
}

int DataTypeTable::addOverride(int id, Override by) {
    DataType type = get(id);
    bool const isNamed = type.isAlias() || (type.category_ != Category::Inherited && !type.number_ &&
                                            type.category_ != Category::BuiltIn && type.category_ != Category::String);
    if (!isNamed || type.prefixLength_ != 0) fail("CannotOverride", type.name_);
    auto const prefix = prefixOf(by);
    type.name_.insert(0, prefix);
    type.prefixLength_ = prefix.size();
    return append(std::move(type));
}

int DataTypeTable::addCopy(DataTypeTable const& source, int id) {
    DataType type = source.get(id);
    if (id == inheritedId) return inheritedId;
    if (type.aliasOf_) type.aliasOf_ = addCopy(source, *type.aliasOf_);
    if (auto const found = find(type.name_)) {
        DataType const& own = get(*found);
        bool const isSame = own.category_ == type.category_ && own.aliasOf_ == type.aliasOf_ &&
                            own.number_ == type.number_ && own.expression_ == type.expression_;
        if (!isSame) fail("NameInUse", type.name_);
        return *found;
    }
    return append(std::move(type));
}

int ImageDataType::ImageNameToDataTypeId(std::string const& name, DataTypeTable* table) {
    auto const id = table != nullptr ? table->find(name) : std::nullopt;
    return id && DtIsImageType(table, *id) ? *id : notRegistered;
}

}  // namespace VWTypeSys

bool DtIsDataTypeIdValid(VWTypeSys::DataTypeTable const* table, int id) {
    return table != nullptr && table->contains(id);
}

bool DtIsAliasType(VWTypeSys::DataTypeTable const* table, int id) {
    return DtIsDataTypeIdValid(table, id) && table->get(id).isAlias();
}

bool DtIsImageType(VWTypeSys::DataTypeTable const* table, int id) {
    return DtIsDataTypeIdValid(table, id) && table->get(id).category() == VWTypeSys::Category::Image;
}

std::string DtGetStringDataTypeExpression(VWTypeSys::DataTypeTable const* table, int id) {
    return DtIsDataTypeIdValid(table, id) ? table->get(id).expression() : std::string();
}
