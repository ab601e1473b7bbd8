#include "sandbox/OverlayTextWindow.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <string_view>

#include "sandbox/OverlayFiles.h"

namespace sandbox {

namespace {

/// What is longer an editor of lines does not show in any time.
constexpr std::size_t kLongestLine = 10'000;  // bytes

/// Up to so many bytes of the text from a place, in whole lines; moves the place behind them.
std::string someLines(std::string_view text, std::size_t& at, std::size_t bytes) {
    std::string lines;
    while (at < text.size() && lines.size() < bytes) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::size_t shown = std::min(end - at, kLongestLine);
        const auto isInside = [&](std::size_t i) {
            return (static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U;
        };
        while (at + shown < end && shown > 0 && isInside(at + shown)) --shown;
        lines += text.substr(at, shown);
        if (at + shown < end) lines += " ... (" + std::to_string(end - at - shown) + " bytes more)";
        if (end < text.size()) lines += '\n';
        at = end + 1;
    }
    return lines;
}

Work fill(QTextDocument& document, std::string text) {
    constexpr std::size_t kBytes = 5000;
    constexpr std::size_t kInAUnit = 5;
    QTextCursor cursor(&document);
    for (std::size_t at = 0; at < text.size();) {
        cursor.insertText(QString::fromStdString(someLines(text, at, kBytes)));
        co_yield kBytes / kInAUnit;
    }
}

}  // namespace

OverlayTextWindow::OverlayTextWindow(const LoadedOverlay& overlay, QWidget* parent) : QDialog(parent) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QFileInfo(QString::fromStdString(overlay.path)).fileName());
    resize(640, 480);

    auto* text = new QPlainTextEdit;
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setUndoRedoEnabled(false);
    QTextCursor reader(text->document());
    reader.setKeepPositionOnInsert(true);
    text->setTextCursor(reader);

    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(text);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    if (overlay.messages.empty()) {
        filling_.begin(fill(*text->document(), overlay.text), [] {});
        return;
    }

    auto* messages = new QListWidget;
    constexpr int most = 1000;
    for (const auto& message : overlay.messages) {
        if (messages->count() == most) break;
        auto* item = new QListWidgetItem(
            QString("%1: %2").arg(message.line).arg(QString::fromStdString(message.text)), messages);
        item->setData(Qt::UserRole, static_cast<int>(message.line));
    }
    const auto showLine = [text](const QListWidgetItem* item) {
        const int number = item ? item->data(Qt::UserRole).toInt() - 1 : -1;
        const QTextBlock line = text->document()->findBlockByNumber(number);
        if (!line.isValid()) return;
        QTextCursor cursor(line);
        cursor.select(QTextCursor::LineUnderCursor);
        text->setTextCursor(cursor);
        text->centerCursor();
    };
    connect(messages, &QListWidget::currentItemChanged, text, showLine);
    splitter->addWidget(messages);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    messages->setCurrentRow(0);
    filling_.begin(fill(*text->document(), overlay.text), [text, messages, showLine] {
        if (!text->textCursor().hasSelection()) showLine(messages->currentItem());
    });
}

}  // namespace sandbox
