// Keeps docs/registers.md true: its names, fields and functions are the code's, its values after init the board's.

#include "tests/kova_driver.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

namespace {

/// What a folder's files of this kind hold, or one file.
std::string Text(const std::string& place, const std::string& ending) {
    std::string all;
    for (const auto& file : std::filesystem::directory_iterator(KOVA_TEST_DATA "/../../" + place)) {
        if (file.path().string().ends_with(ending)) {
            all.append(std::istreambuf_iterator<char>(std::ifstream(file.path()).rdbuf()), {});
        }
    }
    return all;
}

template <typename... Values>
std::string Format(const char* format, Values... values) {
    std::array<char, 40> text{};
    const int length = std::snprintf(text.data(), text.size(), format, values...);
    return {text.data(), static_cast<std::size_t>(length)};
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream rest(text);
    for (std::string part; std::getline(rest, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// Registers are named as in the journal.
std::string Name(const std::string& chip, const std::string& addr) { return chip + ' ' + addr; }

// ---- The map ----

/// One line: a field of one register or of each of several.
struct Row {
    std::string line, names, value;
    std::vector<std::string> registers;
    unsigned low, width;
    std::string field; // as the video processor's code writes it: "{0x460,12,4}"
};

/// "0x422..0x429" or "3".
std::pair<unsigned, unsigned> Ends(const std::string& cell, int base) {
    const std::size_t dots = cell.find("..");
    const unsigned long first = std::stoul(cell, nullptr, base);
    return {first, dots == std::string::npos ? first : std::stoul(cell.substr(dots + 2), nullptr, base)};
}

/// Reads "| 0x460 | 15..12 | names | meaning | functions | value |", under a heading that names the chip.
std::vector<Row> MapRows() {
    std::vector<Row> rows;
    std::string chip;
    for (const std::string& line : Split(Text("docs", "/registers.md"), '\n')) {
        if (const std::vector<std::string> parts = Split(line, '`'); line.starts_with("## ")) {
            chip = parts.size() > 1 ? parts[1] : "";
        }
        if (!line.starts_with("| 0x")) {
            continue;
        }
        std::vector<std::string> cells = Split(line, '|');
        cells.resize(7);
        const bool kova = chip == "kova";
        const auto [first, last] = Ends(cells[1], 16);
        const auto [high, low] = cells[2] == " all " ? std::pair{kova ? 15U : 7U, 0U} : Ends(cells[2], 10);
        const unsigned width = high - low + 1;
        Row row{line, cells[3] + cells[5], cells[6], {}, low, width, Format("{0x%03X,%u,%u}", first, low, width)};
        for (unsigned addr = first; addr <= last; ++addr) {
            row.registers.push_back(Name(chip, Format("%0*x", kova ? 4 : 2, addr)));
        }
        rows.push_back(row);
    }
    return rows;
}

// ---- The checks ----

class RegisterMap : public KovaDriver {
protected:
    /// What init writes last to each register when all of them hold this before.
    static std::map<std::string, unsigned> WrittenByInit(std::uint16_t before) {
        Fill(before);
        KOVAMFCCoef = 0; // the scaler is loaded again
        Journal();
        Quietly(CreateKOVAAPIVideoInstance);
        std::map<std::string, unsigned> written;
        std::istringstream writes(Writes());
        for (std::string chip, w, addr, value; writes >> chip >> w >> addr >> value;) {
            written[Name(chip, addr)] = static_cast<unsigned>(std::stoul(value, nullptr, 16));
        }
        return written;
    }
};

// The bits that come out alike, whether all were 0 or 1 before, are those that init writes.
TEST_F(RegisterMap, HoldsTheValuesAfterInit) {
    std::map<std::string, unsigned> zeros = WrittenByInit(0);
    std::map<std::string, unsigned> ones = WrittenByInit(0xFFFF);
    for (const Row& row : MapRows()) {
        const unsigned mask = (1U << row.width) - 1;
        const int digits = int(row.width + 3) / 4;
        std::string values;
        for (const std::string& reg : row.registers) {
            const unsigned written = zeros.contains(reg) ? ~(zeros[reg] ^ ones[reg]) >> row.low & mask : 0;
            const unsigned value = written != 0 ? zeros[reg] >> row.low & mask : 0;
            values += written == 0      ? " -"
                      : written == mask ? Format(" %0*X", digits, value)
                                        : Format(" %0*X/%0*X", digits, value, digits, written);
        }
        values = values.find_first_not_of(" -") == std::string::npos ? " -" : values;
        EXPECT_EQ(row.value, values + ' ') << row.line;
    }
}

// What no test reaches shows here.
TEST_F(RegisterMap, HoldsTheNamesFieldsAndFunctionsOfTheCode) {
    const std::string headers = Text("kova", ".h") + Text("hdmitx", ".h");
    std::string code = headers + Text("kova", ".cpp") + Text("hdmitx", ".cpp") + Text("edid", "MDDC.cpp");
    std::set<std::string> fields;
    for (const Row& row : MapRows()) {
        const std::vector<std::string> names = Split(row.names, '`');
        for (std::size_t i = 1; i < names.size(); i += 2) {
            EXPECT_NE(code.find(names[i]), std::string::npos) << names[i] << " in " << row.line;
        }
        fields.insert(row.field);
    }
    const std::string map = Text("docs", "/registers.md");
    for (const std::string& line : Split(headers, '\n')) { // every function is named
        const std::string head = line.substr(0, line.find('('));
        if (head != line && (head.starts_with("std::uint") || head.starts_with("void"))) {
            const std::size_t prefix = head.find("KOVAAPI_");
            const std::size_t name = prefix != std::string::npos ? prefix + 8 : head.rfind(' ') + 1;
            EXPECT_NE(map.find('`' + head.substr(name) + '`'), std::string::npos) << line;
        }
    }
    std::erase(code, ' ');
    for (std::size_t at = 0; (at = code.find("{0x", at)) != std::string::npos; ++at) { // every field has a row
        const std::string field = code.substr(at, code.find('}', at) + 1 - at);
        EXPECT_TRUE(field.find(',') != 6 || fields.contains(field)) << field << " is not on the map";
    }
}

} // namespace
