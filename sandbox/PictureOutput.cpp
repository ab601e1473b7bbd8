#include "sandbox/PictureOutput.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>
#include <cerrno>

#include "common/SaveFile.h"
#include "common/TemporaryFile.h"

namespace sandbox {
namespace {

class FileDevice final : public QIODevice {
  public:
    explicit FileDevice(UTILS::TemporaryFile& file) : file_(file) { open(WriteOnly | Unbuffered); }
    /// Of the first write that failed, 0 for none.
    int error() const { return error_; }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        if (error_ == 0) error_ = file_.write({data, static_cast<std::size_t>(size)});
        return error_ == 0 ? size : -1;
    }

  private:
    UTILS::TemporaryFile& file_;
    int error_ = 0;
};

}  // namespace

QString savePicture(const QImage& picture, const QString& file) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, QFileInfo(file).suffix().toLatin1());
    if (!writer.write(picture)) return writer.errorString();
    return QString::fromStdString(UTILS::saveFile(
        file.toLocal8Bit().toStdString(), {bytes.constData(), static_cast<std::size_t>(bytes.size())}));
}

QString savePicture(const std::function<bool(QIODevice& device)>& draw, const QString& file) {
    bool failed = false;
    const std::string error =
        UTILS::saveFile(file.toLocal8Bit().toStdString(), [&](UTILS::TemporaryFile& temporary) {
            FileDevice device(temporary);
            failed = !draw(device) && device.error() == 0;
            return failed ? ECANCELED : device.error();
        });
    return failed ? QString("it could not be drawn") : QString::fromStdString(error);
}

}  // namespace sandbox
