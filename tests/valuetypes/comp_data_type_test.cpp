// The two operations of CompDataType, with a case for each of their branches.
#include "../common/expect.h"

#include <ModelRefInfoRepo/CompDataType.h>
#include <quay0/messages.h>
#include <typesys/typesys.h>
#include <zx/error.h>

#include <optional>

namespace {

using namespace ModelRefInfoRepo;
using namespace VWTypeSys;
namespace qz = quay::zero;
using quay0::messages::InvalidValue;

constexpr int kValueAboveTheLast = 10;

TEST(CompDataTypes, RecordWhatTheFirstCaseThatAppliesTells) {
    DataTypeTable table;
    int const gear = table.addEnumeration("Gear");
    int const engine = table.addBus("Engine");
    int const text = table.addString("string(20)");
    int const camera = table.addImage("Camera");
    int const cipher = table.addOpaque("Cipher");
    int const own = table.addCustom("Own");
    int const scaled = table.addFixedPoint({fxpDataTypeProp::Kind::FixedPoint, true, 32, 1.25, -5, -0.5});
    int const speed = table.addAlias("Speed", table.find("double").value());
    struct Case {
        int id;
        DataClass dataClass;
        char const* name;
    };
    Case const cases[] = {
        {-1, DataClass::Inherit, "auto"},
        {table.find("double").value(), DataClass::Numeric, "float(64)"},
        {table.find("boolean").value(), DataClass::Numeric, "bool"},
        {scaled, DataClass::Numeric, "fixed(signed,32,1.25*2^-5,-0.5)"},
        {gear, DataClass::Enum, "Gear"},
        {table.addAlias("Stage", gear), DataClass::Enum, "Stage"},
        {table.addOverride(gear, Override::Double), DataClass::Enum, "dto_double_Gear"},
        {engine, DataClass::Bus, "Engine"},
        {table.addOverride(engine, Override::Double), DataClass::Bus, "Engine"},
        {table.addAlias("Motor", engine), DataClass::Bus, "Motor"},
        {text, DataClass::String, "string(20)"},
        {table.addAlias("Label", text), DataClass::String, "string(20)"},
        {speed, DataClass::Alias, "Speed"},
        {table.addAlias("Step", scaled), DataClass::Alias, "Step"},
        {table.addAlias("Pace", speed), DataClass::Alias, "Pace"},
        {table.addOverride(speed, Override::Single), DataClass::Alias, "dto_single_Speed"},
        {table.addAlias("Address", pointerId), DataClass::Alias, "Address"},
        {table.addAlias("Lens", camera), DataClass::Alias, "Lens"},
        {table.addAlias("Seal", cipher), DataClass::Alias, "Seal"},
        {pointerId, DataClass::Pointer, "pointer"},
        {table.find("event").value(), DataClass::Inherit, ""},
        {camera, DataClass::Image, "Camera"},
        {table.addOverride(camera, Override::Double), DataClass::Image, "dto_double_Camera"},
        {cipher, DataClass::Opaque, "Cipher"},
        {own, DataClass::Custom, "Own"},
        {table.addOverride(own, Override::Double), DataClass::Custom, "dto_double_Own"},
    };
    auto const model = qz::Model::create();
    for (Case const& c : cases) {
        SCOPED_TRACE(c.id);
        auto const made = CompDataType::createCompDataTypeFromID(model, &table, c.id);
        ASSERT_TRUE(made);
        EXPECT_EQ(made->getDataClass(), c.dataClass);
        EXPECT_EQ(made->getDataTypeName(), c.name);
        EXPECT_FALSE(made->uuid().is_nil());
    }
    EXPECT_EQ(model->elementCount(), std::size(cases));

    for (int const id : {-2, static_cast<int>(table.types().size()) - 1})
        EXPECT_FALSE(CompDataType::createCompDataTypeFromID(model, &table, id));
    EXPECT_TRUE(failsWith<InvalidValue>([&] { CompDataType::createCompDataTypeFromID(model, nullptr, -1); }));
    EXPECT_EQ(model->elementCount(), std::size(cases)) << "nothing was made";
}

// A block owner that records the calls that it gets.
class Recorder final : public BlockOwner {
public:
    vwsvDiagnosticImpl* registerByName(VWBlock* block, char const* name, int* id) override {
        return answer("name " + block->path() + " " + name, id);
    }
    vwsvDiagnosticImpl* resolveWithOptions(VWBlock* block, char const* expression, char const* parameter,
                                           ResolveOptions const& options, int* id) override {
        auto const& [a, b, c, d, e, f, g] = options;
        static_assert(sizeof(a) == 4 && sizeof(b) == 4 && sizeof(c) == 8 && sizeof(d) == 4 && sizeof(f) == 8 &&
                      sizeof(g) == 4);
        std::string text = "resolve " + block->path() + " " + expression + " " + parameter;
        for (double const option : {double(a), double(b), double(c), double(d), e, double(f), double(g)})
            text += " " + std::to_string(static_cast<int>(option));
        return answer(text, id);
    }
    DataTypeTable& typeTable() override {
        asked += "table";
        return table;
    }

    DataTypeTable table;
    std::string asked;
    std::optional<int> id;  // what is written, if anything
    bool fails = false;

private:
    vwsvDiagnosticImpl* answer(std::string const& what, int* written) {
        asked += what;
        if (fails) return new vwsvDiagnosticImpl(DataTypeMessage("NoSuchType", {what}));
        if (id) *written = *id;
        return nullptr;
    }
};

TEST(CompDataTypes, AreEnteredAsTheirClassAsksFor) {
    auto const model = qz::Model::create();
    auto const dataType = CompDataType::create(model, {});
    DataTypeTable images;
    int const camera = images.addImage("Camera");
    std::string const hook = NameOfTypeForOpaqueTypeFbt();
    using namespace std::string_literals;
    struct Case {
        DataClass dataClass;
        std::string name;
        int hook;
        int id;             // the result when the owner writes 50
        std::string asked;  // what the block's owner was asked for
    };
    Case const cases[] = {
        {DataClass::Inherit, "Own", 1, -1, ""},
        {DataClass::Numeric, "float(32)", 1, 1, ""},
        {DataClass::Numeric, "float(32)\0x"s, 1, 1, ""},
        {DataClass::Numeric, "fixed(signed,16,2^-4)", 1, 13, "table"},
        {DataClass::String, "string(20)", 1, 50, "resolve b string(20) DataType 0 1 16 0 1 0 0"},
        {DataClass::String, "string\0(20)"s, 1, 50, "resolve b string DataType 0 1 16 0 1 0 0"},
        {DataClass::Opaque, hook, 0, -1, ""},
        {DataClass::Opaque, hook, 1, 50, "name b " + hook},
        {DataClass::Opaque, hook, -3, 50, "name b " + hook},
        {DataClass::Opaque, hook + "\0x"s, 1, 50, "name b " + hook},
        {DataClass::Opaque, hook + "x", 1, -1, ""},
        {DataClass::Opaque, "", 1, -1, ""},
        {DataClass::Image, "Camera", 1, camera, ""},
        {DataClass::Image, "Camera\0x"s, 1, camera, ""},
        {DataClass::Image, "Film", 1, -10, ""},
        {DataClass::Enum, "Gear", 1, 50, "name b Gear"},
        {DataClass::Bus, "Engine", 1, 50, "name b Engine"},
        {DataClass::Alias, "Spe\0ed"s, 1, 50, "name b Spe"},
        {DataClass::Pointer, "pointer", 1, 50, "name b pointer"},
        {DataClass::Custom, "", 1, 50, "name b "},
        {static_cast<DataClass>(kValueAboveTheLast), "Own", 1, 50, "name b Own"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        dataType->setDataClass(c.dataClass);
        dataType->setDataTypeName(c.name);
        Recorder owner;
        VWBlock block(owner, "b");
        VWTH_OpaqueTypeFbt = c.hook;
        auto const enter = [&] { return CompDataType::registerDataTypeForBlock(&block, dataType, &images); };

        owner.id = 50;
        EXPECT_EQ(enter(), c.id);
        EXPECT_EQ(owner.asked, c.asked);
        bool const asksOwner = c.id == 50;
        owner.id = std::nullopt;
        EXPECT_EQ(enter(), asksOwner ? -10 : c.id) << "nobody wrote an id";
        owner.fails = true;
        if (asksOwner) {
            EXPECT_TRUE(failsWith<DataTypeMessage>(enter));
        } else {
            EXPECT_EQ(enter(), c.id);
        }
        bool const needsArguments = c.dataClass != DataClass::Inherit;
        for (auto const& given : {std::pair<VWBlock*, DataTypeTable*>{nullptr, &images}, {&block, nullptr}}) {
            auto const lacking = [&] {
                return CompDataType::registerDataTypeForBlock(given.first, dataType, given.second);
            };
            if (needsArguments) {
                EXPECT_TRUE(failsWith<InvalidValue>(lacking));
            } else {
                EXPECT_EQ(lacking(), -1);
            }
        }
    }
    VWTH_OpaqueTypeFbt = 0;

    Recorder owner;
    VWBlock block(owner, "b");
    dataType->setDataClass(DataClass::Numeric);
    dataType->setDataTypeName("fixed(signed,0)");
    EXPECT_TRUE(failsWith<DataTypeMessage>([&] { CompDataType::registerDataTypeForBlock(&block, dataType, &images); }));
    dataType->setDataTypeName("fixed(signed,7)");
    owner.table.addCustom("fixed(signed,7)");
    EXPECT_TRUE(failsWith<DataTypeMessage>([&] { CompDataType::registerDataTypeForBlock(&block, dataType, &images); }))
        << "the diagnostic of the fixed-point layer";
    dataType->destroy();
    EXPECT_TRUE(failsWith<zx::ErrorById>([&] { CompDataType::registerDataTypeForBlock(&block, dataType, &images); }));
}

TEST(CompDataTypes, AreFoundAgainInAnotherTable) {
    DataTypeTable source;
    source.addAlias("Speed", 0);
    source.addOverride(source.addBus("Engine"), Override::Double);
    source.addImage("Camera");
    source.addString("string(20)");
    source.addFixedPoint(fxpDataTypeProp::fixed(true, 16, -4));
    source.addCustom("Own");
    DataTypeTable target;
    target.addCustom("shifts all ids");
    target.addImage("Camera");
    Diagram diagram(target, &source);
    VWBlock block(diagram, "plant/Gain");
    auto const model = qz::Model::create();
    for (int id = -1; id < static_cast<int>(source.types().size()) - 1; ++id) {
        if (source.get(id).getName() == std::string("event")) continue;
        auto const made = CompDataType::createCompDataTypeFromID(model, &source, id);
        int const found = CompDataType::registerDataTypeForBlock(&block, made, &target);
        auto const again = CompDataType::createCompDataTypeFromID(model, &target, found);
        ASSERT_TRUE(again) << id;
        EXPECT_EQ(again->getDataClass(), made->getDataClass()) << id;
        EXPECT_EQ(again->getDataTypeName(), made->getDataTypeName()) << id;
    }
}

}  // namespace
