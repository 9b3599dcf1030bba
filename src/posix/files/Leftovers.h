#pragma once

#include <string>

namespace vantrel {

/// Looks through an open folder for what operations of a process that has ended left there: copies that were
/// never finished are removed, originals that were set aside get their names back. The name of such a thing,
/// its owner and, above all, the lock on it tell whose it is. What another machine, another user or any live
/// process may be using stays. Blocks; any thread. The folder is borrowed. Failures are not reported: the
/// next operation tries again.
void clearLeftovers(int folder);

/// A hidden name for an original that is set aside in its own folder because a workplace cannot be made
/// there.
std::string nameAside(const std::string& name);

}  // namespace vantrel
