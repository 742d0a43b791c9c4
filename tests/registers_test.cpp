// Keeps docs/registers.md true: its values after init are those of the simulated board, and its names are the code's.

#include "tests/kova_driver.h"

#include <filesystem>
#include <map>
#include <set>

namespace {

namespace fs = std::filesystem;

fs::path Top() { return fs::path(KOVA_TEST_DATA).parent_path().parent_path(); }

std::string ReadText(const fs::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A row of the map: | address | bits | name | meaning | function | after init |
struct Row {
    std::string chip; ///< "kova", "hdmi1" or "hdmi2", from the heading above the row
    std::string line;
    std::array<std::string, 6> cells;
};
enum Column : std::uint8_t { kAddress, kBits, kName, kMeaning, kFunction, kAfterInit };

std::vector<Row> ReadMap() {
    std::vector<Row> rows;
    std::string chip;
    std::istringstream map(ReadText(Top() / "docs/registers.md"));
    for (std::string line; std::getline(map, line);) {
        if (line.starts_with("## ") && line.ends_with('`')) {
            chip = line.substr(line.find('`') + 1);
            chip.pop_back();
        } else if (line.starts_with("| 0x")) {
            Row row{chip, line, {}};
            std::istringstream cells(line.substr(1));
            for (std::string& cell : row.cells) {
                std::getline(cells, cell, '|');
                cell = cell.substr(1, cell.size() - 2);
            }
            rows.push_back(row);
        }
    }
    return rows;
}

/// Reads "HIGH..LOW", "FIRST..LAST" or one number.
std::pair<unsigned, unsigned> Range(const std::string& text, int base) {
    const std::size_t dots = text.find("..");
    const auto first = static_cast<unsigned>(std::stoul(text, nullptr, base));
    return {first, dots == std::string::npos ? first
                                             : static_cast<unsigned>(std::stoul(text.substr(dots + 2), nullptr, base))};
}

/// The words of a text. The video processor's functions stand in the map without their prefix.
std::set<std::string> WordsOf(const std::string& text) {
    std::set<std::string> words;
    std::string word;
    for (const char c : text + ' ') {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == ':') {
            word += c;
        } else {
            words.insert(word.starts_with("KOVAAPI_") ? word.substr(8) : word);
            word.clear();
        }
    }
    return words;
}

using Values = std::map<std::string, std::vector<unsigned>>;

class RegisterMap : public KovaDriver {
protected:
    /// Runs init on registers that hold this value. @return the registers' values after init, for each chip's name
    Values AfterInit(std::uint16_t held) {
        close_kova();
        SetUp();
        Fill(held, 0x005);
        for (unsigned reg = 0; reg < 0x100; ++reg) {
            for (const auto page : {sim::Page::Hdmi1, sim::Page::Hdmi2}) {
                sim::TxRegister(page, static_cast<std::uint8_t>(reg)) = static_cast<std::uint8_t>(held);
            }
        }
        Quietly([] { CreateKOVAAPIVideoInstance(); });
        sim::KovaRegister(0x004) = held; // the device ID cannot be written
        Values values;
        for (unsigned addr = 0; addr < 0x600; ++addr) {
            values["kova"].push_back(sim::KovaRegister(static_cast<std::uint16_t>(addr)));
            values["hdmi1"].push_back(sim::TxRegister(sim::Page::Hdmi1, static_cast<std::uint8_t>(addr)));
            values["hdmi2"].push_back(sim::TxRegister(sim::Page::Hdmi2, static_cast<std::uint8_t>(addr)));
        }
        return values;
    }
};

// A bit that is the same after both runs was written by init. Every other bit keeps what it held.
TEST_F(RegisterMap, MapStatesValuesAfterInit) {
    Values zeros = AfterInit(0), ones = AfterInit(0xFFFF);
    const std::vector<Row> rows = ReadMap();
    EXPECT_GT(rows.size(), 300U);
    for (const Row& row : rows) {
        const auto [first, last] = Range(row.cells[kAddress], 16);
        const std::string all = row.chip == "kova" ? "15..0" : "7..0";
        const auto [high, low] = Range(row.cells[kBits] == "all" ? all : row.cells[kBits], 10);
        const unsigned mask = (1U << (high - low + 1)) - 1;
        const auto digits = static_cast<int>((high - low) / 4 + 1);
        std::string after;
        bool isWritten = false;
        for (unsigned addr = first; addr <= last; ++addr) {
            const unsigned held = zeros[row.chip].at(addr);
            const unsigned written = ~(held ^ ones[row.chip].at(addr)) >> low & mask;
            std::array<char, 20> text{" -"};
            if (written != 0) {
                isWritten = true;
                std::snprintf(text.data(), text.size(), written == mask ? " %0*X" : " %0*X/%0*X", digits,
                              held >> low & mask, digits, written);
            }
            after += text.data();
        }
        EXPECT_EQ(" " + row.cells[kAfterInit], isWritten ? after : " -") << row.line;
    }
}

TEST_F(RegisterMap, MapAndCodeUseSameNames) {
    const std::set<std::string> map = WordsOf(ReadText(Top() / "docs/registers.md"));
    std::string code;
    for (const char* const folder : {"kova", "hdmitx", "edid"}) {
        for (const auto& file : fs::directory_iterator(Top() / folder)) {
            code += ReadText(file.path());
            std::ifstream header(folder != std::string("edid") && file.path().extension() == ".h" ? file.path() : "");
            for (std::string line; std::getline(header, line);) {
                if (line.starts_with("std::uint") || line.starts_with("void ")) { // declares a function
                    const std::string before = line.substr(0, line.find('('));
                    EXPECT_TRUE(map.contains(*WordsOf(before.substr(before.rfind(' '))).rbegin())) << line;
                }
            }
        }
    }
    const std::set<std::string> inCode = WordsOf(code);
    for (const Row& row : ReadMap()) {
        std::istringstream parts(row.cells[kName] + row.cells[kFunction]);
        std::string part;
        for (bool isName = false; std::getline(parts, part, '`'); isName = !isName) { // names stand in back quotes
            EXPECT_TRUE(!isName || inCode.contains(part)) << part << " is not in the code: " << row.line;
        }
    }
}

} // namespace
