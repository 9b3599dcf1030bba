#include "qt/preview/QtPreviewWindow.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QHideEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

#include "qt/QtFace.h"
#include "qt/QtFontCatalog.h"
#include "qt/QtInputHistory.h"
#include "qt/QtKeys.h"
#include "qt/preview/PreviewWords.h"

namespace vantrel {

namespace {

constexpr QSize firstSize{720, 540};     // points
constexpr QSize smallestSize{240, 240};  // points
constexpr double textSize = 13;          // points
constexpr int tabWidth = 8;              // characters
constexpr int captionMargin = 6;         // points

QPlainTextEdit* makeTextView() {
    auto* const text = new QPlainTextEdit;
    text->setFont(qtFont(QtFontCatalog().monospacedSystemFont(textSize, FontWeight::regular)));
    text->setTabStopDistance(tabWidth * QFontMetricsF(text->font()).horizontalAdvance(u'x'));
    text->setReadOnly(true);
    text->setUndoRedoEnabled(false);
    text->setTextInteractionFlags(Qt::NoTextInteraction);
    text->setContextMenuPolicy(Qt::NoContextMenu);
    text->setWordWrapMode(QTextOption::WrapAnywhere);
    text->setFrameShape(QFrame::NoFrame);
    text->setFocusPolicy(Qt::NoFocus);
    return text;
}

QScrollArea* makePagesArea(PagesView* view) {
    auto* const area = new QScrollArea;
    area->setWidget(view);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}

QLabel* makeCaption() {
    auto* const caption = new QLabel;
    caption->setTextFormat(Qt::PlainText);
    caption->setAlignment(Qt::AlignCenter);
    caption->setMargin(captionMargin);
    // A long caption is no reason to widen the window.
    caption->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return caption;
}

}  // namespace

QtPreviewWindow::QtPreviewWindow(QWidget* parent)
    : QWidget(parent, Qt::Tool),
      stack_(new QStackedWidget),
      empty_(new QWidget),
      facts_(new FactsView),
      image_(new ImageView),
      text_(makeTextView()),
      pagesView_(new PagesView),
      caption_(makeCaption()) {
    pages_ = makePagesArea(pagesView_);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_InputMethodEnabled);
    setFocusPolicy(Qt::StrongFocus);
    for (QWidget* const view : std::initializer_list<QWidget*>{empty_, facts_, image_, text_, pages_})
        stack_->addWidget(view);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(stack_, 1);
    layout->addWidget(caption_);
    setMinimumSize(smallestSize);
    resize(firstSize);
    showNothing();
}

void QtPreviewWindow::setKeyHandler(std::function<void(const KeyEvent&)> handler) {
    keyHandler_ = std::move(handler);
}

void QtPreviewWindow::setHideHandler(std::function<void()> handler) {
    hideHandler_ = std::move(handler);
}

void QtPreviewWindow::showNothing() {
    showItem({}, {});
    setWindowTitle("Preview");
    stack_->setCurrentWidget(empty_);
}

void QtPreviewWindow::showItem(const PreviewItem& item, const PreviewContent& content) {
    setWindowTitle(QString::fromStdString(item.name));
    showBody(item, content);
    caption_->setText(previewWords::caption(content));
    caption_->setVisible(stack_->currentWidget() != facts_);
}

void QtPreviewWindow::showBody(const PreviewItem& item, const PreviewContent& content) {
    const auto* const image = std::get_if<ImageBody>(&content.body);
    const auto* const text = std::get_if<TextBody>(&content.body);
    const auto* const pages = std::get_if<PagesBody>(&content.body);
    // What is no longer shown takes up no memory.
    image_->setImage(image == nullptr ? QImage() : image->image);
    showPages(pages == nullptr ? QList<QImage>() : pages->pages);
    const QString words = text == nullptr ? QString() : text->text;
    if (text_->toPlainText() != words) text_->setPlainText(words);
    facts_->setFacts(content.facts, previewWords::facts(item, content.facts));
    if (image != nullptr) {
        stack_->setCurrentWidget(image_);
    } else if (text != nullptr) {
        stack_->setCurrentWidget(text_);
    } else if (pages != nullptr) {
        stack_->setCurrentWidget(pages_);
    } else {
        stack_->setCurrentWidget(facts_);
    }
}

void QtPreviewWindow::showPages(const QList<QImage>& pages) {
    const bool isSameDocument = pages.value(0).cacheKey() == pagesView_->pages().value(0).cacheKey();
    pagesView_->setPages(pages);
    if (!isSameDocument) pages_->verticalScrollBar()->setValue(0);
}

bool QtPreviewWindow::event(QEvent* event) {
    return passOn(*event) || takesKey(*event, [this](const QKeyEvent& key) { takeKey(pressedKey(key)); }) ||
           QWidget::event(event);
}

// For a moment the window system still sends keys here, although a dialog in the other window is waiting for
// them.
bool QtPreviewWindow::passOn(QEvent& event) {
    const bool isPress = event.type() == QEvent::KeyPress || event.type() == QEvent::ShortcutOverride;
    QWidget* const owner = parentWidget();
    if (!isPress || isVisible() || owner == nullptr) return false;
    QWidget* const receiver = owner->focusWidget() == nullptr ? owner : owner->focusWidget();
    QCoreApplication::sendEvent(receiver, &event);
    return true;
}

void QtPreviewWindow::inputMethodEvent(QInputMethodEvent* event) {
    event->accept();
    if (!event->commitString().isEmpty()) takeKey(keyEventFromCommit(event->commitString()));
}

void QtPreviewWindow::takeKey(const KeyEvent& key) {
    if (keyHandler_) keyHandler_(key);
}

void QtPreviewWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    // Being minimised is not being closed.
    if (!event->spontaneous() && hideHandler_) hideHandler_();
}

}  // namespace vantrel
