#include "sandbox/services/ScreenTextRecord.h"

#include <QStringList>

#include "common/NumberText.h"

namespace sandbox {

namespace {

/// "0xAABBGGRR" as 0xAARRGGBB.
std::optional<std::uint32_t> readColor(const QString& text) {
    bool good = false;
    const std::uint32_t abgr = text.startsWith("0x") ? text.mid(2).toUInt(&good, 16) : 0;
    if (!good) return std::nullopt;
    return (abgr & 0xff00ff00U) | (abgr & 0xffU) << 16 | (abgr >> 16 & 0xffU);
}

bool readNumber(const QString& text, double& out) {
    const auto number = UTILS::readNumber(text.toStdString());
    if (number) out = *number;
    return number.has_value();
}

bool readFont(const QString& value, ScreenTextRecord& record) {
    const auto blank = value.lastIndexOf(' ');
    const auto size = UTILS::readNumber(value.mid(blank + 1).toStdString());
    if (blank < 0 || !size || *size < 1.0 || *size > 500.0) return false;
    record.fontFile = value.left(blank).trimmed();
    record.fontSize = static_cast<int>(*size);
    return true;
}

bool readAlignment(const QString& value, const char* letters, const Qt::Alignment (&choices)[3],
                   Qt::Alignment mask, Qt::Alignment& out) {
    for (int i = 0; i < 3; ++i) {
        if (value != QChar(letters[i])) continue;
        out = (out & ~mask) | choices[i];
        return true;
    }
    return false;
}

bool readField(const QString& name, const QString& value, ScreenTextRecord& record) {
    if (name == "Enabled") {
        double number = 0.0;
        if (!readNumber(value, number)) return false;
        record.enabled = number != 0.0;
        return true;
    }
    if (name == "Text") {
        record.text = value;
        return true;
    }
    if (name == "Font") return readFont(value, record);
    if (name == "PosX") return readNumber(value, record.x);
    if (name == "PosY") return readNumber(value, record.y);
    if (name == "TextColor") {
        const auto color = readColor(value);
        if (color) record.argb = *color;
        return color.has_value();
    }
    if (name == "HAlign") {
        return readAlignment(value, "LCR", {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight},
                             Qt::AlignHorizontal_Mask, record.alignment);
    }
    if (name == "VAlign") {
        return readAlignment(value, "TCB", {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom},
                             Qt::AlignVertical_Mask, record.alignment);
    }
    return false;
}

}  // namespace

std::optional<ScreenTextRecord> ScreenTextRecord::parse(const std::string& record, QString& error) {
    const QStringList lines = QString::fromStdString(record).split('\n');
    if (lines.first().trimmed() != "ScreenText") {
        error = "the record does not begin with \"ScreenText\"";
        return std::nullopt;
    }
    ScreenTextRecord result;
    for (const QString& line : lines.mid(1)) {
        if (line.trimmed().isEmpty()) continue;
        const QString name = line.section(' ', 0, 0, QString::SectionSkipEmpty);
        const QString type = line.section(' ', 1, 1, QString::SectionSkipEmpty);
        const QString value = line.section(' ', 2, -1, QString::SectionSkipEmpty);
        if ((type != "FLOAT64" && type != "STRING") || !readField(name, value, result)) {
            error = QString("line not understood: \"%1\"").arg(line);
            return std::nullopt;
        }
    }
    return result;
}

}  // namespace sandbox
