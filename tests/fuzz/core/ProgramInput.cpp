#include <algorithm>
#include <array>
#include <string>

#include "fuzz/Target.h"
#include "fuzz/core/Program.h"
#include "fuzz/core/ProgramRules.h"
#include "text/Text.h"

// What a person does to the program.

namespace vantrel::fuzz {

namespace {

constexpr std::array keys{
    Key::returnKey, Key::keypadEnter, Key::tab,      Key::space,     Key::backspace, Key::escape, Key::home,
    Key::end,       Key::pageUp,      Key::pageDown, Key::up,        Key::down,      Key::left,   Key::right,
    Key::f1,        Key::f2,          Key::f3,       Key::f4,        Key::f5,        Key::f6,     Key::f7,
    Key::f8,        Key::f9,          Key::f10,      Key::returnKey, Key::returnKey, Key::escape, Key::down};

/// Those that a field hands on.
bool leavesField(Key key) {
    return key == Key::returnKey || key == Key::keypadEnter || key == Key::escape || key == Key::tab ||
           (key >= Key::f1 && key <= Key::f10);
}

bool movesCursor(Key key) {
    return key == Key::home || key == Key::end || key == Key::pageUp || key == Key::pageDown;
}

KeyEvent eventFor(Key key) {
    const std::string characters = key == Key::space ? " " : "";
    return {.key = key, .characters = characters, .charactersIgnoringModifiers = characters};
}

}  // namespace

void Program::send(const KeyEvent& event) {
    const auto& fields = desktop_.textFields.alive;
    if (fields.empty() || !fields.back()->isFocused) {
        commander().keyDown(event);
    } else if (leavesField(event.key)) {
        const TextField::KeyHandler handler = fields.back()->handler;
        handler(event);
    } else {
        fields.back()->type(event.characters);
    }
}

void Program::expectVisibleCursorAfter(Key key, const std::function<void()>& event) {
    const OvPanelView& panel = commander().activePanel();
    const auto cursor = panel.selectedIndex();
    const std::string folder = panel.currentPath();
    const bool isOpen = commander().dialogOverlay() == nullptr;
    event();
    if (!isOpen || commander().dialogOverlay() || &commander().activePanel() != &panel) return;
    if (panel.currentPath() != folder || panel.items().empty()) return;
    if (!movesCursor(key) && panel.selectedIndex() == cursor) return;
    require(isCursorVisible(panel), "a key that moves the cursor shows it");
}

void Program::pressKey(Input& input) {
    const Key key = input.oneOf(keys);
    expectVisibleCursorAfter(key, [&] { send(eventFor(key)); });
}

void Program::pressCommandKey(Input& input) {
    static constexpr std::array letters{"o", "t", "q", "a", "1", "", "é"};
    send({.charactersIgnoringModifiers = input.oneOf(letters), .command = CommandKey::held});
}

void Program::type(Input& input) {
    const std::string characters = text::repairedUtf8(input.text(2));
    expectVisibleCursorAfter(
        Key::character, [&] { send({.characters = characters, .charactersIgnoringModifiers = characters}); });
}

void Program::useField(Input& input) {
    const auto& fields = desktop_.textFields.alive;
    if (fields.empty()) return;
    static constexpr std::array texts{"", "x", "a/b/c", "/start/alpha/new", "../up", "/", "..", "alpha"};
    desktop_.mainQueue.runAll();
    fields.back()->setText(input.flag() ? input.oneOf(texts) : text::repairedUtf8(input.text(6)));
}

// A whole command in one step: keys alone hardly ever get that far.
void Program::changeByCommand(Input& input) {
    static constexpr std::array commands{Key::f5, Key::f6, Key::f7, Key::f8};
    static constexpr std::array targets{"x",  "alpha/x",        "Beta/x",         "alpha/y/z",
                                        "10", "/start/alpha/x", "/Users/ann/x/y", "../x"};
    if (commander().dialogOverlay()) return;
    send(eventFor(input.oneOf(commands)));
    check();
    if (!commander().dialogOverlay()) return;
    desktop_.mainQueue.runAll();
    if (!desktop_.textFields.alive.empty()) desktop_.textFields.alive.back()->setText(input.oneOf(targets));
    send(eventFor(Key::returnKey));
}

void Program::passKeyThroughPreview(Input& input) {
    if (!desktop_.preview.visible) return;
    const auto delegate = desktop_.preview.delegate.lock();
    require(delegate != nullptr && !desktop_.preview.dataSource.expired(), "a preview has its owner");
    delegate->previewPanelHandleKey(eventFor(input.oneOf(keys)));
}

void Program::chooseMenuItem(Input& input) {
    const Menu& menu = input.oneOf(desktop_.application.mainMenu);
    const MenuItem& item = input.oneOf(menu.items);
    if (!item.isSeparator()) item.action();
}

void Program::clickAt(Point place, int clickCount) {
    clicks_.mouseDown(commander(), {.locationInWindow = place, .clickCount = clickCount});
}

void Program::click(Input& input) {
    const Rect window = commander().bounds();
    const double x = static_cast<double>(input.below(65536)) / 65535;
    const double y = static_cast<double>(input.below(65536)) / 65535;
    clickAt({x * (window.width + 20) - 10, y * (window.height + 20) - 10},
            1 + static_cast<int>(input.below(3)));
}

void Program::doubleClick(Input& input) {
    const Rect window = commander().bounds();
    const Point place{static_cast<double>(input.byte()) / 255 * window.width,
                      static_cast<double>(input.byte()) / 255 * window.height};
    clickAt(place, 1);
    check();
    clickAt(place, 2);
}

void Program::clickRow(Input& input) {
    const OvPanelView& panel = input.flag() ? commander().leftPanel() : commander().rightPanel();
    const double row = static_cast<double>(input.below(12));
    const Point place{panel.frame().x + 20, panel.frame().y + 48 + row * OvPanelView::rowHeight + 5};
    clickAt(place, 1);
    if (!input.flag()) return;
    check();
    clickAt(place, 2);
}

void Program::turnWheel(Input& input) {
    static constexpr std::array turns{1.0, -1.0, 0.0, 0.1, -1000.0};
    const Rect window = commander().bounds();
    const Point place{static_cast<double>(input.byte()) / 255 * window.width,
                      static_cast<double>(input.byte()) / 255 * window.height};
    dispatchScrollWheel(commander(), {.locationInWindow = place, .deltaY = input.oneOf(turns)});
}

void Program::resize(Input& input) {
    static constexpr std::array<Size, 8> sizes{Size{1100, 720}, Size{800, 500},     Size{800, 1200},
                                               Size{4000, 500}, Size{300, 150},     Size{3840, 2160},
                                               Size{0, 0},      Size{801.5, 533.25}};
    const Size size = input.oneOf(sizes);
    commander().setFrame({0, 0, size.width, size.height});
}

}  // namespace vantrel::fuzz
