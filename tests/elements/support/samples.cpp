#include "samples.h"

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>

namespace records {

using namespace quay::zero;

std::vector<meta::Class> schemaClasses() {
    std::vector<meta::Class> result;
    for (meta::Type const& type : *MetaPackageVw_modelref_info::getInstance()->ModelRefInfoRepo->getOwnedTypes()) {
        if (auto const c = meta::Class::cast(type); c.impl() != nullptr) result.push_back(c);
    }
    return result;
}

std::unique_ptr<ModelElement::Builder> builderOf(meta::Type const& type, Model const& model) {
    meta::Class const wanted = meta::Class::cast(type);
    if (!wanted->isAbstract()) return wanted->instantiateBuilder(model);
    for (meta::Class const& c : schemaClasses()) {
        if (!c->isAbstract() && c->conformsTo(wanted)) return c->instantiateBuilder(model);
    }
    return nullptr;
}

ModelElement make(meta::Type const& type, Model const& model, boost::uuids::uuid const& id) {
    return builderOf(type, model)->create(id);
}

ModelElement makeStranger(meta::Type const& type, Model const& model) {
    auto const* const package = MetaPackageVw_modelref_info::getInstance();
    bool const entry = type == package->VarTsUIDEntry;
    return make(entry ? package->RateSpec : package->VarTsUIDEntry, model);
}

}  // namespace records
