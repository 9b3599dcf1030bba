#include "qt/accessibility/QtAccessibleTree.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <ranges>

#include "base/Precondition.h"
#include "qt/accessibility/QtAccessibleNodes.h"

namespace vantrel {

namespace {

constexpr std::size_t mostElementsOfAView = 4096;

std::vector<View*> meaningfulSubviews(const View& view) {
    std::vector<View*> found;
    for (const auto& subview : view.subviews()) {
        if (subview->accessible() != nullptr) found.push_back(subview.get());
    }
    return found;
}

std::size_t elementCount(View& view) {
    return view.accessible() == nullptr ? 0 : view.accessible()->elementCount();
}

/// The box of the field that is on show, null when there is none.
QWidget* nativeField(const QtContentWidget& content) {
    for (QObject* const child : content.children()) {
        auto* const widget = child->isWidgetType() ? static_cast<QWidget*>(child) : nullptr;
        if (widget != nullptr && !widget->isHidden()) return widget;
    }
    return nullptr;
}

}  // namespace

QtAccessibleTree& QtAccessibleTree::of(const QtContentWidget& content) {
    auto* const tree = dynamic_cast<QtAccessibleTree*>(content.observer());
    precondition(tree != nullptr, "a content was made before accessibility was installed");
    return *tree;
}

QtAccessibleTree::~QtAccessibleTree() {
    for (auto& [view, known] : views_) {
        for (const auto& [index, element] : known.elements)
            QAccessible::deleteAccessibleInterface(element.id);
        if (known.id != 0) QAccessible::deleteAccessibleInterface(known.id);
    }
}

void QtAccessibleTree::contentWasPainted() {
    if (QAccessible::isActive()) announceChanges();
}

void QtAccessibleTree::tell(QAccessibleInterface* about, QAccessible::Event what) const {
    if (about == nullptr) return;
    QAccessibleEvent event(about, what);
    listener_(&event);
}

QtAccessibleTree::KnownView& QtAccessibleTree::known(View& view) {
    KnownView& known = views_[&view];
    if (known.view.expired()) {
        known.view = view.weak_from_this();
        known.revision = view.accessible()->revision();
    }
    return known;
}

QAccessibleInterface* QtAccessibleTree::interfaceOf(View& view) {
    if (&view == content_.root()) return QAccessible::queryAccessibleInterface(&content_);
    forgetViewsThatAreGone();
    KnownView& place = known(view);
    if (place.id == 0) {
        place.id = QAccessible::registerAccessibleInterface(new QtAccessibleView(*this, view));
    }
    return QAccessible::accessibleInterface(place.id);
}

QAccessibleInterface* QtAccessibleTree::interfaceOf(View& view, std::size_t element) {
    forgetViewsThatAreGone();
    KnownView& place = known(view);
    const auto found = place.elements.find(element);
    if (found != place.elements.end()) return QAccessible::accessibleInterface(found->second.id);
    if (place.elements.size() >= mostElementsOfAView) forgetUnseenElements(place, view);
    const QAccessible::Id id =
        QAccessible::registerAccessibleInterface(new QtAccessibleElement(*this, view, element));
    place.elements[element] = {.id = id, .name = view.accessible()->element(element).name};
    return QAccessible::accessibleInterface(id);
}

int QtAccessibleTree::childCount(View& view) const {
    const bool hasField = &view == dialog() && nativeField(content_) != nullptr;
    return static_cast<int>(elementCount(view) + meaningfulSubviews(view).size()) + (hasField ? 1 : 0);
}

QAccessibleInterface* QtAccessibleTree::child(View& view, int index) {
    if (index < 0) return nullptr;
    const auto place = static_cast<std::size_t>(index);
    const std::size_t elements = elementCount(view);
    if (place < elements) return interfaceOf(view, place);
    const std::vector<View*> subviews = meaningfulSubviews(view);
    if (place < elements + subviews.size()) return interfaceOf(*subviews[place - elements]);
    if (index >= childCount(view)) return nullptr;
    return QAccessible::queryAccessibleInterface(nativeField(content_));
}

int QtAccessibleTree::indexOfChild(View& view, const QAccessibleInterface* child) const {
    const auto* const element = dynamic_cast<const QtAccessibleElement*>(child);
    if (element != nullptr) return &element->view() == &view ? static_cast<int>(element->index()) : -1;
    const std::vector<View*> subviews = meaningfulSubviews(view);
    if (const auto* const node = dynamic_cast<const QtAccessibleNode*>(child)) {
        const auto place = std::ranges::find(subviews, &node->view());
        return place == subviews.end()
                   ? -1
                   : static_cast<int>(elementCount(view)) + static_cast<int>(place - subviews.begin());
    }
    const bool isField = child != nullptr && &view == dialog() && child->object() == nativeField(content_);
    return isField ? childCount(view) - 1 : -1;
}

QAccessibleInterface* QtAccessibleTree::childAt(View& view, Point inWindow) {
    View* const hit = content_.root()->hitTest(inWindow);
    if (QWidget* const field = nativeField(content_);
        field != nullptr && &view == dialog() &&
        field->geometry().contains(QPointF(inWindow.x, inWindow.y).toPoint()))
        return QAccessible::queryAccessibleInterface(field);
    if (hit == nullptr) return nullptr;
    if (hit != &view && hit->superview() == &view && hit->accessible() != nullptr) return interfaceOf(*hit);
    if (hit != &view || view.accessible() == nullptr) return nullptr;
    const auto element = view.accessible()->elementAt(view.convertFromWindow(inWindow));
    return element ? interfaceOf(view, *element) : nullptr;
}

View* QtAccessibleTree::dialog() const {
    if (content_.root() == nullptr) return nullptr;
    const std::vector<View*> subviews = meaningfulSubviews(*content_.root());
    const bool isOpen = !subviews.empty() && subviews.back()->accessible()->role() == AccessibleRole::dialog;
    return isOpen ? subviews.back() : nullptr;
}

QRect QtAccessibleTree::screenRect(View& view, const Rect& area) const {
    const Point origin = view.convertFromWindow({0, 0});
    const QRectF inWindow(area.x - origin.x, area.y - origin.y, area.width, area.height);
    const QRect rounded = inWindow.toAlignedRect();
    return {content_.mapToGlobal(rounded.topLeft()), rounded.size()};
}

std::optional<AccessiblePlace> QtAccessibleTree::focus() const {
    const QWidget* const widget = QApplication::focusWidget();
    if (content_.root() == nullptr || widget == nullptr) return std::nullopt;
    if (widget != &content_ && !content_.isAncestorOf(widget)) return std::nullopt;
    return accessibleFocus(*content_.root());
}

void QtAccessibleTree::forgetViewsThatAreGone() {
    for (auto place = views_.begin(); place != views_.end();) {
        if (!place->second.view.expired()) {
            ++place;
            continue;
        }
        for (const auto& [index, element] : place->second.elements)
            QAccessible::deleteAccessibleInterface(element.id);
        if (place->second.id != 0) QAccessible::deleteAccessibleInterface(place->second.id);
        place = views_.erase(place);
    }
}

void QtAccessibleTree::forgetUnseenElements(KnownView& known, View& view) {
    const std::vector<std::size_t> shown = view.accessible()->shownElements();
    std::erase_if(known.elements, [&](const auto& entry) {
        if (std::ranges::binary_search(shown, entry.first)) return false;
        QAccessible::deleteAccessibleInterface(entry.second.id);
        return true;
    });
}

void QtAccessibleTree::announceChanges() {
    if (content_.root() == nullptr) return;
    forgetViewsThatAreGone();
    for (auto& [view, known] : views_) {
        const std::shared_ptr<View> held = known.view.lock();
        if (held && held->host() == &content_) announceNames(known, *held);
    }
    announceDialog();
    announceFocus();
}

// Interfaces stand for places. After a change of order, those for places out of sight are dropped, and made
// again when asked for.
void QtAccessibleTree::announceNames(KnownView& known, View& view) {
    const std::uint64_t revision = view.accessible()->revision();
    if (known.revision != revision) {
        known.revision = revision;
        forgetUnseenElements(known, view);
        if (view.accessible()->columnCount() > 0 && known.id != 0) {
            QAccessibleTableModelChangeEvent reset(QAccessible::accessibleInterface(known.id),
                                                   QAccessibleTableModelChangeEvent::ModelReset);
            listener_(&reset);
        }
    }
    for (const std::size_t index : view.accessible()->shownElements()) {
        const auto element = known.elements.find(index);
        if (element == known.elements.end()) continue;
        std::string name = view.accessible()->element(index).name;
        if (element->second.name == name) continue;
        element->second.name = std::move(name);
        tell(QAccessible::accessibleInterface(element->second.id), QAccessible::NameChanged);
    }
}

void QtAccessibleTree::announceDialog() {
    View* const open = dialog();
    const std::shared_ptr<View> announced = announcedDialog_.lock();
    if (open == announced.get()) return;
    announcedDialog_ = open == nullptr ? std::weak_ptr<View>() : open->weak_from_this();
    announcedFocus_.reset();
    if (open == nullptr) return;
    tell(interfaceOf(*open), QAccessible::ObjectShow);
    tell(interfaceOf(*open), QAccessible::DialogStart);
}

std::optional<QtAccessibleTree::Focus> QtAccessibleTree::describedFocus() const {
    const auto place = focus();
    if (!place) return std::nullopt;
    return Focus{place->view, place->element, place->view->accessible()->element(place->element).name};
}

void QtAccessibleTree::announceFocus() {
    const std::optional<Focus> now = describedFocus();
    if (now == announcedFocus_) return;
    announcedFocus_ = now;
    const auto place = focus();
    if (!place) {
        // The keyboard is back in the field, coming from the buttons beside it.
        QWidget* const field = QApplication::focusWidget();
        if (field != nullptr && field != &content_ && content_.isAncestorOf(field))
            tell(QAccessible::queryAccessibleInterface(field), QAccessible::Focus);
        return;
    }
    QAccessibleInterface* const element = interfaceOf(*place->view, place->element);
    tell(element, QAccessible::Focus);
    if (element != nullptr && element->state().selected) tell(element, QAccessible::SelectionAdd);
}

}  // namespace vantrel
