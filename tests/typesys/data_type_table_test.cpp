// Type tables, and the blocks on whose behalf types are registered.
#include <typesys/typesys.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>

namespace {

using namespace VWTypeSys;

std::string failureOf(std::function<void()> const& work) {
    try {
        work();
        return "nothing";
    } catch (DataTypeException const& e) {
        return std::string(e.message().id());
    }
}

TEST(DataTypeTables, HoldEachTypeAtItsIdPlusOne) {
    DataTypeTable table;
    EXPECT_STREQ(table.types()[0].getName(), "auto");
    for (auto const& builtIn : fxpBuiltIns()) {
        int const id = table.find(builtIn.name).value();
        EXPECT_EQ(id, &builtIn - fxpBuiltIns().data());
        EXPECT_TRUE(table.get(id).getFxpDataTypeProp() == builtIn.type);
    }
    EXPECT_EQ(table.find("pointer"), pointerId);

    struct Case {
        std::function<int()> add;
        char const* name;
        Category category;
        char const* stripped;
    };
    int bus = 0;
    int text = 0;
    Case const cases[] = {
        {[&] { return table.addEnumeration("Gear"); }, "Gear", Category::Enumeration, "Gear"},
        {[&] { return bus = table.addBus("Engine"); }, "Engine", Category::Bus, "Engine"},
        {[&] { return text = table.addString("string(20)"); }, "string(20)", Category::String, "string(20)"},
        {[&] { return table.addImage("Camera"); }, "Camera", Category::Image, "Camera"},
        {[&] { return table.addOpaque("Cipher"); }, "Cipher", Category::Opaque, "Cipher"},
        {[&] { return table.addCustom("dto_double_Own"); }, "dto_double_Own", Category::Custom, "dto_double_Own"},
        {[&] { return table.addFixedPoint(fxpDataTypeProp::fixed(true, 16, -4)); }, "fixed(signed,16,2^-4)",
         Category::FixedPoint, "fixed(signed,16,2^-4)"},
        {[&] { return table.addAlias("Motor", bus); }, "Motor", Category::Bus, "Motor"},
        {[&] { return table.addAlias("Label", text); }, "Label", Category::String, "Label"},
        {[&] { return table.addOverride(bus, Override::Double); }, "dto_double_Engine", Category::Bus, "Engine"},
        {[&] { return table.addOverride(bus, Override::Single); }, "dto_single_Engine", Category::Bus, "Engine"},
        {[&] { return table.addOverride(bus, Override::ScaledDouble); }, "dto_scaled_Engine", Category::Bus, "Engine"},
        {[&] { return table.addAlias("Own", table.find("dto_double_Engine").value()); }, "Own", Category::Bus, "Own"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        int const next = static_cast<int>(table.types().size()) - 1;
        EXPECT_FALSE(DtIsDataTypeIdValid(&table, next));
        EXPECT_EQ(c.add(), next);
        EXPECT_TRUE(DtIsDataTypeIdValid(&table, next));
        DataType const& type = table.types()[static_cast<std::size_t>(next) + 1];
        EXPECT_STREQ(type.getName(), c.name);
        EXPECT_EQ(type.category(), c.category);
        EXPECT_EQ(type.getNameStripDTOPrefix(), c.stripped);
        EXPECT_EQ(table.find(c.name), next);
        EXPECT_EQ(DtIsAliasType(&table, next), std::strchr("MLO", c.name[0]) != nullptr);
        EXPECT_EQ(DtIsImageType(&table, next), c.category == Category::Image);
        EXPECT_EQ(DtGetStringDataTypeExpression(&table, next), c.category == Category::String ? "string(20)" : "");
        EXPECT_EQ(type.isOpaque(), c.category == Category::Opaque);
        EXPECT_EQ(failureOf([&] { table.addCustom(c.name); }), "NameInUse");
    }
    EXPECT_EQ(ImageDataType::ImageNameToDataTypeId("Camera", &table), table.find("Camera"));
    EXPECT_EQ(ImageDataType::ImageNameToDataTypeId("Cipher", &table), notRegistered);
    EXPECT_EQ(ImageDataType::ImageNameToDataTypeId("Film", &table), notRegistered);
    for (int const id : {-2, static_cast<int>(table.types().size()) - 1, std::numeric_limits<int>::max(),
                         std::numeric_limits<int>::min()}) {
        EXPECT_FALSE(DtIsDataTypeIdValid(&table, id));
        EXPECT_FALSE(DtIsAliasType(&table, id) || DtIsImageType(&table, id));
        EXPECT_EQ(failureOf([&] { table.get(id); }), "NoSuchId");
    }
    EXPECT_FALSE(DtIsDataTypeIdValid(nullptr, inheritedId));
}

TEST(DataTypeTables, StayAsTheyAreWhenTheyRefuse) {
    DataTypeTable table;
    int const bus = table.addBus("Engine");
    int const overridden = table.addOverride(bus, Override::Double);
    int const text = table.addString("string");
    int const number = table.addFixedPoint(fxpDataTypeProp::fixed(true, 5));
    auto const size = table.types().size();
    using namespace std::string_view_literals;
    std::pair<std::function<void()>, char const*> const cases[] = {
        {[&] { table.addEnumeration(""); }, "InvalidName"},
        {[&] { table.addCustom("a\0b"sv); }, "InvalidName"},
        {[&] { table.addBus("auto"); }, "NameInUse"},
        {[&] { table.addBus("double"); }, "NameInUse"},
        {[&] { table.addFixedPoint(fxpDataTypeProp::fixed(true, 5)); }, "NameInUse"},
        {[&] { table.addAlias("A", -2); }, "NoSuchId"},
        {[&] { table.addOverride(99, Override::Double); }, "NoSuchId"},
        {[&] { table.addOverride(inheritedId, Override::Double); }, "CannotOverride"},
        {[&] { table.addOverride(0, Override::Double); }, "CannotOverride"},
        {[&] { table.addOverride(pointerId, Override::Double); }, "CannotOverride"},
        {[&] { table.addOverride(text, Override::Double); }, "CannotOverride"},
        {[&] { table.addOverride(number, Override::Double); }, "CannotOverride"},
        {[&] { table.addOverride(overridden, Override::Single); }, "CannotOverride"},
        {[&] { table.addOverride(bus, Override::Double); }, "NameInUse"},
        {[&] { table.addFixedPoint(fxpDataTypeProp::fixed(true, 0)); }, "InvalidFixedPointType"},
        {[&] { table.addString("string()"); }, "InvalidStringType"},
        {[&] { table.addString("string(0)"); }, "InvalidStringType"},
        {[&] { table.addString("string(07)"); }, "InvalidStringType"},
        {[&] { table.addString("string(9"); }, "InvalidStringType"},
        {[&] { table.addString("string(2147483648)"); }, "InvalidStringType"},
        {[&] { table.addString("string(9)x"); }, "InvalidStringType"},
        {[&] { table.addString("String"); }, "InvalidStringType"},
    };
    for (auto const& [work, failure] : cases) {
        EXPECT_EQ(failureOf(work), failure) << &work - &cases[0].first;
        EXPECT_EQ(table.types().size(), size);
    }
}

class Blocks : public testing::Test {
protected:
    // The failure's identifier, or the id that was written.
    std::string outcome(vwsvDiagnosticImpl* diagnostic) {
        std::unique_ptr<vwsvDiagnosticImpl> const owned(diagnostic);
        if (owned == nullptr) return std::to_string(std::exchange(id_, -99));
        EXPECT_EQ(id_, -99) << "a failure leaves the id alone";
        return std::string(owned->message().id());
    }
    std::string byName(char const* name) { return outcome(diagram_.registerByName(&block_, name, &id_)); }
    std::string resolve(char const* expression) {
        return outcome(diagram_.resolveWithOptions(&block_, expression, "DataType", {}, &id_));
    }
    std::string number(fxpDataTypeProp const& type, bool takesBuiltIns) {
        fxpBlockProperties properties;
        Block_fxpBlockProp_SetBuiltin(&properties, &block_, takesBuiltIns);
        return outcome(fxpDataTypeRegisterWithCheck(&properties, &id_, &type));
    }
    std::string next() const { return std::to_string(table_.types().size() - 1); }

    DataTypeTable dictionary_;
    DataTypeTable table_;
    Diagram diagram_{table_, &dictionary_};
    VWBlock block_{diagram_, "plant/Gain"};
    int id_ = -99;
};

TEST_F(Blocks, EnterNamesOnceAndCopyWhatOnlyTheDictionaryKnows) {
    table_.addEnumeration("Gear");
    dictionary_.addCustom("Unused");
    int const bus = dictionary_.addBus("Engine");
    dictionary_.addAlias("Motor", dictionary_.addAlias("Drive", bus));
    dictionary_.addAlias("Clash", dictionary_.addBus("Gear"));
    dictionary_.addAlias("Any", inheritedId);
    auto const gear = std::to_string(table_.find("Gear").value());
    EXPECT_EQ(byName("Gear"), gear);
    EXPECT_EQ(byName("int16"), std::to_string(table_.find("int16").value()));
    EXPECT_EQ(byName("Motor"), std::to_string(table_.types().size() + 1)) << "after Engine and Drive";
    EXPECT_EQ(table_.get(table_.find("Motor").value()).aliasOf(), table_.find("Drive"));
    EXPECT_EQ(table_.get(table_.find("Drive").value()).aliasOf(), table_.find("Engine"));
    auto const any = next();
    EXPECT_EQ(byName("Any"), any);
    EXPECT_EQ(table_.types().back().aliasOf(), inheritedId);
    auto const size = table_.types().size();
    EXPECT_EQ(byName("Engine"), std::to_string(table_.find("Engine").value()));
    EXPECT_EQ(byName("Clash"), "NameInUse");
    EXPECT_EQ(byName("Nothing"), "NoSuchType");
    EXPECT_EQ(byName(""), "NoSuchType");
    EXPECT_EQ(byName("auto"), "NoSuchType");
    EXPECT_EQ(table_.types().size(), size);
}

TEST_F(Blocks, EnterStringsAndNumbersOnce) {
    for (char const* const expression : {"string", "string(1)", "string(2147483647)"}) {
        auto const added = next();
        EXPECT_EQ(resolve(expression), added);
        EXPECT_EQ(resolve(expression), added);
    }
    EXPECT_EQ(resolve("int16"), "InvalidStringType");

    auto const int16 = fxpDataTypeProp::fixed(true, 16);
    EXPECT_EQ(number(int16, true), std::to_string(table_.find("int16").value()));
    for (auto const& type : {int16, fxpDataTypeProp::fixed(true, 16, -4)}) {
        auto const added = next();
        EXPECT_EQ(number(type, false), added);
        EXPECT_EQ(number(type, false), added);
        EXPECT_EQ(table_.types().back().category(), Category::FixedPoint);
    }
    EXPECT_EQ(number(fxpDataTypeProp::fixed(true, 0), true), "InvalidFixedPointType");
    table_.addCustom("fixed(signed,7)");
    EXPECT_EQ(number(fxpDataTypeProp::fixed(true, 7), true), "NameInUse");
    table_.addCustom("string(7)");
    EXPECT_EQ(resolve("string(7)"), "NameInUse");
    table_.addAlias("fixed(signed,9)", table_.addFixedPoint(fxpDataTypeProp::fixed(true, 32, -3)));
    EXPECT_EQ(number(fxpDataTypeProp::fixed(true, 9), true), "NameInUse");
    table_.addAlias("string(5)", table_.addString("string(20)"));
    EXPECT_EQ(resolve("string(5)"), "NameInUse");
    fxpBlockProperties none;
    EXPECT_EQ(outcome(fxpDataTypeRegisterWithCheck(&none, &id_, &int16)), "NoBlock");
}

TEST(Diagnostics, AreThrownOnceWithTheirSubject) {
    auto const thrown = [](DataTypeMessage const& message, char const* subject) -> std::string {
        auto* diagnostic = new vwsvDiagnosticImpl(message);
        try {
            vwsvThrowIExceptionFromDiagnostic(diagnostic, subject);
        } catch (keel::core::except::Error const& e) {
            EXPECT_EQ(diagnostic, nullptr);
            return e.what();
        }
    };
    EXPECT_EQ(thrown(DataTypeMessage("NoSuchType", {"Motör\xff\xe2\x82"}), nullptr),
              "VWTypeSys:messages:NoSuchType: there is no data type 'Motör\uFFFD\uFFFD'; add it to the type table "
              "first");
    EXPECT_EQ(thrown(DataTypeMessage("NoBlock"), "plant/Gain"),
              "VWTypeSys:messages:NoBlock: plant/Gain: a data type can't be registered without a block");
    EXPECT_EQ(thrown(DataTypeMessage("InvalidStringType", {"text", "DataType"}), nullptr),
              "VWTypeSys:messages:InvalidStringType: 'text', the value of the parameter 'DataType', is no string type; "
              "write string, or string(N) with N above 0");
}

}  // namespace
