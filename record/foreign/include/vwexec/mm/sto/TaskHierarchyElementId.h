// The identifier of an element of the task hierarchy.
#pragma once

#include <quay/zero/structured_value.h>

#include <vwexec/mm/sto/export.h>

#include <string>
#include <tuple>

namespace vwexec::mm::sto {

/// A plain value that holds one 8-bit text.
class VWEXEC_MM_STO_API TaskHierarchyElementId {
public:
    std::string const& getText() const noexcept { return text_; }
    void setText(std::string const& value) { text_ = value; }

    bool operator==(TaskHierarchyElementId const& other) const { return text_ == other.text_; }
    bool operator<(TaskHierarchyElementId const& other) const { return text_ < other.text_; }

    static constexpr auto fields() { return std::make_tuple(&TaskHierarchyElementId::text_); }

private:
    std::string text_;
};

class VWEXEC_MM_STO_API TaskHierarchyElementIdDatatypeSerializer final
    : public quay::zero::FieldwiseSerializer<TaskHierarchyElementId> {};

}  // namespace vwexec::mm::sto

template <>
struct std::hash<vwexec::mm::sto::TaskHierarchyElementId> {
    std::size_t operator()(vwexec::mm::sto::TaskHierarchyElementId const& v) const { return quay::zero::hashFields(v); }
};

template <>
struct VWEXEC_MM_STO_API quay::zero::TypeOf<vwexec::mm::sto::TaskHierarchyElementId> {
    static meta::Type const& type();
};
