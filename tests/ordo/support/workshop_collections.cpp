#include "workshop_collections.h"

#include <algorithm>

namespace workshop {
namespace {

using ordo::CollectionKind;
using ordo::OrdoValue;

class ItemCollection final : public ordo::OrdoCollection {
public:
    explicit ItemCollection(CollectionKind kind) : kind_(kind) {}

    CollectionKind kind() const noexcept override { return kind_; }
    std::size_t size(void* native) const override { return of(native).size(); }
    std::vector<OrdoValue> members(void* native) const override {
        std::vector<OrdoValue> result;
        for (ItemRef const& item : of(native)) {
            result.push_back(announceItem(item.get()));
        }
        return result;
    }
    bool contains(void* native, OrdoValue const& value) const override {
        if (kind_ == CollectionKind::Map || kind_ == CollectionKind::Multimap) {
            return !find(native, value).empty();
        }
        void const* const wanted = value.native(ordo::internName("workshop.Item"));
        auto const& items = of(native);
        return wanted != nullptr &&
               std::any_of(items.begin(), items.end(), [&](ItemRef const& item) { return item.get() == wanted; });
    }
    OrdoValue at(void* native, std::size_t index) const override { return announceItem(of(native)[index].get()); }
    std::vector<OrdoValue> keys(void* native) const override {
        std::vector<OrdoValue> result;
        for (ItemRef const& item : of(native)) {
            result.push_back(keyOf(*item.get()));
        }
        return result;
    }
    std::vector<OrdoValue> find(void* native, OrdoValue const& key) const override {
        std::vector<OrdoValue> result;
        for (ItemRef const& item : of(native)) {
            bool const same = kind_ == CollectionKind::Map ? key.isText() && key.toText() == item->name
                                                           : !key.isText() && key.toInt32() == item->count;
            if (same) {
                result.push_back(announceItem(item.get()));
            }
        }
        return result;
    }

private:
    static std::vector<ItemRef>& of(void* native) { return static_cast<Members*>(native)->items; }
    OrdoValue keyOf(Item const& item) const {
        return kind_ == CollectionKind::Map ? OrdoValue::text(item.name) : OrdoValue::int32(item.count);
    }

    CollectionKind kind_;
};

class TextCollection final : public ordo::OrdoCollection {
public:
    CollectionKind kind() const noexcept override { return CollectionKind::Set; }
    std::size_t size(void* native) const override { return of(native).size(); }
    std::vector<OrdoValue> members(void* native) const override {
        std::vector<OrdoValue> result;
        for (std::u16string const& text : of(native)) {
            result.push_back(OrdoValue::text(text));
        }
        return result;
    }
    bool contains(void* native, OrdoValue const& value) const override {
        return value.isText() && of(native).contains(value.toText());
    }

private:
    static std::set<std::u16string>& of(void* native) { return static_cast<Tags*>(native)->texts; }
};

}  // namespace

ordo::OrdoCollection const& sequenceOfItems() {
    static ItemCollection const instance(CollectionKind::Sequence);
    return instance;
}
ordo::OrdoCollection const& setOfItems() {
    static ItemCollection const instance(CollectionKind::Set);
    return instance;
}
ordo::OrdoCollection const& mapOfItems() {
    static ItemCollection const instance(CollectionKind::Map);
    return instance;
}
ordo::OrdoCollection const& multimapOfItems() {
    static ItemCollection const instance(CollectionKind::Multimap);
    return instance;
}
ordo::OrdoCollection const& setOfTexts() {
    static TextCollection const instance;
    return instance;
}

}  // namespace workshop
