#pragma once

#include <QStringList>
#include <QVariant>

#include "sandbox/script/ScriptObject.h"

namespace sandbox {

/// A script's access to the scenario, overlays, log, settings and plug-ins. Angles are degrees here,
/// lengths metres, times seconds.
class ScriptScene : public ScriptObject {
    Q_OBJECT

  public:
    using ScriptObject::ScriptObject;

    /// \param values name, icon, lat, lon, alt, heading, pitch, roll (degrees), speed (m/s)
    Q_INVOKABLE double addPlatform(const QVariantMap& values);
    Q_INVOKABLE void movePlatform(double id, const QVariantMap& values);
    Q_INVOKABLE void removePlatform(double id);
    Q_INVOKABLE QVariantList platforms();
    /// \param why "cleared", "replaced" or "closed"
    Q_INVOKABLE void clearScenario(const QString& why);
    Q_INVOKABLE double time();
    Q_INVOKABLE void setTime(double seconds);

    /// { name, path, text, shown, platform, stream } of each overlay, files first.
    Q_INVOKABLE QVariantList overlays();
    Q_INVOKABLE bool openOverlay(const QString& path, double platform);
    Q_INVOKABLE QVariantList screenTexts();

    /// { severity, source, text } of each entry.
    Q_INVOKABLE QVariantList log();
    Q_INVOKABLE QString setting(const QString& key);
    Q_INVOKABLE void setSetting(const QString& key, const QString& value);
    /// Keeps what is open in the settings, and opens what they hold.
    Q_INVOKABLE void keepSession();
    Q_INVOKABLE void restoreSession();
    Q_INVOKABLE QString settingsFile();
    Q_INVOKABLE QString status();

    /// { name, path, description, author, version, url, contact } of each started plug-in.
    Q_INVOKABLE QVariantList plugins();
    Q_INVOKABLE bool openPlugin(const QString& path);
    /// { gone, leftBehind }: whether the library left the process, and what the host had to drop.
    Q_INVOKABLE QVariantMap closePlugin(const QString& name);

    Q_INVOKABLE void expectMisuse();
    Q_INVOKABLE QStringList takeMisuses();
};

}  // namespace sandbox
