#include "sandbox/OverlayTextWindow.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTextBlock>
#include <QVBoxLayout>

#include "sandbox/OverlayFiles.h"

namespace sandbox {

OverlayTextWindow::OverlayTextWindow(const LoadedOverlay& overlay, QWidget* parent) : QDialog(parent) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QFileInfo(QString::fromStdString(overlay.path)).fileName());
    resize(640, 480);

    auto* text = new QPlainTextEdit;
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setPlainText(QString::fromStdString(overlay.text));

    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(text);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    if (overlay.messages.empty()) return;

    auto* messages = new QListWidget;
    constexpr int most = 1000;
    for (const auto& message : overlay.messages) {
        if (messages->count() == most) break;
        auto* item = new QListWidgetItem(
            QString("%1: %2").arg(message.line).arg(QString::fromStdString(message.text)), messages);
        item->setData(Qt::UserRole, static_cast<int>(message.line));
    }
    connect(messages, &QListWidget::currentItemChanged, text, [text](const QListWidgetItem* item) {
        if (!item) return;
        const QTextBlock line = text->document()->findBlockByNumber(item->data(Qt::UserRole).toInt() - 1);
        QTextCursor cursor(line);
        cursor.select(QTextCursor::LineUnderCursor);
        text->setTextCursor(cursor);
        text->centerCursor();
    });
    splitter->addWidget(messages);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    messages->setCurrentRow(0);
}

}  // namespace sandbox
