#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <string>

namespace sandbox {

/// The record of a screen text, read.
struct ScreenTextRecord {
    bool enabled = true;
    QString text;
    QString fontFile = QStringLiteral("arial.ttf");
    int fontSize = 14;
    double x = 0.0;  ///< pixels from the corner that the alignments name
    double y = 0.0;
    std::uint32_t argb = 0xffffffff;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignTop;

    /// Reads lines "ScreenText", then "Field TYPE value" each.
    /// \return nothing, with the reason in `error`, for a text that is no such record
    static std::optional<ScreenTextRecord> parse(const std::string& record, QString& error);
};

}  // namespace sandbox
