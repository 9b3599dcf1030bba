#pragma once

namespace vantrel {

/// Removes relative entries from $PATH and from the lists of folders with applications and settings: they
/// would be looked up in the working directory, or in the folder that a program is started in, and either may
/// hold a hostile program of the right name. To be called at the start, before there are threads; every
/// program started later inherits the result.
void keepOnlyAbsoluteSearchPaths();

}  // namespace vantrel
