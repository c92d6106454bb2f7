#include "workshop.h"

#include "workshop_collections.h"

#include <memory>
#include <new>
#include <stdexcept>

using ordo::MethodCall;
using ordo::OrdoClass;
using ordo::OrdoMethodSignature;
using ordo::OrdoValue;
using ordo::factory::basic::BindingRegistry;
namespace impl = ordo::factory::impl;

namespace ordo::factory {

template <>
struct ValueType<workshop::Color> {
    static std::string typeWord() { return "workshop.Color"; }
    static OrdoClass& enumeration() { return *OrdoClass::getClass(internName("workshop.Color")); }
    static OrdoValue toScript(workshop::Color value) {
        return OrdoValue::enumeration(enumeration(), static_cast<std::int32_t>(value));
    }
    static workshop::Color fromScript(OrdoValue const& value) {
        return static_cast<workshop::Color>(enumerationNumber(enumeration(), value));
    }
};

template <>
struct ValueType<workshop::Extent> {
    static std::string typeWord() { return "workshop.Extent"; }
    static OrdoValue toScript(workshop::Extent const& value) {
        constexpr auto copier = Marshaler<DataTypePolicy>::copier<workshop::Extent>;
        return OrdoValue::fromObject(
            BindingRegistry::announceWithoutStoring(copier(&value), internName("workshop.Extent"), copier));
    }
    static workshop::Extent fromScript(OrdoValue const& value) {
        auto const* const extent = static_cast<workshop::Extent*>(value.native(internName("workshop.Extent")));
        if (extent == nullptr) {
            raiseWith(failures::WrongType, {value.describe(), "an object of class 'workshop.Extent'"});
        }
        return *extent;
    }
};

template <>
struct ValueType<workshop::ItemRef> {
    static std::string typeWord() { return "workshop.Item"; }
    static OrdoValue toScript(workshop::ItemRef const& value) { return workshop::announceItem(value.get()); }
    static workshop::ItemRef fromScript(OrdoValue const& value) { return workshop::itemOf(value); }
};

}  // namespace ordo::factory

namespace workshop {
namespace {

/// A property that is a data member.
template <auto Member, class V, class X>
std::unique_ptr<ordo::OrdoPropInfo> memberProperty(char const* name) {
    auto const get = [](X* self) -> V const& { return self->*Member; };
    auto const set = [](X* self, V value) { self->*Member = std::move(value); };
    using Get = V const& (*)(X*);
    using Set = void (*)(X*, V);
    return std::make_unique<impl::PropertyImpl>(
        name, 0, std::make_unique<impl::AdaptedClassGetter<V, X, Get>>(static_cast<Get>(get)),
        std::make_unique<impl::AdaptedClassSetter<V, X, Set>>(static_cast<Set>(set)), "A value for tests.");
}

/// A read-only property that is an object of its own.
class ViewProperty final : public impl::PropertyImplBase {
public:
    using Read = OrdoValue (*)(Item& item);
    ViewProperty(char const* name, Read read) : PropertyImplBase(name, 0, "Members for tests."), read_(read) {}
    std::string getTypeWord() const override { return "any"; }
    bool isReadOnly() const noexcept override { return true; }
    OrdoValue get(void* self) const override { return read_(*static_cast<Item*>(self)); }
    void set(void*, OrdoValue const&) const override {
        ordo::raiseWith(ordo::failures::ReadOnly, {std::string(name().text()), "Item"});
    }

private:
    Read read_;
};

/// A property that keeps any array.
class ArrayProperty final : public impl::PropertyImplBase {
public:
    ArrayProperty() : PropertyImplBase("notes", 0) {}
    std::string getTypeWord() const override { return "any"; }
    OrdoValue get(void* self) const override { return OrdoValue::borrowedArray(static_cast<Item*>(self)->notes.get()); }
    void set(void* self, OrdoValue const& value) const override {
        static_cast<Item*>(self)->notes = value.isNothing() ? nullptr : value.toArray();
    }
};

void method(OrdoClass& ordoClass, char const* name, std::vector<std::string> inputs, std::size_t optional,
            impl::MethodImpl::CallThunk thunk, unsigned attributes = 0) {
    ordoClass.addMethod(std::make_unique<impl::MethodImpl>(
        name, ordo::factory::MethodAttributes{attributes},
        OrdoMethodSignature::createMethodSignature("", "any", std::move(inputs), optional), thunk, nullptr,
        "A method for tests."));
}

Item& self(MethodCall const& call) { return *itemOf(call.argument(0)).get(); }

/// Throws one of the exceptions that native code may throw.
void fail(impl::MethodImpl::Function, MethodCall& call) {
    std::u16string const kind = call.argument(1).toText();
    if (kind == u"memory") {
        throw std::bad_alloc();
    }
    if (kind == u"standard") {
        throw std::runtime_error("the standard way");
    }
    if (kind == u"identifier") {
        ordo::raiseWith(ordo::failures::NoSuchKey, {"'k\xC3\xA4se'"});
    }
    throw 7;  // NOLINT(bugprone-throw-keyword-missing,misc-throw-by-value-catch-by-reference)
}

class ItemInfo : public ordo::factory::HandleClassInfo<Item, false> {
public:
    using HandleClassInfo::HandleClassInfo;
    std::string_view getDescription() const noexcept override { return "An item for tests."; }
    ordo::ValidityCheck validityCheck() const noexcept override {
        return [](void const* native) noexcept { return static_cast<Item const*>(native)->alive; };
    }
    std::string describeInstance(void const* native) const override {
        return ordo::factory::bytesOf(static_cast<Item const*>(native)->name);
    }
    void defineClass(OrdoClass& ordoClass) override;

protected:
    void dropReference(void* native) noexcept override { static_cast<Item*>(native)->dropReference(); }
};

void construct(MethodCall& call, ItemRef const& item) {
    if (!call.argument(0).isNothing()) {
        item->name = call.argument(0).toText();
    }
    std::string_view const name = item->isTool() ? "workshop.Tool" : "workshop.Item";
    if (BindingRegistry::announceForConstructor(item.get(), ordo::internName(name), *call.constructed(), true)) {
        item->addReference();
    }
}

void defineProperties(OrdoClass& ordoClass) {
    ordoClass.addProperty(memberProperty<&Item::ready, bool, Item>("ready"));
    ordoClass.addProperty(memberProperty<&Item::count, std::int32_t, Item>("count"));
    ordoClass.addProperty(memberProperty<&Item::size, std::uint32_t, Item>("size"));
    ordoClass.addProperty(memberProperty<&Item::serial, std::uint64_t, Item>("serial"));
    ordoClass.addProperty(memberProperty<&Item::weight, double, Item>("weight"));
    ordoClass.addProperty(memberProperty<&Item::name, std::u16string, Item>("name"));
    ordoClass.addProperty(memberProperty<&Item::label, std::string, Item>("label"));
    ordoClass.addProperty(memberProperty<&Item::limit, boost::optional<bool>, Item>("limit"));
    ordoClass.addProperty(memberProperty<&Item::rank, boost::optional<std::int32_t>, Item>("rank"));
    ordoClass.addProperty(memberProperty<&Item::stamp, boost::optional<std::uint64_t>, Item>("stamp"));
    ordoClass.addProperty(memberProperty<&Item::color, Color, Item>("color"));
    ordoClass.addProperty(memberProperty<&Item::extent, Extent, Item>("extent"));
    ordoClass.addProperty(memberProperty<&Item::child, ItemRef, Item>("child"));
    ordoClass.addProperty(std::make_unique<ArrayProperty>());
    using View = std::pair<char const*, ViewProperty::Read>;
    for (auto const& [name, read] : {
             View("parts", [](Item& item) { return announceMembers(item.parts, "workshop.Parts"); }),
             View("bag", [](Item& item) { return announceMembers(item.bag, "workshop.Bag"); }),
             View("index", [](Item& item) { return announceMembers(item.index, "workshop.Index"); }),
             View("groups", [](Item& item) { return announceMembers(item.groups, "workshop.Groups"); }),
             View("tags", [](Item& item) { return announceTags(item.tags); }),
         }) {
        ordoClass.addProperty(std::make_unique<ViewProperty>(name, read));
    }
}

void ItemInfo::defineClass(OrdoClass& ordoClass) {
    method(ordoClass, "Item", {"char"}, 1,
           [](impl::MethodImpl::Function, MethodCall& call) { construct(call, ItemRef(new Item)); });
    defineProperties(ordoClass);
    method(ordoClass, "createPart", {"workshop.Item", "char"}, 1, [](impl::MethodImpl::Function, MethodCall& call) {
        Item& owner = self(call);
        ItemRef const made(new Item);
        made->name = call.argument(1).isNothing() ? u"" : call.argument(1).toText();
        owner.parts.items.push_back(made);
        call.setResult(call.wantsResult() ? announceItem(made.get()) : OrdoValue());
    });
    method(ordoClass, "destroy", {"workshop.Item"}, 0,
           [](impl::MethodImpl::Function, MethodCall& call) { ItemRef(&self(call))->destroy(); });
    method(ordoClass, "echo", {"workshop.Item", "any"}, 0,
           [](impl::MethodImpl::Function, MethodCall& call) { call.setResult(call.argument(1)); });
    method(ordoClass, "fail", {"workshop.Item", "char"}, 0, fail);
    method(ordoClass, "begin", {"workshop.Item"}, 0, [](impl::MethodImpl::Function, MethodCall& call) {
        bool isNew = false;
        Record::instance().lastTransaction = "open";
        call.setResult(OrdoValue::fromObject(
            BindingRegistry::announce(&Record::instance(), ordo::internName("workshop.Change"), isNew)));
    });
    method(
        ordoClass, "itemCount", {}, 0,
        [](impl::MethodImpl::Function, MethodCall& call) {
            call.setResult(OrdoValue::int32(Record::instance().items));
        },
        ordo::staticMethodAttributes);
}

class ToolInfo final : public ItemInfo {
public:
    using ItemInfo::ItemInfo;
    void defineClass(OrdoClass& ordoClass) override {
        ordoClass.addSuperclass("workshop.Item", 1, 0, 1);
        method(ordoClass, "Tool", {"char"}, 1,
               [](impl::MethodImpl::Function, MethodCall& call) { construct(call, ItemRef(new Item(true))); });
    }
};

class AbstractInfo final : public ItemInfo {
public:
    using ItemInfo::ItemInfo;
    bool isAbstract() const noexcept override { return true; }
    void defineClass(OrdoClass& ordoClass) override { ordoClass.addSuperclass("workshop.Item", 1, 0, 1); }
};

/// A class whose definition fails the first time.
class FragileInfo final : public ItemInfo {
public:
    using ItemInfo::ItemInfo;
    void defineClass(OrdoClass& ordoClass) override {
        ordoClass.addSuperclass("workshop.Item", 1, 0, 1);
        if (!std::exchange(failed_, true)) {
            throw std::runtime_error("not yet");
        }
    }

private:
    bool failed_ = false;
};

class MembersInfo final : public ordo::factory::HandleClassInfo<Members, false> {
public:
    MembersInfo(char const* name, ordo::OrdoCollection const& collection)
        : HandleClassInfo(name, std::string("workshop.") + name), collection_(collection) {}
    ordo::OrdoCollection const* collection() const noexcept override { return &collection_; }
    ordo::ValidityCheck validityCheck() const noexcept override {
        return [](void const* native) noexcept { return static_cast<Members const*>(native)->owner->alive; };
    }
    void defineClass(OrdoClass& ordoClass) override {
        method(ordoClass, "add", {"any", "any"}, 0, [](impl::MethodImpl::Function, MethodCall& call) {
            ItemRef item = itemOf(call.argument(1));
            static_cast<Members*>(call.argument(0).object()->native())->items.push_back(std::move(item));
        });
    }

protected:
    void dropReference(void* native) noexcept override { static_cast<Members*>(native)->owner->dropReference(); }

private:
    ordo::OrdoCollection const& collection_;
};

class TagsInfo final : public ordo::factory::HandleClassInfo<Tags, false> {
public:
    using HandleClassInfo::HandleClassInfo;
    ordo::OrdoCollection const* collection() const noexcept override { return &setOfTexts(); }
    void defineClass(OrdoClass& ordoClass) override {
        method(ordoClass, "add", {"any", "char"}, 0, [](impl::MethodImpl::Function, MethodCall& call) {
            static_cast<Tags*>(call.argument(0).object()->native())->texts.insert(call.argument(1).toText());
        });
    }

protected:
    void dropReference(void* native) noexcept override { static_cast<Tags*>(native)->owner->dropReference(); }
};

class ChangeInfo final : public ordo::factory::HandleClassInfo<Record, false> {
public:
    using HandleClassInfo::HandleClassInfo;
    bool isTransaction() const noexcept override { return true; }
    void defineClass(OrdoClass& ordoClass) override {
        method(ordoClass, "commit", {"any"}, 0,
               [](impl::MethodImpl::Function, MethodCall&) { Record::instance().lastTransaction = "committed"; });
        method(ordoClass, "rollback", {"any"}, 0,
               [](impl::MethodImpl::Function, MethodCall&) { Record::instance().lastTransaction = "rolled back"; });
        method(
            ordoClass, "last", {}, 0,
            [](impl::MethodImpl::Function, MethodCall& call) {
                call.setResult(OrdoValue::bytes(Record::instance().lastTransaction));
            },
            ordo::staticMethodAttributes);
    }

protected:
    void dropReference(void*) noexcept override {}
};

class ExtentInfo final : public ordo::factory::NonHandleClassInfo<Extent, Extent> {
public:
    using NonHandleClassInfo::NonHandleClassInfo;
    void defineClass(OrdoClass& ordoClass) override {
        ordoClass.addMethod(std::make_unique<impl::OrdoConstructor>(
            "Extent", "workshop.Extent", ordo::factory::Marshaler<ordo::factory::DataTypePolicy>::copier<Extent>));
        ordoClass.addProperty(memberProperty<&Extent::width, double, Extent>("width"));
        ordoClass.addProperty(memberProperty<&Extent::height, std::int32_t, Extent>("height"));
        method(ordoClass, "eq", {"workshop.Extent", "workshop.Extent"}, 0,
               [](impl::MethodImpl::Function, MethodCall& call) {
                   using Type = ordo::factory::ValueType<Extent>;
                   call.setResult(
                       OrdoValue::logical(Type::fromScript(call.argument(0)) == Type::fromScript(call.argument(1))));
               });
        method(ordoClass, "lt", {"workshop.Extent", "workshop.Extent"}, 0,
               [](impl::MethodImpl::Function, MethodCall& call) {
                   using Type = ordo::factory::ValueType<Extent>;
                   call.setResult(
                       OrdoValue::logical(Type::fromScript(call.argument(0)) < Type::fromScript(call.argument(1))));
               });
    }
};

class ColorLiteral final : public ordo::OrdoEnumInfo {
public:
    ColorLiteral(OrdoClass& ordoClass, char const* name, Color color)
        : class_(ordoClass), name_(ordo::internName(name)), color_(color) {}
    ordo::InternedName getName() const noexcept override { return name_; }
    OrdoClass& getClass() const noexcept override { return class_; }
    std::int32_t getNumericValue() const noexcept override { return static_cast<std::int32_t>(color_); }
    zxArray const* getValue() override {
        value_ = value_ != nullptr ? std::move(value_) : OrdoValue::enumeration(class_, getNumericValue()).toArray();
        return value_.get();
    }

private:
    OrdoClass& class_;
    ordo::InternedName name_;
    Color color_;
    zx::Array value_;
};

class ColorInfo final : public ordo::factory::NonHandleClassInfo<Color, Color> {
public:
    using NonHandleClassInfo::NonHandleClassInfo;
    bool isEnumeration() const noexcept override { return true; }
    void* makeInstance() override { return nullptr; }
    void freeInstance(void*) noexcept override {}
    void defineClass(OrdoClass& ordoClass) override {
        ordoClass.addSuperclass("int32", 0, 0, 1);
        method(ordoClass, "Color", {"any"}, 0, [](impl::MethodImpl::Function, MethodCall& call) {
            call.setResult(
                OrdoClass::getClass(ordo::internName("workshop.Color"))->constructEnumeration(call.argument(0)));
        });
        ordoClass.addEnumeration(std::make_unique<ColorLiteral>(ordoClass, "Red", Color::Red));
        ordoClass.addEnumeration(std::make_unique<ColorLiteral>(ordoClass, "Green", Color::Green));
        ordoClass.addEnumeration(std::make_unique<ColorLiteral>(ordoClass, "Blue", Color::Blue));
        method(ordoClass, "getValue", {"workshop.Color"}, 0, [](impl::MethodImpl::Function, MethodCall& call) {
            call.setResult(OrdoValue::int32(call.argument(0).toInt32()));
        });
    }
};

class Package final : public ordo::OrdoPackageInfo {
public:
    explicit Package(char const* name) : name_(name) {}
    std::string_view getName() const noexcept override { return name_; }
    std::string_view getDescription() const noexcept override { return "Classes for tests."; }
    void initializePackage(ordo::OrdoPackage* package) override {
        if (name_ != std::string_view("workshop")) {
            return;
        }
        package->addClass(new ItemInfo("Item", "workshop.Item"), 2);
        package->addClass(new ToolInfo("Tool", "workshop.Tool"), 2);
        package->addClass(new AbstractInfo("Idea", "workshop.Idea"), 2);
        package->addClass(new FragileInfo("Fragile", "workshop.Fragile"), 2);
        package->addClass(new MembersInfo("Parts", sequenceOfItems()), 2);
        package->addClass(new MembersInfo("Bag", setOfItems()), 2);
        package->addClass(new MembersInfo("Index", mapOfItems()), 2);
        package->addClass(new MembersInfo("Groups", multimapOfItems()), 2);
        package->addClass(new TagsInfo("Tags", "workshop.Tags"), 2);
        package->addClass(new ChangeInfo("Change", "workshop.Change"), 2);
        package->addClass(new ExtentInfo("Extent", "workshop.Extent"), 2);
        package->addClass(new ColorInfo("Color", "workshop.Color"), 2);
    }

private:
    char const* name_;
};

}  // namespace

void registerPackage() { ordo::OrdoPackage::addPackage(new Package("workshop"))->addSubPackage(new Package("cellar")); }

}  // namespace workshop

/// The entry point by which a host loads the library.
extern "C" [[gnu::visibility("default")]] void ZLInitialize_workshop() { workshop::registerPackage(); }
