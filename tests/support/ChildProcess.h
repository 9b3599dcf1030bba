#pragma once

#include <functional>

namespace vantrel::test {

/// Runs `body` in a child process of this one and answers how that ended, as waitpid(2) tells. A body that
/// returns ends it with status 0, or 1 when an expectation failed in it.
int inChild(const std::function<void()>& body);

/// Whether the child ended by itself and all that it expected was so.
bool hasSucceeded(int status);

/// The signal that ended the child, 0 when none did.
int signalOf(int status);

}  // namespace vantrel::test
