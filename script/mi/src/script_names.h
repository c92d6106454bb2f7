// The names of the runtime's own script classes.
#pragma once

namespace quay::zero::mi::names {

inline constexpr char kPackage[] = "quay.zero";
inline constexpr char kMetaPackage[] = "quay.zero.meta";
inline constexpr char kModel[] = "quay.zero.Model";
inline constexpr char kElement[] = "quay.zero.ModelElement";
inline constexpr char kTransaction[] = "quay.zero.Transaction";
inline constexpr char kSequence[] = "quay.zero.Sequence";
inline constexpr char kSet[] = "quay.zero.Set";
inline constexpr char kMap[] = "quay.zero.Map";
inline constexpr char kMultimap[] = "quay.zero.Multimap";
inline constexpr char kPrimitiveSequence[] = "quay.zero.PrimitiveSequence";
inline constexpr char kPrimitiveSet[] = "quay.zero.PrimitiveSet";
inline constexpr char kPrimitiveAssociative[] = "quay.zero.PrimitiveAssociativeCollection";

}  // namespace quay::zero::mi::names
