#pragma once

#include <QObject>
#include <QSettings>
#include <QTimer>
#include <memory>

namespace sandbox {

class Log;

/// The settings store: texts under keys, in one file that is kept between runs. A file that cannot be
/// written is reported to the log, once; the values then hold for this run. One that is damaged is copied
/// before what can be read of it is written anew.
class Settings : public QObject {
    Q_OBJECT

  public:
    /// \param file an INI file; empty for the user's own place
    Settings(const QString& file, Log& log);
    ~Settings() override;

    QString value(const QString& key) const;
    void setValue(const QString& key, const QString& value);
    QString fileName() const { return settings_->fileName(); }
    /// Writes what has changed.
    void flush();

  private:
    void beginAnew();

    std::unique_ptr<QSettings> settings_;
    QTimer flushSoon_;
    Log& log_;
    bool reported_ = false;
};

}  // namespace sandbox
