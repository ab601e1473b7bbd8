#include "sandbox/PlainText.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>

namespace sandbox {

PlainText::PlainText() : QObject(QCoreApplication::instance()) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool PlainText::eventFilter(QObject* object, QEvent* event) {
    // Before a label is seen for the first time. A tooltip is one, too.
    if (event->type() == QEvent::Polish)
        if (auto* const label = qobject_cast<QLabel*>(object); label && label->textFormat() == Qt::AutoText)
            label->setTextFormat(Qt::PlainText);
    return QObject::eventFilter(object, event);
}

}  // namespace sandbox
