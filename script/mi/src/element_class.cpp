// The script class quay.zero.ModelElement, and the registration of the runtime's packages.
#include <ordo/factory/text.h>

#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/element_classes.h>
#include <quay/zero/mi/registration.h>

#include <boost/uuid/uuid_io.hpp>

#include "collection_classes.h"
#include "function_property.h"
#include "runtime_classes.h"
#include "script_names.h"

namespace quay::zero::mi {

using ordo::OrdoValue;

namespace {

class ModelElementInfo final : public QUAY0WrapperInfo {
public:
    ModelElementInfo() : QUAY0WrapperInfo("ModelElement", names::kElement) {}

    bool isAbstract() const noexcept override { return true; }
    std::string_view getDescription() const noexcept override { return "What every element has."; }
    void defineClass(ordo::OrdoClass& c) override {
        QUAY0WrapperInfo::defineClass(c);
        addReadOnly(
            c, "container", names::kElement, [](ModelElement::Impl& e) { return toScript(e.container()); },
            "The element that owns this one.");
        addReadOnly(
            c, "uuid", "uuid",
            [](ModelElement::Impl& e) { return OrdoValue::bytes(boost::uuids::to_string(e.uuid())); },
            "The element's id.");
        addReadOnly(
            c, "model", names::kModel, [](ModelElement::Impl& e) { return toScript(e.getModel()); },
            "The model that the element is in.");
    }
};

class RuntimePackage final : public EmptyParentPackage {
public:
    using Fill = void (*)(ordo::OrdoPackage&);

    RuntimePackage(std::string_view name, std::string_view description, Fill fill)
        : EmptyParentPackage(name), description_(description), fill_(fill) {}

    std::string_view getDescription() const noexcept override { return description_; }
    void initializePackage(ordo::OrdoPackage* package) override { fill_(*package); }

private:
    std::string_view description_;
    Fill fill_;
};

}  // namespace

void addElementClass(ordo::OrdoPackage& package) {
    package.addClass(std::make_unique<ModelElementInfo>().release(), 2);
}

void registerRuntimeClasses() {
    static bool const done = [] {
        auto const add = [](char const* name, char const* description, RuntimePackage::Fill fill) {
            EmptyParentPackage::registerPackage(std::make_unique<RuntimePackage>(name, description, fill));
        };
        add(names::kPackage, "Models, their elements and collections of them.", [](ordo::OrdoPackage& package) {
            addModelClasses(package);
            addElementClass(package);
            addCollectionClasses(package);
        });
        add(names::kMetaPackage, "What models say of their own classes.", &addMetaClasses);
        return true;
    }();
    static_cast<void>(done);
}

}  // namespace quay::zero::mi
