#pragma once

#include <QAccessible>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/View.h"
#include "qt/QtContentWidget.h"

namespace vantrel {

/// The views of a content widget and their elements as Qt's accessibility knows them. An interface is made
/// when somebody asks for it and taken back when what it stands for is gone, or when very many have been made
/// since. Main thread only.
class QtAccessibleTree final : public QtContentObserver {
public:
    /// The tree of a content that was made after `installQtAccessibility`.
    static QtAccessibleTree& of(const QtContentWidget& content);

    explicit QtAccessibleTree(QtContentWidget& content) : content_(content) {}
    QtAccessibleTree(const QtAccessibleTree&) = delete;
    QtAccessibleTree& operator=(const QtAccessibleTree&) = delete;
    ~QtAccessibleTree() override;

    QtContentWidget& content() const { return content_; }

    /// For the root view, that of the content itself.
    QAccessibleInterface* interfaceOf(View& view);
    QAccessibleInterface* interfaceOf(View& view, std::size_t element);

    // A view's children: its elements, the views in it that have a meaning, and a dialog's native field.
    int childCount(View& view) const;
    QAccessibleInterface* child(View& view, int index);
    int indexOfChild(View& view, const QAccessibleInterface* child) const;
    QAccessibleInterface* childAt(View& view, Point inWindow);

    /// Null when none is open.
    View* dialog() const;

    QRect screenRect(View& view, const Rect& area) const;

    /// Where the keyboard is in the views; nothing while a native field or another window has it.
    std::optional<AccessiblePlace> focus() const;

    /// Tells what has changed since the last time: names on show, dialogs, the focus.
    void announceChanges();

    using Listener = void (*)(QAccessibleEvent* event);

    /// Who is told about changes; by default assistive technology.
    void setListener(Listener listener) { listener_ = listener; }

    void contentWasPainted() override;

    /// Which part of the content has the keyboard is told again at the next announcement, changed or not.
    void contentGotTheKeyboard() override { announcedFocus_.reset(); }

private:
    struct KnownElement {
        QAccessible::Id id = 0;
        std::string name;  ///< as last announced
    };
    struct KnownView {
        std::weak_ptr<View> view;
        QAccessible::Id id = 0;
        std::uint64_t revision = 0;
        std::unordered_map<std::size_t, KnownElement> elements;
    };
    struct Focus {
        const View* view = nullptr;
        std::size_t element = 0;
        std::string name;
        bool operator==(const Focus&) const = default;
    };

    void tell(QAccessibleInterface* about, QAccessible::Event what) const;
    KnownView& known(View& view);
    void forgetViewsThatAreGone();
    void forgetUnseenElements(KnownView& known, View& view);
    void announceNames(KnownView& known, View& view);
    void announceDialog();
    void announceFocus();
    std::optional<Focus> describedFocus() const;

    QtContentWidget& content_;
    Listener listener_ = &QAccessible::updateAccessibility;
    std::map<const View*, KnownView> views_;
    std::optional<Focus> announcedFocus_;
    std::weak_ptr<View> announcedDialog_;
};

}  // namespace vantrel
