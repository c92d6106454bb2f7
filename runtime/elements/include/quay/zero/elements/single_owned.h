// Shape "single owned": one child or none.
#pragma once

#include <quay/zero/elements/children.h>
#include <quay/zero/property_descriptor.h>
#include <quay/zero/value.h>

namespace quay::zero::elements {

/// The descriptor of a property with one owned child, of any class.
class QUAY_ZERO_API ChildDescriptor : public PropertyDescriptor {
public:
    using Element = ModelElement::Impl;

    constexpr explicit ChildDescriptor(std::uint16_t index) noexcept : PropertyDescriptor(index, PropertyKind::Child) {}

    /// The child, resolved if it is a proxy that can be. What was found is stored in the slot.
    ModelElement read(Element const& e) const;
    /// Puts a child into the slot, or empties it. The former child stays alive without a container, and the new one
    /// leaves its former container. Writing the child that is there already does nothing and checks nothing.
    void write(Element& e, ModelElement const& child) const;
    /// Sets the pointer in the slot and nothing else; nothing is recorded.
    void basicWrite(Element& e, ModelElement const& child) const noexcept;

    void save(Element const& e, Cell& old) const override;
    void exchange(Element& e, Cell& old) const noexcept override;
    void restore(Element& e, Cell const& old) const override;
    bool unchanged(Element const& e, Cell const& old) const override;
    void discard(Cell& old) const noexcept override;
    void relocate(Cell& from, Cell& to) const noexcept override;
    Value wrap(Element const& e, meta::Property const& property, Cell& old) const override;

    /// True for a proxy as well.
    bool has(Element const& e) const override;
    Value get(Element const& e, meta::Property const& property, ReflectionPrivateTag const& tag) const override;
    void set(Element& e, meta::Property const& property, Value const& value,
             ReflectionPrivateTag const& tag) const override;

    void join(Element& owner, ModelElement const& child) const override;
    /// Empties the slot, whatever child it has.
    void leave(Element& owner, ModelElement const& child) const override;
    void disassociate(Element& owner) const override;
    void destroyChildren(Element& owner, bool a, bool b) const override;
    ModelElement child(Element const& owner) const override { return read(owner); }
    void place(Element& owner, ModelElement const& child) const override { write(owner, child); }

protected:
    ~ChildDescriptor() = default;

    virtual ModelElement& slot(Element& e) const noexcept = 0;
    /// Raises CannotCastIncompatibleTypes unless the value holds a child of the property's class, or none.
    virtual ModelElement unpack(Value const& value) const = 0;

private:
    ModelElement const& slot(Element const& e) const noexcept { return slot(const_cast<Element&>(e)); }
};

template <class T>
class SingleOwned final : public ChildDescriptor {
public:
    template <class X>
    constexpr SingleOwned(std::uint16_t index, T X::*field) noexcept
        : ChildDescriptor(index), field_(static_cast<T Element::*>(field)) {}

    T get(Element const& e) const { return T::of(read(e).impl()); }
    void set(Element& e, T const& child) const { write(e, child); }
    void basicSet(Element& e, T const& child) const noexcept { basicWrite(e, child); }
    using ChildDescriptor::get;
    using ChildDescriptor::set;

    T createInto(Element& owner) const { return elements::createInto<T>(*this, owner); }
    T createInto(Element& owner, BuilderWrapper<T> const& builder, boost::uuids::uuid const& id) const {
        return elements::createInto<T>(*this, owner, builder, id);
    }

protected:
    ModelElement& slot(Element& e) const noexcept override { return e.*field_; }
    ModelElement unpack(Value const& value) const override { return value.getValue<T>(); }

private:
    T Element::*field_;
};

}  // namespace quay::zero::elements
