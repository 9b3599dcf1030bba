#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "support/RealFilesWindow.h"
#include "support/ScopedEnvironment.h"
#include "support/SystemCallFaults.h"
#include "support/TreeSnapshot.h"

// Each command on a real folder with every one of its system calls failing in every way that its manual page
// allows: the window goes on.

namespace vantrel {
namespace {

using test::FaultCase;

class OvCommanderViewFaults : public testing::Test {
protected:
    void openWindow() {
        window.reset();
        window.emplace();
    }

    /// A window on two folders of its own.
    struct Window : test::RealFilesWindow {
        Window() : RealFilesWindow(test::quickPlace()) {
            makeALetterAndAFolder();
            folder.makeLink("x/link", "a.txt");
            open();
            commander->leftPanel().loadDirectory("sub");
        }

        void answer(const std::string& input) {
            desktop.mainQueue.runAll();
            if (!desktop.textFields.alive.empty() && !input.empty())
                desktop.textFields.alive.back()->type(input);
            press(Key::returnKey);
        }
        void draw() const { drawn(); }

        const test::ScopedEnvironment data{"XDG_DATA_HOME", folder.path("data")};
    };

    void tryEveryFault(const std::function<void()>& command) {
        const std::size_t cases = test::tryEveryFault({.prepare = [this] { openWindow(); },
                                                       .operate = command,
                                                       .check = [this](const FaultCase&) { expectLife(); }});
        RecordProperty("cases", static_cast<int>(cases));
    }

    /// The dialog closes, the other panel takes the keys, and a new listing is complete.
    void expectLife() {
        window->press(Key::escape);
        EXPECT_EQ(window->commander->dialogOverlay(), nullptr);
        const OvPanelView* const before = &window->commander->activePanel();
        window->press(Key::tab);
        EXPECT_NE(&window->commander->activePanel(), before);
        expectCompleteListing(window->commander->leftPanel(), "x");
        expectCompleteListing(window->commander->rightPanel(), "y");
        window->draw();
    }

    void expectCompleteListing(OvPanelView& panel, const char* name) const {
        panel.loadDirectory();
        std::vector<std::string> rows;
        for (const auto& item : panel.items()) rows.push_back(item->name);
        auto expected = test::namesIn(window->folder.path(name));
        std::erase_if(expected, [](const std::string& entry) { return entry.starts_with('.'); });
        expected.emplace_back("..");
        EXPECT_THAT(rows, testing::UnorderedElementsAreArray(expected));
    }

    std::optional<Window> window;
};

TEST_F(OvCommanderViewFaults, readingAPanelAnewAndDrawing) {
    tryEveryFault([this] {
        window->commander->leftPanel().loadDirectory();
        window->draw();
    });
}

TEST_F(OvCommanderViewFaults, enteringAFolderAndLeavingIt) {
    tryEveryFault([this] {
        window->press(Key::returnKey);
        window->draw();
        window->press(Key::backspace);
        window->draw();
    });
}

TEST_F(OvCommanderViewFaults, viewingAFile) {
    tryEveryFault([this] {
        window->commander->leftPanel().loadDirectory("a.txt");
        window->press(Key::f3);
        window->draw();
    });
}

TEST_F(OvCommanderViewFaults, copying) {
    tryEveryFault([this] {
        window->press(Key::f5);
        window->answer("");
        window->draw();
    });
}

TEST_F(OvCommanderViewFaults, renaming) {
    tryEveryFault([this] {
        window->press(Key::f6);
        window->answer("renamed");
        window->draw();
    });
}

TEST_F(OvCommanderViewFaults, makingAFolder) {
    tryEveryFault([this] {
        window->press(Key::f7);
        window->answer("new/inner");
        window->draw();
    });
}

TEST_F(OvCommanderViewFaults, trashing) {
    tryEveryFault([this] {
        window->press(Key::f8);
        window->answer("");
        window->draw();
    });
}

}  // namespace
}  // namespace vantrel
