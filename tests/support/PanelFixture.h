#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "panel/OvPanelView.h"
#include "support/FakeDesktop.h"

namespace vantrel::test {

/// Keeps the callbacks of a panel as lines of text.
class RecordingPanelDelegate final : public OvPanelViewDelegate {
public:
    void panelDidSelect(OvPanelView& panel) override {
        calls.push_back("select");
        cursorAtSelect = panel.selectedIndex();
    }
    void panelDidActivateItem(OvPanelView&, const FileItem& item) override {
        calls.push_back("activate " + item.path);
    }
    void panelPathDidChange(OvPanelView& panel, const std::string& newPath) override {
        calls.push_back("path " + newPath);
        rowsAtPathChange = panel.items().size();
    }

    std::vector<std::string> calls;
    std::size_t rowsAtPathChange = 0;
    std::int64_t cursorAtSelect = -1;
};

/// Where the cursor stands, and how far the list is scrolled.
struct Cursor {
    std::int64_t row;
    std::int64_t scrollOffset;
    bool operator==(const Cursor&) const = default;
};

inline void PrintTo(const Cursor& cursor, std::ostream* stream) {
    *stream << "row " << cursor.row << ", scrolled by " << cursor.scrollOffset;
}

/// A panel 549 x 648 points large (28 rows), as in a window of the usual size, on fakes.
class PanelTest : public testing::Test {
protected:
    PanelTest() {
        panel->setHost(&host);
        panel->delegate = delegate;
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& item : panel->items()) all.push_back(item->name);
        return all;
    }

    std::shared_ptr<FileItem> item(const std::string& name) const {
        for (const auto& candidate : panel->items()) {
            if (candidate->name == name) return candidate;
        }
        ADD_FAILURE() << "no row named " << name;
        return nullptr;
    }

    std::string selectedName() const {
        const auto selected = panel->selectedItem();
        return selected ? selected->name : "(none)";
    }

    Cursor cursor() const { return {panel->selectedIndex(), panel->scrollOffset()}; }

    /// The whole of a folder's total in one final report.
    void finishWalk(const std::string& path, std::int64_t bytes, std::int64_t items = 1) {
        desktop.walks.walkOf(path).finish({bytes, items});
        desktop.mainQueue.runAll();
    }

    /// "/d" with as many files as given, named f000, f001, ...
    void addNumberedFiles(int count) {
        for (int number = 0; number < count; ++number) {
            const std::string digits = std::to_string(1000 + number).substr(1);
            desktop.files.addFile("/d", "f" + digits);
        }
    }

    void showNumberedFiles(int count) {
        addNumberedFiles(count);
        panel->setCurrentPath("/d");
    }

    void setRows(int rows) { panel->setFrame({0, 0, 549, 72.0 + 20 * rows}); }

    FakeDesktop desktop;
    CountingHost host;
    std::shared_ptr<RecordingPanelDelegate> delegate = std::make_shared<RecordingPanelDelegate>();
    std::shared_ptr<OvPanelView> panel = makePanel();

private:
    std::shared_ptr<OvPanelView> makePanel() {
        auto made = OvPanelView::make(desktop.ports(), *desktop.engine);
        made->setFrame({0, 0, 549, 648});
        return made;
    }
};

}  // namespace vantrel::test
