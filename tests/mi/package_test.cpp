// Packages with dotted names, parsing of ids, and the runtime's script classes without any schema.
#include <ordo/ordo.h>
#include <quay/zero/mi/bindings.h>
#include <quay/zero/mi/builder_from_struct.h>
#include <quay/zero/mi/registration.h>

#include <gtest/gtest.h>
#include <zx/zx.h>

#include <memory>
#include <string>

namespace {

using ordo::OrdoPackage;
using ordo::OrdoValue;
using quay::zero::mi::EmptyParentPackage;

TEST(EmptyParentPackage, SplitsItsNameAtTheLastDot) {
    struct {
        char const* dotted;
        char const* name;
        char const* parent;
    } const cases[] = {{"a.b.c", "c", "a.b"}, {"a", "a", ""}, {"", "", ""}, {"a.b.", "", "a.b"}, {".a", "a", ""}};
    for (auto const& c : cases) {
        EmptyParentPackage const package(c.dotted);
        EXPECT_EQ(package.getName(), c.name) << c.dotted;
        EXPECT_EQ(package.parentPath(), c.parent) << c.dotted;
    }
}

OrdoPackage* packageNamed(char const* name) { return OrdoPackage::getPackage(ordo::internName(name)); }

TEST(EmptyParentPackage, MakesTheParentsThatAreMissingAndNoOthers) {
    OrdoPackage* const outer = EmptyParentPackage::registerPackage(std::make_unique<EmptyParentPackage>("tree"));
    OrdoPackage* const leaf = EmptyParentPackage::registerPackage(std::make_unique<EmptyParentPackage>("tree.a.b.c"));
    EXPECT_EQ(packageNamed("tree"), outer);
    EXPECT_EQ(packageNamed("tree.a.b.c"), leaf);
    EXPECT_EQ(leaf->parent(), packageNamed("tree.a.b"));
    EXPECT_EQ(packageNamed("tree.a")->parent(), outer);
    EXPECT_EQ(EmptyParentPackage::registerPackage(std::make_unique<EmptyParentPackage>("tree.a.b.c")), leaf);
    EXPECT_EQ(outer->subPackages().size(), 1u);
    EXPECT_EQ(packageNamed("a"), nullptr);
}

TEST(Ids, AreCanonicalTextsInAnyCase) {
    std::string const good = "0e54007f-7a55-3c94-a420-4268d173b4cb";
    auto const read = [](std::string_view text) {
        return quay::zero::mi::detail::extractUuid(OrdoValue::borrowedBytes(text));
    };
    ASSERT_TRUE(read(good));
    EXPECT_EQ(read("0E54007F-7A55-3C94-A420-4268D173B4CB"), read(good));
    EXPECT_EQ(read(good)->data[0], 0x0e);
    EXPECT_EQ(read(good)->data[15], 0xcb);
    EXPECT_TRUE(read("00000000-0000-0000-0000-000000000000")->is_nil());
    for (std::string const& bad :
         {std::string(), "{" + good + "}", good + "0", good.substr(1), good + "\n",
          std::string("0e54007f7a553c94a4204268d173b4cb"), std::string("0e54007f-7a55-3c94-a420-4268d173b4cg"),
          std::string("0e54007f-7a55-3c94-a4204-268d173b4cb")}) {
        EXPECT_FALSE(read(bad)) << bad;
    }
    EXPECT_FALSE(quay::zero::mi::detail::extractUuid(OrdoValue::real(1)));
    EXPECT_FALSE(quay::zero::mi::detail::extractUuid(nullptr));
}

TEST(RuntimeClasses, ModelsAreMadeAndLetGo) {
    quay::zero::mi::registerRuntimeClasses();
    quay::zero::mi::registerRuntimeClasses();
    std::size_t const bindings = ordo::factory::basic::BindingRegistry::size();
    {
        OrdoValue const made = ordo::OrdoClass::getClass(ordo::internName("quay.zero.Model"))->construct({});
        quay::zero::Model const model = quay::zero::mi::modelIn(made);
        ASSERT_TRUE(model);
        EXPECT_EQ(model.impl()->refCount(), 3u);  // the binding's two references, and this one
        EXPECT_EQ(quay::zero::mi::toScript(model).object(), made.object());
    }
    EXPECT_EQ(ordo::factory::basic::BindingRegistry::size(), bindings);
    for (char const* name : {"Sequence", "Set", "Map", "Multimap", "PrimitiveSequence", "PrimitiveSet",
                             "PrimitiveAssociativeCollection", "Transaction", "ModelElement", "meta.Class"}) {
        auto const full = ordo::internName(std::string("quay.zero.") + name);
        ASSERT_NE(ordo::OrdoClass::getClass(full), nullptr) << name;
        EXPECT_FALSE(ordo::OrdoClass::getClass(full)->info().getDescription().empty()) << name;
    }
}

}  // namespace
