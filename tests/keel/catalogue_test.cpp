#include <keel/catalogue.h>
#include <keel/message.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>

namespace {

using keel::Catalogue;
using keel::Message;

Message message(std::vector<std::u16string> arguments = {}) {
    return {"test:catalogue", "Entry", std::move(arguments)};
}

TEST(Catalogue, TakesTheSentenceThatUsesMostOfWhatIsKnown) {
    struct Case {
        std::vector<std::string> sentences;
        Message message;
        std::string expected;
    };
    Case const cases[] = {
        {{"plain"}, message(), "plain"},
        {{"{1} before {0}"}, message({u"a", u"b"}), "b before a"},
        {{"plain", "{value} is bad"}, message(), "plain"},
        {{"plain", "{value} is bad"}, message().withValue(u"7"), "7 is bad"},
        {{"{value} is bad", "plain"}, message().withValue(u"7"), "7 is bad"},
        {{"plain", "{value} is bad"}, message().about(u"X.p"), "X.p: plain"},
        {{"plain", "{value} is bad"}, message().about(u"X.p").withValue(u"7"), "X.p: 7 is bad"},
        {{"plain", "{subject} refuses {value}"}, message().about(u"X.p").withValue(u"7"), "X.p refuses 7"},
        {{"plain", "{subject} refuses {value}"}, message().about(u"X.p"), "X.p: plain"},
        {{"plain"}, message().withValue(u"7"), "plain (the value was 7)"},
        {{"{0} and {1}"}, message({u"only"}), "only"},
        {{"{99999999999999999999}"}, message({u"a", u"b"}), "a, b"},
        {{"{unknown} {}"}, message({u"a"}), "a"},
        {{"an open { brace"}, message(), "an open { brace"},
        {{"{0} and {value}"}, message({u"{value}"}).withValue(u"{0}"), "{value} and {0}"},
        {{"{0}"}, message({{0xD800, u'\u00e9'}}), "\xef\xbf\xbd\xc3\xa9"},
        {{}, message(), ""},
        {{}, message({u"a", u"b"}).about(u"X.p").withValue(u"7"), "X.p: a, b (the value was 7)"},
        {{}, message().about(u"X.p"), "X.p"},
    };
    for (Case const& c : cases) {
        Catalogue::instance().add("test:catalogue:Entry", c.sentences);
        EXPECT_EQ(c.message.sentence(), c.expected) << ::testing::PrintToString(c.sentences);
    }
}

TEST(Catalogue, IsReadWhileAnotherThreadAdds) {
    Catalogue& catalogue = Catalogue::instance();
    catalogue.add("test:catalogue:Shared", {"first"});
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        for (int i = 0; i < 2'000; ++i) {
            catalogue.add("test:catalogue:Other" + std::to_string(i % 100), {"other"});
            catalogue.add("test:catalogue:Shared", {i % 2 == 0 ? "second" : "first"});
        }
        stop = true;
    });
    do {
        std::string const sentence = Message("test:catalogue", "Shared").sentence();
        EXPECT_TRUE(sentence == "first" || sentence == "second") << sentence;
    } while (!stop);
    writer.join();
}

}  // namespace
