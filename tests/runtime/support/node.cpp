#include "node.h"

#include <keel/text.h>
#include <quay/zero/meta/registry.h>
#include <quay/zero/meta/serializers.h>
#include <quay/zero/owned_collection_descriptor.h>
#include <quay/zero/text.h>
#include <quay/zero/value_descriptor.h>

#include <mutex>

namespace nodes {

using namespace quay::zero;

namespace {

template <class T>
class PlainDescriptor final : public ValueDescriptor<T> {
public:
    using ValueDescriptor<T>::ValueDescriptor;

    Value wrap(ModelElement::Impl const& /*e*/, meta::Property const& property, Cell& old) const override {
        return Value::createPrimitiveValue<T>(property, old.get<T>());
    }
    bool has(ModelElement::Impl const& /*e*/) const override { return true; }
    Value get(ModelElement::Impl const& e, meta::Property const& property,
              ReflectionPrivateTag const& /*tag*/) const override {
        return Value::createPrimitiveValue<T>(property, this->read(e));
    }
    void set(ModelElement::Impl& e, meta::Property const& /*property*/, Value const& value,
             ReflectionPrivateTag const& /*tag*/) const override {
        this->write(e, value.getValue<T>());
    }
};

template <class C>
class ValuesDescriptor final : public CollectionDescriptor {
public:
    template <class X>
    constexpr ValuesDescriptor(std::uint16_t index, C X::*field) noexcept
        : CollectionDescriptor(index, PropertyKind::PrimitiveCollection),
          field_(static_cast<C ModelElement::Impl::*>(field)) {}

    AbstractOwnedCollection* collection(ModelElement::Impl const& e) const override {
        return const_cast<C*>(&(e.*field_));
    }

private:
    C ModelElement::Impl::*field_;
};

/// A property with children, of any collection; `Base` is KeyedDescriptor for maps.
template <class C, class Base = CollectionDescriptor>
class ChildrenDescriptor final : public OwnedCollectionDescriptor<C, Base> {
public:
    using OwnedCollectionDescriptor<C, Base>::OwnedCollectionDescriptor;
};

std::u16string const& textKey(ModelElement::Impl const& e) { return static_cast<Node::Impl const&>(e).text(); }
int rankKey(ModelElement::Impl const& e) { return static_cast<Node::Impl const&>(e).rank(); }
double numberKey(ModelElement::Impl const& e) { return static_cast<Node::Impl const&>(e).number(); }

}  // namespace

struct NodeDescriptors {
    using Children = ChildrenDescriptor<ElementSequence<Node>>;
    using ByName = ChildrenDescriptor<ElementMap<std::u16string, Node>, KeyedDescriptor<std::u16string>>;
    using ByRank = ChildrenDescriptor<ElementMultimap<int, Node>, KeyedDescriptor<int>>;
    using ByNumber = ChildrenDescriptor<ElementMap<double, Node>, KeyedDescriptor<double>>;

    static constexpr PlainDescriptor<std::u16string> text{kText, &Node::Impl::text_};
    static constexpr PlainDescriptor<double> number{kNumber, &Node::Impl::number_};
    static constexpr PlainDescriptor<boost::optional<int>> count{kCount, &Node::Impl::count_};
    static constexpr PlainDescriptor<int> rank{kRank, &Node::Impl::rank_};
    static constexpr PlainDescriptor<Box> box{kBox, &Node::Impl::box_};
    static constexpr ValuesDescriptor<PrimitiveSequence<int>> numbers{kNumbers, &Node::Impl::numbers_};
    static constexpr ValuesDescriptor<PrimitiveSet<std::u16string>> tags{kTags, &Node::Impl::tags_};
    static constexpr Children children{kChildren, &Node::Impl::children_, PropertyKind::ElementCollection};
    static constexpr ByName byName{kByName, &Node::Impl::byName_, &textKey};
    static constexpr ByRank byRank{kByRank, &Node::Impl::byRank_, &rankKey};
    static constexpr ByNumber byNumber{kByNumber, &Node::Impl::byNumber_, &numberKey};
    static constexpr PropertyDescriptor const* node[] = {&text, &number,   &count,  &rank,   &box,     &numbers,
                                                         &tags, &children, &byName, &byRank, &byNumber};

    static constexpr PlainDescriptor<std::string> note{kNote, &Special::Impl::note_};
    static constexpr Children parts{kParts, &Special::Impl::parts_, PropertyKind::ElementCollection};
    static constexpr PropertyDescriptor const* special[] = {&note, &parts};
};

ClassTable const& Node::classTable() {
    static constexpr ClassTable table{&ModelElement::classTable, kText, NodeDescriptors::node, nullptr, nullptr};
    return table;
}
ClassTable const& Special::classTable() {
    static constexpr ClassTable table{&Node::classTable, kNote, NodeDescriptors::special, nullptr, nullptr};
    return table;
}

meta::Class const& Node::metaClass() { return nodeMeta().node; }
meta::Class const& Special::metaClass() { return nodeMeta().special; }

// --- Nodes ----------------------------------------------------------------------------------------------------------

std::atomic<int> Node::Impl::living = 0;
void (*Node::Impl::whenCreated)(Impl&) = nullptr;
void (*Node::Impl::whenDestroying)(Impl&) = nullptr;

Node::Impl::Impl(Model const& model, boost::uuids::uuid const& id) : ModelElement::Impl(model, id) { ++living; }
Node::Impl::~Impl() { --living; }

void Node::Impl::aboutToDestroy() {
    if (whenDestroying != nullptr) whenDestroying(*this);
}
void Node::Impl::didCreate() {
    if (whenCreated != nullptr) whenCreated(*this);
}

void Node::Impl::setText(std::u16string const& text) { NodeDescriptors::text.write(*this, text); }
void Node::Impl::setNumber(double number) { NodeDescriptors::number.write(*this, number); }
void Node::Impl::setCount(boost::optional<int> const& count) { NodeDescriptors::count.write(*this, count); }
void Node::Impl::setRank(int rank) { NodeDescriptors::rank.write(*this, rank); }
void Node::Impl::setBox(Box const& box) { NodeDescriptors::box.write(*this, box); }
void Special::Impl::setNote(std::string const& note) { NodeDescriptors::note.write(*this, note); }

namespace {

template <class X>
X make(Model const& model, boost::uuids::uuid const& id) {
    Savepoint savepoint(model->journal());
    X made = X::of(new typename X::Impl(model, id));
    made->notifyCreated();
    savepoint.commit();
    return made;
}

}  // namespace

Node Node::create(Model const& model, boost::uuids::uuid const& id) { return make<Node>(model, id); }
Special Special::create(Model const& model, boost::uuids::uuid const& id) { return make<Special>(model, id); }

boost::uuids::uuid idOf(unsigned number) {
    boost::uuids::uuid id{};
    for (int i = 0; i < 4; ++i) id.data[15 - i] = static_cast<std::uint8_t>(number >> (8 * i));
    return id;
}

// --- Meta objects ---------------------------------------------------------------------------------------------------

namespace {

/// Writes a box as the length of its first side.
class BoxSerializer final : public meta::DefaultPropertySerializer<Box> {
protected:
    std::u16string toText(Box const& box, meta::Type const& /*type*/) const override { return textOf(box.sides[0]); }
    Box fromText(std::u16string const& text, meta::Type const& /*type*/) const override {
        return {{std::stod(keel::toUtf8(text))}};
    }
};

NodeMeta declareNodes() {
    using meta::StandardTypes;
    auto* const registry = meta::MetaRegistry::getInstance();
    std::lock_guard const lock(registry->mutex());
    Model::Thawer const thawer = registry->freezer().thaw();
    Model const& model = registry->model();
    Transaction transaction = model->beginTransaction(true);

    NodeMeta made;
    made.package = meta::Package::create(model, {});
    made.package->setName(u"nodes");
    auto const addType = [&](auto type, char16_t const* name) {
        type->setName(name);
        type->setOwningPackage(made.package);
        return type;
    };
    made.node = addType(meta::Class::create(model, {}), u"Node");
    made.node->setSuperclass(ModelElement::metaClass());
    made.special = addType(meta::Class::create(model, {}), u"Special");
    made.special->setSuperclass(made.node);
    made.box = addType(meta::DataType::create(model, {}), u"Box");

    made.properties.emplace_back();
    auto const add = [&](meta::Class const& owner, char16_t const* name, ValueFlags flags, meta::Type const& type) {
        auto const property = meta::Property::create(model, {});
        auto const index = static_cast<std::uint16_t>(made.properties.size());
        property->setName(name);
        property->setFlags(flags);
        property->setIsComposite(meta::Class::cast(type).impl() != nullptr);
        property->setOwningType(owner);
        property->setType(type);
        property->setIndex(index);
        ClassTable const& table = owner == made.node ? Node::classTable() : Special::classTable();
        property->setDescriptor(table, table.descriptorAt(index));
        made.properties.push_back(property);
    };
    add(made.node, u"text", ValueFlags::One, StandardTypes::stringMeta);
    add(made.node, u"number", ValueFlags::One, StandardTypes::realMeta);
    add(made.node, u"count", ValueFlags::Optional, StandardTypes::integerMeta);
    add(made.node, u"rank", ValueFlags::One, StandardTypes::integerMeta);
    add(made.node, u"box", ValueFlags::One, made.box);
    add(made.node, u"numbers", ValueFlags::Sequence, StandardTypes::integerMeta);
    add(made.node, u"tags", ValueFlags::Set, StandardTypes::stringMeta);
    add(made.node, u"children", ValueFlags::Sequence, made.node);
    add(made.node, u"byName", ValueFlags::Map, made.node);
    add(made.node, u"byRank", ValueFlags::Multimap, made.node);
    add(made.node, u"byNumber", ValueFlags::Map, made.node);
    add(made.special, u"note", ValueFlags::One, StandardTypes::stdstringMeta);
    add(made.special, u"parts", ValueFlags::Sequence, made.node);
    made.properties[kByName]->setQualifiedBy(made.properties[kText]);
    made.properties[kByRank]->setQualifiedBy(made.properties[kRank]);
    made.properties[kByNumber]->setQualifiedBy(made.properties[kNumber]);
    transaction.commit(boost::none);
    return made;
}

}  // namespace

NodeMeta const& nodeMeta() {
    static NodeMeta const meta = [] {
        NodeMeta made = declareNodes();
        meta::PropertySerializerRegistry::getInstance()->registerPropertySerializer(
            made.box, std::make_unique<BoxSerializer>(), "");
        return made;
    }();
    return meta;
}

}  // namespace nodes
