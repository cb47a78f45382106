#include "headless/xplm/utilities/Situation.h"

#include <charconv>
#include <fstream>
#include <limits>
#include <utility>

namespace headless {

namespace {

constexpr const char* kHeading = "headless-sim situation 1";

bool isOwnNumber(const Dataref& dataref) {
    return !dataref.IsPluginOwned() &&
           dataref.Offers(xplmType_Double | xplmType_Float | xplmType_Int);
}

} // namespace

bool saveSituation(const DatarefTable& datarefs, const std::string& path) {
    std::ofstream file(path);
    file << kHeading << '\n';
    file.precision(std::numeric_limits<double>::max_digits10);
    for (const std::string& name : datarefs.Names()) {
        const Dataref& dataref = *datarefs.Lookup(name);
        if (isOwnNumber(dataref)) {
            file << name << ' ' << dataref.Value().GetDouble() << '\n';
        }
    }
    file.close();
    return file.good();
}

bool loadSituation(const DatarefTable& datarefs, const std::string& path) {
    std::ifstream file(path);
    std::string heading;
    if (!std::getline(file, heading) || heading != kHeading) {
        return false;
    }
    std::vector<std::pair<std::string, double>> numbers;
    for (std::string name, text; file >> name >> text;) {
        // A stream would not read infinities.
        double number = 0.0;
        const char* const end = text.data() + text.size();
        if (std::from_chars(text.data(), end, number).ptr != end) {
            return false;
        }
        numbers.emplace_back(name, number);
    }
    for (const auto& [name, number] : numbers) {
        const Dataref* const dataref = datarefs.Lookup(name);
        if (dataref != nullptr && isOwnNumber(*dataref)) {
            dataref->Value().SetDouble(number);
        }
    }
    return true;
}

} // namespace headless
