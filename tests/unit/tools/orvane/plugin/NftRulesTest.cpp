#include <exception>

#include <gtest/gtest.h>

#include "tools/orvane/plugin/NftRules.h"

using orvane::tool::plugin::Reach;
using orvane::tool::plugin::reachThrough;

namespace {

// Entries of `nft -j list ruleset`: the rules of a chain, given as their expressions.
std::string rules(const std::string& chain, const std::vector<std::string>& expressions) {
    std::string text;
    for (const std::string& expression : expressions) {
        text += R"(, {"rule": {"family": "inet", "table": "t", "chain": ")" + chain +
                R"(", "handle": 2, "expr": )" + expression + "}}";
    }
    return text;
}

// The chain for incoming packets and its rules.
std::string input(const std::string& policy, const std::vector<std::string>& expressions) {
    return R"({"chain": {"family": "inet", "table": "t", "name": "input", "handle": 1,)"
           R"("type": "filter", "hook": "input", "prio": 0, "policy": ")" +
           policy + R"("}})" + rules("input", expressions);
}

Reach reachOf(const std::string& entries) {
    return reachThrough(R"({"nftables": [{"metainfo": {"json_schema_version": 1}})" +
                            (entries.empty() ? "" : ", " + entries) + "]}",
                        48000);
}

constexpr const char* kNotLoopback =
    R"({"match": {"op": "!=", "left": {"meta": {"key": "iif"}}, "right": "lo"}})";
constexpr const char* kOurPort = R"({"match": {"op": "==", "left": {"payload": {"protocol": "tcp",)"
                                 R"("field": "dport"}}, "right": 48000}})";
constexpr const char* kOtherSource =
    R"({"match": {"op": "!=", "left": {"payload": {"protocol": "ip", "field": "saddr"}},)"
    R"("right": "192.168.1.2"}})";

std::string expr(std::initializer_list<std::string> statements) {
    std::string text;
    for (const std::string& statement : statements) {
        text += (text.empty() ? "[" : ", ") + statement;
    }
    return text + "]";
}

const std::string kAccept = R"({"accept": null})";
const std::string kDrop = R"({"drop": null})";

TEST(NftRulesTest, IsOpenWithoutRulesForIncomingConnections) {
    EXPECT_EQ(reachOf(""), Reach::Open);
    EXPECT_EQ(reachOf(input("accept", {})), Reach::Open);
    // What passes through, or leaves, does not matter.
    EXPECT_EQ(reachOf(R"({"chain": {"family": "inet", "table": "t", "name": "f", "type": "filter",)"
                      R"("hook": "forward", "prio": 0, "policy": "drop"}})"),
              Reach::Open);
}

TEST(NftRulesTest, FindsThePortClosedOrClosedForSome) {
    EXPECT_EQ(reachOf(input("accept", {expr({kNotLoopback, kOurPort, kDrop})})), Reach::Closed);
    EXPECT_EQ(reachOf(input("accept", {expr({kOurPort, R"({"reject": {"type": "tcp reset"}})"})})),
              Reach::Closed);
    EXPECT_EQ(reachOf(input("accept", {expr({kNotLoopback, kOtherSource, kOurPort, kDrop})})),
              Reach::Depends);
}

// As distributions set it up: what is asked for, this machine itself, and a few services.
TEST(NftRulesTest, FollowsADenyingFirewallAndItsServices) {
    const std::vector<std::string> usual{
        R"([{"match": {"op": "==", "left": {"ct": {"key": "state"}}, "right": {"set": ["established",)"
        R"( "related"]}}}, {"accept": null}])",
        R"([{"match": {"op": "in", "left": {"ct": {"key": "state"}}, "right": "invalid"}},)"
        R"( {"drop": null}])",
        R"([{"match": {"op": "==", "left": {"meta": {"key": "iifname"}}, "right": "lo"}},)"
        R"( {"accept": null}])",
        R"([{"match": {"op": "==", "left": {"payload": {"protocol": "ip", "field": "protocol"}},)"
        R"( "right": "icmp"}}, {"accept": null}])",
        R"([{"match": {"op": "==", "left": {"payload": {"protocol": "udp", "field": "dport"}},)"
        R"( "right": 53}}, {"accept": null}])",
        R"([{"vmap": {"key": {"ct": {"key": "state"}}, "data": {"set": [["invalid", {"drop": null}],)"
        R"( ["established", {"accept": null}]]}}}])"};
    const std::string closed = input("drop", usual);
    EXPECT_EQ(reachOf(closed), Reach::Closed);
    const auto service = [](const std::string& ports) {
        return R"([{"match": {"op": "==", "left": {"payload": {"protocol": "tcp", "field": "dport"}},)"
               R"( "right": {"set": )" +
               ports + R"(}}}, {"accept": null}])";
    };
    const std::string jump = R"([{"jump": {"target": "services"}}])";
    const auto withServices = [&](const std::string& ports) {
        return closed + rules("input", {jump}) + rules("services", {service(ports)});
    };
    EXPECT_EQ(reachOf(withServices(R"([22, {"range": [40000, 50000]}])")), Reach::Open);
    EXPECT_EQ(reachOf(withServices("[22, 80]")), Reach::Closed);
}

TEST(NftRulesTest, DoesNotClaimWhatItCannotKnow) {
    EXPECT_EQ(
        reachOf(input("drop", {R"([{"xt": {"type": "match", "name": "tcp"}}, {"accept": null}])"})),
        Reach::Depends);
    EXPECT_EQ(reachOf(input("accept", {R"([{"jump": {"target": "input"}}])"})), Reach::Depends);
    EXPECT_THROW(reachOf("nonsense"), std::exception);
    EXPECT_THROW(reachThrough("[]", 48000), std::exception);
}

} // namespace
