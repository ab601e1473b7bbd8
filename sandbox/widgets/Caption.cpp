#include "sandbox/widgets/Caption.h"

#include <QTextDocument>
#include <Qt>

namespace sandbox {

Caption Caption::parse(const std::string& caption) {
    const QString whole = QString::fromStdString(caption);
    const auto tab = whole.indexOf('\t');
    if (tab < 0) return {whole, QString()};
    const QString tooltip = whole.mid(tab + 1);
    // Tooltips are plain text; Qt would read markup out of them.
    return {whole.left(tab), Qt::mightBeRichText(tooltip) ? tooltip.toHtmlEscaped() : tooltip};
}

QString Caption::escapedText() const {
    return escaped(text);
}

}  // namespace sandbox
