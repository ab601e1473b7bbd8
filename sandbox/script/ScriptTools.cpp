#include "sandbox/script/ScriptTools.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <cstdio>

#include <GeographicLib/Geodesic.hpp>

#include "sandbox/Host.h"
#include "sandbox/script/Picture.h"
#include "sandbox/script/ScriptRun.h"

namespace sandbox {

void ScriptTools::wait(int milliseconds) {
    step([&] {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    });
}

QVariantMap ScriptTools::longestTurn() {
    const TurnWatch::Longest longest = turns_.take();
    return {{"clock", longest.clock}, {"processor", longest.processor}};
}

void ScriptTools::pressKey(const QString& key) {
    step([&] {
        const QKeySequence sequence(key);
        if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown)
            throw ScriptError{QString("\"%1\" is no key").arg(key)};
        QWidget* window = QApplication::activePopupWidget();
        if (!window) window = QApplication::activeWindow();
        if (!window) window = &host().window();
        QTest::keyClick(window->windowHandle(), sequence[0].key(), sequence[0].keyboardModifiers());
        run().settle();
    });
}

void ScriptTools::print(const QString& text) {
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

QStringList ScriptTools::arguments() {
    return run().arguments();
}

QString ScriptTools::environment(const QString& name) {
    return qEnvironmentVariable(qPrintable(name));
}

QString ScriptTools::scriptDirectory() {
    return QFileInfo(run().file()).absolutePath();
}

void ScriptTools::include(const QString& path) {
    step([&] { run().include(path); });
}

void ScriptTools::answerFileDialog(const QString& path, bool overwrite) {
    run().queueAnswer({path.isEmpty() ? path : QFileInfo(path).absoluteFilePath(), overwrite});
}

QString ScriptTools::readFile(const QString& path) {
    return step([&] {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) throw ScriptError{path + ": " + file.errorString()};
        return QString::fromUtf8(file.readAll());
    });
}

void ScriptTools::writeFile(const QString& path, const QString& text) {
    step([&] {
        QFile file(path);
        const QByteArray bytes = text.toUtf8();
        const auto require = [&](bool done) {
            if (!done) throw ScriptError{path + ": " + file.errorString()};
        };
        require(file.open(QIODevice::WriteOnly));
        // Where only a part is written, the next one fails, and tells why.
        for (qsizetype done = 0; done < bytes.size();) {
            const qint64 count = file.write(bytes.constData() + done, bytes.size() - done);
            require(count > 0);
            done += count;
        }
        require(file.flush());
    });
}

void ScriptTools::removeFile(const QString& path) {
    step([&] {
        QFile file(path);
        if (!file.remove()) throw ScriptError{path + ": " + file.errorString()};
    });
}

bool ScriptTools::fileExists(const QString& path) {
    return QFileInfo::exists(path);
}

QStringList ScriptTools::listFiles(const QString& directory) {
    return QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
}

void ScriptTools::makeDirectory(const QString& path) {
    step([&] {
        if (!QDir().mkpath(path)) throw ScriptError{path + " cannot be made"};
    });
}

void ScriptTools::setWritable(const QString& path, bool writable) {
    step([&] {
        auto permissions = QFile::permissions(path);
        permissions.setFlag(QFile::WriteOwner, writable);
        if (!QFile::setPermissions(path, permissions)) throw ScriptError{path + ": permissions not changed"};
    });
}

QString ScriptTools::temporaryDirectory() {
    auto* directory = new QTemporaryDir;
    // Removed with the last object of the application.
    connect(this, &QObject::destroyed, [directory] { delete directory; });
    return directory->path();
}

QVariantMap ScriptTools::geodesic(double lat1, double lon1, double lat2, double lon2) {
    double distance = 0.0;
    double azimuth1 = 0.0;
    double azimuth2 = 0.0;
    GeographicLib::Geodesic::WGS84().Inverse(lat1, lon1, lat2, lon2, distance, azimuth1, azimuth2);
    return {{"distance", distance}, {"azimuth", azimuth1}};
}

QVariantMap ScriptTools::destination(double lat, double lon, double azimuth, double distance) {
    double lat2 = 0.0;
    double lon2 = 0.0;
    GeographicLib::Geodesic::WGS84().Direct(lat, lon, azimuth, distance, lat2, lon2);
    return {{"lat", lat2}, {"lon", lon2}};
}

void ScriptTools::picture(const QString& what, const QString& path, const QString& group) {
    step([&] {
        run().settle();
        const QImage image = takePicture(host(), what, group);
        if (image.isNull())
            throw ScriptError{
                QString("there is no window \"%1\"").arg(group.isEmpty() ? what : what + " > " + group)};
        QDir().mkpath(QFileInfo(path).absolutePath());
        if (!image.save(path)) throw ScriptError{path + " cannot be written"};
    });
}

}  // namespace sandbox
