// The requests of pages to `orvane serve`: whatever a browser or a website sends is refused with a
// short text, or is what may be passed on to the plugin.

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/serve/NameSearch.h"
#include "tools/orvane/serve/RequestBody.h"
#include "tools/orvane/serve/RequestCheck.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using namespace orvane::tool;

constexpr std::array<std::string_view, 6> kValid{
    "beacon",
    R"({"id":"0123456789abcdef","names":["a:int","b[2:5]@kt","c"],"commands":["d","e"]})",
    R"({"assignment":"a:float[2]=1,2"})",
    R"({"assignment":"a[3]=7"})",
    R"({"id":"0123456789abcdef","command":"d"})",
    "POST\n/set\n127.0.0.1:48080\nhttp://127.0.0.1:48080\nsame-origin\napplication/json\n\n"
    "0123456789abcdef\n"};

constexpr std::size_t kLongestName = 255;
const Site kSite{"127.0.0.1", 48080, "0123456789abcdef"};

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

void checkName(std::string_view name) {
    require(!name.empty() && name.size() <= kLongestName, "a name has a wrong length");
    require(std::none_of(name.begin(), name.end(),
                         [](unsigned char each) { return each < ' ' || each == 0x7F; }),
            "a name is not plain text");
}

template <typename Parse>
void attempt(Parse parse) {
    try {
        parse();
    } catch (const Failure& failure) {
        const std::string reason = failure.what();
        require(!reason.empty() && reason.size() < 4096, "a refusal is not short");
    }
}

// Header fields, one in each line.
void checkHeader(std::string_view text) {
    HttpRequest request;
    for (std::string* const field :
         {&request.method, &request.path, &request.host, &request.origin, &request.fetchSite,
          &request.contentType, &request.contentEncoding, &request.token}) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        *field = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    if (refusalOf(request, kSite)) {
        return;
    }
    constexpr std::array kHosts{"127.0.0.1:48080", "localhost:48080", "[::1]:48080"};
    require(std::find(kHosts.begin(), kHosts.end(), request.host) != kHosts.end(),
            "another host was taken for ours");
    require(request.origin.empty() || request.origin == "http://" + request.host,
            "another origin was taken for ours");
    const bool isReading = request.method == "GET" || request.method == "HEAD";
    require(isReading || request.path == "/watch" || request.token == kSite.token,
            "a request may write without the token");
}

bool contains(std::string_view whole, std::string_view part) {
    const auto isSameLetter = [](unsigned char left, unsigned char right) {
        return std::tolower(left) == std::tolower(right);
    };
    return std::search(whole.begin(), whole.end(), part.begin(), part.end(), isSameLetter) !=
           whole.end();
}

// What a page offers while its user types.
void checkSearch(const std::string& text) {
    static const NameSearch search({{{"test/beacon_on", "int", 0, true, "boolean", "A light"},
                                     {"test/\x01", "double", 0, true, "", "The \"Beacon\""},
                                     {"test/beacon_name", "byte[40]", 40, false, "", ""}},
                                    {{"test/beacon_toggle", "Toggle it"}},
                                    {}});
    const auto found = nlohmann::json::parse(search.Matching(text));
    for (const char* const kind : {"datarefs", "commands"}) {
        for (const auto& entry : found.at(kind)) {
            require(contains(entry.at("name").get<std::string>(), text) ||
                        contains(entry.at("text").get<std::string>(), text),
                    "what was found does not contain the text");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    checkHeader(text);
    attempt([&] {
        const Wanted wanted = parseWanted(text);
        require(wanted.datarefs.size() <= kMostNames && wanted.commands.size() <= kMostNames,
                "there are too many names");
        for (const DatarefArgument& argument : wanted.datarefs) {
            checkName(argument.Dataref().name);
        }
        std::for_each(wanted.commands.begin(), wanted.commands.end(), checkName);
    });
    attempt([&] { checkName(parseSet(text).candidates.at(0).argument.Dataref().name); });
    attempt([&] { checkName(parseCommand(text).command); });
    attempt([&] { checkSearch(text); });
    return 0;
}

// Now and then begins again with a valid request.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
    constexpr unsigned kSeldom = 16;
    const std::string_view valid = kValid[seed / kSeldom % kValid.size()];
    if (seed % kSeldom == 0 && valid.size() <= maxSize) {
        std::copy(valid.begin(), valid.end(), data);
        size = valid.size();
    }
    return LLVMFuzzerMutate(data, size, maxSize);
}
