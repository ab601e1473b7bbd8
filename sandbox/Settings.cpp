#include "sandbox/Settings.h"

#include <QFile>
#include <QStandardPaths>
#include <map>

#include "common/Notify.h"
#include "sandbox/Log.h"

namespace sandbox {

namespace {

QString ownPlace() {
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + "/settings.ini";
}

/// A copy of what cannot be read before it is written anew. \return its name; empty when there is none
QString keepDamaged(const QString& file) {
    for (int i = 1; i <= 99; ++i) {
        const QString copy = QString("%1.damaged%2").arg(file).arg(i > 1 ? QString::number(i) : QString());
        if (QFile::copy(file, copy)) return copy;
        if (!QFile::exists(copy)) break;
    }
    return {};
}

}  // namespace

Settings::Settings(const QString& file, Log& log)
    : settings_(std::make_unique<QSettings>(file.isEmpty() ? ownPlace() : file, QSettings::IniFormat)),
      log_(log) {
    flushSoon_.setSingleShot(true);
    flushSoon_.setInterval(500);
    connect(&flushSoon_, &QTimer::timeout, this, &Settings::flush);
    if (settings_->status() == QSettings::FormatError) beginAnew();
}

Settings::~Settings() {
    flush();
}

void Settings::beginAnew() {
    const QString name = fileName();
    const QString copy = keepDamaged(name);
    log_.add(halNotify::Error, "host",
             QString("settings file %1 is damaged: its values may be lost%2")
                 .arg(name, copy.isEmpty() ? QString() : "; it is kept as " + copy));
    if (copy.isEmpty()) return;
    // Its object would call everything damaged for ever.
    std::map<QString, QVariant> values;
    for (const QString& key : settings_->allKeys()) values[key] = settings_->value(key);
    settings_.reset();
    QFile::resize(name, 0);
    settings_ = std::make_unique<QSettings>(name, QSettings::IniFormat);
    for (const auto& [key, value] : values) settings_->setValue(key, value);
}

QString Settings::value(const QString& key) const {
    return settings_->value(key).toString();
}

void Settings::setValue(const QString& key, const QString& value) {
    if (settings_->contains(key) && settings_->value(key).toString() == value) return;
    settings_->setValue(key, value);
    flushSoon_.start();
}

void Settings::flush() {
    flushSoon_.stop();
    settings_->sync();
    if (settings_->status() == QSettings::NoError || reported_) return;
    reported_ = true;
    log_.add(halNotify::Error, "host",
             QString("settings file %1 cannot be written: settings are not kept").arg(fileName()));
}

}  // namespace sandbox
