#include "app/shell.h"

#include "app/control_loop.h"
#include "hdmitx/hdmitx.h"
#include "kova/api.h"

#include <cstdio>
#include <cstring>
#include <span>

std::array<char, 1024> input_command{};

namespace {

// ---- Register commands ----

enum class Command : std::uint8_t { None, Read, Write, Dump, Update };
enum class Target : std::uint8_t { None, Kova, Hdmi1, Hdmi2 };

struct CommandWord {
    const char* word;
    Command command;
};

struct TargetWord {
    const char* word;
    Target target;
};

constexpr std::array<CommandWord, 4> kCommandWords{{
    {"r", Command::Read},
    {"w", Command::Write},
    {"d", Command::Dump},
    {"mru", Command::Update},
}};

constexpr std::array<TargetWord, 3> kTargetWords{{
    {"kova", Target::Kova},
    {"hdmi1", Target::Hdmi1},
    {"hdmi2", Target::Hdmi2},
}};

struct RegisterLine {
    Command command = Command::None;
    Target target = Target::None;
    int tokens = 0;
    std::uint16_t addr = 0;
    std::uint16_t value = 0;
};

bool IsWord(const char* token, const char* word) { return std::strcmp(token, word) == 0; }

// The command word can be any token of the line, the target word any token after the command word. The third token is
// the address, the fourth token is the value.
RegisterLine Tokenize(char* text) {
    RegisterLine line;
    char* rest = nullptr;
    for (const char* token = strtok_r(text, " ", &rest); token != nullptr; token = strtok_r(nullptr, " ", &rest)) {
        if (line.command == Command::None) {
            for (const CommandWord& entry : kCommandWords) {
                if (IsWord(token, entry.word)) {
                    line.command = entry.command;
                }
            }
        }
        if (line.command != Command::None && line.target == Target::None) {
            for (const TargetWord& entry : kTargetWords) {
                if (IsWord(token, entry.word)) {
                    line.target = entry.target;
                }
            }
        }
        if (line.tokens == 2) {
            line.addr = hex2dec(token);
        } else if (line.tokens == 3) {
            line.value = hex2dec(token);
        }
        ++line.tokens;
    }
    return line;
}

constexpr std::uint8_t LowByte(std::uint16_t value) { return static_cast<std::uint8_t>(value & 0xFF); }

void ReadRegister(RegisterLine& line) {
    switch (line.target) {
    case Target::Kova:
        KOVA_RegRead(line.addr, &line.value);
        break;
    case Target::Hdmi1:
        line.value = HDTX_RegRead(HDTX_SLV0, LowByte(line.addr));
        break;
    case Target::Hdmi2:
        line.value = HDTX_RegRead(HDTX_SLV1, LowByte(line.addr));
        break;
    case Target::None:
        break;
    }
}

void WriteRegister(const RegisterLine& line) {
    switch (line.target) {
    case Target::Kova:
        KOVA_RegWrite(line.addr, line.value);
        break;
    case Target::Hdmi1:
        HDTX_RegWrite(HDTX_SLV0, LowByte(line.addr), LowByte(line.value));
        break;
    case Target::Hdmi2:
        HDTX_RegWrite(HDTX_SLV1, LowByte(line.addr), LowByte(line.value));
        break;
    case Target::None:
        break;
    }
}

void EchoRegister(const RegisterLine& line) {
    std::printf("\n\nREG = Addr=[0x%04x], ReadData=[0x%04x]\n", unsigned{line.addr}, unsigned{line.value});
}

struct AddressRange {
    std::uint16_t first, last;
};

constexpr std::array<AddressRange, 2> kDumpRanges{{{0x000, 0x089}, {0x400, 0x5BF}}};

void DumpKova() {
    std::fputs("\n\n[Addr(HEX)] \t0000 \t0001 \t0002 \t0003 \t0004 \t0005 \t0006 \t0007 \t0008 \t0009 \t000A \t000B "
               "\t000C \t000D \t000E \t000F\n",
               stdout);
    for (const AddressRange& range : kDumpRanges) {
        for (std::uint16_t addr = range.first; addr <= range.last; ++addr) {
            if (addr % 16 == 0) {
                std::printf("\n[0x%03X] ", unsigned{addr});
            }
            std::uint16_t value = 0;
            KOVA_RegRead(addr, &value);
            std::printf("\t%04X", unsigned{value});
        }
    }
    std::fputs("\n Dump Finished! \n", stdout);
}

void UpdateKova() {
    KOVA_RegWrite(KOVA_LOCAL_UPDATE, 1);
    std::fputs("\n KOVA Local Reg Update ( Write '1' at 0x4c4 ) ! \n\n", stdout);
}

// A register command is executed only when the line has exactly the number of tokens that the command needs.
void RunRegisterCommand(RegisterLine& line) {
    if (line.command == Command::Read && line.tokens == 3) {
        ReadRegister(line);
        EchoRegister(line);
    } else if (line.command == Command::Write && line.tokens == 4) {
        WriteRegister(line);
        EchoRegister(line);
    } else if (line.command == Command::Dump && line.tokens == 2) {
        if (line.target == Target::Kova) {
            DumpKova();
        } else {
            EchoRegister(line);
        }
    } else if (line.command == Command::Update && line.tokens == 1) {
        UpdateKova();
    }
}

// ---- Line commands ----

void StartUp() {
    std::fputs("CreateKOVAAPIVideoInstance Started!! \n", stdout);
    CreateKOVAAPIVideoInstance();
}

void StartLoop() {
    if (ControlLoop_OnOff != 0) {
        std::fputs("Already... ControlLoopStart() \n", stdout);
        return;
    }
    std::fputs("ControlLoopStart() \n", stdout);
    ControlLoopStart();
}

void StopLoop() {
    std::fputs("ControlLoopStop() \n", stdout);
    ControlLoop_OnOff = 0;
}

void Quit() {
    std::fputs("Program Terminated.. \n", stdout);
    ControlLoop_OnOff = 0;
}

struct LineCommand {
    const char* word;
    void (*action)();
};

// The string in input_command is compared with these words in this order. A line that begins with a blank matches none.
constexpr std::array<LineCommand, 4> kLineCommands{{
    {"init", StartUp},
    {"clstart", StartLoop},
    {"p", StopLoop},
    {"q", Quit},
}};

void RunLineCommand(const char* word) {
    for (const LineCommand& command : kLineCommands) {
        if (IsWord(word, command.word)) {
            command.action();
            return;
        }
    }
}

// ---- Input ----

enum class Input : std::uint8_t { Line, TooLong, End };

// Reads one line without its newline. A line that does not fit into the buffer together with a newline and a zero is
// read to its end and dropped.
Input ReadLine(std::span<char> buffer) {
    std::size_t length = 0;
    bool fits = true;
    int c = std::getchar();
    if (c == EOF) {
        return Input::End;
    }
    for (; c != EOF && c != '\n'; c = std::getchar()) {
        if (length + 2 < buffer.size()) {
            buffer[length++] = static_cast<char>(c);
        } else {
            fits = false;
        }
    }
    buffer[fits ? length : 0] = '\0';
    return fits ? Input::Line : Input::TooLong;
}

} // namespace

void usage_command() {
    std::fputs("\n"
               "usage : r [kova or hdmi1 or hdmi2] [reg address(hex)] - Read Reg Value\n"
               "        w [kova or hdmi1 or hdmi2] [reg address(hex)] [reg value(hex)] - Write Reg Value\n"
               "        d [ kova ] - Dump All Reg Values \n"
               "        mru - KOVA Loacal Reg Update \n"
               "        init     -  Run CreateKOVAAPIVideoInstance()\n"
               "        clstart  -  Run ControlLoop\n"
               "        p        -  Stop ControlLoop\n"
               "        q        -  Quit This Program\n",
               stderr);
}

std::uint16_t hex2dec(const char* str) {
    const std::size_t length = std::strlen(str);
    if (length > 4) {
        return 0;
    }
    unsigned sum = 0;
    unsigned weight = 1;
    for (std::size_t i = length; i-- > 0; weight *= 16) {
        const char c = str[i];
        if (c >= 'a' && c <= 'f') {
            sum += static_cast<unsigned>(c - 'a' + 10) * weight;
        } else if (c >= '0' && c <= '9') {
            sum += static_cast<unsigned>(c - '0') * weight;
        }
    }
    return static_cast<std::uint16_t>(sum & 0xFFFF);
}

void CommandProcess() {
    RegisterLine line = Tokenize(input_command.data());
    RunRegisterCommand(line);
    RunLineCommand(input_command.data());
}

void RunShell() {
    while (!IsWord(input_command.data(), "q")) {
        usage_command();
        std::fputs("Please Input Command : ", stdout);
        std::fflush(stdout);
        switch (ReadLine(input_command)) {
        case Input::Line:
            break;
        case Input::TooLong:
            std::fprintf(stderr, "The line is longer than %zu characters. It was dropped and not executed.\n",
                         input_command.size() - 2);
            continue;
        case Input::End:
            std::strcpy(input_command.data(), "q");
            break;
        }
        std::printf("Your Input Command = [%s]\n", input_command.data());
        CommandProcess();
    }
}
