#include "sandbox/widgets/HostWidget.h"

#include <QFontMetrics>
#include <QLineEdit>
#include <algorithm>

#include "pi/HostStructures.h"
#include "sandbox/Plugin.h"

namespace sandbox {

HostWidget::~HostWidget() {
    if (parent_) parent_->release(*this);
    if (!widget_) return;
    // What is hidden loses the focus and would tell of it; the one to tell is half gone.
    widget_->disconnect();
    widget_->hide();
    // The widget may be in the middle of one of its own signals.
    widget_->deleteLater();
}

QString HostWidget::describe() const {
    const QString name = caption().trimmed();
    return name.isEmpty() ? QString(kind()) : QString("%1 \"%2\"").arg(kind(), name);
}

void HostWidget::setShown(bool shown) {
    if (widget_) widget_->setVisible(shown);
}

bool HostWidget::isShown() const {
    const QWidget* widget = widget_;
    for (; widget && !widget->isWindow(); widget = widget->parentWidget())
        if (widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide)) return false;
    return widget && widget->isVisible();
}

bool HostWidget::wantsWidth() const {
    return (widget_->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag) != 0;
}

bool HostWidget::wantsHeight() const {
    return (widget_->sizePolicy().verticalPolicy() & QSizePolicy::ExpandFlag) != 0;
}

void HostWidget::setRoom(int columns, int rows) {
    constexpr int frame = 8;
    const QFontMetrics metrics = widget_->fontMetrics();
    if (columns > 0) widget_->setMinimumWidth(columns * metrics.averageCharWidth() + frame);
    if (rows > 0) widget_->setMinimumHeight(rows * metrics.lineSpacing());
}

void HostWidget::activate(void* data) {
    if (!callback_) return;
    owner()->enter("callback of " + describe(),
                   [callback = callback_, wrapper = wrapper_, data] { callback->Call(wrapper, data); });
}

ContainerWidget::~ContainerWidget() {
    for (HostWidget* child : children_) child->parent_ = nullptr;
}

void ContainerWidget::adopt(HostWidget& child) {
    child.parent_ = this;
    children_.push_back(&child);
    place(child);
}

void ContainerWidget::release(HostWidget& child) {
    std::erase(children_, &child);
    removed(child);
    child.parent_ = nullptr;
}

void ContainerWidget::setRoom(int columns, int rows) {
    HostWidget::setRoom(columns, 0);
    constexpr int spacing = 6;
    if (rows > 0) widget()->setMinimumHeight(rows * (QLineEdit().sizeHint().height() + spacing) - spacing);
}

void ContainerWidget::setFilling(std::uint32_t layoutOptions) {
    fillsWidth_ = (layoutOptions & PIGUI::PILayoutFillX) != 0;
    fillsHeight_ = (layoutOptions & PIGUI::PILayoutFillY) != 0;
    // Without the bit a container is never larger than its contents, whatever stands in it.
    const auto policy = [](bool fills) { return fills ? QSizePolicy::Expanding : QSizePolicy::Maximum; };
    widget()->setSizePolicy(policy(fillsWidth_), policy(fillsHeight_));
}

}  // namespace sandbox
