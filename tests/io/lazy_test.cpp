// Files whose elements are read only when they are accessed.
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
#include <keel/exception.h>
#include <quay/zero/io/io.h>

#include <gmock/gmock.h>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "../common/sentence.h"
#include "../elements/support/dump.h"

namespace {

using namespace ModelRefInfoRepo;
namespace qz = quay::zero;
namespace fs = std::filesystem;
using testing::HasSubstr;

class Lazy : public testing::Test {
protected:
    Lazy() : path_(fs::path(testing::TempDir()) / "quay_lazy.record") {}
    ~Lazy() override { fs::remove(path_); }

    /// A root with children of every shape.
    static qz::Model makeModel(int ports) {
        qz::Model const model = qz::Model::create();
        auto const root = ModelRefInfoRoot::create(model, {});
        root->setNumTs(ports);
        for (int i = 0; i < ports; ++i) {
            auto const port = root->createIntoInports();
            port->setCompiledSignalLabel(u"\"in\" {" + std::u16string(static_cast<std::size_t>(i % 40), u']'));
            port->createIntoHierCondInfos()->setHierIdx(static_cast<unsigned long>(i));
            auto const pair = StructTypeBusTypeElem::create(model, {});
            pair->setStructType("s" + std::to_string(i));
            root->getStructTypeBusTypeMapMutable()->add(pair);
            root->createIntoUnionTsContainedTs()->setContainedTs(i);
            root->createIntoOtherVCVAndBlkPath()->setVcvName("v" + std::to_string(i));
        }
        root->createIntoVarTsUIDMap()->createIntoEntries()->setVarTsUID(u"clock");
        return model;
    }
    qz::Model load(qz::Model const& model) const {
        qz::io::save(model, path_);
        return qz::io::load(path_, {}, qz::io::Loading::Lazy);
    }
    qz::Model loadText(std::string const& text) const {
        std::ofstream(path_) << text;
        return qz::io::load(path_, {}, qz::io::Loading::Lazy);
    }
    static ModelRefInfoRoot rootOf(qz::Model const& model) { return ModelRefInfoRoot::cast(model->getRoots().at(0)); }

    fs::path path_;
};

TEST_F(Lazy, ReadsWhatIsReachedAndNothingElse) {
    qz::Model const model = load(makeModel(50));
    auto const root = rootOf(model);
    EXPECT_EQ(root->getNumTs().value_or(0), 50);
    EXPECT_EQ(root->getInports()->size(), 50U);
    EXPECT_EQ(model->elementCount(), 51U);  // including the members of the multimap
    InportInformation const port = (*root->getInports())[7];
    EXPECT_FALSE(port->isProxy());
    EXPECT_EQ(port->container(), root);
    EXPECT_EQ(port->getCompiledSignalLabel(), u"\"in\" {]]]]]]]");
    EXPECT_EQ((*port->getHierCondInfos()->begin())->getHierIdx(), 7U);
    EXPECT_EQ(model->elementCount(), 53U);
    EXPECT_EQ((*root->getInports())[7], port);
    EXPECT_EQ(root->getVarTsUIDMap()->getEntries()->find(0)->getVarTsUID(), u"clock");
    EXPECT_EQ(model->elementCount(), 55U);
    EXPECT_EQ(root->getStructTypeBusTypeMap()->find("s49")->container(), root);
}

TEST_F(Lazy, SavesWhatItLoaded) {
    qz::Model const whole = makeModel(3'000);  // several pieces of the file
    std::string const text = qz::io::toText(whole);
    qz::Model const model = load(whole);
    ASSERT_GT(text.size(), 1'000'000U);
    EXPECT_EQ(model->elementCount(), 3'001U);  // the root, and the members of its multimap
    qz::io::save(model, path_);                // over the file that it is reading from
    std::ostringstream saved;
    saved << std::ifstream(path_).rdbuf();
    EXPECT_TRUE(saved.str() == text);  // EXPECT_EQ would print the long texts
    EXPECT_EQ(model->elementCount(), whole->elementCount());
}

TEST_F(Lazy, IsNoChangeAndGoesWithATransaction) {
    qz::Model const model = load(makeModel(3));
    auto const root = rootOf(model);
    int told = 0;
    model->addListener([&](qz::ChangeSet const&) { ++told; });
    model->enableHistory(10);
    EXPECT_EQ((*root->getInports())[0]->getFrameData(), 0);
    EXPECT_EQ(told, 0);
    EXPECT_EQ(model->undoDepth(), 0U);
    std::size_t const count = model->elementCount();
    {
        auto const rolledBack = model->beginTransaction(false);
        (*root->getInports())[1]->setFrameData(7);
        EXPECT_GT(model->elementCount(), count);
    }
    EXPECT_EQ(model->elementCount(), count);
    EXPECT_EQ((*root->getInports())[1]->getFrameData(), 0);
    (*root->getInports())[1]->setFrameData(8);
    EXPECT_TRUE(model->undo());
    EXPECT_EQ((*root->getInports())[1]->getFrameData(), 0);
    EXPECT_EQ(model->getRoots().size(), 1U);
}

TEST_F(Lazy, OutlivesItsFilesName) {
    qz::Model const model = load(makeModel(3));
    fs::remove(path_);
    EXPECT_EQ((*rootOf(model)->getInports())[2]->getHierCondInfos()->size(), 1U);
    qz::io::save(makeModel(1), path_);
    EXPECT_FALSE((*rootOf(model)->getInports())[1]->isProxy());
}

constexpr char kHead[] = R"({"roots":[{"class":"ModelRefInfoRepo.ModelRefInfoRoot",)"
                         R"("id":"11111111-1111-1111-1111-111111111111","values":{"inports":[)";
constexpr char kTail[] = R"(]}}],"schema":"quay0://quay/quay0/vw_modelref_info/rel7/ModelRefInfoRepo","version":1})";

std::string port(char digit, std::string const& key, std::string const& values) {
    return R"({"class":"ModelRefInfoRepo.InportInformation","id":")" + std::string(8, digit) +
           "-2222-2222-2222-222222222222\"," + key + values + "}";
}

TEST_F(Lazy, RefusesAChildWhenItIsReached) {
    qz::Model const model = loadText(kHead + port('2', R"("values" : )", R"({"frameData":1})") + "," +
                                     port('3', R"("values":)", R"({"frameData":"1"})") + kTail);
    auto const root = rootOf(model);
    EXPECT_EQ((*root->getInports())[0]->getFrameData(), 1);
    std::string const before = records::dump(model);
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(
            sentenceOf([&] { (*root->getInports())[1]->getFrameData(); }),
            HasSubstr(path_.string() +
                      ": at element 33333333-2222-2222-2222-222222222222/values/frameData: expected a whole number"));
        EXPECT_EQ(records::dump(model), before);
    }
}

TEST_F(Lazy, RefusesAFileThatWasWrittenTo) {
    qz::Model const model = load(makeModel(3));
    std::ofstream(path_, std::ios::app) << " ";
    EXPECT_THAT(sentenceOf([&] { (*rootOf(model)->getInports())[0]->getFrameData(); }), HasSubstr("was written to"));
    EXPECT_EQ(model->elementCount(), 4U);
}

TEST_F(Lazy, RefusesAtOnceWhatIsWrongInForm) {
    std::string const good = port('2', R"("values":)", "{}");
    EXPECT_THAT(sentenceOf([&] { loadText(kHead + good + "," + good + kTail); }), HasSubstr("has the same id"));
    EXPECT_THAT(sentenceOf([&] { loadText(kHead + good.substr(0, good.size() - 3)); }), HasSubstr("ends too early"));
    EXPECT_THAT(sentenceOf([&] { loadText(kHead + port('2', R"("values":)", "{]}") + kTail); }), HasSubstr("JSON"));
    EXPECT_THAT(sentenceOf([&] { loadText(kHead + port('2', R"("values":)", "[]") + kTail); }), HasSubstr("no list"));
}

TEST_F(Lazy, BuildsWhatItCannotFindAgain) {
    qz::Model const model = loadText(kHead + port('2', "\"\\u0076alues\":", R"({"frameData":1})") + "," +
                                     R"({"class":"ModelRefInfoRepo.InportInformation",)" +
                                     R"("id":"33333333-2222-2222-2222-222222222222"})" + kTail);
    EXPECT_EQ(model->elementCount(), 3U);
    EXPECT_EQ((*rootOf(model)->getInports())[0]->getFrameData(), 1);
}

}  // namespace
