#pragma once

#include <QIODevice>
#include <QPaintDevice>
#include <QSize>
#include <memory>

namespace sandbox {

/// What a QPainter paints on to have it as a drawing (SVG): of 96 pixels an inch, its title given. What is
/// painted goes to the output as it comes, so that nothing of it is kept. Known are pens, brushes of one
/// colour, transformations, texts and pictures: what is painted here. (QSvgGenerator holds the whole text in
/// memory, twice.)
class SvgDevice final : public QPaintDevice {
  public:
    /// \param output open for writing; only referred to. Where it fails, QPainter::end() does.
    SvgDevice(QIODevice& output, QSize size, const QString& title);
    ~SvgDevice() override;
    SvgDevice(const SvgDevice&) = delete;
    SvgDevice& operator=(const SvgDevice&) = delete;

    QPaintEngine* paintEngine() const override;

  protected:
    int metric(PaintDeviceMetric metric) const override;

  private:
    class Engine;
    QSize size_;
    std::unique_ptr<Engine> engine_;
};

}  // namespace sandbox
