#include "sandbox/widgets/Caption.h"

namespace sandbox {

Caption Caption::parse(const std::string& caption) {
    const QString whole = QString::fromStdString(caption);
    const auto tab = whole.indexOf('\t');
    if (tab < 0) return {whole, QString()};
    return {whole.left(tab), whole.mid(tab + 1)};
}

QString Caption::inOneLine(QString name) {
    for (QChar& c : name)
        if (c.category() == QChar::Other_Control || c.isSpace()) c = ' ';
    return name;
}

QString Caption::escapedText() const {
    return escaped(text);
}

QString Caption::plain(QString text) {
    return text.replace("&&", QString(QChar(1))).remove('&').replace(QChar(1), '&');
}

}  // namespace sandbox
