#include "sandbox/Palette.h"

#include <QApplication>
#include <QPalette>

namespace sandbox {

namespace {

struct Colors {
    QColor window, base, button, text, faded, tooltip, highlight, highlightedText, link;
};

QPalette paletteOf(const Colors& colors) {
    QPalette palette(colors.button, colors.window);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, colors.text);
    palette.setColor(QPalette::Base, colors.base);
    palette.setColor(QPalette::AlternateBase, colors.window);
    palette.setColor(QPalette::Button, colors.button);
    palette.setColor(QPalette::ToolTipBase, colors.tooltip);
    palette.setColor(QPalette::BrightText, Qt::red);
    palette.setColor(QPalette::Highlight, colors.highlight);
    palette.setColor(QPalette::HighlightedText, colors.highlightedText);
    palette.setColor(QPalette::Link, colors.link);
    palette.setColor(QPalette::PlaceholderText, colors.faded);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colors.faded);
    palette.setColor(QPalette::Disabled, QPalette::Base, colors.window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colors.faded);
    return palette;
}

}  // namespace

bool choosePalette(const QString& name) {
    if (name == "dark")
        QApplication::setPalette(paletteOf({.window = 0x383c42,
                                            .base = 0x1b1d21,
                                            .button = 0x4a4f57,
                                            .text = 0xe6e6e6,
                                            .faded = 0x959aa3,
                                            .tooltip = 0x4a4f57,
                                            .highlight = 0x3d7dca,
                                            .highlightedText = Qt::white,
                                            .link = 0x6cb0ff}));
    else if (name == "light")
        QApplication::setPalette(paletteOf({.window = 0xefefef,
                                            .base = Qt::white,
                                            .button = 0xefefef,
                                            .text = Qt::black,
                                            .faded = 0xa0a0a0,
                                            .tooltip = 0xffffdc,
                                            .highlight = 0x308cc6,
                                            .highlightedText = Qt::white,
                                            .link = 0x0000ee}));
    else
        return name == "system";
    return true;
}

}  // namespace sandbox
