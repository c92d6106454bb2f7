// Models that are saved and loaded again have the same content.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <quay/zero/collection.h>
#include <quay/zero/io/io.h>
#include <zx/zx.h>

#include <gmock/gmock.h>
#include <algorithm>
#include <bit>
#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cmath>
#include <filesystem>
#include <limits>
#include <random>
#include <sstream>

#include "../elements/support/dump.h"
#include "../elements/support/samples.h"

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;

auto const& kTag = qz::ReflectionPrivateTag::PUBLIC_ACCESS;

/// The dump of a model by content only; its lines are in order of creation.
std::string content(qz::Model const& model) {
    std::istringstream lines(records::dumpElements(model));
    std::vector<std::string> sorted;
    for (std::string line; std::getline(lines, line);) sorted.push_back(line);
    std::sort(sorted.begin(), sorted.end());
    std::string result;
    for (std::string const& line : sorted) result += line + '\n';
    return result;
}

void expectRoundTrip(qz::Model const& model) {
    std::string const text = qz::io::toText(model);
    qz::Model const again = qz::io::fromText(text);
    EXPECT_EQ(content(again), content(model));
    EXPECT_EQ(qz::io::toText(again), text);
}

/// Gives every property of the element values other than the initial ones.
void fill(qz::ModelElement const& element, unsigned n, int depth) {
    for (qz::meta::Property const& p : element->getMetaClass()->getProperties()) {
        if (p->isDerived()) continue;
        bool const several = p->getFlags() != qz::ValueFlags::One && p->getFlags() != qz::ValueFlags::Optional;
        auto* const collection = p->descriptor()->collection(*element.impl());
        if (qz::meta::Class::cast(p->getType())) {
            if (depth == 0) continue;
            for (unsigned i = 0; i < (several ? 3 : 1); ++i) {
                qz::ModelElement const child = records::make(p->getType(), element->getModel());
                fill(child, n + i, depth - 1);
                p->descriptor()->place(*element.impl(), child);
            }
        } else if (several) {
            auto& values = dynamic_cast<qz::AbstractPrimitiveCollection&>(*collection);
            for (unsigned i = 0; i < 3; ++i) values.genericAdd(records::sample(p->getType(), n + i));
        } else {
            element->setPropertyValue(p, records::sample(p->getType(), n), kTag);
        }
    }
}

class EveryClass : public testing::TestWithParam<unsigned> {};

TEST_P(EveryClass, ComesBackWithEveryProperty) {
    for (qz::meta::Class const& type : records::schemaClasses()) {
        if (type->isAbstract()) continue;
        SCOPED_TRACE(testing::PrintToString(type->getName()));
        qz::Model const model = qz::Model::create();
        fill(type->instantiateBuilder(model)->create({}), GetParam(), 2);
        expectRoundTrip(model);
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, EveryClass, testing::Values(0U, 1U, 2U));

TEST(RoundTrip, KeepsNumbersToTheBit) {
    using Limits = std::numeric_limits<double>;
    double const numbers[] = {0.0,
                              -0.0,
                              0.1,
                              -1.0 / 3,
                              1e22,
                              123456789012345680000.0,
                              9007199254740993.0,
                              Limits::max(),
                              Limits::min(),
                              Limits::denorm_min(),
                              -Limits::denorm_min(),
                              1.7976931348623155e308,
                              Limits::infinity(),
                              -Limits::infinity(),
                              Limits::quiet_NaN(),
                              -Limits::quiet_NaN(),
                              std::bit_cast<double>(0x7ff0000000000001U),
                              std::bit_cast<double>(0xfffabcdef0123456U)};
    qz::Model const model = qz::Model::create();
    InportInformation const port = InportInformation::create(model, {});
    RateInfo rate;
    for (double const number : numbers) {
        port->setDesignMin(1);  // so that writing a zero is a change, too
        port->setDesignMin(number);
        rate.setPeriod(number);
        port->getRateInfosMutable()->clear();
        port->getRateInfosMutable()->push_back(rate);
        auto const again = InportInformation::cast(qz::io::fromText(qz::io::toText(model))->getRoots().at(0));
        EXPECT_EQ(std::bit_cast<std::uint64_t>(again->getDesignMin()), std::bit_cast<std::uint64_t>(number)) << number;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(again->getRateInfos()->at(0).getPeriod()),
                  std::bit_cast<std::uint64_t>(number));
    }
}

TEST(RoundTrip, KeepsIntegersAtTheirLimits) {
    qz::Model const model = qz::Model::create();
    HierCondInfo const wide = HierCondInfo::create(model, {});
    InportInformation const port = InportInformation::create(model, {});
    for (unsigned long const n : {0UL, (1UL << 53) + 1, std::numeric_limits<unsigned long>::max()}) {
        for (int const i : {std::numeric_limits<int>::min(), -1, 0, std::numeric_limits<int>::max()}) {
            wide->setHierIdx(n);
            port->setFrameData(i);
            port->setOriginalPortNumber(static_cast<unsigned>(i));
            expectRoundTrip(model);
        }
    }
}

TEST(RoundTrip, KeepsTextsUnitByUnit) {
    std::u16string const texts[] = {u"",
                                    u"\"\\/\b\f\n\r\t",
                                    std::u16string(u"a\0b", 3),
                                    u"\u0001\u001f\u007f\u0080",
                                    u"gr\u00fc\u00df \u4e2d \U0001f600",
                                    std::u16string{0xd800},
                                    std::u16string{'a', 0xdc00, 0xd800, 'b'},
                                    std::u16string{0xfffd},
                                    std::u16string{0xffff, 0xfeff}};
    std::string const bytes[] = {"",
                                 "plain",
                                 "gr\xc3\xbc",
                                 "\xff\xfe",
                                 std::string("\0\x80", 2),
                                 "\xed\xa0\x80",
                                 "\xef\xbf\xbd",
                                 "\xc0\xaf",
                                 "\xf4\x90\x80\x80",
                                 "\""};
    qz::Model const model = qz::Model::create();
    InportInformation const port = InportInformation::create(model, {});
    auto const again = [&] {
        return InportInformation::cast(qz::io::fromText(qz::io::toText(model))->getRoots().at(0));
    };
    for (std::u16string const& text : texts) {
        port->setCompiledSignalLabel(text);
        EXPECT_EQ(again()->getCompiledSignalLabel(), text);
    }
    for (std::string const& text : bytes) {
        port->setTrueHiers(text);
        EXPECT_EQ(again()->getTrueHiers(), text);
    }
}

TEST(RoundTrip, KeepsAnEnumeratedValueThatHasNoLiteral) {
    qz::Model const model = qz::Model::create();
    qz::meta::Property found;
    for (qz::meta::Class const& type : records::schemaClasses()) {
        for (qz::meta::Property const& p : type->getProperties()) {
            bool const single = p->getFlags() == qz::ValueFlags::One && !p->isDerived();
            if (found || type->isAbstract() || !single || !p->getType()->isEnum()) continue;
            found = p;
            auto const* const numbers =
                qz::meta::PropertySerializerRegistry::getInstance()->getPropertySerializer(p->getType(), "ID");
            qz::ModelElement const element = type->instantiateBuilder(model)->create({});
            element->setPropertyValue(p, numbers->parseValue(u"77", p->getType()), kTag);
        }
    }
    ASSERT_TRUE(found);
    EXPECT_THAT(qz::io::toText(model), testing::HasSubstr(":77"));
    std::string const text = qz::io::toText(model);
    EXPECT_EQ(qz::io::toText(qz::io::fromText(text)), text);
}

/// Arrays of every class, with the content that is difficult to save for each.
std::vector<zx::Array> arrays() {
    std::vector<zx::Array> result;
    auto const add = [&](zxArray* array) -> zxArray* { return result.emplace_back(array).get(); };
    for (zxClassCode const code : {zxDoubleClass, zxSingleClass, zxInt8Class, zxUint8Class, zxInt16Class, zxUint16Class,
                                   zxInt32Class, zxUint32Class, zxInt64Class, zxUint64Class}) {
        for (int const isComplex : {0, 1}) {
            zxArray* const array = add(zxCreateNumericArray(std::vector<std::size_t>{2, 1, 3}, code, isComplex));
            auto* const bytes = static_cast<unsigned char*>(zxGetDataForWriting(array));
            std::size_t const size = zxGetElementSize(array) * zxGetNumberOfElements(array);
            // Integers may have any bytes; these bytes give finite reals.
            for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<unsigned char>(i * 37 % 127);
        }
        add(zxCreateNumericMatrix(0, 3, code));
    }
    zxArray* const special = add(zxCreateNumericMatrix(1, 4, zxDoubleClass));
    auto const reals = zx::valuesForWriting<double>(special);
    reals[0] = std::numeric_limits<double>::infinity();
    reals[1] = -0.0;
    reals[2] = std::numeric_limits<double>::quiet_NaN();
    reals[3] = 5e-324;
    result.push_back(zx::scalar(-std::numeric_limits<float>::infinity()));
    zx::valuesForWriting<bool>(add(zxCreateNumericMatrix(2, 2, zxLogicalClass)))[1] = true;
    add(zxCreateString_UTF16(u"text"));
    add(zxCreateString_UTF16(std::u16string{'x', 0xd801}));
    add(zxCreateString_UTF16(u""));
    zxArray* const cell = add(zxCreateCellMatrix(1, 3));
    zxSetCell(cell, 0, zx::scalar(1.5).release());
    zxSetCell(cell, 2, zxCreateCellMatrix(0, 2));
    zxArray* const structs = add(zxCreateStructMatrix(2, 1));
    zxSetField(structs, 0, "second", zxCreateString("a"));
    zxSetField(structs, 1, "first", zx::scalar(std::int64_t(-9007199254740993)).release());
    add(zxCreateStructMatrix(1, 1));
    add(zxCreateStringObject(u"one"));
    zxArray* const strings = add(zxCreateStringObjectArray(std::vector<std::size_t>{1, 2}));
    zxSetStringElement(strings, 1, u"two");
    add(zxCreateObjectFromUnderlying("a.Colour", zx::scalar(std::int32_t(2)).release()));
    add(zxCreateEmptyObject("a.Colour"));
    return result;
}

TEST(RoundTrip, KeepsArraysOfEveryClass) {
    qz::Model const model = qz::Model::create();
    ArgumentValue const argument = ArgumentValue::create(model, {});
    for (zx::Array const& array : arrays()) {
        argument->setValue(array.get());
        std::string const text = qz::io::toText(model);
        SCOPED_TRACE(text);
        auto const root = qz::io::fromText(text);
        auto const again = ArgumentValue::cast(root->getRoots().at(0));
        EXPECT_TRUE(zxIsEqual(again->getValue(), array.get(), zxNanRule::Same));
        EXPECT_EQ(qz::io::toText(root), text);  // compares the sign of zeros and the order of fields too
    }
}

TEST(RoundTrip, KeepsTheOrderOfSequencesAndOfEqualKeys) {
    qz::Model const model = qz::Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    for (int i = 0; i < 20; ++i) {
        root->createIntoInports()->setFrameData(i);
        root->createIntoUnionTsContainedTs();
    }
    expectRoundTrip(model);
}

TEST(RoundTrip, KeepsGuestsAndWhereTheyAreAtHome) {
    for (qz::meta::Class const& type : records::schemaClasses()) {
        if (type->isAbstract()) continue;
        for (qz::meta::Property const& p : type->getProperties()) {
            if (p->isDerived() || !qz::meta::Class::cast(p->getType())) continue;
            SCOPED_TRACE(testing::PrintToString(type->getName() + u"." + p->getName()));
            qz::Model const model = qz::Model::create();
            qz::ModelElement const home = type->instantiateBuilder(model)->create({});
            qz::ModelElement const other = type->instantiateBuilder(model)->create({});
            qz::ModelElement const child = records::make(p->getType(), model);
            p->descriptor()->place(*home.impl(), child);
            p->descriptor()->place(*other.impl(),
                                   model->createProxy(child->getMetaClass(), qz::ProxyId(child->uuid())));
            std::string const text = qz::io::toText(model);
            EXPECT_THAT(text, testing::HasSubstr("\"ref\":\"" + to_string(child->uuid())));
            qz::Model const again = qz::io::fromText(text);
            EXPECT_EQ(qz::io::toText(again), text);
            EXPECT_EQ(content(again), content(model));
            if (HasFailure()) return;
        }
    }
}

TEST(RoundTrip, KeepsAnElementThatStandsTwiceInASequence) {
    qz::Model const model = qz::Model::create();
    ModelRefInfoRoot const root = ModelRefInfoRoot::create(model, {});
    InportInformation const port = root->createIntoInports();
    root->createIntoInports();
    root->getInportsMutable()->add(port);
    std::string const text = qz::io::toText(model);
    qz::Model const again = qz::io::fromText(text);
    EXPECT_EQ(qz::io::toText(again), text);
    EXPECT_EQ(content(again), content(model));
}

TEST(Text, IsTheSameForTheSameContentWhateverItsHistory) {
    boost::uuids::uuid const first{{1}};
    boost::uuids::uuid const second{{2}};
    boost::uuids::uuid const third{{3}};
    auto const build = [&](bool turned) {
        qz::Model const model = qz::Model::create();
        InportInformation::Builder port;
        auto const one = InportInformation::create(model, turned ? second : first);
        auto const other = InportInformation::create(model, turned ? first : second);
        auto const& owner = turned ? other : one;
        HierCondInfo::Builder condition;
        std::vector<boost::uuids::uuid> ids{second, third};
        ids[0].data[15] = ids[1].data[15] = 9;
        if (turned) std::swap(ids[0], ids[1]);
        for (auto const& id : ids) owner->createIntoHierCondInfos(condition, id);
        if (turned) {
            owner->setDesignMax(3);
            owner->setDesignMax(0);
        }
        return qz::io::toText(model);
    };
    EXPECT_EQ(build(false), build(true));
}

TEST(Text, HasSortedKeysAndWhatDiffersFromAFreshElement) {
    qz::Model const model = qz::Model::create();
    boost::uuids::uuid id{{0x10}};
    auto const port = InportInformation::create(model, id);
    port->setRawKGNStorageClass(u"Other");
    port->setDesignMin(-1);
    port->setDesignMin(-0.0);
    port->setCompiledSignalLabel(u"\u00e4");
    EXPECT_EQ(qz::io::toText(model),
              R"({"roots":[{"class":"ModelRefInfoRepo.InportInformation",)"
              R"("id":"10000000-0000-0000-0000-000000000000",)"
              "\"values\":{\"compiledSignalLabel\":\"\u00e4\",\"designMin\":-0.0,\"rawKGNStorageClass\":\"Other\"}}],"
              R"("schema":"quay0://quay/quay0/vw_modelref_info/rel7/ModelRefInfoRepo","version":1})");
    EXPECT_EQ(qz::io::toText(qz::Model::create()), R"({"roots":[],"schema":"","version":1})");
}

TEST(File, IsReadInPiecesThatCutAnythingAnywhere) {
    std::mt19937 random(7);
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    for (int i = 0; i < 6'000; ++i) {
        auto const port = root->createIntoInports();
        port->setCompiledSignalLabel(std::u16string(random() % 50, u'\n') + u"\U0001f600");
        port->setDesignMin(std::ldexp(double(random()), -int(random() % 200)));
    }
    auto const path = std::filesystem::path(testing::TempDir()) / "pieces.json";
    qz::io::save(model, path);
    ASSERT_GT(std::filesystem::file_size(path), 1'000'000U);
    EXPECT_EQ(content(qz::io::load(path)), content(model));
    std::filesystem::remove(path);
}

}  // namespace
