#pragma once

namespace vantrel {

/// Makes Qt find the views of every QtContentWidget in place of one empty widget, and native fields inside
/// the dialog that they belong to. To be called once, on the main thread, after the application has been made
/// and before any content.
void installQtAccessibility();

}  // namespace vantrel
