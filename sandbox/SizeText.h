#pragma once

#include <QSize>
#include <QStringList>

namespace sandbox {

/// "1600x1000"; an empty size for any other text.
inline QSize readSize(const QString& text) {
    const QStringList parts = text.split('x');
    if (parts.size() != 2) return {};
    return {parts[0].toInt(), parts[1].toInt()};
}

}  // namespace sandbox
