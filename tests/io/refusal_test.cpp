// A text that isn't a model's is refused with file, place and reason, and changes nothing.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/exception.h>
#include <quay/zero/io/io.h>
#include <quay/zero/io/messages.h>
#include <zx/zx.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "../common/sentence.h"
#include "../elements/support/dump.h"

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;
namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr char kSchema[] = R"("schema":"quay0://quay/quay0/vw_modelref_info/rel7/ModelRefInfoRepo","version":1})";
constexpr char kId[] = R"("id":"11111111-1111-1111-1111-111111111111")";
constexpr char kOther[] = R"("id":"22222222-2222-2222-2222-222222222222")";

std::string document(std::string const& roots) { return "{\"roots\":[" + roots + "]," + kSchema; }
std::string port(std::string const& values) {
    return std::string(R"({"class":"ModelRefInfoRepo.InportInformation",)") + kId + ",\"values\":{" + values + "}}";
}
std::string child(std::string const& type, std::string const& id, std::string const& values = "") {
    return "{\"class\":\"ModelRefInfoRepo." + type + "\"," + id + ",\"values\":{" + values + "}}";
}

/// The sentence with which a text is refused, or what loading it gave instead. Checks that the model into which it was
/// loaded is unchanged.
std::string refusal(std::string const& text, qz::io::Limits const& limits = {}) {
    qz::Model const model = qz::Model::create();
    auto const present = RateSpec::create(model, {});
    model->enableHistory(10);
    std::string const before = records::dump(model);
    std::string result;
    try {
        qz::io::fromTextInto(model, text, limits);
        result = "loaded";
    } catch (keel::core::except::Error const& error) {
        result = error.GetBaseMsgIDObj().sentence();
        EXPECT_EQ(error.GetID(), "quay0:messages:CannotLoad");
        EXPECT_EQ(result.find('\n'), std::string::npos);
        EXPECT_EQ(records::dump(model), before);
    }
    return result;
}

TEST(Load, RefusesBadTextsWithPlaceAndReason) {
    std::string const v = "text: at /roots/0/values/";
    struct Case {
        std::string text;
        std::string sentence;
    };
    std::vector<Case> const cases = {
        {"", "text: at byte 0: the text ends too early"},
        {R"({"roots":[]})", "there is no 'schema'"},
        {R"({"roots":[],"schema":"","version":2})", "text: at /version: expected version 1, found '2'"},
        {R"({"roots":[],"schema":"","version":1,"more":1})", "the key 'more' isn't known here"},
        {R"({"roots":[],"roots":[],"schema":"","version":1})", "the key 'roots' stands twice"},
        {document("") + " x", "there is more after the end of the text"},
        {document(port("")) + document(""), "there is more after the end of the text"},
        {document(child("Nowhere", kId)), "at /roots/0/class: there is no class 'ModelRefInfoRepo.Nowhere'"},
        {document(R"({"class":"Integer",)" + std::string(kId) + "}"), "there is no class 'Integer'"},
        {document(child("InterfaceParameter", kId)), "the class 'ModelRefInfoRepo.InterfaceParameter' is abstract"},
        {document(R"({"class":"ModelRefInfoRepo.RateSpec","id":"1"})"), "at /roots/0/id: expected an id, found '1'"},
        {document(child("RateSpec", R"("id":"00000000-0000-0000-0000-000000000000")")), "expected an id"},
        {document(child("RateSpec", kId) + "," + child("RateSpec", kId)),
         "at /roots/1/values: another element has the same id"},
        {document(R"({"class":"ModelRefInfoRepo.RateSpec","ref")" + std::string(kOther).substr(4) + "}"),
         "at /roots/0: a root can't be a reference"},
        {document(port("\"hierCondInfos\":[{\"ref\"" + std::string(kOther).substr(4) + "}]")),
         v + "hierCondInfos/0: a reference has a 'class' and a 'ref' and nothing else"},
        {document(port("\"hierCondInfos\":[{\"class\":\"ModelRefInfoRepo.HierCondInfo\",\"ref\"" +
                       std::string(kOther).substr(4) + "}]")),
         v + "hierCondInfos/0: there is no element of that id"},
        {document(port("\"hierCondInfos\":[{\"class\":\"ModelRefInfoRepo.HierCondInfo\",\"ref\"" +
                       std::string(kId).substr(4) + "}]")),
         v + "hierCondInfos/0: the element is of another class"},
        {document(port("\"nowhere\":1")), "has no stored property 'nowhere'"},
        {document(port("\"rateInfo\":{}")), "has no stored property 'rateInfo'"},
        {document(port("\"designMin\":1,\"designMin\":1")), v + "designMin: the property 'designMin' stands twice"},
        {document(port("\"designMin\":\"1\"")), v + "designMin: expected a number, found a text"},
        {document(port("\"designMin\":null")), v + "designMin: expected a number, found null"},
        {document(port("\"designMin\":1e999")), v + "designMin: expected a number"},
        {document(port("\"designMin\":{\"$real\":\"0x7ff0000000000000\"}")), v + "designMin: expected a number"},
        {document(port("\"frameData\":2147483648")),
         v + "frameData: expected a whole number of 32 bits, found the number 2147483648"},
        {document(port("\"frameData\":1.0")), v + "frameData: expected a whole number of 32 bits"},
        {document(port("\"originalPortNumber\":-1")),
         v + "originalPortNumber: expected a whole number of 32 bits without a sign"},
        {document(port("\"isMessage\":1")), v + "isMessage: expected true or false"},
        {document(port("\"compiledSignalLabel\":{\"$utf16\":\"d80\"}")),
         v + "compiledSignalLabel: expected units of a text"},
        {document(port("\"trueHiers\":{\"$bytes\":\"F0\"}")), v + "trueHiers: expected a text"},
        {document(port("\"rateInfos\":[{\"period\":1},{\"speed\":1}]")),
         v + "rateInfos: value 1: 'ModelRefInfoRepo.RateInfo' has no field 'speed'"},
        {document(port("\"rateInfos\":[{\"period\":true}]")),
         v + "rateInfos: value 0: field 'period': expected a number"},
        {document(port("\"rateInfos\":[{\"period\":1,\"period\":1}]")), v + "rateInfos: the key 'period' stands twice"},
        {document(port("\"rateInfos\":{}")), v + "rateInfos: expected a list, found an object"},
        {document(port("\"hierCondInfos\":[" + child("RateSpec", kOther) + "]")),
         v + "hierCondInfos/0/class: an element of 'ModelRefInfoRepo.RateSpec' can't stand where one of "
             "'ModelRefInfoRepo.HierCondInfo' is wanted"},
        {document(port("\"hierCondInfos\":[" + child("HierCondInfo", kId) + "]")),
         v + "hierCondInfos/0/values: another element has the same id"},
        {document(port("\"resolvedSignalObject\":7")), v + "resolvedSignalObject: expected an array's object"},
        {document(port("\"resolvedSignalObject\":{\"$array\":{\"class\":\"double\",\"data\":[1],\"dims\":[1,2]}}")),
         "the array has dimensions for 2 elements and 1 elements"},
        {document(port("\"resolvedSignalObject\":{\"$array\":{\"class\":\"double\",\"data\":[],\"dims\":[4294967296,"
                       "4294967296,4294967296]}}")),
         "the array is too large"},
        {document(port("\"resolvedSignalObject\":{\"$array\":{\"class\":\"int8\",\"data\":[128],\"dims\":[1,1]}}")),
         "a number of its class is wanted"},
        {document(port("\"resolvedSignalObject\":{\"$array\":{\"class\":\"complex\",\"data\":[1],\"dims\":[1,1]}}")),
         "the array has the unknown class 'complex'"},
        {document(port("\"resolvedSignalObject\":{\"$array\":{\"class\":\"struct\",\"data\":[],\"dims\":[0,0],"
                       "\"fields\":[{\"$bytes\":41}]}}")),
         "the array has no proper 'fields'"},
        {R"({"roots":[)" + port("") + R"(],"schema":"quay0://another","version":1})",
         "the schema is 'quay0://another'"},
        {"{\"roots\": \xff", "this isn't JSON"},
        {R"({"roots":[],"schema":"\ud800","version":1})", "this isn't JSON"},
        {"{\"roots\":[],}", "this isn't JSON"},
    };
    for (Case const& c : cases) EXPECT_THAT(refusal(c.text), HasSubstr(c.sentence)) << c.text;
    EXPECT_EQ(refusal(document(port("\"designMin\":1e-999"))), "loaded");
}

/// Each part of a text's structure is an object, a list or a scalar. A value of another kind is refused.
TEST(Load, RefusesTheWrongKindOfValueInEveryPlace) {
    struct Case {
        std::string before;  // the text up to the value
        std::string place;
        std::string ofTrue;  // the reason why the value `true` is refused
        std::string ofObject;
        std::string ofList;
    };
    std::string const element = R"({"roots":[{"class":"ModelRefInfoRepo.InportInformation",)";
    std::string const values = element + kId + ",\"values\":{";
    std::string const noObject = "expected no object here";
    std::string const noList = "expected no list here";
    std::string const noIdentity = "an element's 'class' and 'id' must come before its 'values'";
    std::string const accepted = "the text ends too early";
    Case const cases[] = {
        {"", "/", "expected an object, found true", "there is no 'roots'", "expected an object, found a list"},
        {"{\"roots\":", "/roots", "expected a list of elements, found true", noObject, accepted},
        {"{\"schema\":", "/schema", "expected a text, found true", noObject, noList},
        {"{\"version\":", "/version", "expected version 1, found true", noObject, noList},
        {"{\"roots\":[", "/roots", "expected an element, found true", noIdentity, noList},
        {"{\"roots\":[{\"class\":", "/roots/0/class", "expected a class, found true", noObject, noList},
        {"{\"roots\":[{\"id\":", "/roots/0/id", "expected an id, found true", noObject, noList},
        {"{\"roots\":[{\"ref\":", "/roots/0/ref", "expected an id, found true", noObject, noList},
        {element + "\"values\":", "/roots/0/values", "expected an object of properties, found true", noIdentity,
         noList},
        {values + "\"hierCondInfos\":", "/roots/0/values/hierCondInfos", "expected an element, found true",
         "expected a list of elements, found an object", accepted},
        {values + "\"hierCondInfos\":[", "/roots/0/values/hierCondInfos", "expected an element, found true", noIdentity,
         noList},
        {values + "\"dataEventsInfo\":", "/roots/0/values/dataEventsInfo", "expected an element, found true",
         noIdentity, "expected an element, found a list"},
    };
    for (Case const& c : cases) {
        EXPECT_THAT(refusal(c.before + "true"), testing::EndsWith("text: at " + c.place + ": " + c.ofTrue));
        EXPECT_THAT(refusal(c.before + "{}"), testing::EndsWith(": " + c.ofObject)) << c.before;
        EXPECT_THAT(refusal(c.before + "[]"), testing::EndsWith(": " + c.ofList)) << c.before;
    }
}

TEST(Load, RefusesKeysThatAreInUseInAMap) {
    std::string const entry = child("VarTsUIDEntry", kOther);
    std::string const second = child("VarTsUIDEntry", R"("id":"33333333-3333-3333-3333-333333333333")");
    std::string const text = document(child("VarTsUIDMap", kId, "\"entries\":[" + entry + "," + second + "]"));
    EXPECT_THAT(refusal(text), HasSubstr("at /roots/0/values/entries/1: VarTsUIDMap.entries: 0 is in use"));
}

TEST(Save, RefusesWhatStandsInAnotherModel) {
    qz::Model const library = qz::Model::create();
    DataPortGroup const far = DataPortGroup::create(library, {});
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    root->setDataPortGroup(
        DataPortGroup::cast(model->createProxy(DataPortGroup::metaClass(), qz::ProxyId(u"library", far->uuid()))));
    auto const refusal = [&] { return sentenceOf([&] { qz::io::toText(model); }); };
    EXPECT_THAT(refusal(), HasSubstr("the element isn't loaded"));
    model->setProxyResolver([&](qz::ProxyId const&) { return far; });
    ASSERT_EQ(root->getDataPortGroup(), far);
    EXPECT_THAT(refusal(), HasSubstr("/roots/0/values/dataPortGroup: an element of another model"));
}

TEST(Load, RefusesAnIdThatTheModelHas) {
    qz::Model const model = qz::io::fromText(document(port("")));
    std::string const before = records::dump(model);
    EXPECT_ANY_THROW(qz::io::fromTextInto(model, document(child("RateSpec", kOther) + "," + port(""))));
    EXPECT_EQ(records::dump(model), before);
    EXPECT_EQ(qz::io::fromTextInto(model, document(child("RateSpec", kOther))).size(), 1U);
    EXPECT_EQ(model->elementCount(), 2U);
}

TEST(Load, KeepsToItsLimits) {
    std::string const two = document(child("RateSpec", kId) + "," + child("RateSpec", kOther));
    qz::io::Limits limits;
    limits.count = 2;
    limits.size = two.size();
    limits.depth = 4;
    EXPECT_EQ(refusal(two, limits), "loaded");
    EXPECT_THAT(refusal(two + " ", limits), HasSubstr("the text is longer than the"));
    limits.count = 1;
    EXPECT_THAT(refusal(two, limits), HasSubstr("at /roots/1: there are more than the 1 elements"));
    limits.count = 2;
    limits.depth = 3;
    EXPECT_THAT(refusal(two, limits), HasSubstr("there are more than the 3 levels"));
    std::string const deep(100'000, '[');
    EXPECT_THAT(refusal(document(port("\"rateInfos\":" + deep))), HasSubstr("there are more than the 1000 levels"));
    EXPECT_THAT(refusal(document(port("\"resolvedSignalObject\":" + deep))), HasSubstr("levels"));
}

/// A text in which every construct occurs.
std::string sampleText() {
    qz::Model const model = qz::Model::create();
    auto const root = ModelRefInfoRoot::create(model, {});
    auto const port = root->createIntoInports();
    port->setCompiledSignalLabel(u"\u00e9\n\U0001f600");
    port->setDesignMin(-1.25e-7);
    port->getRateInfosMutable()->push_back(RateInfo());
    port->createIntoHierCondInfos()->setHierIdx(7);
    auto const array = zx::scalar(2.5);
    port->setResolvedSignalObject(array.get());
    root->createIntoUnionTsContainedTs();
    return qz::io::toText(model);
}

TEST(Load, RefusesEveryTruncation) {
    std::string const text = sampleText();
    for (std::size_t i = 0; i < text.size(); ++i) EXPECT_NE(refusal(text.substr(0, i)), "loaded") << i;
    EXPECT_EQ(refusal(text), "loaded");
}

TEST(Load, SurvivesDamageOfAnyKind) {
    std::string const text = sampleText();
    std::mt19937 random(11);
    constexpr char kBytes[] = "{}[]\",:\\0-1e.\xff\x01 $";
    int refused = 0;
    for (int i = 0; i < 5'000; ++i) {
        std::string damaged = text;
        for (unsigned n = 0; n <= random() % 3; ++n) {
            std::size_t const at = random() % damaged.size();
            if (random() % 3 == 0) {
                damaged.erase(at, random() % 20);
            } else {
                damaged[at] = kBytes[random() % (sizeof kBytes - 1)];
            }
        }
        refused += refusal(damaged) != "loaded" ? 1 : 0;  // checks the model too
    }
    EXPECT_GT(refused, 3'000);
}

// --- Files ----------------------------------------------------------------------------------------------------------

class Files : public testing::Test {
protected:
    Files() : folder_(fs::path(testing::TempDir()) / "quay_io_files") {
        fs::remove_all(folder_);
        fs::create_directory(folder_);
    }
    ~Files() override { fs::remove_all(folder_); }

    fs::path at(std::string const& name) const { return folder_ / name; }
    std::size_t count() const { return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), {})); }
    static std::string contentOf(fs::path const& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

private:
    fs::path folder_;
};

struct Nothing {
    static void* copy(void* native) { return native; }
    static void destroy(void*) noexcept {}
    static constexpr zx::NativeOperations kOperations{&copy, &destroy, nullptr};
};

TEST_F(Files, AreWholeOrAsTheyWere) {
    qz::Model const model = qz::io::fromText(document(port("")));
    qz::io::save(model, at("record"));
    EXPECT_EQ(contentOf(at("record")), qz::io::toText(model));
    std::string const before = contentOf(at("record"));

    InportInformation const inport = InportInformation::cast(model->getRoots().at(0));
    zx::Array const native(zxCreateNativeObject("a.Class", nullptr, Nothing::kOperations));
    inport->setResolvedSignalObject(native.get());
    EXPECT_EQ(
        sentenceOf([&] { qz::io::save(model, at("record")); }),
        "quay0:messages:CannotSave: the model can't be saved: at /roots/0/values/resolvedSignalObject: objects of "
        "'a.Class' have no text");
    EXPECT_EQ(contentOf(at("record")), before);
    EXPECT_EQ(count(), 1U);
}

TEST_F(Files, ThatCannotBeReachedAreNamed) {
    qz::Model const model = qz::Model::create();
    fs::path const nowhere = at("nowhere") / "record";
    EXPECT_THAT(sentenceOf([&] { qz::io::save(model, nowhere); }),
                testing::AllOf(HasSubstr(nowhere.string()), HasSubstr("No such file")));
    EXPECT_THAT(sentenceOf([&] { qz::io::load(nowhere); }), HasSubstr("CannotReadFile: " + nowhere.string()));
    EXPECT_THAT(sentenceOf([&] { qz::io::load(at("")); }), HasSubstr("Is a directory"));
    EXPECT_THAT(sentenceOf([&] { qz::io::save(model, at("")); }), HasSubstr("CannotWriteFile"));
    EXPECT_EQ(count(), 0U);
}

TEST_F(Files, KeepPermissionsAndLinks) {
    qz::Model const model = qz::Model::create();
    std::ofstream(at("real")) << "old";
    ::chmod(at("real").c_str(), 0640);
    fs::create_symlink(at("real"), at("link"));
    qz::io::save(model, at("link"));
    EXPECT_TRUE(fs::is_symlink(at("link")));
    EXPECT_EQ(contentOf(at("real")), qz::io::toText(model));
    EXPECT_EQ(static_cast<unsigned>(fs::status(at("real")).permissions()), 0640U);
    qz::io::save(model, "/dev/null");
    EXPECT_EQ(count(), 2U);
    fs::create_symlink(at("nothing"), at("dangling"));
    EXPECT_THAT(sentenceOf([&] { qz::io::save(model, at("dangling")); }),
                HasSubstr("a link to a file that isn't there"));
    EXPECT_TRUE(fs::is_symlink(at("dangling")) && !fs::exists(at("nothing")));
}

TEST_F(Files, LeftByDeadWritersAreRemoved) {
    qz::Model const model = qz::Model::create();
    auto const old = fs::file_time_type::clock::now() - std::chrono::minutes(2);
    for (char const* name : {"record.0123abcd.new", "record.89abcdef.new", "record.12345678.new", "record.0123abcg.new",
                             "record.0123abcd.old", "other.0123abcd.new"}) {
        std::ofstream(at(name)) << "left";
        if (std::string(name) != "record.12345678.new") fs::last_write_time(at(name), old);
    }
    int const alive = ::open(at("record.89abcdef.new").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(alive, LOCK_EX), 0);
    qz::io::save(model, at("record"));
    EXPECT_FALSE(fs::exists(at("record.0123abcd.new")));
    EXPECT_TRUE(fs::exists(at("record.89abcdef.new"))) << "its writer lives";
    EXPECT_TRUE(fs::exists(at("record.12345678.new"))) << "its writer may be about to lock it";
    EXPECT_EQ(count(), 6U);
    ::close(alive);
}

TEST_F(Files, BeyondTheLimitForTheirSizeAreRefused) {
    qz::Model const model = qz::Model::create();
    qz::io::save(model, at("record"));
    std::string const before = contentOf(at("record"));
    rlimit old{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    rlimit const low{16, old.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &low), 0);
    std::string const sentence = sentenceOf([&] { qz::io::save(model, at("record")); });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
    EXPECT_THAT(sentence, HasSubstr("File too large"));
    EXPECT_EQ(contentOf(at("record")), before);
    EXPECT_EQ(count(), 1U);
}

}  // namespace
