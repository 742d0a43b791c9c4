#pragma once
// The command shell. It reads command lines and executes them.

#include <array>
#include <cstdint>

/// The current command line. CommandProcess puts a zero after each word. The string in the buffer then ends after the
/// first word of the line. Blanks before the first word stay in the string.
extern std::array<char, 1024> input_command;

/// Prints the usage summary on standard error.
void usage_command();

/// Executes the line in input_command. The register commands come first, then the line commands.
void CommandProcess();

/// Converts a token of at most four hexadecimal digits. A longer token gives 0. Only 0 to 9 and a to f are digits. Any
/// other character, also an upper-case letter, is converted as the digit 0.
std::uint16_t hex2dec(const char* str);

/// Reads and executes lines. Returns after a line that begins with the word "q". The end of the input acts as the line
/// "q".
void RunShell();
