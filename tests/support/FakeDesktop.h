#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/engine/VantrelEngine.h"
#include "platform/Application.h"
#include "platform/Desktop.h"
#include "platform/PreviewPanel.h"
#include "platform/ProcessInfo.h"
#include "platform/StandardOutput.h"
#include "platform/TextField.h"
#include "platform/Workspace.h"
#include "support/FakeFileManager.h"
#include "support/FakeFontCatalog.h"
#include "support/ManualClock.h"
#include "support/ManualMainQueue.h"
#include "support/ManualTimers.h"
#include "support/ManualWalkQueue.h"

namespace vantrel::test {

class RecordingOutput final : public StandardOutput {
public:
    void writeLine(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines;
};

class RecordingWorkspace final : public Workspace {
public:
    void openFile(const std::string& path) override { calls.push_back("open " + path); }
    void revealFolder(const std::string& path) override { calls.push_back("reveal " + path); }
    void openTerminal(const std::string& path) override { calls.push_back("terminal " + path); }
    std::vector<std::string> calls;
};

class FakeProcessInfo final : public ProcessInfo {
public:
    std::string currentDirectoryPath() const override {
        return isCurrentDirectoryGone ? "/" : currentDirectory;
    }
    std::string homeDirectory() const override { return home; }
    std::optional<std::string> homeDirectoryOf(const std::string& name) const override {
        const auto found = homes.find(name);
        if (found == homes.end()) return std::nullopt;
        return found->second;
    }
    std::string userName() const override { return user; }
    std::string absolutePath(const std::string& path) const override {
        const bool isRelative = !path.starts_with('/');
        if (path.empty() || (isRelative && isCurrentDirectoryGone)) return "";
        const std::filesystem::path absolute(isRelative ? currentDirectory + '/' + path : path);
        // Without the slash that is left behind by a "." or ".." at the end.
        std::string plain = absolute.lexically_normal();
        if (plain.size() > 1 && plain.ends_with('/')) plain.pop_back();
        return plain;
    }

    std::string currentDirectory = "/start";
    bool isCurrentDirectoryGone = false;
    std::string home = "/Users/ann";
    std::string user = "ann";
    std::map<std::string, std::string> homes;
};

/// A window that keeps what it was given.
class FakeWindow final : public Window {
public:
    explicit FakeWindow(WindowOptions given) : options(std::move(given)) {}
    void setContentView(std::shared_ptr<View> view) override { content = std::move(view); }
    void centerAndShow() override { isShown = true; }
    void setShouldClose(std::function<bool()> answer) override { shouldClose = std::move(answer); }

    WindowOptions options;
    std::shared_ptr<View> content;
    std::function<bool()> shouldClose;
    bool isShown = false;
};

class FakeApplication final : public Application {
public:
    std::unique_ptr<Window> makeWindow(const WindowOptions& options) override {
        auto made = std::make_unique<FakeWindow>(options);
        window = made.get();
        return made;
    }
    void setMainMenu(std::vector<Menu> menus) override { mainMenu = std::move(menus); }
    void runModal(const Alert& alert) override { alerts.push_back(alert); }
    void terminate() override { ++terminations; }

    FakeWindow* window = nullptr;  // borrowed from whoever asked for it
    std::vector<Menu> mainMenu;
    std::vector<Alert> alerts;
    int terminations = 0;
};

class FakePreviewPanel final : public PreviewPanel {
public:
    bool isVisible() const override { return visible; }
    void orderOut() override { visible = false; }
    void setDataSource(std::weak_ptr<PreviewPanelDataSource> source) override {
        dataSource = std::move(source);
    }
    void setDelegate(std::weak_ptr<PreviewPanelDelegate> owner) override { delegate = std::move(owner); }
    void makeKeyAndOrderFront() override { visible = true; }

    /// What pressing a key does while it is open.
    void press(Key key) {
        if (key == Key::space || key == Key::escape) {
            orderOut();
        } else if (const auto owner = delegate.lock()) {
            owner->previewPanelHandleKey({.key = key});
        }
    }

    bool visible = false;
    std::weak_ptr<PreviewPanelDataSource> dataSource;
    std::weak_ptr<PreviewPanelDelegate> delegate;
};

class FakeTextField final : public TextField {
public:
    FakeTextField(TextFieldStyle given, std::vector<FakeTextField*>& registry)
        : style(std::move(given)), registry_(registry) {
        registry_.push_back(this);
    }
    ~FakeTextField() override { std::erase(registry_, this); }
    void setFrame(const Rect& inWindow) override { frame = inWindow; }
    std::string text() const override { return words; }
    void setText(const std::string& newWords) override {
        words = newWords;
        isAllSelected = false;
    }
    void setAccessibleName(const std::string& name) override { accessibleName = name; }
    void focusAndSelectAll() override { isFocused = isAllSelected = true; }
    void setKeyHandler(KeyHandler newHandler) override { handler = std::move(newHandler); }

    /// What typing does: the selection is replaced, else the words are appended.
    void type(const std::string& typed) {
        words = isAllSelected ? typed : words + typed;
        isAllSelected = false;
    }

    /// What pressing one of the owner's keys does. The field may be gone afterwards.
    void press(Key key) const {
        if (const KeyHandler called = handler) called({.key = key});
    }

    TextFieldStyle style;
    Rect frame;
    std::string words;
    std::string accessibleName;
    KeyHandler handler;
    bool isFocused = false;
    bool isAllSelected = false;

private:
    std::vector<FakeTextField*>& registry_;
};

class FakeTextFields final : public TextFieldFactory {
public:
    std::unique_ptr<TextField> makeTextField(const TextFieldStyle& style) override {
        return std::make_unique<FakeTextField>(style, alive);
    }
    std::vector<FakeTextField*> alive;  ///< oldest first
};

/// Counts what a tree of views asks of its window.
class CountingHost final : public ViewHost {
public:
    void scheduleRedraw(Redraw urgency) override {
        ++redraws;
        if (urgency == Redraw::inPassing) ++redrawsInPassing;
    }
    void focusContent() override { ++focusRequests; }
    int redraws = 0;
    int redrawsInPassing = 0;  ///< of them
    int focusRequests = 0;
};

/// Every port as a fake, and an engine on top of them.
struct FakeDesktop {
    FakeApplication application;
    FakeFileManager files;
    FakeFontCatalog fonts;
    ManualMainQueue mainQueue;
    FakePreviewPanel preview;
    FakeProcessInfo process;
    RecordingOutput output;
    FakeTextFields textFields;
    ManualTimers timers;
    RecordingWorkspace workspace;
    ManualWalkQueue walks;
    ManualClock clock;
    std::shared_ptr<VantrelEngine> engine = VantrelEngine::make({walks, mainQueue, clock});

    Desktop ports() { return portsWith(files); }

    /// The same with another file system, such as the real one.
    Desktop portsWith(FileManager& fileManager) {
        return {.application = application,
                .files = fileManager,
                .fonts = fonts,
                .mainQueue = mainQueue,
                .preview = preview,
                .process = process,
                .output = output,
                .textFields = textFields,
                .timers = timers,
                .workspace = workspace};
    }
};

}  // namespace vantrel::test
