// Script objects: what a script holds in its hand for an object of native code.
#pragma once

#include <ordo/export.h>
#include <ordo/interned.h>

#include <zx/objects.h>

#include <cstddef>
#include <utility>

namespace ordo {

class ClassIdentity;
class OrdoClass;
class OrdoObject;

namespace factory::basic {
class BindingRegistry;
}

/// Gives what another script object can hold: a copy of the native object, for classes of values.
using NativeCopier = void* (*)(void const* native);

/// A script object: a class and a pointer to the native object behind it. Objects are counted; when the last holder
/// lets go, the class description's freeInstance is called. Hold them by OrdoObject.
///
/// Script objects belong to the script thread: counts aren't atomic. A class and its ancestors know the native object
/// by one and the same address.
class ORDO_API OrdoInterface {
public:
    /// A script object of a class; without a native object for now, as a constructor call wants it.
    static OrdoObject make(ClassIdentity& ordoClass, void* native = nullptr, NativeCopier copier = nullptr);

    OrdoInterface(OrdoInterface const&) = delete;
    OrdoInterface& operator=(OrdoInterface const&) = delete;

    /// The class with its members; include <ordo/class.h> to call this.
    inline OrdoClass& getClass() const noexcept;
    ClassIdentity& classIdentity() const noexcept { return *class_; }

    /// The native object, or null if there is none.
    void* native() const noexcept { return native_; }
    /// The native object if the object's class is `className` or derives from it, else null.
    void* getNativePointer(InternedName className) const noexcept;

    /// Null for objects that have identity: all holders share those.
    NativeCopier copier() const noexcept { return copier_; }

    /// This object, or for a value a script object that holds a copy of it.
    OrdoObject copy();

    /// What the host keeps with the object, such as its own object for it. Nothing here looks at it or owns it.
    void* peer() const noexcept { return peer_; }
    void setPeer(void* peer) noexcept { peer_ = peer; }

    void addReference() noexcept { ++references_; }
    /// Ends the object with its last reference.
    void dropReference() noexcept {
        if (--references_ == 0) {
            end();
        }
    }

private:
    friend factory::basic::BindingRegistry;

    /// Removes what binds the object to its native one.
    using Unbind = void (*)(OrdoInterface& object) noexcept;

    OrdoInterface(ClassIdentity& ordoClass, void* native, NativeCopier copier) noexcept
        : class_(&ordoClass), native_(native), copier_(copier) {}
    ~OrdoInterface() = default;

    void end() noexcept;

    ClassIdentity* class_;
    void* native_;
    void* peer_ = nullptr;
    NativeCopier copier_;
    OrdoInterface* nextBound_ = nullptr;  // to the same address, for another class
    std::size_t references_ = 0;
    Unbind unbind_ = nullptr;  // null for an object that isn't bound
};

/// A counted pointer to a script object, or null.
class OrdoObject {
public:
    OrdoObject() noexcept = default;
    explicit OrdoObject(OrdoInterface* object) noexcept : object_(object) {
        if (object_ != nullptr) {
            object_->addReference();
        }
    }
    OrdoObject(OrdoObject const& other) noexcept : OrdoObject(other.object_) {}
    OrdoObject(OrdoObject&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    OrdoObject& operator=(OrdoObject other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~OrdoObject() {
        if (object_ != nullptr) {
            object_->dropReference();
        }
    }

    OrdoInterface* get() const noexcept { return object_; }
    OrdoInterface* operator->() const noexcept { return object_; }
    OrdoInterface& operator*() const noexcept { return *object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// Gives the reference away.
    OrdoInterface* release() noexcept { return std::exchange(object_, nullptr); }

    friend bool operator==(OrdoObject const&, OrdoObject const&) noexcept = default;

private:
    OrdoInterface* object_ = nullptr;
};

/// A 1 by 1 object array that holds the script object; an object without a native one gives an empty array of its
/// class. Copying such an array shares an object that has identity and copies one that is a value.
ORDO_API zx::Array toArray(OrdoInterface& object);

/// The script object at a place of an object array; null if there is none, or if it is an array of other things.
ORDO_API OrdoInterface* objectAt(zxArray const* array, std::size_t index = 0) noexcept;

/// What object arrays do with script objects, which are their native objects: `OrdoInterface*` as `void*`, with one
/// reference each.
ORDO_API zx::NativeOperations const& scriptObjectOperations() noexcept;

}  // namespace ordo
