#include "tools/orvane/plugin/NftRules.h"

#include <map>
#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

namespace orvane::tool::plugin {

namespace {

using Json = nlohmann::json;

// Deeper jumps end in a loop, which the kernel refuses.
constexpr int kDeepest = 16;

constexpr const char* kStateOfFirstPacket = "new";

enum class Match { No, Perhaps, Yes };

// What may become of the packet.
struct Outcomes {
    bool accepts = false;
    bool drops = false;
    bool goesOn = false;

    void Add(const Outcomes& other) {
        accepts = accepts || other.accepts;
        drops = drops || other.drops;
        goesOn = goesOn || other.goesOn;
    }
};

constexpr Outcomes kAccepts{true, false, false};
constexpr Outcomes kDrops{false, true, false};
constexpr Outcomes kGoesOn{false, false, true};
constexpr Outcomes kAnything{true, true, true};

struct Chain {
    // Of a chain that the kernel enters by itself.
    std::string hook{};
    std::string policy = "accept";
    std::vector<Json> rules{};
};

std::string keyOf(const Json& object, const char* nameField) {
    return object.at("family").get<std::string>() + " " + object.at("table").get<std::string>() +
           " " + object.at(nameField).get<std::string>();
}

bool isConnectionState(const Json& left) {
    const auto ct = left.find("ct");
    return ct != left.end() && ct->value("key", "") == "state";
}

class Rules final {
public:
    Rules(const Json& ruleset, std::uint16_t port);

    Reach ReachOfPort() const;

private:
    Outcomes throughChain(const std::string& key, int depth) const;
    Outcomes throughRule(const Json& rule, int depth) const;
    Outcomes effectOf(const Json& statement, const Json& rule, int depth) const;
    Outcomes throughMap(const Json& map, const Json& rule, int depth) const;
    Match matches(const Json& match) const;
    Match containsPort(const Json& right) const;

    const std::uint16_t port;
    std::map<std::string, Chain> chains;
};

Rules::Rules(const Json& ruleset, std::uint16_t port) : port(port) {
    for (const Json& entry : ruleset.at("nftables")) {
        if (const auto chain = entry.find("chain"); chain != entry.end()) {
            const bool filters = chain->value("type", "") == "filter";
            chains[keyOf(*chain, "name")] = {
                filters ? chain->value("hook", "") : "", chain->value("policy", "accept"), {}};
        } else if (const auto rule = entry.find("rule"); rule != entry.end()) {
            chains[keyOf(*rule, "chain")].rules.push_back(*rule);
        }
    }
}

Reach Rules::ReachOfPort() const {
    bool depends = false;
    for (const auto& [key, chain] : chains) {
        const bool isOnWayIn =
            chain.hook == "input" || chain.hook == "prerouting" || chain.hook == "ingress";
        if (!isOnWayIn || key.starts_with("ip6 ") || key.starts_with("arp ") ||
            key.starts_with("bridge ")) {
            continue;
        }
        const Outcomes outcomes = throughChain(key, 0);
        if (outcomes.drops && !outcomes.accepts) {
            return Reach::Closed;
        }
        depends = depends || outcomes.drops;
    }
    return depends ? Reach::Depends : Reach::Open;
}

Outcomes Rules::throughChain(const std::string& key, int depth) const {
    const auto found = chains.find(key);
    if (found == chains.end() || depth > kDeepest) {
        return kAnything;
    }
    const Chain& chain = found->second;
    Outcomes all;
    for (const Json& rule : chain.rules) {
        Outcomes outcomes = throughRule(rule, depth);
        const bool goesOn = outcomes.goesOn;
        outcomes.goesOn = false;
        all.Add(outcomes);
        if (!goesOn) {
            return all;
        }
    }
    const Outcomes atEnd = chain.policy == "drop" ? kDrops : kAccepts;
    all.Add(chain.hook.empty() ? kGoesOn : atEnd);
    return all;
}

Outcomes Rules::throughRule(const Json& rule, int depth) const {
    bool isSure = true;
    for (const Json& statement : rule.at("expr")) {
        if (const auto match = statement.find("match"); match != statement.end()) {
            const Match result = matches(*match);
            if (result == Match::No) {
                return kGoesOn;
            }
            isSure = isSure && result == Match::Yes;
        } else if (statement.contains("limit") || statement.contains("xt")) {
            isSure = false;
        } else {
            Outcomes outcomes = effectOf(statement, rule, depth);
            if (outcomes.accepts || outcomes.drops || !outcomes.goesOn) {
                outcomes.goesOn = outcomes.goesOn || !isSure;
                return outcomes;
            }
        }
    }
    return kGoesOn;
}

Outcomes Rules::effectOf(const Json& statement, const Json& rule, int depth) const {
    if (statement.contains("accept")) {
        return kAccepts;
    }
    if (statement.contains("drop") || statement.contains("reject")) {
        return kDrops;
    }
    for (const char* const leap : {"jump", "goto"}) {
        if (const auto to = statement.find(leap); to != statement.end()) {
            Json target = rule;
            target["chain"] = to->at("target");
            return throughChain(keyOf(target, "chain"), depth + 1);
        }
    }
    if (const auto map = statement.find("vmap"); map != statement.end()) {
        return throughMap(*map, rule, depth);
    }
    const bool isOpaque = statement.contains("queue") || statement.contains("return");
    return isOpaque ? kAnything : kGoesOn;
}

Outcomes Rules::throughMap(const Json& map, const Json& rule, int depth) const {
    const Json& data = map.at("data");
    if (!isConnectionState(map.at("key")) || !data.is_object()) {
        return kAnything;
    }
    for (const Json& entry : data.at("set")) {
        if (entry.at(0) == kStateOfFirstPacket) {
            return effectOf(entry.at(1), rule, depth);
        }
    }
    return kGoesOn;
}

Match inverted(Match match) {
    if (match == Match::Perhaps) {
        return match;
    }
    return match == Match::Yes ? Match::No : Match::Yes;
}

Match isIn(const Json& right, const std::string& value) {
    if (right.is_string()) {
        return right == value ? Match::Yes : Match::No;
    }
    const Json& values = right.is_object() && right.contains("set") ? right["set"] : right;
    if (!values.is_array()) {
        return Match::Perhaps;
    }
    for (const Json& each : values) {
        if (each == value) {
            return Match::Yes;
        }
    }
    return Match::No;
}

Match matchesMeta(const std::string& key, const Json& right) {
    if (key == "l4proto") {
        return isIn(right, "tcp");
    }
    if (key == "nfproto") {
        return isIn(right, "ipv4");
    }
    // Of the interfaces we know only that it is not the loopback device.
    return (key == "iif" || key == "iifname") && right == "lo" ? Match::No : Match::Perhaps;
}

Match Rules::containsPort(const Json& right) const {
    if (right.is_number()) {
        return right == port ? Match::Yes : Match::No;
    }
    if (right.is_object() && right.contains("range")) {
        const Json& range = right["range"];
        return range.at(0) <= port && range.at(1) >= port ? Match::Yes : Match::No;
    }
    if (!right.is_object() || !right.contains("set")) {
        return Match::Perhaps;
    }
    for (const Json& each : right["set"]) {
        const Match match = containsPort(each);
        if (match != Match::No) {
            return match;
        }
    }
    return Match::No;
}

Match Rules::matches(const Json& match) const {
    const Json& left = match.at("left");
    const Json& right = match.at("right");
    Match result = Match::Perhaps;
    if (const auto meta = left.find("meta"); meta != left.end()) {
        result = matchesMeta(meta->at("key").get<std::string>(), right);
    } else if (const auto payload = left.find("payload"); payload != left.end()) {
        const std::string protocol = payload->value("protocol", "");
        const std::string field = payload->value("field", "");
        if (protocol == "tcp" && field == "dport") {
            result = containsPort(right);
        } else if (protocol == "ip" && field == "protocol") {
            result = isIn(right, "tcp");
        } else if (protocol != "tcp" && protocol != "ip" && protocol != "th" &&
                   protocol != "ether") {
            // Without such a header nothing matches, not even "!=".
            return Match::No;
        }
    } else if (isConnectionState(left)) {
        result = isIn(right, kStateOfFirstPacket);
    }
    return match.value("op", "==") == "!=" ? inverted(result) : result;
}

} // namespace

Reach reachThrough(const std::string& rulesetJson, std::uint16_t port) {
    return Rules(Json::parse(rulesetJson), port).ReachOfPort();
}

} // namespace orvane::tool::plugin
