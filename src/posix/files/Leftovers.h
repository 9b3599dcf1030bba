#pragma once

#include <string>

namespace vantrel {

/// Looks through an open folder for what operations of a process that has ended left there: copies that were
/// never finished are removed, originals that were set aside get their names back. Whose something is says
/// its name, its owner and, above all, that nobody holds the lock on it. What may be in use by another
/// machine, by another user or by anybody alive stays. Failures are nobody's business: the next one will try
/// again.
void clearLeftovers(int folder);

/// A hidden name for an original that is set aside in its own folder because a workplace cannot be made
/// there.
std::string nameAside(const std::string& name);

}  // namespace vantrel
