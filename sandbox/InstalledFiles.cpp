#include "sandbox/InstalledFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace sandbox {

namespace {

/// \param place a path relative to the program's directory
QString fromProgram(const char* place) {
    return QDir::cleanPath(
        QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(QString::fromUtf8(place)));
}

}  // namespace

void announceDataDirectory() {
    constexpr const char* kVariable = "HALVIS_DIR";
    if (qEnvironmentVariableIsSet(kVariable)) return;
    qputenv(kVariable, QFile::encodeName(fromProgram(SANDBOX_DATA)));
}

QString defaultPlugin() {
    const QString built = fromProgram("../lib/OverlayEditor.so");
    return QFileInfo::exists(built) ? built : fromProgram(SANDBOX_PLUGIN);
}

}  // namespace sandbox
