// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#include "sandbox/DataDirectory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace sandbox {

void announceDataDirectory() {
    constexpr const char* kVariable = "HALVIS_DIR";
    if (qEnvironmentVariableIsSet(kVariable)) return;
    const QString directory = QCoreApplication::applicationDirPath() + "/../share/halvis-sandbox";
    qputenv(kVariable, QFile::encodeName(QDir::cleanPath(directory)));
}

}  // namespace sandbox
