// What all meta objects have in common.
#pragma once

#include <quay/zero/meta/handles.h>

#include <string>

namespace quay::zero::meta {

/// Base of all meta objects. They are never deleted, so plain pointers to them stay valid.
class QUAY_ZERO_API MetaElement::Impl : public ModelElement::Impl {
public:
    struct Descriptors;  // of its properties

    void removeRef() const noexcept override;
    std::u16string identifier() const override;

    std::u16string const& getName() const noexcept { return name_; }
    void setName(std::u16string const& name);
    /// The name with those of the packages above it, joined by dots; the bare name where there is no package.
    virtual std::u16string getQualifiedName() const { return name_; }
    /// Whether this type is `type` or derived from it.
    virtual bool isKindOf(ModelElement::Impl const* type) const noexcept { return this == type; }

protected:
    Impl(Model const& model, boost::uuids::uuid const& id);

private:
    std::u16string name_;
};

}  // namespace quay::zero::meta
