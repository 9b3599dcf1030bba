#pragma once

namespace vantrel {

/// To be called first in a program, before there are threads: gives the descriptors 0, 1 and 2 to /dev/null
/// where whoever started the program left them closed. Otherwise the next files opened would get their
/// numbers, and lines meant for standard output would be written into them. Reading and writing there still
/// fail, so that a program whose output is lost can say so.
void occupyStandardDescriptors();

/// To be called last: what was printed through stdio goes out now, since nobody looks at what happens to it
/// at the end of the process. False, with a line on standard error that begins with the program's name, when
/// not all of it could be written.
[[nodiscard]] bool deliverStandardOutput(const char* programName);

}  // namespace vantrel
