#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>

/// The three streams that the process was started with.
namespace kova::translate {

/// Takes the place of a standard stream that the process was started without, so that the next file
/// that is opened does not become standard output by accident. Using such a stream still fails.
void fillStandardStreams();

/// Bytes in memory.
struct Block {
  struct Free {
    void operator()(unsigned char* block) const { std::free(block); }
  };
  std::unique_ptr<unsigned char, Free> bytes;
  std::size_t count = 0;
};

/// Reads standard input, whatever it is, to its end.
/// @param reason  receives the cause in words on failure.
bool readStandardInput(Block& block, std::string& reason);

/// The columns of the terminal that standard error is; 0 when it is none.
int getTerminalColumns();

}  // namespace kova::translate
