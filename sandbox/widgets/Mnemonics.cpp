#include "sandbox/widgets/Mnemonics.h"

#include <QAbstractButton>
#include <QSet>
#include <QToolButton>
#include <QWidget>

#include "sandbox/widgets/Caption.h"

namespace sandbox {

namespace {

/// The text without marks.
QString plain(QString text) {
    return text.replace("&&", QString(QChar(1))).remove('&').replace(QChar(1), '&');
}

/// Where in the text a free letter stands; -1 for nowhere.
qsizetype freeLetter(const QString& text, const QSet<QChar>& taken) {
    for (const bool first : {true, false})
        for (qsizetype i = 0; i < text.size(); ++i) {
            const bool begins = i == 0 || text[i - 1] == ' ';
            if (begins == first && text[i].isLetter() && text[i].unicode() < 128 &&
                !taken.contains(text[i].toLower()))
                return i;
        }
    return -1;
}

}  // namespace

void assignMnemonics(QWidget& window) {
    QSet<QChar> taken;
    for (auto* button : window.findChildren<QAbstractButton*>()) {
        if (qobject_cast<QToolButton*>(button) || !button->isVisibleTo(&window)) continue;
        const QString text = plain(button->text());
        const qsizetype at = freeLetter(text, taken);
        QString marked = Caption::escaped(text);
        if (at >= 0) {
            taken.insert(text[at].toLower());
            marked = Caption::escaped(text.left(at)) + '&' + Caption::escaped(text.mid(at));
        }
        if (button->text() != marked) button->setText(marked);
    }
}

void pressButton(QWidget& window, const char* text) {
    for (auto* button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && button->isEnabled() && plain(button->text()) == QLatin1String(text)) {
            button->setFocus(Qt::ShortcutFocusReason);
            button->click();
            return;
        }
}

}  // namespace sandbox
