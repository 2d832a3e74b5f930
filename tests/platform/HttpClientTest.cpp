#include "platform/HttpClient.h"

#include "platform/LocalServer.h"
#include "platform/Process.h"

#include <gmock/gmock.h>
#include <thread>

namespace sweeply {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class HttpClientTest : public testing::Test {
  protected:
    static std::string failureOf(const Result<std::string>& answer) {
        return answer ? "an answer of " + std::to_string(answer->size()) + " bytes" : answer.error().message();
    }
    std::string failureAt(const std::string& path, std::size_t limit = 10'000) const {
        return failureOf(m_client.fetch({.url = m_server.url(path), .agent = "Agent", .limit = limit}));
    }

    LocalServer m_server;
    HttpClient m_client{SWEEPLY_LIBEXEC "/fetch"};
};

TEST_F(HttpClientTest, AnswerComesAsItIsAndTheServerHearsWhoAsks) {
    const std::string bytes("a\0b\xff\n", 5);
    m_server.serve("file", bytes);
    EXPECT_EQ(m_client.fetch({.url = m_server.url("/file"), .agent = "Product=\"x\""}), bytes);
    EXPECT_THAT(m_server.requests(), AllOf(HasSubstr(R"("GET")"), HasSubstr(R"("User-Agent": "Product=\"x\"")")));
}

TEST_F(HttpClientTest, FormIsPostedEscaped) {
    HttpRequest request{.url = m_server.url("/report"), .agent = "Agent"};
    request.headers = {"X-Reporter: one"};
    request.form = {{"list", "a|b&c=d e"}, {"user", ""}};
    EXPECT_EQ(m_client.fetch(request), "");
    EXPECT_THAT(m_server.requests(), AllOf(HasSubstr(R"("POST")"), HasSubstr("\"list=a%7Cb%26c%3Dd%20e&user=\""),
                                           HasSubstr(R"("X-Reporter": "one")")));
    request.url = m_server.url("/broken");
    EXPECT_THAT(failureOf(m_client.fetch(request)), AllOf(HasSubstr("/broken"), HasSubstr("500")));
    request.form = {{"list", std::string(200'000, 'x')}};
    EXPECT_EQ(m_client.fetch(request).error().kind, ErrorKind::TooLarge);
}

TEST_F(HttpClientTest, ServersThatMisbehaveGetAnErrorThatNamesTheAddress) {
    EXPECT_THAT(failureAt("/nothing"), AllOf(HasSubstr(m_server.url("/nothing")), HasSubstr("404")));
    EXPECT_THAT(failureAt("/endless"), HasSubstr("longer than 10000 bytes"));
    for (const char* path : {"/endless-headers", "/short", "/not-http", "/redirect?/redirect?/redirect"})
        EXPECT_THAT(failureAt(path), AllOf(HasSubstr(path), testing::Not(HasSubstr("an answer")))) << path;
    EXPECT_THAT(failureOf(m_client.fetch({.url = "http://127.0.0.1:1/", .agent = "Agent"})), HasSubstr("127.0.0.1:1"));
}

TEST_F(HttpClientTest, RedirectionKeepsTheScheme) {
    m_server.serve("file", "here");
    EXPECT_EQ(m_client.fetch({.url = m_server.url("/redirect?/file"), .agent = "Agent"}), "here");
    for (const char* other : {"file:///etc/hostname", "https://127.0.0.1/", "ftp://127.0.0.1/a"})
        EXPECT_THAT(failureAt("/redirect?" + std::string(other)), HasSubstr("/redirect")) << other;
    for (const char* address : {"file:///etc/hostname", "ftp://127.0.0.1/", "/etc/hostname", ""})
        EXPECT_FALSE(m_client.fetch({.url = address, .agent = "Agent"})) << address;
}

TEST_F(HttpClientTest, HangingServerIsLeftWhenTimeIsUpOrSomebodyStopsIt) {
    const HttpClient impatient(SWEEPLY_LIBEXEC "/fetch", std::chrono::seconds(1));
    EXPECT_THAT(failureOf(impatient.fetch({.url = m_server.url("/hang"), .agent = "Agent"})), HasSubstr("/hang"));

    std::stop_source source;
    const std::jthread stopper([&] {
        while (m_server.requests().find("/hang?2") == std::string::npos)
            std::this_thread::yield();
        source.request_stop();
    });
    const auto answer = m_client.fetch({.url = m_server.url("/hang?2"), .agent = "Agent"}, source.get_token());
    EXPECT_EQ(answer.error().kind, ErrorKind::Stopped);
}

TEST_F(HttpClientTest, CertificateThatNobodyVouchesForIsRefused) {
    const TestFolder folder;
    ASSERT_TRUE(
        runProcess("/usr/bin/openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=127.0.0.1",
                                        "-keyout", folder.path("key"), "-out", folder.path("certificate")}));
    folder.write("both", folder.read("key") + folder.read("certificate"));
    const LocalServer server(folder.path("both"));
    server.serve("file", "here");
    EXPECT_THAT(failureOf(m_client.fetch({.url = server.url("/file"), .agent = "Agent"})), HasSubstr("certificate"));
}

} // namespace
} // namespace sweeply
