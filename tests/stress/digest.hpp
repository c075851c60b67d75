// Everything a host can learn about an opened file, a produced stream and the format list,
// written out as one text. Two texts are equal exactly when the library told the host the
// same things, so a result computed on a busy thread is checked against one computed alone.
#pragma once

#include <cstdint>
#include <string>

#include "palvex/host.hpp"

namespace palvex::stress {

// Library calls made, summed over every thread for the closing figures.
struct CallCount {
  std::uint64_t calls = 0;
};

// The file information (less the MGJSON path, which names a fresh temporary file after
// each conversion), the sync list, and every node of the outline with every query that
// applies to it: child info, static or dynamic info, and its samples asked for in each of
// the three ways. Errors land in errors and are part of the text.
std::string DigestFile(ISensorFileHandler &file, host::ErrorLog &errors, CallCount &count);

// The produced file's size and bytes, read in small blocks.
std::string DigestStream(IMgjsonStream &stream, host::ErrorLog &errors, CallCount &count);

// The supported formats as "extension=name" lines.
std::string DigestFormats(host::ErrorLog &errors, CallCount &count);

// Reports as "error <code>: <message>" lines; empty when none arrived.
std::string DescribeErrors(const host::ErrorLog &errors);

}  // namespace palvex::stress
