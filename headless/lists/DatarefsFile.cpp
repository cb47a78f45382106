#include "headless/lists/DatarefsFile.h"

#include <array>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "headless/lists/ParsedNumber.h"
#include "headless/lists/TextLines.h"

namespace headless {

namespace {

// More than any dataref of the simulator has, so that a typing error cannot exhaust the memory.
constexpr int kMaxElements = 10'000'000;

struct TypeName {
    std::string_view word;
    XPLMDataTypeID scalar;
    XPLMDataTypeID array;
};

constexpr std::array<TypeName, 4> kTypeNames{
    {{"int", xplmType_Int, xplmType_IntArray},
     {"float", xplmType_Float, xplmType_FloatArray},
     {"double", xplmType_Double | xplmType_Float, xplmType_Unknown},
     {"byte", xplmType_Unknown, xplmType_Data}}};

std::vector<std::string_view> splitAtTabs(std::string_view line) {
    std::vector<std::string_view> columns;
    while (true) {
        const std::size_t tab = line.find('\t');
        columns.push_back(line.substr(0, tab));
        if (tab == std::string_view::npos) {
            return columns;
        }
        line.remove_prefix(tab + 1);
    }
}

// 0 if `text` is not a number.
int parseSize(std::string_view text) {
    return text.empty() ? DatarefsFile::kOpenSize : parsedNumber<int>(text).value_or(0);
}

// The product of the dimensions in "[4][3]".
int parseDimensions(std::string_view text) {
    int elements = 1;
    while (!text.empty()) {
        const std::size_t close = text.find(']');
        if (text.front() != '[' || close == std::string_view::npos) {
            throw std::invalid_argument("the array size is not of the form [N]");
        }
        const int size = parseSize(text.substr(1, close - 1));
        if (size < 1 || size > kMaxElements / elements) {
            throw std::invalid_argument("the array size is not a number of elements");
        }
        elements *= size;
        text.remove_prefix(close + 1);
    }
    return elements;
}

void parseType(std::string_view text, DatarefDefinition& definition) {
    const std::size_t bracket = text.find('[');
    const std::string_view word = text.substr(0, bracket);
    for (const TypeName& known : kTypeNames) {
        if (known.word != word) {
            continue;
        }
        const bool isArray = bracket != std::string_view::npos;
        definition.types = isArray ? known.array : known.scalar;
        definition.elements = isArray ? parseDimensions(text.substr(bracket)) : 0;
        if (definition.types != xplmType_Unknown) {
            return;
        }
    }
    throw std::invalid_argument("unknown type \"" + std::string(text) + "\"");
}

bool parseWritable(std::string_view text) {
    if (text != "y" && text != "n") {
        throw std::invalid_argument("writable is neither y nor n");
    }
    return text == "y";
}

DatarefDefinition parseDatarefLine(std::string_view line) {
    const std::vector<std::string_view> columns = splitAtTabs(line);
    if (columns.size() < 3) {
        throw std::invalid_argument("name, type and writable are expected, separated by tabs");
    }
    DatarefDefinition definition;
    definition.name = columns[0];
    if (definition.name.empty() || definition.name.find(' ') != std::string::npos) {
        throw std::invalid_argument("the name is empty or has blanks");
    }
    parseType(columns[1], definition);
    definition.writable = parseWritable(columns[2]);
    definition.units = columns.size() > 3 ? columns[3] : "";
    definition.description = columns.size() > 4 ? columns[4] : "";
    return definition;
}

} // namespace

DatarefsFile DatarefsFile::Read(const std::string& path) {
    std::ifstream stream = openTextFile(path);
    return Parse(stream, path);
}

DatarefsFile DatarefsFile::Parse(std::istream& stream, const std::string& name) {
    DatarefsFile file;
    forEachLine(stream, name, [&](const std::string& line, int number) {
        const bool isHeader = number == 1 && line.front() >= '0' && line.front() <= '9';
        if (isHeader) {
            return;
        }
        try {
            file.definitions.push_back(parseDatarefLine(line));
        } catch (const std::invalid_argument& error) {
            file.warnings.push_back(name + ":" + std::to_string(number) + ": " + error.what());
        }
    });
    if (file.definitions.empty() && !file.warnings.empty()) {
        throw TextFileError(file.warnings.front());
    }
    return file;
}

} // namespace headless
