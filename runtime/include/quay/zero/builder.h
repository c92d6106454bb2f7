// Builders: elements that don't exist yet.
#pragma once

#include <quay/zero/model.h>

#include <boost/dynamic_bitset.hpp>
#include <boost/uuid/uuid.hpp>
#include <memory>

namespace quay::zero {

/// Base of all builders: the model, which may come later, and a mask of the properties that were given. A builder owns
/// its child builders, may be filled in any order, and may be used again: each `create` is a run of its own.
class QUAY_ZERO_API ModelElement::Builder {
public:
    class Orchestrator;

    Builder(Model const& model, unsigned long bits);
    explicit Builder(unsigned long bits);
    virtual ~Builder();
    Builder(Builder const&) = delete;
    Builder& operator=(Builder const&) = delete;

    virtual meta::Class const& getMetaClass() const = 0;

    Model const& getModel() const noexcept { return model_; }
    void setModel(Model const& model) { model_ = model; }

    /// Creates the element and everything that its child builders stand for, in one transaction. A nil id draws a fresh
    /// one. CannotCreateWithoutModel; whatever fails leaves no trace.
    ModelElement create(boost::uuids::uuid const& id);

    /// Gives a value, or adds it to several. NoSuchProperty, CannotCastIncompatibleTypes.
    virtual void setOrAdd(meta::Property const& property, Value const& value);
    /// Gives a child, or adds it to several; what can't be taken stays with the caller, with NoSuchProperty.
    virtual void setOrAdd(meta::Property const& property, std::unique_ptr<Builder>& child);

protected:
    virtual ModelElement doCreate(bool suppressCascade, boost::uuids::uuid const& id) = 0;

    boost::dynamic_bitset<unsigned long> given_;

private:
    Model model_;
};

}  // namespace quay::zero
