#pragma once

#include "commander/OvCommanderView.h"
#include "model/engine/VantrelEngine.h"
#include "support/FakeDesktop.h"

namespace vantrel::fuzz {

/// The rules that hold between any two events, whatever has happened before. Each throws a Violation.
void checkPanel(const OvPanelView& panel);
void checkDialog(const OvCommanderView& commander, const test::FakeDesktop& desktop);
void checkPreview(const OvCommanderView& commander);
void checkWalks(const OvCommanderView& commander, const VantrelEngine& engine,
                const test::ManualWalkQueue& walks);
void checkDrawing(OvCommanderView& commander);

/// Whether the cursor's row is one of those that are drawn.
bool isCursorVisible(const OvPanelView& panel);

}  // namespace vantrel::fuzz
