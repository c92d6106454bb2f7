#include <quay/zero/mi/element_classes.h>

#include <keel/text.h>
#include <ordo/class.h>
#include <ordo/error.h>
#include <ordo/factory/method.h>
#include <ordo/factory/text.h>

#include <quay/zero/element_name.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/docs.h>

#include <boost/uuid/uuid_io.hpp>

#include "bound_property.h"
#include "element_methods.h"
#include "element_properties.h"
#include "script_names.h"

namespace quay::zero::mi {

using ordo::MethodCall;
using ordo::OrdoMethodSignature;
using ordo::factory::OrdoMethod;
using ordo::factory::impl::MethodImpl;

namespace {

constexpr unsigned kDestroyAttributes = 4096;

void destroy(MethodImpl::Function /*function*/, MethodCall& call) {
    ModelElement const element = elementIn(call.argument(0));
    if (!element) ordo::raiseInvalidHandle();
    element->destroy();
}

bool isElementAlive(void const* native) noexcept { return static_cast<ModelElement::Impl const*>(native)->isAlive(); }

class StaticMetaClass final : public OrdoMethod {
public:
    explicit StaticMetaClass(std::string const& scriptName)
        : OrdoMethod("StaticMetaClass", {ordo::staticMethodAttributes},
                     OrdoMethodSignature::createMethodSignature("", std::string(names::kMetaPackage) + ".Class", {}),
                     "The meta object of this class."),
          class_(scriptName) {}

    void call(MethodCall& call) const override {
        if (call.resultCount() == 0) call.setResultCount(1);
        call.setResult(toScript(class_.get()));
    }

private:
    BoundClass class_;
};

}  // namespace

// --- QUAY0WrapperInfo -----------------------------------------------------------------------------------------------

void QUAY0WrapperInfo::defineClass(ordo::OrdoClass& ordoClass) {
    auto signature = OrdoMethodSignature::createMethodSignature("", "void", {std::string(getFullName())});
    ordoClass.addMethod(std::make_unique<MethodImpl>("destroy", ordo::factory::MethodAttributes{kDestroyAttributes},
                                                     std::move(signature), &destroy, nullptr,
                                                     "Destroys the element and all that it owns."));
}

ordo::ValidityCheck QUAY0WrapperInfo::validityCheck() const noexcept { return &isElementAlive; }

std::string QUAY0WrapperInfo::describeInstance(void const* native) const {
    auto const& element = *static_cast<ModelElement::Impl const*>(native);
    std::string const name = keel::toUtf8(nameOf(ModelElement(const_cast<ModelElement::Impl*>(&element))));
    std::string const id = boost::uuids::to_string(element.uuid());
    return name.empty() ? id : "'" + name + "' " + id;
}

std::string_view QUAY0WrapperInfo::getDescription() const noexcept { return docOf(getFullName()); }

void QUAY0WrapperInfo::dropReference(void* native) noexcept { releaseHeld(native); }

// --- ElementWrapper -------------------------------------------------------------------------------------------------

bool ElementWrapper::isAbstract() const noexcept {
    auto const metaClass = meta::Class::cast(typeOfScriptName(getFullName()));
    return metaClass && metaClass->isAbstract();
}

void ElementWrapper::defineClass(ordo::OrdoClass& ordoClass) {
    std::string const full(getFullName());
    auto const metaClass = meta::Class::cast(typeOfScriptName(full));
    auto const base = metaClass->getSuperclass();
    std::string_view const baseName = base ? scriptNameOf(base).text() : std::string_view();
    ordoClass.addSuperclass(baseName.empty() ? names::kElement : baseName, 1, 0, 1);
    if (!metaClass->isAbstract()) {
        ordoClass.addMethod(std::make_unique<Construct>(getName(), full, getDescription()));
    }

    auto const& properties = *metaClass->getOwnedProperties();
    auto const docs = [&](meta::Property const& p) { return docOf(full, ordo::factory::bytesOf(p->getName())); };
    for (bool const collections : {false, true}) {
        for (meta::Property const& p : properties) {
            if (isCollection(p) == collections) ordoClass.addProperty(makeElementProperty(p, docs(p)));
        }
    }
    for (bool const collections : {true, false}) {
        for (meta::Property const& p : properties) {
            if (!p->descriptor()->ownsElements() || isCollection(p) != collections) continue;
            std::string const doc = "Makes a new one in place. " + std::string(docs(p));
            ordoClass.addMethod(std::make_unique<CreateInto>(p, full, ordo::internName(doc).text()));
        }
    }
    ordoClass.addMethod(std::make_unique<StaticMetaClass>(full));
}

}  // namespace quay::zero::mi
