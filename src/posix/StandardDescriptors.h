#pragma once

namespace vantrel {

/// To be called first in a program, before there are threads: opens /dev/null as descriptor 0, 1 or 2 where
/// whoever started the program left that closed. Otherwise the next files opened would get these numbers, and
/// lines meant for standard output would be written into them. Reading and writing there still fail, so that
/// a program whose output is lost can say so.
void occupyStandardDescriptors();

/// To be called last: flushes what was printed through stdio, because nobody would notice a failure at the
/// end of the process. When not all of it could be written, prints a line to standard error that begins with
/// the program's name, and returns false.
[[nodiscard]] bool deliverStandardOutput(const char* programName);

}  // namespace vantrel
