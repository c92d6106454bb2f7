// Elements: the handle that callers hold and the object behind it.
#pragma once

#include <quay/zero/element_impl.h>
#include <quay/zero/handle.h>
#include <quay/zero/track.h>

#include <boost/optional/optional_fwd.hpp>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace quay::zero {

namespace meta {
class Class;
class Property;
}  // namespace meta

namespace query {
class ClassIndex;
}

class AbstractOwnedCollection;
class ClassTable;
class ElementDirectory;
class Journal;
class Model;
class ModelImpl;
class ProxyId;
class PropertyDescriptor;
class ReferenceCollection;
class Storage;
class Value;

/// Says how a reflective access treats proxies. The three kinds are told apart by address, never by content.
class QUAY_ZERO_API ReflectionPrivateTag {
public:
    static ReflectionPrivateTag const PUBLIC_ACCESS;
    static ReflectionPrivateTag const NO_PROXY_RESOLVE;
    static ReflectionPrivateTag const IN_MEMORY_ONLY;

    /// Whether this access may load what a proxy stands for.
    bool mayResolve() const noexcept { return this == &PUBLIC_ACCESS; }

    ReflectionPrivateTag(ReflectionPrivateTag const&) = delete;
    ReflectionPrivateTag& operator=(ReflectionPrivateTag const&) = delete;

private:
    constexpr ReflectionPrivateTag() noexcept = default;
};

/// The base of every element handle: one counted pointer. A handle of a class passes wherever a handle of a base
/// class is wanted.
class QUAY_ZERO_API ModelElement : public CountedHandle {
public:
    class Impl;
    class Builder;
    class Constrainables;
    /// Only element code makes collections.
    class CollectionPrivateTag {
        friend class Impl;
        constexpr CollectionPrivateTag() noexcept = default;
    };

    ModelElement() noexcept = default;
    explicit ModelElement(Impl* impl) noexcept;

    /// The root of the meta class tree.
    static meta::Class const& metaClass();
    static ClassTable const& classTable();

    Impl* impl() const noexcept;
    Impl* operator->() const noexcept { return impl(); }
};

/// An element. Writes run in transactions of its model; a write on a proxy raises CannotModifyProxy, one on a dead
/// element CannotAddNonExistentObject, and neither stores anything. One thread at a time works in a model.
class QUAY_ZERO_API ModelElement::Impl : public ElementImpl {
public:
    using ReflectionPrivateTag = quay::zero::ReflectionPrivateTag;
    using Storage = quay::zero::Storage;
    class Changes;

    /// "No position": the index of an element that no property contains.
    static constexpr unsigned long NO_INDEX = static_cast<unsigned long>(-1);

    // --- What the element is.

    bool isProxy() const noexcept { return (flags_ & kProxy) != 0; }
    /// The model, or an empty handle once the model or the element's place in it is gone. Counts a reference.
    Model getModel() const;
    /// The model without counting. Never null: an element without a model points at one that is closed.
    ModelImpl& model() const noexcept { return *model_; }
    virtual meta::Class const& getMetaClass() const = 0;
    virtual ClassTable const& classTable() const = 0;
    void removeRef() const noexcept override;
    /// The element's class and id as text, for people.
    virtual std::u16string identifier() const;

    ProxyId getProxyId() const;
    /// The id under which a reference to this element survives being saved; a proxy's is the one that it has.
    ProxyId getPersistentProxyId(bool withStore) const;

    // --- Life.

    /// Tells the model that the element exists; called once, after the first reference was taken. From here on the
    /// model lists it, finds it by id, and undoes its creation with the transaction.
    void notifyCreated();
    /// Destroys the element and what it owns, in a transaction. Nothing on a dead element.
    void destroy();
    /// Destroys the element and what it owns. `detach`: also leave the container, which is told. Inside a transaction.
    void destroyRecursively(bool a, bool detach, bool b);
    /// Calls the host's hook for every collection of the element, of values and of children.
    virtual void invalidate();

    // --- Change tracking.

    /// To be called before the property of that index changes, inside a transaction: its present value is kept, once
    /// in a transaction. Without an open transaction it records nothing, and what could be undone can't be any more.
    void notifyModifying(unsigned long index);
    /// A fresh record of changes without values, and one with room for old values. The caller owns both.
    Changes* createChanges() const;
    Storage* createStorage() const;
    /// Keeps the present value of one property in `storage`; unknown indices are ignored.
    void copyValue(Storage* storage, unsigned long index) const;
    /// Writes back every value that `storage` holds.
    void copyStateFromStorage(Storage* storage);

    // --- Reflection. An unknown property is absent, and NoSuchProperty on get and set.

    virtual bool hasPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const;
    virtual Value getPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const;
    virtual void setPropertyValue(meta::Property const& property, Value const& value, ReflectionPrivateTag const& tag);
    /// The property of an index of this class, or an empty handle.
    meta::Property getPropertyByIndex(unsigned long index) const;
    /// The descriptor of a property of this element's class chain, or null. A comparison a level.
    PropertyDescriptor const* descriptorOf(meta::Property const& property) const noexcept;

    // --- Containment.

    /// The owning element. `container` resolves a proxy, `basicContainer` returns what is stored.
    ModelElement container() const;
    ModelElement basicContainer() const;
    /// The property through which the container owns this element, or an empty handle.
    meta::Property containmentFeature() const;
    Impl* containerImpl() const noexcept { return container_; }
    /// Index of that property in the container's class; meaningless without a container.
    std::uint16_t containmentIndex() const noexcept { return containmentIndex_; }

    /// Whether a member of one of this element's properties is destroyed with it. Not so a member that the property
    /// refers to without containing it: one that took a proxy's place and is contained elsewhere or is of another
    /// model.
    bool owns(Impl const& child) const noexcept {
        return child.model_ == model_ && (child.container_ == this || child.container_ == nullptr);
    }

    /// Sets owner and owning property and nothing else; `NO_INDEX` and a null owner clear them.
    void basicSetContainer(Impl* owner, meta::Property const& property, unsigned long index);
    void basicSetContainer(Impl* owner, unsigned long index);
    /// This element takes the child: it leaves a former container, and its container is recorded.
    void _setContainedByThis(Impl* child, meta::Property const& property);
    void _setContainedByThis(Impl* child, unsigned long index);
    /// Clears the child's container without telling that container.
    void _basicSetUncontained(Impl* child);

    /// Null passes. A dead element is CannotAddNonExistentObject, one of another model
    /// CannotCreateCrossModelAssociation, this element or one above it InvalidValue. Costs a step per container.
    void checkCompatibleModel(Impl* other, meta::Property const& property) const;
    void checkCompatibleModel(Impl* other, unsigned long index) const;

    void inverseAdd(ModelElement const& child, meta::Property const& property);
    void inverseRemove(ModelElement const& child, meta::Property const& property);
    bool inverseContainsProxyTo(ModelElement const& element, meta::Property const& property) const;
    void _inverseAddThis(Impl* other, meta::Property const& property, bool force);
    void _inverseRemoveThis(Impl* other, meta::Property const& property);
    bool _inverseContainsThis(Impl* other, meta::Property const& property) const;
    /// Empties every element property; records nothing outside a transaction.
    void basicDisassociateAll();
    /// Nothing: only a container points at an element, and containment is never converted.
    void disassociateIncoming() {}
    void convertReferencesToProxies(bool, boost::optional<ProxyId>&) {}

    static void _basicAdd(ReferenceCollection* collection, ModelElement const& element);
    static void _basicRemove(ReferenceCollection* collection, ModelElement const& element);
    static void _basicClear(ReferenceCollection* collection);
    static void _basicCopyValues(ReferenceCollection* target, ReferenceCollection const* source);

    // --- For element code.

    /// A child, or a proxy of one, comes into one of the properties. An element that never heard of any is destroyed
    /// without asking its properties.
    void noteOwned() noexcept { flags_ |= kOwns; }
    bool hasOwned() const noexcept { return (flags_ & kOwns) != 0; }

    bool isWritable() const noexcept { return (flags_ & (kAlive | kProxy)) == kAlive; }

    /// Raises what refuses a write on a proxy or a dead element. One test when it may be written.
    void requireWritable() const {
        if (!isWritable()) refuseWrite();
    }
    /// Raises CannotModifyProxy on a proxy, whose collections can't be reached even for reading.
    void requireLoaded() const {
        if (isProxy()) refuseProxy();
    }

    /// "Class.property", for messages.
    std::u16string nameOf(unsigned long index) const;

    static CollectionPrivateTag collectionTag() noexcept { return {}; }

protected:
    /// An element of that model. A nil id draws a fresh one; an id in use raises UniquenessConstraint. The element is
    /// entered in the model by notifyCreated.
    Impl(Model const& model, boost::uuids::uuid const& id);
    Impl(Builder& builder, boost::uuids::uuid const& id);
    ~Impl() override;

    /// Destroys the owned children, then marks this element dead and takes it out of the model.
    virtual void doDestroy(bool a, bool b);
    /// Hooks for a host's own classes: before anything of the element is gone, and after it was entered.
    virtual void aboutToDestroy() {}
    virtual void didCreate() {}

private:
    // The parts of a model, which keep what they know of an element in the element itself.
    friend class ModelImpl;
    friend class Journal;
    friend struct ContainerStep;
    friend class Proxies;
    friend class ElementDirectory;
    friend class ElementList;
    friend class IdIndex;
    friend class query::ClassIndex;

    void takeDown(bool a, bool detach, bool b);
    [[noreturn]] void refuseWrite() const;
    [[noreturn]] void refuseProxy() const;

    ModelImpl* model_;
    Track track_;
    Impl* container_ = nullptr;
    Impl* previous_ = nullptr;
    Impl* next_ = nullptr;
};

static_assert(sizeof(ModelElement::Impl) <= 72);

inline ModelElement::ModelElement(Impl* impl) noexcept : CountedHandle(impl) {}
inline ModelElement::Impl* ModelElement::impl() const noexcept { return static_cast<Impl*>(impl_); }

}  // namespace quay::zero

template <>
struct std::hash<quay::zero::ModelElement> {
    std::size_t operator()(quay::zero::ModelElement const& e) const noexcept {
        return std::hash<void const*>()(e.impl());
    }
};
