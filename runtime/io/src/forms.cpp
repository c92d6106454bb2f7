#include "forms.h"

#include <keel/exception.h>
#include <keel/text.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/text.h>

#include <algorithm>

#include "failures.h"
#include "scalars.h"

namespace quay::zero::io {

namespace {

ValueForm::Kind kindOf(meta::Type const& type) {
    using meta::StandardTypes;
    using Kind = ValueForm::Kind;
    if (type == StandardTypes::booleanMeta) return Kind::Boolean;
    if (type == StandardTypes::integerMeta) return Kind::Integer;
    if (type == StandardTypes::unlimitedNaturalMeta) return Kind::UnlimitedNatural;
    if (type == StandardTypes::uinteger64Meta) return Kind::UInteger64;
    if (type == StandardTypes::realMeta) return Kind::Real;
    if (type == StandardTypes::stringMeta) return Kind::String;
    if (type == StandardTypes::stdstringMeta) return Kind::StdString;
    if (type == StandardTypes::zxArrayMeta) return Kind::Array;
    if (type->isEnum()) return Kind::Enumeration;
    if (meta::DataType::cast(type)) return Kind::Structure;
    return meta::Class::cast(type) ? Kind::Element : Kind::Unknown;
}

void sortByName(std::vector<FieldForm>& fields) {
    std::sort(fields.begin(), fields.end(), [](FieldForm const& a, FieldForm const& b) { return a.name < b.name; });
}

ValueForm valueForm(meta::Type const& type) {
    auto const& serializers = *meta::PropertySerializerRegistry::getInstance();
    ValueForm form;
    form.type = type;
    form.kind = kindOf(type);
    form.serializer = serializers.getPropertySerializer(type);
    form.byNumber = serializers.getPropertySerializer(type, "ID");
    if (form.kind == ValueForm::Kind::Structure) {
        form.structure = serializers.getDatatypeSerializer(type);
        for (meta::Property const& field : type->getProperties()) form.fields.push_back(formOf(field));
        sortByName(form.fields);
    }
    bool const isUsable = form.kind == ValueForm::Kind::Structure     ? form.structure != nullptr
                          : form.kind == ValueForm::Kind::Enumeration ? form.serializer && form.byNumber
                                                                      : true;
    if (!isUsable) form.kind = ValueForm::Kind::Unknown;
    return form;
}

}  // namespace

FieldForm formOf(meta::Property const& property) {
    ValueFlags const flags = property->getFlags();
    FieldForm form{property, keel::toUtf8(property->getName()), valueForm(property->getType())};
    form.isSeveral = flags != ValueFlags::Optional && flags != ValueFlags::One;
    form.isSet = flags == ValueFlags::Set;
    appendKey(form.key, form.name, true);
    return form;
}

FieldForm const* ClassForm::find(std::string_view property) const noexcept {
    auto const found = std::lower_bound(properties.begin(), properties.end(), property,
                                        [](FieldForm const& f, std::string_view name) { return f.name < name; });
    return found == properties.end() || found->name != property ? nullptr : &*found;
}

ClassForm* Forms::find(std::string_view qualifiedName) {
    std::string const name(qualifiedName);
    auto const known = byName_.find(name);
    if (known != byName_.end()) return known->second.get();
    meta::Class type;
    try {
        type = meta::Class::cast(meta::MetaRegistry::getInstance()->getType(toUtf16(name)));
    } catch (keel::core::except::Error const&) {
        return nullptr;
    }
    return type ? &of(type) : nullptr;
}

ClassForm& Forms::of(meta::Class const& type) {
    ClassForm*& place = byType_[type.impl()];
    if (place != nullptr) return *place;
    auto form = std::make_unique<ClassForm>();
    form->type = type;
    form->name = keel::toUtf8(type->getQualifiedName());
    for (meta::Property const& property : type->getProperties()) {
        if (property->isDerived() || property->descriptor() == nullptr) continue;
        form->properties.push_back(formOf(property));
    }
    sortByName(form->properties);
    place = form.get();
    std::string const name = form->name;
    byName_[name] = std::move(form);
    return *place;
}

std::string quotedName(meta::Type const& type) { return inQuotes(keel::toUtf8(type->getQualifiedName())); }

void refuseType(ValueForm const& form) { throw Refused("values of type " + quotedName(form.type) + " have no text"); }

std::string schemaOf(meta::Class const& type) {
    meta::Package const package = type->getOwningPackage();
    return package ? keel::toUtf8(package->getUri()) : std::string();
}

}  // namespace quay::zero::io
