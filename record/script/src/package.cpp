#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>

#include <ordo/class.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/mi/docs.h>
#include <quay/zero/mi/registration.h>

#include <span>

#include "marshalers.h"
#include "script_package.h"

namespace ModelRefInfoRepo::mi {

// Written by the schema compiler.
std::span<quay::zero::mi::TypeDocs const> scriptDocs();

}  // namespace ModelRefInfoRepo::mi

namespace mi {

namespace {

/// Classes of other packages that this one's refer to: asking for them sees to it that they are defined first.
constexpr char const* kNeeded[] = {"vwtp.mm.core.BlockSource", "vw.quayzero.treeNode.BlockAttributes",
                                   "quay.zero.meta.Argument", "vw.type_info.BusElement", "vwexec.sto.BuiltInDTypeId"};

/// The packages that the record builds on know no scripts, so their classes are registered from here, unless somebody
/// did.
void registerForeignClasses() {
    auto const& registry = *quay::zero::meta::MetaRegistry::getInstance();
    for (char16_t const* uri :
         {u"quay0://quay/quay0/vwtp_mm/rel7_202106150630", u"quay0://quay/quay0/mm_tree_node_datamodel/rel4",
          u"quay0://quay/quay0/ci/19700101", u"quay0://quay/quay0/vwexec_mm_sto/rel7_202103041117"}) {
        if (auto const root = registry.findRootPackage(uri)) quay::zero::mi::registerSchema(root);
    }
}

}  // namespace

void ModelRefInfoRepoPackage::registerPackage() {
    auto const root = MetaPackageVw_modelref_info::getInstance()->rootPackage;
    ModelRefInfoRepo::mi::installMarshalers();
    quay::zero::mi::registerDocs(ModelRefInfoRepo::mi::scriptDocs());
    quay::zero::mi::registerRuntimeClasses();
    registerForeignClasses();
    for (char const* name : kNeeded) ordo::OrdoClass::getClass(ordo::internName(name));
    quay::zero::mi::EmptyParentPackage::registerPackage(std::make_unique<quay::zero::mi::SchemaPackage>(kName, root));
}

}  // namespace mi
