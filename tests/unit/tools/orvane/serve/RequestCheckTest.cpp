#include <gtest/gtest.h>

#include "tools/orvane/serve/RequestCheck.h"

namespace {

using namespace orvane::tool;

const Site kSite{"127.0.0.1", 48080, "0123456789abcdef"};

HttpRequest get(const std::string& path) {
    HttpRequest request;
    request.method = "GET";
    request.path = path;
    request.host = "127.0.0.1:48080";
    return request;
}

HttpRequest post(const std::string& path) {
    HttpRequest request = get(path);
    request.method = "POST";
    request.origin = "http://127.0.0.1:48080";
    request.contentType = "application/json";
    request.token = kSite.token;
    return request;
}

int statusOf(const HttpRequest& request) {
    const auto refusal = refusalOf(request, kSite);
    return refusal ? refusal->status : 200;
}

TEST(RequestCheckTest, TakesTheNamesOfThisMachineForOurHost) {
    for (const char* const host : {"127.0.0.1:48080", "localhost:48080", "[::1]:48080"}) {
        EXPECT_TRUE(isOurHost(host, kSite)) << host;
    }
}

TEST(RequestCheckTest, PutsIpv6AddressesInBrackets) {
    EXPECT_EQ(hostOf("192.0.2.7"), "192.0.2.7");
    EXPECT_EQ(hostOf("::1"), "[::1]");
    for (const char* const text : {"", "localhost", "1.2.3", "[::1]", "::g"}) {
        EXPECT_EQ(hostOf(text), std::nullopt) << text;
    }
}

TEST(RequestCheckTest, RefusesOtherHostsThatLeadHere) {
    for (const char* const host :
         {"", "evil.example", "evil.example:48080", "127.0.0.1", "127.0.0.1:48081",
          "127.0.0.1.evil.example:48080", "192.0.2.7:48080", "localhost.:48080"}) {
        EXPECT_FALSE(isOurHost(host, kSite)) << host;
    }
}

TEST(RequestCheckTest, TakesAddressesButNoNamesIfItListensOnOthers) {
    const Site all{"0.0.0.0", 48080, "0123456789abcdef"};
    EXPECT_TRUE(isOurHost("192.0.2.7:48080", all));
    EXPECT_TRUE(isOurHost("[2001:db8::1]:48080", all));
    EXPECT_FALSE(isOurHost("evil.example:48080", all));
}

TEST(RequestCheckTest, LetsOurOwnPageReadAndWrite) {
    EXPECT_EQ(statusOf(get("/")), 200);
    EXPECT_EQ(statusOf(post("/set")), 200);
}

TEST(RequestCheckTest, RefusesOtherOrigins) {
    for (const char* const origin : {"null", "http://evil.example", "https://127.0.0.1:48080",
                                     "http://127.0.0.1:48081", "http://127.0.0.1:48080.evil"}) {
        HttpRequest request = post("/set");
        request.origin = origin;
        EXPECT_EQ(statusOf(request), 403) << origin;
        request = get("/start");
        request.origin = origin;
        EXPECT_EQ(statusOf(request), 403) << origin;
    }
}

TEST(RequestCheckTest, RefusesWhatAnotherWebsiteEmbeds) {
    HttpRequest request = get("/events");
    for (const char* const site : {"cross-site", "same-site"}) {
        request.fetchSite = site;
        EXPECT_EQ(statusOf(request), 403) << site;
    }
    request.fetchSite = "same-origin";
    EXPECT_EQ(statusOf(request), 200);
    // A link may lead to the page itself.
    request = get("/");
    request.fetchSite = "cross-site";
    EXPECT_EQ(statusOf(request), 200);
}

TEST(RequestCheckTest, RefusesToWriteWithoutTheToken) {
    for (const char* const path : {"/set", "/press", "/hold", "/release"}) {
        for (const char* const token :
             {"", "0123456789abcdee", "0123456789abcde", "0123456789abcdef0"}) {
            HttpRequest request = post(path);
            request.token = token;
            EXPECT_EQ(statusOf(request), 403) << path << " " << token;
        }
    }
    HttpRequest watching = post("/watch");
    watching.token.clear();
    EXPECT_EQ(statusOf(watching), 200);
}

TEST(RequestCheckTest, RefusesEverythingIfThereIsNoToken) {
    EXPECT_FALSE(isToken("", ""));
}

TEST(RequestCheckTest, RefusesOtherTypesAndPackedBodies) {
    HttpRequest request = post("/set");
    request.contentType = "text/plain";
    EXPECT_EQ(statusOf(request), 415);
    request = post("/set");
    request.contentEncoding = "br";
    EXPECT_EQ(statusOf(request), 415);
}

TEST(RequestCheckTest, RefusesOtherMethods) {
    HttpRequest request = post("/set");
    request.method = "PUT";
    EXPECT_EQ(statusOf(request), 405);
}

TEST(RequestCheckTest, MakesAnotherTokenEachTime) {
    EXPECT_EQ(randomToken().size(), 32U);
    EXPECT_TRUE(isPageId(randomToken()));
    EXPECT_NE(randomToken(), randomToken());
}

} // namespace
