#pragma once

#include <QJSValue>
#include <QStringList>
#include <QVariant>

#include "sandbox/script/ScriptObject.h"
#include "sandbox/script/TurnWatch.h"

namespace sandbox {

/// What a script needs besides: time, files, pictures, geodesics.
class ScriptTools : public ScriptObject {
    Q_OBJECT

  public:
    using ScriptObject::ScriptObject;

    Q_INVOKABLE void wait(int milliseconds);
    /// { clock, processor } in milliseconds. \see TurnWatch
    Q_INVOKABLE QVariantMap longestTurn();
    /// A key of the keyboard, such as "Ctrl+Z": it goes where the focus is, or to the action that it is bound
    /// to.
    Q_INVOKABLE void pressKey(const QString& key);
    Q_INVOKABLE void print(const QString& text);
    Q_INVOKABLE QStringList arguments();
    Q_INVOKABLE QString environment(const QString& name);
    Q_INVOKABLE QString scriptDirectory();
    Q_INVOKABLE void include(const QString& path);

    /// Replies to the next file dialog that has no reply yet; an empty path cancels it.
    Q_INVOKABLE void answerFileDialog(const QString& path, bool overwrite);

    Q_INVOKABLE QString readFile(const QString& path);
    Q_INVOKABLE void writeFile(const QString& path, const QString& text);
    Q_INVOKABLE void removeFile(const QString& path);
    Q_INVOKABLE bool fileExists(const QString& path);
    Q_INVOKABLE QStringList listFiles(const QString& directory);
    Q_INVOKABLE void makeDirectory(const QString& path);
    Q_INVOKABLE void setWritable(const QString& path, bool writable);
    /// A directory that goes with the program.
    Q_INVOKABLE QString temporaryDirectory();

    /// GeographicLib's { distance, azimuth } in metres and degrees, from the first to the second place.
    Q_INVOKABLE QVariantMap geodesic(double lat1, double lon1, double lat2, double lon2);
    /// GeographicLib's { lat, lon } at an azimuth and distance.
    Q_INVOKABLE QVariantMap destination(double lat, double lon, double azimuth, double distance);

    /// Saves a picture. \param what "view", "window" (with the dialogs over it) or a dialog's title
    /// \param group title of one of the dialog's group boxes; empty for all of the dialog
    Q_INVOKABLE void picture(const QString& what, const QString& path, const QString& group);

  private:
    TurnWatch turns_;
};

}  // namespace sandbox
