// The set-up of the board by environment variables, and the script of timed events.

#include "sim/board.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <vector>

namespace sim {

namespace {

using Edid = std::vector<std::uint8_t>;

struct Event {
    std::uint64_t when; // µs on the board's clock
    void (*action)(const Event& event);
    std::uint32_t number = 0;
    std::uint32_t jitter = 0;
    std::span<const std::uint8_t> edid;
    const char* file = nullptr; // EDID file of the line; used only while the line is read
    std::string text;
    Fault fault;
};

// The containers are never destroyed, since the loop thread may still use them while the program ends.
auto& events = *new std::vector<Event>;
std::size_t nextEvent = 0;
auto& edids = *new std::deque<Edid>; // a deque, since events refer to its elements

// ---- EDID files ----

bool LoadEdid(const char* path, std::span<const std::uint8_t>& edid) {
    std::FILE* const file = std::fopen(path, "rb");
    if (file == nullptr) {
        std::fprintf(stderr, "kova-sim: cannot open the EDID file '%s': %s\n", path, std::strerror(errno));
        return false;
    }
    Edid bytes(kMostEdidBytes + 1);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    const bool failed = std::ferror(file) != 0;
    std::fclose(file);
    if (failed) {
        std::fprintf(stderr, "kova-sim: cannot read the EDID file '%s'\n", path);
        return false;
    }
    if (bytes.empty() || bytes.size() % 128 != 0 || bytes.size() > kMostEdidBytes) {
        std::fprintf(stderr, "kova-sim: '%s' is not a binary EDID. An EDID has 1 to 256 blocks of 128 bytes.\n", path);
        return false;
    }
    edid = edids.emplace_back(std::move(bytes));
    return true;
}

// ---- The script ----
// Each line is an event: seconds, name, arguments. '#' begins a comment.

struct Words {
    std::array<char*, 10> word{};
    std::size_t count = 0;
    std::string tail; // the rest of the line, from its third word on
};

bool ParseSeconds(const char* text, double& seconds) {
    char* end = nullptr;
    seconds = std::strtod(text, &end);
    return end != text && *end == '\0' && seconds >= 0 && seconds < 1e9;
}

bool Is(const char* word, const char* expected) { return std::strcmp(word, expected) == 0; }

// Fills the event from the words after the time. @return nullptr, or the correct form if the line is wrong
const char* ParseEvent(const Words& words, std::span<const std::uint8_t> firstMonitor, Event& event) {
    const char* const name = words.word[1];
    const char* const argument = words.count > 2 ? words.word[2] : "";
    if (Is(name, "plug")) {
        event.action = [](const Event& e) { Plug(e.edid); };
        event.edid = firstMonitor;
        event.file = words.count == 3 ? argument : nullptr;
        return words.count <= 3 ? nullptr : "plug [FILE]";
    }
    if (Is(name, "unplug")) {
        event.action = [](const Event&) { Unplug(); };
        return words.count == 2 ? nullptr : "unplug";
    }
    if (Is(name, "receiver")) {
        event.action = [](const Event& e) { SetReceiver(e.number != 0); };
        event.number = Is(argument, "on") ? 1 : 0;
        return words.count == 3 && (Is(argument, "on") || Is(argument, "off")) ? nullptr : "receiver on|off";
    }
    if (Is(name, "audio")) {
        event.action = [](const Event& e) { SetAudio(e.number, e.jitter); };
        if (words.count == 3 && Is(argument, "off")) {
            return nullptr;
        }
        const bool jitterGood = words.count == 3 || (words.count == 4 && ParseCount(words.word[3], event.jitter));
        return jitterGood && ParseCount(argument, event.number) ? nullptr : "audio off|HERTZ [JITTER]";
    }
    if (Is(name, "fail")) {
        constexpr const char* kUsage = "fail COUNT, fail every N or fail none";
        if (words.count == 4 && Is(argument, "every")) {
            event.action = [](const Event& e) { FailEvery(e.number); };
            return ParseCount(words.word[3], event.number) ? nullptr : kUsage;
        }
        if (words.count == 3 && Is(argument, "none")) {
            event.action = [](const Event&) {
                FailRequests(0, 0);
                FailEvery(0);
            };
            return nullptr;
        }
        event.action = [](const Event& e) { FailRequests(1, e.number); };
        return words.count == 3 && ParseCount(argument, event.number) ? nullptr : kUsage;
    }
    if (Is(name, "dead") || Is(name, "alive")) {
        event.action = [](const Event& e) { SetDead(e.number != 0); };
        event.number = Is(name, "dead") ? 1 : 0;
        return words.count == 2 ? nullptr : "dead or alive";
    }
    if (Is(name, "ddc")) {
        event.action = [](const Event& e) { FailDdcEvery(e.number); };
        const bool good = Is(argument, "good") || ParseCount(argument, event.number);
        return words.count == 3 && good ? nullptr : "ddc N or ddc good";
    }
    if (Is(name, "fault")) {
        if (words.count == 3 && Is(argument, "none")) {
            event.action = [](const Event&) { ClearFaults(); };
            return nullptr;
        }
        event.action = [](const Event& e) { AddFault(e.fault); };
        return ParseFault(std::span(words.word).first(words.count).subspan(2), event.fault)
                   ? nullptr
                   : "fault PAGE r|w|rw FIRST[-LAST]|all EFFECT [ARGUMENT] [every N] or fault none";
    }
    if (Is(name, "say")) {
        event.action = [](const Event& e) { std::fprintf(stderr, "kova-sim: %s\n", e.text.c_str()); };
        event.text = words.tail;
        return words.count > 2 ? nullptr : "say TEXT";
    }
    return "plug [FILE], unplug, receiver on|off, audio off|HERTZ [JITTER], fail COUNT, fail every N, fail none, "
           "ddc N, ddc good, dead, alive, fault ... or say TEXT";
}

Words Split(char* line) {
    constexpr const char* kBlanks = " \t";
    line[std::strcspn(line, "#\r")] = '\0';
    Words words;
    for (char* next = line + std::strspn(line, kBlanks); *next != '\0' && words.count < words.word.size();) {
        if (words.count == 2) {
            words.tail = next;
        }
        words.word[words.count++] = next;
        next += std::strcspn(next, kBlanks);
        if (*next != '\0') {
            *next++ = '\0';
            next += std::strspn(next, kBlanks);
        }
    }
    return words;
}

bool ParseLine(char* line, const char* path, unsigned number, std::span<const std::uint8_t> firstMonitor) {
    const Words words = Split(line);
    if (words.count == 0) {
        return true;
    }
    double seconds = 0;
    if (!ParseSeconds(words.word[0], seconds) || words.count < 2) {
        std::fprintf(stderr, "kova-sim: %s:%u: expected: SECONDS EVENT [ARGUMENT]\n", path, number);
        return false;
    }
    Event event{
        .when = static_cast<std::uint64_t>(seconds * 1e6), .action = nullptr, .edid = {}, .text = {}, .fault = {}};
    if (!events.empty() && event.when < events.back().when) {
        std::fprintf(stderr, "kova-sim: %s:%u: the time is earlier than that of the line before\n", path, number);
        return false;
    }
    if (const char* const usage = ParseEvent(words, firstMonitor, event); usage != nullptr) {
        std::fprintf(stderr, "kova-sim: %s:%u: expected: SECONDS %s\n", path, number, usage);
        return false;
    }
    if (event.file != nullptr && !LoadEdid(event.file, event.edid)) {
        return false;
    }
    event.file = nullptr;
    events.push_back(event);
    return true;
}

constexpr std::size_t kLongestLine = 4000;

// Reads a line without its line end. Reading stops after a zero byte and after kLongestLine + 1 characters, since a
// file that is not text may have no line ends. @return false at the end of the file
bool ReadLine(std::FILE* file, std::string& line) {
    line.clear();
    int c = std::getc(file);
    if (c == EOF) {
        return false;
    }
    for (; c != EOF && c != '\n' && line.size() <= kLongestLine && !line.ends_with('\0'); c = std::getc(file)) {
        line.push_back(static_cast<char>(c));
    }
    return true;
}

bool LoadScript(const char* path, std::span<const std::uint8_t> firstMonitor) {
    std::FILE* const file = std::fopen(path, "r");
    if (file == nullptr) {
        std::fprintf(stderr, "kova-sim: cannot open the script '%s': %s\n", path, std::strerror(errno));
        return false;
    }
    bool good = true;
    std::string line;
    for (unsigned number = 1; good && ReadLine(file, line); ++number) {
        if (line.size() > kLongestLine || line.ends_with('\0')) {
            const char* const problem =
                line.ends_with('\0') ? "not a text file, it contains a zero byte" : "the line is too long";
            std::fprintf(stderr, "kova-sim: %s:%u: %s\n", path, number, problem);
            good = false;
        } else {
            good = ParseLine(line.data(), path, number, firstMonitor);
        }
    }
    if (good && std::ferror(file) != 0) {
        std::fprintf(stderr, "kova-sim: cannot read the script '%s'\n", path);
        good = false;
    }
    std::fclose(file);
    return good;
}

// An empty variable counts as not set.
const char* Environment(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): before there is a second thread
    return value != nullptr && value[0] != '\0' ? value : nullptr;
}

} // namespace

bool ParseCount(const char* text, std::uint32_t& number) {
    char* end = nullptr;
    const unsigned long value = std::strtoul(text, &end, 10);
    number = static_cast<std::uint32_t>(value);
    return end != text && *end == '\0' && text[0] != '-' && value >= 1 && value <= 1'000'000;
}

void ClearScript() {
    events.clear();
    nextEvent = 0;
    edids.clear();
}

void RunScript() {
    while (nextEvent < events.size() && events[nextEvent].when <= Now()) {
        const Event& event = events[nextEvent++];
        event.action(event);
    }
}

bool SetUpFromEnvironment() {
    Reset();
    meaninglessOnes = false;
    double speed = 1;
    if (const char* const text = Environment("KOVA_SIM_SPEED"); text != nullptr) {
        char* end = nullptr;
        speed = std::strtod(text, &end);
        if (*end != '\0' || !((speed >= 0.001 && speed <= 1e6) || speed == 0)) {
            std::fprintf(stderr, "kova-sim: KOVA_SIM_SPEED='%s' is not a number from 0.001 to 1000000, or 0\n", text);
            return false;
        }
    }
    std::span<const std::uint8_t> edid = kBuiltInEdid;
    if (const char* const path = Environment("KOVA_SIM_EDID"); path != nullptr && !LoadEdid(path, edid)) {
        return false;
    }
    if (const char* const path = Environment("KOVA_SIM_SCRIPT"); path != nullptr && !LoadScript(path, edid)) {
        return false;
    }
    if (const char* const path = Environment("KOVA_SIM_JOURNAL"); path != nullptr && !WriteJournal(path)) {
        return false;
    }
    Plug(edid);
    SetAudio(48'000);
    ForgetInterrupts();
    if (speed > 0) {
        UseRealTime(speed);
        return true;
    }
    if (events.empty()) {
        std::fputs("kova-sim: KOVA_SIM_SPEED=0 needs a script, since it skips the waiting up to the script's last "
                   "line. Name a script in KOVA_SIM_SCRIPT.\n",
                   stderr);
        return false;
    }
    UseVirtualTimeUntil(events.back().when);
    return true;
}

} // namespace sim
