// Reading a subcommand's input and writing its output.
//
// Commands whose result grows with their input produce and write it in
// pieces of about kOutputPiece bytes, so the tool's memory stays close to the
// size of the input however large the result is.
#ifndef QTATOOL_IO_H_
#define QTATOOL_IO_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace qtatool {

inline constexpr size_t kOutputPiece = 64 * 1024;

// Reads the whole of `path` ("-" is standard input) into `out`. On failure
// prints the reason on stderr and returns false.
bool readInput(std::string_view path, std::string& out);

// Writes bytes to stdout unchanged (no newline is added).
void writeBytes(std::string_view bytes);

}  // namespace qtatool

#endif  // QTATOOL_IO_H_
