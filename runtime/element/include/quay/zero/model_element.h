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

/// Says whether a reflective access resolves proxies. The three kinds are distinguished by address, not by content.
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

/// The base of all element handles: one counted pointer. A handle of a class converts to a handle of each base class.
class QUAY_ZERO_API ModelElement : public CountedHandle {
public:
    class Impl;
    class Builder;
    class Constrainables;
    /// Only code of elements creates collections.
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
    /// The model, or an empty handle if the model is gone or has released the element. Adds a reference.
    Model getModel() const;
    /// The model, without adding a reference. Never null: an element without a model refers to ModelImpl::closed().
    ModelImpl& model() const noexcept { return *model_; }
    virtual meta::Class const& getMetaClass() const = 0;
    virtual ClassTable const& classTable() const = 0;
    void removeRef() const noexcept override;
    /// The element's class and id as readable text.
    virtual std::u16string identifier() const;

    ProxyId getProxyId() const;
    /// The id by which a saved reference to this element can be resolved; for a proxy, the id of what it stands for.
    ProxyId getPersistentProxyId(bool withStore) const;

    // --- Life.

    /// Enters the element in its model, which then lists it, finds it by id, and undoes its creation with the
    /// transaction. To be called once, when the first reference exists.
    void notifyCreated();
    /// Destroys the element and what it owns, in a transaction. Does nothing if the element is dead.
    void destroy();
    /// Destroys the element and what it owns, in a transaction. With `detach`, it is first removed from its container.
    /// `a` and `b` are passed on to doDestroy.
    void destroyRecursively(bool a, bool detach, bool b);
    /// Calls ElementImpl::m_callback for every collection of the element, of values and of children.
    virtual void invalidate();

    // --- Change tracking.

    /// To be called inside a transaction before the property of that index changes: keeps its present value, once in
    /// each transaction. Without an open transaction it keeps nothing, and clears the undo history.
    void notifyModifying(unsigned long index);
    /// An empty record of which properties changed, and one with memory for old values. The caller owns both.
    Changes* createChanges() const;
    Storage* createStorage() const;
    /// Keeps the present value of one property in `storage`; unknown indices are ignored.
    void copyValue(Storage* storage, unsigned long index) const;
    /// Writes back every value that `storage` holds.
    void copyStateFromStorage(Storage* storage);

    // --- Reflection. For an unknown property, `has` returns false; get and set raise NoSuchProperty.

    virtual bool hasPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const;
    virtual Value getPropertyValue(meta::Property const& property, ReflectionPrivateTag const& tag) const;
    virtual void setPropertyValue(meta::Property const& property, Value const& value, ReflectionPrivateTag const& tag);
    /// The property of an index of this class, or an empty handle.
    meta::Property getPropertyByIndex(unsigned long index) const;
    /// The descriptor of a property of this element's class chain, or null. Costs one comparison for each level.
    PropertyDescriptor const* descriptorOf(meta::Property const& property) const noexcept;

    // --- Containment.

    /// The container. `container` resolves a proxy, `basicContainer` returns what is stored.
    ModelElement container() const;
    ModelElement basicContainer() const;
    /// The property through which the container owns this element, or an empty handle.
    meta::Property containmentFeature() const;
    Impl* containerImpl() const noexcept { return container_; }
    /// The index of the containing property in the container's class; meaningless without a container.
    std::uint16_t containmentIndex() const noexcept { return containmentIndex_; }

    /// Whether this element owns the member of one of its properties, so that destroying this element destroys it as
    /// well. False for a reference without containment: a member that took a proxy's place and is contained elsewhere
    /// or is of another model.
    bool owns(Impl const& child) const noexcept {
        return child.model_ == model_ && (child.container_ == this || child.container_ == nullptr);
    }

    /// Sets container and containing property and nothing else; a null owner and `NO_INDEX` clear them.
    void basicSetContainer(Impl* owner, meta::Property const& property, unsigned long index);
    void basicSetContainer(Impl* owner, unsigned long index);
    /// Makes this element the container of the child, which leaves its former container, and records that.
    void _setContainedByThis(Impl* child, meta::Property const& property);
    void _setContainedByThis(Impl* child, unsigned long index);
    /// Clears the child's container; the collection or slot that holds the child isn't changed.
    void _basicSetUncontained(Impl* child);

    /// Checks that `other` may enter this property. Null passes. CannotAddNonExistentObject for a dead element,
    /// CannotCreateCrossModelAssociation for one of another model, InvalidValue for this element or one that contains
    /// it. Costs a step for each container above this element.
    void checkCompatibleModel(Impl* other, meta::Property const& property) const;
    void checkCompatibleModel(Impl* other, unsigned long index) const;

    void inverseAdd(ModelElement const& child, meta::Property const& property);
    void inverseRemove(ModelElement const& child, meta::Property const& property);
    bool inverseContainsProxyTo(ModelElement const& element, meta::Property const& property) const;
    void _inverseAddThis(Impl* other, meta::Property const& property, bool force);
    void _inverseRemoveThis(Impl* other, meta::Property const& property);
    bool _inverseContainsThis(Impl* other, meta::Property const& property) const;
    /// Empties every property that holds elements; records nothing outside a transaction.
    void basicDisassociateAll();
    /// These do nothing: only its container refers to an element, and containment is never converted to a reference.
    void disassociateIncoming() {}
    void convertReferencesToProxies(bool, boost::optional<ProxyId>&) {}

    static void _basicAdd(ReferenceCollection* collection, ModelElement const& element);
    static void _basicRemove(ReferenceCollection* collection, ModelElement const& element);
    static void _basicClear(ReferenceCollection* collection);
    static void _basicCopyValues(ReferenceCollection* target, ReferenceCollection const* source);

    // --- For the code of elements.

    /// To be called when a child, or a proxy of one, enters a property. Destroying an element for which this was never
    /// called doesn't visit its properties.
    void noteOwned() noexcept { flags_ |= kOwns; }
    bool hasOwned() const noexcept { return (flags_ & kOwns) != 0; }

    bool isWritable() const noexcept { return (flags_ & (kAlive | kProxy)) == kAlive; }

    /// Raises CannotModifyProxy on a proxy, CannotAddNonExistentObject on a dead element.
    void requireWritable() const {
        if (!isWritable()) refuseWrite();
    }
    /// Raises CannotModifyProxy on a proxy, whose collections can't even be read.
    void requireLoaded() const {
        if (isProxy()) refuseProxy();
    }

    /// "Class.property", for messages.
    std::u16string nameOf(unsigned long index) const;

    static CollectionPrivateTag collectionTag() noexcept { return {}; }

protected:
    /// An element of that model. A nil id is replaced by a new one; an id in use raises UniquenessConstraint. The
    /// element isn't in the model's list until notifyCreated is called.
    Impl(Model const& model, boost::uuids::uuid const& id);
    Impl(Builder& builder, boost::uuids::uuid const& id);
    ~Impl() override;

    /// Destroys the owned children, then marks this element dead and takes it out of the model.
    virtual void doDestroy(bool a, bool b);
    /// Hooks for derived classes: called before the element is destroyed, and after it was entered in its model.
    virtual void aboutToDestroy() {}
    virtual void didCreate() {}

private:
    // The parts of a model keep some of their data in the elements.
    friend class ModelImpl;
    friend class Journal;
    friend struct ContainerStep;
    friend class Proxies;
    friend class ElementDirectory;
    friend class ElementList;
    friend class IdIndex;
    friend class query::ClassIndex;

    void destroyNow(bool a, bool detach, bool b);
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
