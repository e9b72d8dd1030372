// Standard input, output and error as a program finds them.
#pragma once

namespace vel {

/// Throws std::system_error when standard output is closed. To be asked before the next function
/// puts something in its place.
void requireStandardOutput();

/// To be called before files are opened. A file opened later does not become one of the three by
/// taking a free number, and a reader that has gone is an error of the write.
void prepareStandardFiles();

}  // namespace vel
