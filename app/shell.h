#pragma once
// The command shell: one line in, one action out.

#include <array>
#include <cstdint>

/// The current command line. The tokenizer cuts it in place, so after a command it reads as the line's first word.
extern std::array<char, 1024> input_command;

/// Prints the usage summary on standard error.
void usage_command();

/// Executes the line in input_command: register commands first, then the line commands.
void CommandProcess();

/// Converts a token of at most four hexadecimal digits, lower case; a longer one gives 0. Any other character takes its
/// place and adds nothing.
std::uint16_t hex2dec(const char* str);

/// Reads and executes lines until one whose first word is "q". End of input acts as the line "q".
void RunShell();
