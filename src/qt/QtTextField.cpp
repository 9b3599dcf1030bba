#include "qt/QtTextField.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "base/Precondition.h"
#include "qt/QtCanvas.h"
#include "qt/QtFileNameText.h"
#include "qt/QtInputHistory.h"
#include "qt/QtKeys.h"

namespace vantrel {

namespace {

constexpr int sideMargin = 3;  // points between the frame and the text

/// Keys that the field's owner decides about, wherever the text cursor stands.
bool isOwnersKey(Key key) {
    return key == Key::returnKey || key == Key::keypadEnter || key == Key::escape || key == Key::tab ||
           (key >= Key::f1 && key <= Key::f10);
}

class LineEdit final : public QLineEdit {
public:
    using QLineEdit::QLineEdit;

    TextField::KeyHandler keyHandler;

protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
            return QLineEdit::event(event);
        const KeyEvent key = pressedKey(*static_cast<QKeyEvent*>(event));
        if (event->type() == QEvent::ShortcutOverride) {
            // What the main menu wants is taken before; every other key is for the field or its owner.
            event->accept();
            return true;
        }
        if (isOwnersKey(key.key)) {
            event->accept();
            // A copy, since the handler may destroy the field and with it the original.
            const TextField::KeyHandler handler = keyHandler;
            if (handler) handler(key);
            return true;
        }
        QLineEdit::event(event);
        // What the editor does not use must not reach the content behind it.
        event->accept();
        return true;
    }

    void paintEvent(QPaintEvent* event) override {
        QLineEdit::paintEvent(event);
        QPainter painter(this);
        const DeviceGrid grid(painter.deviceTransform());
        const Rect outline =
            Rect{0, 0, static_cast<double>(width()), static_cast<double>(height())}.inset(0.5);
        for (const QRect& pixels : grid.outline(outline, 1))
            painter.fillRect(grid.toPoints(pixels), palette().color(QPalette::Text));
    }
};

class QtTextField final : public TextField {
public:
    QtTextField(QtContentWidget& content, const TextFieldStyle& style)
        : content_(&content), box_(new QWidget(&content)), edit_(new LineEdit(box_)) {
        edit_->setFont(qtFont(style.font));
        edit_->setFrame(false);
        edit_->setTextMargins(sideMargin, 0, sideMargin, 0);
        edit_->setLayoutDirection(Qt::LeftToRight);
        QPalette palette = edit_->palette();
        palette.setColor(QPalette::Text, qtColor(style.textColor));
        palette.setColor(QPalette::Base, qtColor(style.background));
        palette.setColor(QPalette::Highlight, qtColor(style.textColor));
        palette.setColor(QPalette::HighlightedText, qtColor(style.background));
        edit_->setPalette(palette);
    }

    ~QtTextField() override {
        if (!edit_) return;
        if (edit_->hasFocus() && content_) content_->focusContent();
        edit_->keyHandler = nullptr;
        box_->hide();
        // Later, since one of the edit's own events may still be in progress.
        box_->deleteLater();
    }

    void setFrame(const Rect& inWindow) override {
        if (!edit_) return;
        box_->setGeometry(DeviceGrid(QTransform()).area(inWindow));
        edit_->setGeometry(box_->rect());
        box_->show();
        box_->raise();
    }

    std::string text() const override {
        // The edit may show less than it was given: its length is limited.
        if (!edit_ || edit_->text() == shown_) return original_;
        return bytesOf(edit_->text());
    }

    void setText(const std::string& text) override {
        original_ = text;
        if (!edit_) return;
        edit_->setText(textOf(text));
        shown_ = edit_->text();
    }

    void setAccessibleName(const std::string& name) override {
        if (edit_) edit_->setAccessibleName(QString::fromStdString(name));
    }

    void focusAndSelectAll() override {
        if (!edit_) return;
        // Another window of the program may have the keyboard, such as the preview.
        if (!edit_->isActiveWindow()) edit_->activateWindow();
        edit_->setFocus(Qt::OtherFocusReason);
        edit_->selectAll();
    }

    void setKeyHandler(KeyHandler handler) override {
        if (edit_) edit_->keyHandler = std::move(handler);
    }

private:
    QPointer<QtContentWidget> content_;
    /// What assistive technology finds inside the dialog; holds nothing but the edit. Both belong to the
    /// content, and go with it if that is destroyed first.
    QPointer<QWidget> box_;
    QPointer<LineEdit> edit_;
    std::string original_;
    QString shown_;  ///< how the edit shows original_
};

}  // namespace

std::unique_ptr<TextField> makeQtTextField(QtContentWidget& content, const TextFieldStyle& style) {
    return std::make_unique<QtTextField>(content, style);
}

std::unique_ptr<TextField> QtTextFieldFactory::makeTextField(const TextFieldStyle& style) {
    QtContentWidget* const content = application_.content();
    precondition(content != nullptr, "a text field needs a window");
    return makeQtTextField(*content, style);
}

}  // namespace vantrel
