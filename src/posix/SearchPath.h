#pragma once

namespace vantrel {

/// Takes out of $PATH, and out of the lists of folders with applications and settings, what is not absolute:
/// it would be looked up in the working directory, or in the folder that a program is started in, and either
/// may hold a hostile program of the right name. For the start of the program, before there are threads;
/// whatever it starts inherits this.
void keepOnlyAbsoluteSearchPaths();

}  // namespace vantrel
