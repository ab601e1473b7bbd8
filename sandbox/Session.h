#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QJsonObject;

namespace sandbox {

class GlobeView;
class Log;
class OverlayFiles;
class Scenario;
class Settings;
class UserFiles;

/// What is open, so that it can be open again: platform files and the platforms that the user added, overlay
/// files with the platform that each is attached to and whether the user wants to see it, the clock and the
/// camera. An overlay file cannot name its platform, so the host keeps that.
class Session : public QObject {
    Q_OBJECT

  public:
    Session(UserFiles& files, OverlayFiles& overlays, Scenario& scenario, GlobeView& view,
            Settings& settings);

    /// Keeps it in the settings from now on, a moment after each change.
    void begin();
    /// Keeps it now, for the last time: what follows is the end of the program.
    void finish();
    /// Opens what the settings hold. What cannot be opened is named in the log, and the rest is.
    void restore();
    /// Something has changed that is kept with it.
    void keepSoon();

  signals:
    /// It was kept; what belongs to it may be, too.
    void kept();
    void restored();

  private:
    void keep();
    void open(const QJsonObject& session);
    QString text() const;

    UserFiles& files_;
    OverlayFiles& overlays_;
    Scenario& scenario_;
    GlobeView& view_;
    Settings& settings_;
    QTimer keepSoon_;
    bool keeping_ = false;
};

}  // namespace sandbox
