// Elements for tests of the runtime: written by hand, with a property of each family of descriptors.
#pragma once

#include <quay/zero/element_map.h>
#include <quay/zero/element_sequence.h>
#include <quay/zero/meta/types.h>
#include <quay/zero/primitive_collection.h>
#include <quay/zero/typed_handle.h>

#include <array>
#include <atomic>
#include <boost/optional.hpp>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace nodes {

/// A structured value that is too large for a cell.
struct Box {
    std::array<double, 5> sides{};
    friend bool operator==(Box const&, Box const&) = default;
    friend bool operator<(Box const& a, Box const& b) { return a.sides < b.sides; }
};

class Node : public quay::zero::TypedHandle<Node, quay::zero::ModelElement> {
public:
    class Impl;
    static Node create(quay::zero::Model const& model, boost::uuids::uuid const& id = {});
    static quay::zero::meta::Class const& metaClass();
    static quay::zero::ClassTable const& classTable();
};

/// A subclass, with a value and children of its own.
class Special : public quay::zero::TypedHandle<Special, Node> {
public:
    class Impl;
    static Special create(quay::zero::Model const& model, boost::uuids::uuid const& id = {});
    static quay::zero::meta::Class const& metaClass();
    static quay::zero::ClassTable const& classTable();
};

/// Indices of the properties.
enum Index : std::uint16_t {
    kText = 1,
    kNumber,
    kCount,
    kRank,
    kBox,
    kNumbers,
    kTags,
    kChildren,
    kByName,    // keyed by text
    kByRank,    // keyed by rank, several per key
    kByNumber,  // keyed by number
    kNote,      // of Special
    kParts      // of Special
};

class Node::Impl : public quay::zero::ModelElement::Impl {
public:
    Impl(quay::zero::Model const& model, boost::uuids::uuid const& id);
    ~Impl() override;
    quay::zero::meta::Class const& getMetaClass() const override { return Node::metaClass(); }
    quay::zero::ClassTable const& classTable() const override { return Node::classTable(); }

    // The key may be written only while the node is in no map.
    std::u16string const& text() const { return text_; }
    void setText(std::u16string const& text);
    double number() const { return number_; }
    void setNumber(double number);
    boost::optional<int> const& count() const { return count_; }
    void setCount(boost::optional<int> const& count);
    int rank() const { return rank_; }
    void setRank(int rank);
    Box const& box() const { return box_; }
    void setBox(Box const& box);

    quay::zero::PrimitiveSequence<int>& numbers() { return numbers_; }
    quay::zero::PrimitiveSet<std::u16string>& tags() { return tags_; }
    quay::zero::ElementSequence<Node>& children() { return children_; }
    quay::zero::ElementMap<std::u16string, Node>& byName() { return byName_; }
    quay::zero::ElementMultimap<int, Node>& byRank() { return byRank_; }
    quay::zero::ElementMap<double, Node>& byNumber() { return byNumber_; }

    /// The number of nodes in the process, including dead ones that a handle refers to.
    static std::atomic<int> living;
    /// Called where a class of a host can run code of its own; they may throw.
    static void (*whenCreated)(Impl&);
    static void (*whenDestroying)(Impl&);

protected:
    void aboutToDestroy() override;
    void didCreate() override;

private:
    friend struct NodeDescriptors;
    double number_ = 0;
    boost::optional<int> count_;
    int rank_ = 0;
    std::u16string text_;
    Box box_;
    quay::zero::PrimitiveSequence<int> numbers_{this, kNumbers};
    quay::zero::PrimitiveSet<std::u16string> tags_{this, kTags};
    quay::zero::ElementSequence<Node> children_{this, kChildren};
    quay::zero::ElementMap<std::u16string, Node> byName_{this, kByName};
    quay::zero::ElementMultimap<int, Node> byRank_{this, kByRank};
    quay::zero::ElementMap<double, Node> byNumber_{this, kByNumber};
};

class Special::Impl final : public Node::Impl {
public:
    using Node::Impl::Impl;
    quay::zero::meta::Class const& getMetaClass() const override { return Special::metaClass(); }
    quay::zero::ClassTable const& classTable() const override { return Special::classTable(); }

    std::string const& note() const { return note_; }
    void setNote(std::string const& note);
    quay::zero::ElementSequence<Node>& parts() { return parts_; }

private:
    friend struct NodeDescriptors;
    std::string note_;
    quay::zero::ElementSequence<Node> parts_{this, kParts};
};

/// The meta objects of the two classes. They are in the registry's model but aren't registered.
struct NodeMeta {
    quay::zero::meta::Package package;
    quay::zero::meta::Class node;
    quay::zero::meta::Class special;
    quay::zero::meta::DataType box;
    /// By index; the one at 0 is empty.
    std::vector<quay::zero::meta::Property> properties;
};
NodeMeta const& nodeMeta();

/// The id whose last bytes are this number.
boost::uuids::uuid idOf(unsigned number);

/// For its lifetime, calls a function when nodes are created or are about to be destroyed.
class Hook {
public:
    using Function = void (*)(Node::Impl&);
    Hook(Function& place, Function function) : place_(place) { place_ = function; }
    ~Hook() { place_ = nullptr; }
    Hook(Hook const&) = delete;
    Hook& operator=(Hook const&) = delete;

private:
    Function& place_;
};

}  // namespace nodes

template <>
struct std::hash<nodes::Box> {
    std::size_t operator()(nodes::Box const& box) const noexcept { return std::hash<double>()(box.sides[0]); }
};

template <>
struct quay::zero::TypeOf<nodes::Box> {
    static meta::Type const& type() { return nodes::nodeMeta().box; }
};
