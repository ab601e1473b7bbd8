#pragma once

#include <QString>
#include <string>

namespace sandbox {

/// A caption of the host contract: the shown text, a tab, the tooltip.
struct Caption {
    QString text;
    QString tooltip;

    static Caption parse(const std::string& caption);

    /// The text for widgets that take "&" as the mark of a shortcut.
    QString escapedText() const;
    /// A name as one line of a list or a menu shows it: what breaks lines or is a sign to Qt becomes a blank.
    static QString inOneLine(QString name);
    static QString escaped(QString text) { return text.replace('&', "&&"); }
    /// Of such a widget's text what is read: without the mark.
    static QString plain(QString text);
};

}  // namespace sandbox
