#include "sandbox/FirstSteps.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace sandbox {

namespace {

constexpr int kDistanceToEdge = 16;

}  // namespace

FirstSteps::FirstSteps(QWidget& view) : QFrame(&view) {
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    auto* text = new QLabel(
        "<b>First steps</b><ol style=\"margin-left: 16px; -qt-list-indent: 0\">"
        "<li>Plug-ins &gt; Overlay Editor... opens the editor.</li>"
        "<li>Pick a kind of shape in its \"Shape:\" menu.</li>"
        "<li>Press on the globe, drag, release: it is drawn.</li>"
        "<li>Type exact numbers; save it with \"Save As...\".</li></ol>"
        "Drag turns the globe, the wheel zooms.<br>Files can be dropped on the window.");
    text->setTextFormat(Qt::RichText);
    auto* close = new QPushButton("Got &it");
    connect(close, &QPushButton::clicked, this, [this] {
        emit understood();
        deleteLater();
    });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(close, 0, Qt::AlignRight);
    view.installEventFilter(this);
    adjustSize();
    place();
    show();
}

void FirstSteps::place() {
    move(kDistanceToEdge, parentWidget()->height() - height() - kDistanceToEdge);
}

bool FirstSteps::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Resize) place();
    return false;
}

}  // namespace sandbox
