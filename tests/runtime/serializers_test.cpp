// Values as text: the primitive types, and enumerations in their three forms.
#include "../common/expect.h"
#include "support/node_dump.h"

#include <quay/zero/meta/serializers.h>
#include <quay0/messages.h>

#include <gtest/gtest.h>
#include <boost/lexical_cast.hpp>

#include <limits>

namespace {

using namespace nodes;
using namespace quay::zero;
using meta::StandardTypes;
namespace msg = quay0::messages;

meta::PropertySerializer const& serializerOf(meta::Type const& type) {
    return *meta::PropertySerializerRegistry::getInstance()->getPropertySerializer(type);
}

template <class T>
struct Texts {
    std::vector<std::pair<std::u16string, T>> both;
    std::vector<std::pair<std::u16string, T>> parsed;  // texts that are parsed, but never written
    std::vector<std::u16string> refused;
};

template <class T>
void checkTexts(meta::Type const& type, Texts<T> const& texts) {
    auto const& s = serializerOf(type);
    for (auto const& [text, value] : texts.both) {
        EXPECT_EQ(s.serializeValue(Value(type, value, ValueFlags::One)), text);
        EXPECT_EQ(s.serializeOptionalValue(Value(type, value, ValueFlags::One)), text);
        EXPECT_EQ(s.parseValue(text, type), Value(type, value, ValueFlags::One)) << show(text);
        EXPECT_EQ(s.parseOptionalValue(text, type).hasPayload(), !text.empty());
    }
    for (auto const& [text, value] : texts.parsed) {
        EXPECT_EQ(s.parseValue(text, type), Value(type, value, ValueFlags::One)) << show(text);
    }
    for (auto const& text : texts.refused) {
        EXPECT_TRUE(throws<boost::bad_lexical_cast>([&] { (void)s.parseValue(text, type); })) << show(text);
    }
    EXPECT_EQ(s.createDefaultValue(type), Value(type, T(), ValueFlags::One));
    Value const empty = s.createEmptyOptionalValue(type);
    EXPECT_EQ(empty, Value(type, ValueFlags::Optional));
    EXPECT_EQ(s.serializeOptionalValue(empty), u"");
    EXPECT_EQ(s.toOptionalValue(Value(type, ValueFlags::One)), empty);
    EXPECT_EQ(s.toOptionalValue(Value(type, T(), ValueFlags::One)), Value(type, T(), ValueFlags::One));
    EXPECT_EQ(s.parseOptionalValue(u"", type), empty);
    Value const other(type == StandardTypes::booleanMeta ? StandardTypes::realMeta : StandardTypes::booleanMeta,
                      ValueFlags::One);
    EXPECT_TRUE(failsWith<msg::CannotCastIncompatibleTypes>([&] { (void)s.serializeValue(other); }));
}

TEST(Serializers, WriteAndReadPrimitives) {
    std::vector<std::u16string> const noNumbers{u"", u" 1", u"1 ", u"+1", u"0x1", u"one", u"1\x661", u"1,5"};
    checkTexts<bool>(StandardTypes::booleanMeta,
                     {{{u"true", true}, {u"false", false}}, {}, {u"", u"1", u"True", u"true "}});
    checkTexts<int>(
        StandardTypes::integerMeta,
        {{{u"0", 0}, {u"-1", -1}, {u"2147483647", 2147483647}, {u"-2147483648", std::numeric_limits<int>::min()}},
         {{u"-0", 0}, {u"007", 7}},
         {u"2147483648", u"1.0", u"--1"}});
    checkTexts<unsigned>(StandardTypes::unlimitedNaturalMeta,
                         {{{u"0", 0}, {u"4294967295", 4294967295U}}, {}, {u"-1", u"4294967296"}});
    checkTexts<unsigned long>(StandardTypes::uinteger64Meta,
                              {{{u"18446744073709551615", ~0UL}}, {}, {u"-1", u"18446744073709551616"}});
    checkTexts<double>(StandardTypes::realMeta,
                       {{{u"0", 0.0}, {u"-1", -1.0}, {u"0.1", 0.1}, {u"1e+300", 1e300}, {u"inf", HUGE_VAL}},
                        {{u"1e3", 1000.0}, {u"-.5", -0.5}},
                        {u"1e999", u"1.5.5"}});
    checkTexts<std::u16string>(StandardTypes::stringMeta, {{{u"", u""}, {u"Auto \x2603", u"Auto \x2603"}}, {}, {}});
    checkTexts<std::string>(StandardTypes::stdstringMeta,
                            {{{u"", ""}, {u"Auto", "Auto"}, {u"\x2603", "\xe2\x98\x83"}}, {}, {}});
    for (auto const& type : {StandardTypes::integerMeta, StandardTypes::realMeta, StandardTypes::uinteger64Meta}) {
        for (auto const& text : noNumbers) {
            EXPECT_TRUE(throws<boost::bad_lexical_cast>([&] { (void)serializerOf(type).parseValue(text, type); }))
                << show(text);
        }
    }
}

TEST(Serializers, CombineSeveralValues) {
    auto const& type = StandardTypes::integerMeta;
    auto const& s = serializerOf(type);
    std::vector<Value> values;
    for (int i : {2, 1, 2}) values.emplace_back(type, i, ValueFlags::One);
    Value const sequence = s.combineAsUnmanagedSequenceValue(type, values);
    EXPECT_FALSE(sequence.isManaged());
    EXPECT_EQ(sequence.getFlags(), ValueFlags::Sequence);
    EXPECT_EQ(*static_cast<std::vector<int>*>(sequence.data()), (std::vector<int>{2, 1, 2}));
    Value const set = s.combineAsUnmanagedSetValue(type, values);
    EXPECT_EQ(set.getFlags(), ValueFlags::Set);
    EXPECT_EQ(*static_cast<std::set<int>*>(set.data()), (std::set<int>{1, 2}));
    Value gone = Value(set);
    s.releaseValue(std::move(gone), type);
    values.emplace_back(StandardTypes::realMeta, 1.0, ValueFlags::One);
    EXPECT_TRUE(failsWith<msg::CannotCastIncompatibleTypes>([&] { s.combineAsUnmanagedSetValue(type, values); }));
}

// --- Enumerations ---------------------------------------------------------------------------------------------------

enum class Colour : int { Red = 0, Green = 1, Blue = 5 };

/// Red, Green and Blue; the key of the last one is "Blau".
meta::Enum const& colourMeta() {
    static Model const model = Model::create();
    static meta::Enum const made = [] {
        auto const type = meta::Enum::create(model, {});
        type->setName(u"Colour");
        for (auto const& [name, value] : {std::pair{u"Red", 0}, {u"Green", 1}, {u"Blau", 5}}) {
            auto const literal = meta::EnumLiteral::create(model, {});
            literal->setName(name);
            literal->setValue(value);
            literal->setParentEnum(type);
        }
        type->getLiterals()->find(u"Blau")->setName(u"Blue");
        return type;
    }();
    return made;
}

}  // namespace

template <>
struct quay::zero::TypeOf<Colour> {
    static meta::Type const& type() { return colourMeta(); }
};

namespace {

TEST(Serializers, KnowThreeFormsOfAnEnumeration) {
    meta::EnumPropertySerializerAsName<Colour> const name;
    meta::EnumPropertySerializerAsValue<Colour> const value;
    meta::EnumPropertySerializerAsPublicId<Colour> const key;
    meta::Type const& type = colourMeta();
    struct Case {
        meta::PropertySerializer const& form;
        int value;
        char16_t const* text;
    };
    Case const cases[] = {
        {name, 0, u"Red"},  {name, 1, u"Green"}, {name, 5, u"Blue"},  // one after the other
        {value, 0, u"0"},   {value, 5, u"5"},    {value, 77, u"77"},
        {value, -3, u"-3"}, {key, 1, u"Green"},  {key, 5, u"Blau"},
    };
    for (Case const& c : cases) {
        Value const v(type, static_cast<Colour>(c.value), ValueFlags::One);
        EXPECT_EQ(c.form.serializeValue(v), c.text);
        EXPECT_EQ(c.form.parseValue(c.text, type).getValue<Colour>(), static_cast<Colour>(c.value));
    }
    Value const unknown(type, static_cast<Colour>(77), ValueFlags::One);
    EXPECT_EQ(name.serializeValue(unknown), u"");
    EXPECT_EQ(key.serializeValue(unknown), u"");
    EXPECT_EQ(name.createDefaultValue(type).getValue<Colour>(), Colour::Red);
    std::pair<meta::PropertySerializer const&, char16_t const*> const refused[] = {
        {name, u"Blau"}, {name, u"red"}, {name, u""},     {name, u"1"},
        {key, u"Blue"},  {key, u""},     {value, u"Red"}, {value, u""}};
    for (auto const& r : refused) {
        EXPECT_TRUE(throws<boost::bad_lexical_cast>([&] { (void)r.first.parseValue(r.second, type); }))
            << show(std::u16string(r.second));
    }
    EXPECT_EQ(value.parseValue(u"+5", type).getValue<Colour>(), Colour::Blue);
    for (meta::PropertySerializer const* form :
         std::initializer_list<meta::PropertySerializer const*>{&name, &value, &key}) {
        EXPECT_TRUE(failsWith<msg::CannotCastIncompatibleTypes>(
            [&] { (void)form->parseValue(u"1", StandardTypes::integerMeta); }));
        EXPECT_TRUE(failsWith<msg::CannotCastIncompatibleTypes>(
            [&] { (void)form->createDefaultValue(StandardTypes::integerMeta); }));
    }
    EXPECT_FALSE(name.parseOptionalValue(u"", type).hasPayload());
    Value const number(StandardTypes::integerMeta, 1, ValueFlags::One);
    EXPECT_TRUE(failsWith<msg::CannotCastIncompatibleTypes>([&] { (void)name.serializeValue(number); }));
    EXPECT_TRUE(meta::internal::isEnumType(type));
    EXPECT_FALSE(meta::internal::isEnumType(StandardTypes::integerMeta));
    EXPECT_FALSE(meta::internal::isEnumType(meta::Type()));
}

TEST(Serializers, AreFoundByTypeAndForm) {
    auto* const registry = meta::PropertySerializerRegistry::getInstance();
    meta::Type const& type = colourMeta();
    EXPECT_EQ(registry->getPropertySerializer(type), nullptr);
    EXPECT_EQ(registry->getDatatypeSerializer(type), nullptr);
    auto const add = [&](std::string const& form) {
        auto made = std::make_unique<meta::EnumPropertySerializerAsName<Colour>>();
        auto const* const at = made.get();
        registry->registerPropertySerializer(type, std::move(made), form);
        return at;
    };
    auto const* const first = add("");
    auto const* const other = add("ID");
    EXPECT_EQ(registry->getPropertySerializer(type), first);
    EXPECT_EQ(registry->getPropertySerializer(type, "ID"), other);
    EXPECT_EQ(registry->getPropertySerializer(type, "PublicID"), nullptr);
    auto const* const second = add("");
    EXPECT_EQ(registry->getPropertySerializer(type), second);
    registry->forget(type.impl());
    registry->forget(type.impl());
    EXPECT_EQ(registry->getPropertySerializer(type), nullptr);
    EXPECT_EQ(registry->getPropertySerializer(StandardTypes::zxArrayMeta), nullptr);
}

}  // namespace
