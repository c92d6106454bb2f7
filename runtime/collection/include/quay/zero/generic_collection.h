// How scripts and generic code reach a collection of elements without knowing its class.
#pragma once

#include <quay/zero/model_element.h>

#include <cstddef>
#include <vector>

namespace quay::zero {

namespace meta {
class Type;
}

/// Every operation first checks the element: it does nothing for an empty or dead one (`genericContains` returns
/// false). Operations that would store or remove an element of the wrong class raise CannotAddIncompatibleTypes.
class QUAY_ZERO_API GenericCollectionInterface {
public:
    /// What genericIndexOf returns for an element that isn't a member.
    static constexpr unsigned long NONE = static_cast<unsigned long>(-1);

    virtual std::size_t genericSize() const = 0;
    virtual void genericAdd(ModelElement const& e) = 0;
    /// Adds the element unless it is a member; a sequence puts it at that position (at most its end).
    virtual void genericEnsureAt(ModelElement const& e, unsigned long position) = 0;
    virtual void genericRemove(ModelElement const& e) = 0;
    virtual void genericClear() = 0;
    virtual void genericBasicClear() = 0;
    virtual bool genericContains(ModelElement const& e) const = 0;
    virtual bool isSequenceInterface() const { return false; }
    virtual bool isMapInterface() const { return false; }
    virtual bool isMultimapInterface() const { return false; }

    GenericCollectionInterface(GenericCollectionInterface const&) = delete;
    GenericCollectionInterface& operator=(GenericCollectionInterface const&) = delete;

protected:
    GenericCollectionInterface() = default;
    ~GenericCollectionInterface() = default;
};

/// Positions out of range are std::out_of_range.
class QUAY_ZERO_API GenericSequenceInterface : public GenericCollectionInterface {
public:
    bool isSequenceInterface() const override { return true; }

    virtual ModelElement genericAt(unsigned long position) const = 0;
    virtual void genericInsertAt(ModelElement const& e, unsigned long position) = 0;
    virtual void genericSetAt(ModelElement const& e, unsigned long position) = 0;
    virtual void genericRemoveAt(unsigned long position) = 0;
    virtual unsigned long genericIndexOf(ModelElement const& e) const = 0;

protected:
    ~GenericSequenceInterface() = default;
};

class Value;

/// The reflective interface that maps and multimaps share.
class QUAY_ZERO_API GenericKeyedInterface : public GenericCollectionInterface {
public:
    virtual meta::Type getQualifierType() const = 0;
    /// The keys in order, one for each member.
    virtual std::vector<Value> genericKeys() const = 0;

protected:
    ~GenericKeyedInterface() = default;
};

class QUAY_ZERO_API GenericMapInterface : public GenericKeyedInterface {
public:
    bool isMapInterface() const override { return true; }
    /// The member with that key, or an empty handle. CannotCastIncompatibleTypes for a key of another type.
    virtual ModelElement genericGet(Value const& key) const = 0;

protected:
    ~GenericMapInterface() = default;
};

class QUAY_ZERO_API GenericMultimapInterface : public GenericKeyedInterface {
public:
    bool isMultimapInterface() const override { return true; }
    /// The members with that key, in order of insertion.
    virtual std::vector<ModelElement> genericGet(Value const& key) const = 0;

protected:
    ~GenericMultimapInterface() = default;
};

}  // namespace quay::zero
