// The least that a window of rows can cost with this toolkit: what `bench/felt-speed` compares with. It shows
// the names in the current folder as lines of text, with a bar on one of them that Down moves.

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QPainter>
#include <QWidget>
#include <algorithm>

namespace {

constexpr int rowHeight = 20;

class FloorWindow final : public QWidget {
public:
    FloorWindow() {
        setWindowTitle("floor");
        setAttribute(Qt::WA_OpaquePaintEvent);
        resize(1100, 720);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(0, 0, 168));
        QFont font("DejaVu Sans Mono");
        font.setPixelSize(13);
        painter.setFont(font);
        const int rows = std::min(height() / rowHeight, static_cast<int>(names_.size()));
        for (int row = 0; row < rows; ++row) {
            const QRect line(0, row * rowHeight, width(), rowHeight);
            if (row == cursor_) painter.fillRect(line, QColor(0, 171, 171));
            painter.setPen(row == cursor_ ? Qt::black : Qt::white);
            painter.drawText(line, names_[row]);
        }
    }

    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() != Qt::Key_Down) return;
        ++cursor_;
        update();
    }

private:
    const QStringList names_ = QDir::current().entryList(QDir::AllEntries);
    int cursor_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    FloorWindow window;
    window.show();
    return QApplication::exec();
}
