// Conversion of values by marshalers.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>

#include <quay/zero/mi/meta_marshaler_registry.h>
#include <quay/zero/mi/policy_based_marshaler.h>
#include <quay/zero/primitive_collection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zx/zx.h>

#include <set>
#include <string>
#include <vector>

extern "C" void ZLInitialize_vw_modelref_info();

namespace {

namespace qz = quay::zero;
using ModelRefInfoRepo::DataClass;
using ModelRefInfoRepo::RateInfo;
using qz::Value;
using qz::ValueFlags;
using qz::mi::ValueMarshaler;
using testing::ElementsAre;

template <class F>
std::string errorOf(F const& run) {
    try {
        run();
    } catch (keel::core::except::Error const& error) {
        return error.GetID();
    }
    return {};
}

constexpr char kCannotCast[] = "quay0:messages:CannotCastIncompatibleTypes";
constexpr char kDataClass[] = "Varlow.ModelReference.internal.compileInfo.DataClass";

class Marshalers : public testing::Test {
protected:
    static void SetUpTestSuite() { ZLInitialize_vw_modelref_info(); }

    static ValueMarshaler& of(qz::meta::Type const& type) {
        return qz::mi::MetaMarshalerRegistry::getInstance().getPropertyMarshaler(type);
    }
    static Value numberOf(DataClass value) { return {package().DataClass, value, ValueFlags::One}; }
    static MetaPackageVw_modelref_info& package() { return *MetaPackageVw_modelref_info::getInstance(); }

    ValueMarshaler& enumeration_ = of(package().DataClass);
    ValueMarshaler& rate_ = of(package().RateInfo);
};

zx::Array objectsOf(std::string_view className, std::vector<std::int32_t> const& numbers) {
    zx::Array row(zxCreateNumericMatrix(1, numbers.size(), zxInt32Class));
    std::copy(numbers.begin(), numbers.end(), zx::valuesForWriting<std::int32_t>(row.get()).begin());
    return zx::Array(zxCreateObjectFromUnderlying(className, row.release()));
}

zx::Array cellOf(char const* text) {
    zx::Array cell(zxCreateCellMatrix(1, 1));
    zxSetCell(cell.get(), 0, zxCreateString(text));
    return cell;
}

std::vector<std::int32_t> numbersIn(zxArray const* array) {
    EXPECT_TRUE(zxIsClass(array, kDataClass));
    zxArray const* const underlying = zxGetUnderlyingArray(array);
    if (underlying == nullptr) return {};
    auto const values = zx::values<std::int32_t>(underlying);
    return {values.begin(), values.end()};
}

TEST_F(Marshalers, StandForEachTypeAndNameIt) {
    EXPECT_EQ(enumeration_.getTypeName(), kDataClass);
    EXPECT_EQ(rate_.getTypeName(), "Varlow.ModelReference.internal.compileInfo.RateInfo");
    EXPECT_EQ(rate_.getType(), package().RateInfo);
    EXPECT_EQ(of(qz::meta::StandardTypes::stringMeta).getTypeName(), "OrdoFactoryString scalar");
    EXPECT_EQ(qz::mi::MetaMarshalerRegistry::getInstance().findPropertyMarshaler(package().CompFunction), nullptr);
    EXPECT_EQ(errorOf([] { of(package().CompFunction); }), "quay0:messages:NoSuchType");
}

TEST_F(Marshalers, EnumerationsOneByOne) {
    zx::Array const four = enumeration_.toZxArray(numberOf(DataClass::Alias));
    EXPECT_THAT(numbersIn(four.get()), ElementsAre(4));
    EXPECT_EQ(zxGetClassCode(four.get()), zxObjectClass);
    zx::Array const none = enumeration_.toZxArray(Value(package().DataClass, ValueFlags::Optional));
    EXPECT_TRUE(zxIsEmpty(none.get()) && zxIsClass(none.get(), kDataClass));

    struct {
        zx::Array input;
        int number;
    } const inputs[] = {{objectsOf(kDataClass, {3}), 3},
                        {zx::Array(zxCreateString("Bus")), 3},
                        {zx::Array(zxCreateStringObject(u"Bus")), 3},
                        {cellOf("Bus"), 3},
                        {objectsOf("Some.Other", {3}), 0},
                        {zx::scalar(3.0), 0}};
    for (auto const& c : inputs) {
        Value const value = enumeration_.unmarshal(c.input.get());
        EXPECT_EQ(static_cast<int>(value.getValue<DataClass>()), c.number) << &c - inputs;
    }
    EXPECT_FALSE(enumeration_.unmarshal(none.get()).hasPayload());
    EXPECT_EQ(errorOf([&] { enumeration_.unmarshal(objectsOf(kDataClass, {1, 2}).get()); }), kCannotCast);
    EXPECT_EQ(errorOf([&] { enumeration_.unmarshal(zx::Array(zxCreateString("Nothing")).get()); }),
              "ordo:messages:NoSuchLiteral");
}

TEST_F(Marshalers, EnumerationsManyAtOnce) {
    zx::Array const objects = objectsOf(kDataClass, {2, 1, 2});
    std::vector<Value> const values = enumeration_.toValueVector(objects.get());
    EXPECT_THAT(numbersIn(enumeration_.fromValueVector(values).get()), ElementsAre(2, 1, 2));
    zx::Array const none = enumeration_.fromValueVector({});
    EXPECT_TRUE(zxIsEmpty(none.get()) && zxIsClass(none.get(), kDataClass));

    Value const set = enumeration_.toUnmanagedSetValue(objects.get());
    EXPECT_FALSE(set.isManaged());
    EXPECT_THAT(*static_cast<std::set<DataClass> const*>(set.data()), ElementsAre(DataClass::Numeric, DataClass::Enum));
    Value const sequence = enumeration_.toUnmanagedSequenceValue(objects.get());
    EXPECT_EQ(static_cast<std::vector<DataClass> const*>(sequence.data())->size(), 3u);

    for (auto const& accepted : {objectsOf(kDataClass, {1}), zx::Array(zxCreateString("x")), cellOf("x")}) {
        EXPECT_TRUE(enumeration_.isCorrectType(accepted.get()));
    }
    EXPECT_FALSE(enumeration_.isCorrectType(nullptr));
    EXPECT_EQ(errorOf([&] { enumeration_.toValueVector(zx::scalar(1.0).get()); }), kCannotCast);
    EXPECT_EQ(errorOf([&] { enumeration_.toValueVector(nullptr); }), kCannotCast);
}

TEST_F(Marshalers, CollectionsOfEnumerationsKeepTheirClassWhenEmpty) {
    auto const property = package().CompDataType->findProperty(u"dataClass");
    qz::meta::Property const any = property ? property : package().CompDataType->getProperties().front();
    qz::PrimitiveSequence<DataClass> sequence(any, false);
    zx::Array const none = enumeration_.fromCollection(sequence);
    EXPECT_TRUE(zxIsEmpty(none.get()) && zxIsClass(none.get(), kDataClass));
    sequence.push_back(DataClass::Bus);
    sequence.push_back(DataClass::Enum);
    EXPECT_THAT(numbersIn(enumeration_.fromCollection(sequence).get()), ElementsAre(3, 2));
    qz::PrimitiveSet<DataClass> set(any);
    set.insert(DataClass::Bus);
    set.insert(DataClass::Enum);
    EXPECT_THAT(numbersIn(enumeration_.fromCollection(set).get()), ElementsAre(2, 3));
}

TEST_F(Marshalers, DataTypesAreCopied) {
    RateInfo rate;
    rate.setPeriod(0.5);
    zx::Array const object = rate_.toZxArray(Value(package().RateInfo, rate, ValueFlags::One));
    EXPECT_TRUE(zxIsClass(object.get(), rate_.getTypeName()));
    EXPECT_EQ(rate_.unmarshal(object.get()).getValue<RateInfo>(), rate);
    zx::Array const none = rate_.toZxArray(Value(package().RateInfo, ValueFlags::Optional));
    EXPECT_TRUE(zxIsEmpty(none.get()) && zxIsClass(none.get(), rate_.getTypeName()));
    EXPECT_FALSE(rate_.unmarshal(none.get()).hasPayload());
    EXPECT_EQ(errorOf([&] { rate_.unmarshal(objectsOf(kDataClass, {1}).get()); }), "ordo:messages:WrongType");
    zx::Array cells(zxCreateCellMatrix(1, 2));
    zxSetCell(cells.get(), 0, zx::copy(object.get()).release());
    zxSetCell(cells.get(), 1, zx::copy(object.get()).release());
    Value const set = rate_.toUnmanagedSetValue(cells.get());
    EXPECT_EQ(static_cast<std::set<RateInfo> const*>(set.data())->size(), 1u);
}

TEST_F(Marshalers, NumbersMakeRowsAndTextsMakeCells) {
    ValueMarshaler const& integers = of(qz::meta::StandardTypes::integerMeta);
    zx::Array row(zxCreateNumericMatrix(1, 3, zxDoubleClass));
    auto const places = zx::valuesForWriting<double>(row.get());
    places[0] = 3;
    places[2] = -1;
    zx::Array const back = integers.fromValueVector(integers.toValueVector(row.get()));
    EXPECT_THAT(zx::values<std::int32_t>(back.get()), ElementsAre(3, 0, -1));
    places[1] = 0.5;
    EXPECT_EQ(errorOf([&] { integers.toValueVector(row.get()); }), "ordo:messages:NotInteger");
    ValueMarshaler const& texts = of(qz::meta::StandardTypes::stringMeta);
    EXPECT_EQ(texts.toValueVector(zx::Array(zxCreateString("abc")).get()).size(), 1u);
    zx::Array const cells = texts.fromValueVector(texts.toValueVector(cellOf("abc").get()));
    EXPECT_EQ(zx::utf8Of(zxGetCell(cells.get(), 0)), "abc");
    EXPECT_EQ(errorOf([&] { texts.toValueVector(row.get()); }), kCannotCast);
}

}  // namespace
