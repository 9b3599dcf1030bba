#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "commander/OvCommanderView.h"
#include "support/FakeDesktop.h"

namespace vantrel::test {

/// A commander 1100 x 720 points large on fakes: "/start" on the left, "/Users/ann" on the right.
class CommanderTest : public testing::Test {
protected:
    CommanderTest() {
        for (const char* name : {"alpha", "beta"}) desktop.files.addFolder("/start", name);
        desktop.files.addFile("/start", "cedar.txt", 100);
        desktop.files.addFile("/Users/ann", "delta");
        commander = OvCommanderView::make(desktop.ports(), *desktop.engine, {0, 0, 1100, 720});
        commander->setHost(&host);
    }

    OvPanelView& left() { return commander->leftPanel(); }
    OvPanelView& right() { return commander->rightPanel(); }

    EventResult press(Key key) { return commander->keyDown({.key = key}); }
    EventResult type(const std::string& characters) {
        return commander->keyDown({.characters = characters, .charactersIgnoringModifiers = characters});
    }
    EventResult typeWithCommand(const std::string& characters) {
        return commander->keyDown({.charactersIgnoringModifiers = characters, .command = CommandKey::held});
    }
    EventResult click(double x, double y) {
        return dispatchMouseDown(*commander, {.locationInWindow = {x, y}, .clickCount = 1});
    }

    std::string selectedName(OvPanelView& panel) {
        const auto item = panel.selectedItem();
        return item ? item->name : "(none)";
    }

    FakeDesktop desktop;
    CountingHost host;
    std::shared_ptr<OvCommanderView> commander;
};

}  // namespace vantrel::test
