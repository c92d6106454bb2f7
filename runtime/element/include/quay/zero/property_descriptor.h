// Property descriptors and class tables: how the runtime saves, restores, reflects, builds and destroys properties.
//
// A class is described by a table of descriptors, one for each property. All operations on an element by property use
// them, so a generated class has no code of its own except accessors. The descriptors of the schema's shapes are in
// elements/.
#pragma once

#include <quay/zero/cell.h>
#include <quay/zero/model_element.h>

#include <cstdint>
#include <span>

namespace quay::zero {

class Value;

/// Which family of operations a descriptor takes part in.
enum class PropertyKind : std::uint8_t {
    Value,                ///< one value, or an optional one
    Child,                ///< one owned element
    PrimitiveCollection,  ///< several values
    ElementCollection,    ///< several owned elements
    Derived               ///< computed; no field and no index
};

/// Descriptors are constants: constinit objects of shape classes, which access their field by a member pointer. The
/// element passed to an operation must be of the class that the descriptor belongs to.
class QUAY_ZERO_API PropertyDescriptor {
public:
    /// `plain`: the cell of an old value holds it as bytes in place, so that nothing needs to be discarded.
    constexpr PropertyDescriptor(std::uint16_t index, PropertyKind kind, bool plain = false) noexcept
        : index_(index), kind_(kind), plain_(plain) {}

    /// The property's index, from 1 along the class chain; 0 for a derived one.
    std::uint16_t index() const noexcept { return index_; }
    PropertyKind kind() const noexcept { return kind_; }
    bool isPlain() const noexcept { return plain_; }
    /// Whether a builder takes values for it.
    bool takesValues() const noexcept {
        return kind_ == PropertyKind::Value || kind_ == PropertyKind::PrimitiveCollection;
    }
    bool ownsElements() const noexcept {
        return kind_ == PropertyKind::Child || kind_ == PropertyKind::ElementCollection;
    }

    // --- Undo. A cell is filled by `save` or by the descriptor's own setter; the other operations read or discard it.

    /// Fills an empty cell with a copy of the present value.
    virtual void save(ModelElement::Impl const& element, Cell& old) const;
    /// Exchanges the field with the cell's value. Rollback, undo and redo all use this.
    virtual void exchange(ModelElement::Impl& element, Cell& old) const noexcept;
    /// Makes the field a copy of the cell's value.
    virtual void restore(ModelElement::Impl& element, Cell const& old) const;
    /// Whether the field holds the cell's value again, by an inexpensive comparison that depends on the shape.
    virtual bool unchanged(ModelElement::Impl const& element, Cell const& old) const;
    virtual void discard(Cell& old) const noexcept;
    /// Moves the value into an empty cell.
    virtual void relocate(Cell& from, Cell& to) const noexcept;
    /// The cell's value as a Value, which may point into the cell.
    virtual Value wrap(ModelElement::Impl const& element, meta::Property const& property, Cell& old) const;

    // --- Reflection.

    virtual bool has(ModelElement::Impl const& element) const;
    virtual Value get(ModelElement::Impl const& element, meta::Property const& property,
                      ReflectionPrivateTag const& tag) const;
    virtual void set(ModelElement::Impl& element, meta::Property const& property, Value const& value,
                     ReflectionPrivateTag const& tag) const;

    // --- Containment. Descriptors that don't own elements do nothing.

    /// Adds the child to this property, or removes it: changes the field alone and records the change.
    virtual void join(ModelElement::Impl& owner, ModelElement const& child) const;
    virtual void leave(ModelElement::Impl& owner, ModelElement const& child) const;
    /// Empties the field and records nothing.
    virtual void disassociate(ModelElement::Impl& owner) const;
    /// Destroys the children and empties the field.
    virtual void destroyChildren(ModelElement::Impl& owner, bool a, bool b) const;
    /// The child of a property with one child, resolved if possible; an empty handle for any other property.
    virtual ModelElement child(ModelElement::Impl const& owner) const;
    /// The collection of a property that is a collection, else null.
    virtual AbstractOwnedCollection* collection(ModelElement::Impl const& owner) const;

    // --- Building.

    /// Gives a value to a builder, which keeps it, or adds it to a collection. Only for properties that take values.
    virtual void give(ModelElement::Builder& builder, meta::Property const& property, Value const& value) const;
    /// Gives the new element a value that its builder keeps.
    virtual void build(ModelElement::Impl& element, Cell const& given) const;
    /// Adds a new child to this property, by the shape's own operation.
    virtual void place(ModelElement::Impl& owner, ModelElement const& child) const;

protected:
    ~PropertyDescriptor() = default;

private:
    std::uint16_t index_;
    PropertyKind kind_;
    bool plain_;
};

/// Describes a class for the runtime: its descriptors, its base's table, and factories of collections and builders.
/// There is one constant for each class, in the class's library; declaring the package connects it with the meta class.
class QUAY_ZERO_API ClassTable {
public:
    using TableFunction = ClassTable const& (*)();
    using CollectionFactory = AbstractOwnedCollection* (*)(ModelElement const&, meta::Property const&);
    using BuilderFactory = std::unique_ptr<ModelElement::Builder> (*)(Model const&);

    /// `descriptors`: those of the class itself, first the indexed ones by rising index from `firstIndex`, then derived
    /// ones.
    constexpr ClassTable(TableFunction base, std::uint16_t firstIndex,
                         std::span<PropertyDescriptor const* const> descriptors, CollectionFactory makeCollection,
                         BuilderFactory makeBuilder) noexcept
        : base_(base),
          descriptors_(descriptors),
          makeCollection_(makeCollection),
          makeBuilder_(makeBuilder),
          firstIndex_(firstIndex) {}

    ClassTable const* base() const noexcept { return base_ == nullptr ? nullptr : &base_(); }
    std::span<PropertyDescriptor const* const> descriptors() const noexcept { return descriptors_; }
    /// The lowest and the highest index of the class's own properties. A class without properties has as firstIndex the
    /// next free index of its chain, and 0 as lastIndex.
    std::uint16_t firstIndex() const noexcept { return firstIndex_; }
    std::uint16_t lastIndex() const noexcept;
    CollectionFactory collectionFactory() const noexcept { return makeCollection_; }
    BuilderFactory builderFactory() const noexcept { return makeBuilder_; }

    /// The descriptor of an index along the chain, or null. Costs one comparison for each level.
    PropertyDescriptor const* descriptorAt(unsigned long index) const noexcept;
    /// The descriptor of a property that this class or one above it declares, or null.
    PropertyDescriptor const* descriptorOf(meta::Property const& property) const noexcept;
    /// The highest index of the chain; 0 without properties.
    std::uint16_t highestIndex() const noexcept;
    /// Whether elements of this class are elements of `other`.
    bool conformsTo(ClassTable const& other) const noexcept;

private:
    TableFunction base_;
    std::span<PropertyDescriptor const* const> descriptors_;
    CollectionFactory makeCollection_;
    BuilderFactory makeBuilder_;
    std::uint16_t firstIndex_;
};

}  // namespace quay::zero
