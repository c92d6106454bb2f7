// The two value types: order, equality, hash and reflection, field by field.
#include "../common/expect.h"

#include <ModelRefInfoRepo/MetaPackageVw_modelref_info.h>
#include <ModelRefInfoRepo/RateInfo.h>
#include <ModelRefInfoRepo/ServicePortKey.h>
#include <keel/text.h>
#include <quay/zero/meta/serializers.h>
#include <quay0/messages.h>

#include <functional>
#include <limits>
#include <set>

namespace {

using namespace ModelRefInfoRepo;
using namespace quay::zero;
using namespace quay0::messages;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

template <class T>
struct Step {
    char const* field;
    std::function<void(T&)> raise;  // makes the field greater than its default
};

std::vector<Step<RateInfo>> steps(RateInfo) {
    return {{"period", [](auto& r) { r.setPeriod(2); }},
            {"offset", [](auto& r) { r.setOffset(0.5); }},
            {"nonFcnCallPartitionName", [](auto& r) { r.setNonFcnCallPartitionName(u"p"); }},
            {"clockedByExternalRuntimeEvent", [](auto& r) { r.setClockedByExternalRuntimeEvent(true); }},
            {"taskedExplicitly", [](auto& r) { r.setTaskedExplicitly(true); }},
            {"rateIdx", [](auto& r) { r.setRateIdx(4); }},
            {"priority", [](auto& r) { r.setPriority(40); }},
            {"compiled", [](auto& r) { r.setCompiled(true); }},
            {"needAbsoluteTime", [](auto& r) { r.setNeedAbsoluteTime(true); }},
            {"isEmpty", [](auto& r) { r.setIsEmpty(true); }}};
}
std::vector<Step<ServicePortKey>> steps(ServicePortKey) {
    return {{"portIdx", [](auto& k) { k.setPortIdx(1); }},
            {"portType", [](auto& k) { k.setPortType(u"t"); }},
            {"blockPath", [](auto& k) { k.setBlockPath(u"b"); }},
            {"startElemIdx", [](auto& k) { k.setStartElemIdx(1); }}};
}

template <class T>
class StructuredValue : public testing::Test {};
using Types = testing::Types<RateInfo, ServicePortKey>;
TYPED_TEST_SUITE(StructuredValue, Types);

TYPED_TEST(StructuredValue, ComparesFieldsInOrderOfDeclaration) {
    auto const all = steps(TypeParam());
    ASSERT_EQ(std::tuple_size_v<decltype(TypeParam::fields())>, all.size());
    std::set<std::size_t> hashes{std::hash<TypeParam>()(TypeParam())};
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i].field);
        TypeParam a;
        all[i].raise(a);
        EXPECT_EQ(TypeParam().compareWith(a), -1);
        EXPECT_EQ(a.compareWith(TypeParam()), 1);
        EXPECT_TRUE(TypeParam() < a);
        EXPECT_FALSE(a == TypeParam());
        EXPECT_TRUE(a != TypeParam());
        EXPECT_TRUE(hashes.insert(std::hash<TypeParam>()(a)).second);
        // An earlier field decides, whatever the values of later ones.
        TypeParam later;
        for (std::size_t j = i + 1; j < all.size(); ++j) all[j].raise(later);
        EXPECT_EQ(a.compareWith(later), 1);
        TypeParam const copy = a;
        EXPECT_TRUE(copy == a);
        EXPECT_EQ(copy.compareWith(a), 0);
        EXPECT_EQ(std::hash<TypeParam>()(copy), std::hash<TypeParam>()(a));
    }
}

TYPED_TEST(StructuredValue, ReachesEachFieldByReflection) {
    auto const& type = TypeOf<TypeParam>::type();
    auto const* const serializer = meta::PropertySerializerRegistry::getInstance()->getDatatypeSerializer(type);
    ASSERT_NE(serializer, nullptr);
    Value const initial = serializer->createDefaultValue();
    EXPECT_EQ(initial.getValue<TypeParam>(), TypeParam());
    auto const all = steps(TypeParam());
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i].field);
        meta::Property const field = (*type->getOwnedProperties())[i];
        EXPECT_EQ(keel::toUtf8(field->getName()), all[i].field);
        TypeParam raised;
        all[i].raise(raised);
        Value const value(type, raised, ValueFlags::One);
        Value const part = serializer->getPropertyValue(value, field);
        EXPECT_EQ(part.getType(), field->getType());
        EXPECT_EQ(part.getCount(), 1);
        EXPECT_EQ(serializer->setPropertyValue(initial, field, part).template getValue<TypeParam>(), raised);
        EXPECT_EQ(initial.getValue<TypeParam>(), TypeParam()) << "the argument stays as it is";
        // A new value has the declared defaults.
        if (auto const text = field->getDefaultValue()) {
            auto const* const texts =
                meta::PropertySerializerRegistry::getInstance()->getPropertySerializer(field->getType());
            EXPECT_TRUE(texts->parseValue(*text, field->getType()) == serializer->getPropertyValue(initial, field));
        }
        auto const& wrong = field->getType() == meta::StandardTypes::booleanMeta ? meta::StandardTypes::integerMeta
                                                                                 : meta::StandardTypes::booleanMeta;
        EXPECT_TRUE(failsWith<CannotCastIncompatibleTypes>(
            [&] { serializer->setPropertyValue(initial, field, Value(wrong, ValueFlags::One)); }));
    }
    auto const* const package = MetaPackageVw_modelref_info::getInstance();
    EXPECT_TRUE(failsWith<NoSuchProperty>([&] { serializer->getPropertyValue(initial, package->RateSpec_period); }));
    EXPECT_TRUE(failsWith<NoSuchProperty>([&] { serializer->getPropertyValue(initial, {}); }));
    EXPECT_TRUE(failsWith<CannotCastIncompatibleTypes>(
        [&] { serializer->getPropertyValue(Value(), (*type->getOwnedProperties())[0]); }));
}

TYPED_TEST(StructuredValue, IsCombinedInOrderOrAsASet) {
    auto const& type = TypeOf<TypeParam>::type();
    auto const* const serializer = meta::PropertySerializerRegistry::getInstance()->getDatatypeSerializer(type);
    TypeParam greater;
    steps(TypeParam())[0].raise(greater);
    std::vector<Value> const values = {
        {type, greater, ValueFlags::One}, {type, TypeParam(), ValueFlags::One}, {type, greater, ValueFlags::One}};
    Value const sequence = serializer->combineAsUnmanagedSequenceValue(type, values);
    EXPECT_EQ(sequence.getCount(), 2);
    EXPECT_FALSE(sequence.isManaged());
    EXPECT_EQ(sequence.getValue<std::vector<TypeParam>>(), (std::vector<TypeParam>{greater, TypeParam(), greater}));
    Value const set = serializer->combineAsUnmanagedSetValue(type, values);
    EXPECT_EQ(set.getCount(), 4);
    EXPECT_EQ(set.getValue<std::set<TypeParam>>(), (std::set<TypeParam>{TypeParam(), greater}));
    EXPECT_FALSE(set.isCompatible<std::vector<TypeParam>>());
    EXPECT_FALSE(sequence.isCompatible<std::vector<int>>());
    EXPECT_FALSE(sequence.isCompatible<TypeParam>());
    Value const none = serializer->createEmptyOptionalValue();
    EXPECT_EQ(none.getCount(), 0);
    EXPECT_EQ(none.getType(), type);
    EXPECT_FALSE(none.hasPayload());
    EXPECT_TRUE(failsWith<CannotCastIncompatibleTypes>([&] {
        serializer->combineAsUnmanagedSetValue(type, {Value(meta::StandardTypes::integerMeta, ValueFlags::One)});
    }));
}

TEST(RateInfos, TakeNotANumberAsEqualInOrderAndAsDifferentInEquality) {
    RateInfo a;
    RateInfo b;
    EXPECT_EQ(a.getPeriod(), -1.0);
    EXPECT_EQ(a.getOffset(), 0.0);
    EXPECT_EQ(a.getRateIdx(), -1);
    EXPECT_EQ(a.getPriority(), -1);
    a.setPeriod(kNan);
    EXPECT_EQ(a.compareWith(b), 0);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(a == a);
    EXPECT_EQ(std::set<RateInfo>({a, b}).size(), 1U);
    b.setRateIdx(3);
    EXPECT_EQ(a.compareWith(b), -1) << "the next fields decide";
    RateInfo zero;
    RateInfo minus;
    zero.setPeriod(0.0);
    minus.setPeriod(-0.0);
    EXPECT_TRUE(zero == minus);
    EXPECT_EQ(zero.compareWith(minus), 0);
    EXPECT_EQ(std::hash<RateInfo>()(zero), std::hash<RateInfo>()(minus));

    // A field value without payload is the field's zero, not its default.
    RateInfoDatatypeSerializer const serializer;
    for (meta::Property const& field : *TypeOf<RateInfo>::type()->getOwnedProperties()) {
        if (field->getName() != u"rateIdx") continue;
        serializer.doSetPropertyValue(a, field, Value(field->getType(), ValueFlags::One));
        EXPECT_EQ(a.getRateIdx(), 0);
    }
}

TEST(Texts, CompareByUnitThenByLength) {
    auto const of = [](std::u16string const& text) {
        ServicePortKey key;
        key.setBlockPath(text);
        return key;
    };
    std::vector<std::u16string> const rising = {u"", u"a", u"ab", u"abc", u"b", u"\u00e9", u"\U0001F600", u"\uff5e"};
    for (std::size_t i = 0; i + 1 < rising.size(); ++i)
        EXPECT_EQ(of(rising[i]).compareWith(of(rising[i + 1])), -1) << i;
}

}  // namespace
