// The script classes of elements, built by one rule for all classes of all schemas.
#pragma once

#include <ordo/factory/class_info.h>

#include <quay/zero/model_element.h>

#include <string>

namespace quay::zero::mi {

/// What all classes of elements have in common. A script object holds a `ModelElement::Impl*`; the binding keeps the
/// element and its model.
class ORDO_API QUAY0WrapperInfo : public ordo::factory::HandleClassInfo<ModelElement, false> {
public:
    using HandleClassInfo::HandleClassInfo;

    /// Adds only a `destroy` method, which quay.zero.ModelElement offers for all elements.
    void defineClass(ordo::OrdoClass& ordoClass) override;
    ordo::ValidityCheck validityCheck() const noexcept override;
    /// The element's name, if its class has a property for one, and its id.
    std::string describeInstance(void const* native) const override;
    std::string_view getDescription() const noexcept override;

protected:
    void dropReference(void* native) noexcept override;
};

/// The script class of a class of a schema. Its members follow from the meta class, which is found by the script name;
/// they are added in this order: the superclass, a constructor unless the class is abstract, properties with one value,
/// collections, a `createInto` for each owned property (those for collections first), and StaticMetaClass.
class ORDO_API ElementWrapper final : public QUAY0WrapperInfo {
public:
    using QUAY0WrapperInfo::QUAY0WrapperInfo;

    bool isAbstract() const noexcept override;
    void defineClass(ordo::OrdoClass& ordoClass) override;
};

}  // namespace quay::zero::mi
