// Numbers and their constructor texts.
#include <typesys/typesys.h>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace {

using FxpDT::baseCtorPrefer;
using FxpDT::scalingRepPrefer;
using Kind = fxpDataTypeProp::Kind;

constexpr baseCtorPrefer kBases[] = {baseCtorPrefer::Constructor, baseCtorPrefer::BuiltInName};
constexpr scalingRepPrefer kScalings[] = {scalingRepPrefer::FractionAndExponent, scalingRepPrefer::WholeSlope};

fxpDataTypeProp scaled(bool isSigned, int length, double fraction, int exponent, double bias) {
    return {Kind::FixedPoint, isSigned, length, fraction, exponent, bias};
}

std::string failureOf(auto const& work) {
    try {
        work();
        return "nothing";
    } catch (VWTypeSys::DataTypeException const& e) {
        return e.GetID();
    }
}

TEST(ConstructorTexts, HaveOneFormForEachPreference) {
    struct Case {
        fxpDataTypeProp type;
        std::array<char const*, 4> texts{};  // constructor; whole slope; name of the built-in; both
    };
    Case const cases[] = {
        {fxpDataTypeProp::boolean(), {"bool", "bool", "boolean", "boolean"}},
        {fxpDataTypeProp::floating(32), {"float(32)", "float(32)", "single", "single"}},
        {fxpDataTypeProp::floating(64), {"float(64)", "float(64)", "double", "double"}},
        {fxpDataTypeProp::fixed(true, 16), {"fixed(signed,16)", "fixed(signed,16)", "int16", "int16"}},
        {fxpDataTypeProp::fixed(false, 8, -3),
         {"fixed(unsigned,8,2^-3)", "fixed(unsigned,8,0.125)", "fixed(unsigned,8,2^-3)", "fixed(unsigned,8,0.125)"}},
        {scaled(true, 32, 1.25, -5, -0.5),
         {"fixed(signed,32,1.25*2^-5,-0.5)", "fixed(signed,32,0.0390625,-0.5)", "fixed(signed,32,1.25*2^-5,-0.5)",
          "fixed(signed,32,0.0390625,-0.5)"}},
        {scaled(false, 12, 1, 0, 7),
         {"fixed(unsigned,12,2^0,7)", "fixed(unsigned,12,1,7)", "fixed(unsigned,12,2^0,7)", "fixed(unsigned,12,1,7)"}},
    };
    for (auto const& [type, texts] : cases) {
        auto text = texts.begin();
        for (auto const base : kBases)
            for (auto const scaling : kScalings)
                EXPECT_EQ(fxpDataTypeToConstructorString(type, base, scaling), *text++);
    }
}

RC_GTEST_PROP(ConstructorTexts, ReadBackToTheSameType, ()) {
    auto const bits = *rc::gen::arbitrary<std::uint64_t>();
    auto const fraction = 1 + std::ldexp(static_cast<double>(bits >> 12U), -52);
    auto const exponent = *rc::gen::inRange(fxpDataTypeProp::minExponent, fxpDataTypeProp::maxExponent + 1);
    auto const bias =
        std::ldexp(static_cast<double>(*rc::gen::arbitrary<std::int64_t>()), *rc::gen::inRange(-1074, 900));
    auto const type = scaled(*rc::gen::arbitrary<bool>(), *rc::gen::inRange(1, 129), *rc::gen::element(1.0, fraction),
                             *rc::gen::element(0, exponent), *rc::gen::element(0.0, bias));
    for (auto const base : kBases)
        for (auto const scaling : kScalings)
            RC_ASSERT(constructorStringToFxpDataType(fxpDataTypeToConstructorString(type, base, scaling)) == type);
}

TEST(ConstructorTexts, AreReadInOtherFormsOfTheSameType) {
    std::pair<char const*, fxpDataTypeProp> const cases[] = {
        {" fixed ( signed , 16 , 3 * 2^ -4 , 1e3 ) ", scaled(true, 16, 1.5, -3, 1000)},
        {"fixed(unsigned,1,2)", scaled(false, 1, 1, 1, 0)},
        {"fixed(unsigned,128,2^-1022)", scaled(false, 128, 1, -1022, 0)},
        {"fixed(signed,8,5e-324*2^1000)", scaled(true, 8, 1, -74, 0)},
        {"fixed(signed,8,2^0,0)", fxpDataTypeProp::fixed(true, 8)},
        {"uint64", fxpDataTypeProp::fixed(false, 64)},
    };
    for (auto const& [text, type] : cases) EXPECT_TRUE(constructorStringToFxpDataType(text) == type) << text;

    for (char const* const text : {"",
                                   " ",
                                   "int17",
                                   "Bool",
                                   "bool()",
                                   "bool x",
                                   "float",
                                   "float(16)",
                                   "float(64",
                                   "float(64,1)",
                                   "fixed",
                                   "fixed()",
                                   "fixed(16)",
                                   "fixed(signed)",
                                   "fixed(signed,)",
                                   "fixed(signed,0)",
                                   "fixed(signed,129)",
                                   "fixed(signed,99999999999)",
                                   "fixed(signed,16,)",
                                   "fixed(signed,16,0)",
                                   "fixed(signed,16,-1)",
                                   "fixed(signed,16,nan)",
                                   "fixed(signed,16,inf)",
                                   "fixed(signed,16,1e999)",
                                   "fixed(signed,16,3*4)",
                                   "fixed(signed,16,2^)",
                                   "fixed(signed,16,2^1024)",
                                   "fixed(signed,16,2^-1023)",
                                   "fixed(signed,16,2^2000000000)",
                                   "fixed(signed,16,2^-2000000000)",
                                   "fixed(signed,16,2^0,)",
                                   "fixed(signed,16,2^0,inf)",
                                   "fixed(signed,16,2^0,nan)",
                                   "fixed(signed,16,2^0,1,1)",
                                   "fixed(signed,16)fixed(signed,16)"}) {
        EXPECT_EQ(failureOf([&] { constructorStringToFxpDataType(text); }), "VWTypeSys:messages:InvalidConstructorText")
            << text;
    }
}

TEST(ConstructorTexts, AreRefusedForWhatIsNoNumber) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    fxpDataTypeProp const cases[] = {
        {},
        fxpDataTypeProp::floating(16),
        {Kind::FloatingPoint, true, 64, 1, 1},
        {Kind::FloatingPoint, true, 64, 1, 0, kNan},
        {Kind::Boolean, false, 2},
        {static_cast<Kind>(7), false, 8},
        fxpDataTypeProp::fixed(true, 129),
        scaled(true, 8, 0.5, 0, 0),
        scaled(true, 8, 2, 0, 0),
        scaled(true, 8, kNan, 0, 0),
        scaled(true, 8, 1, 1024, 0),
        scaled(true, 8, 1, -1023, 0),
        scaled(true, 8, 1, 0, kNan),
    };
    for (auto const& type : cases) {
        EXPECT_TRUE(fxpDataTypeFault(type).has_value()) << &type - cases;
        EXPECT_EQ(failureOf([&] { fxpDataTypeToConstructorString(type, kBases[0], kScalings[0]); }),
                  "VWTypeSys:messages:InvalidFixedPointType")
            << &type - cases;
    }
}

}  // namespace
