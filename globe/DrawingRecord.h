#pragma once

#include <QBrush>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPen>
#include <QSize>
#include <QTransform>
#include <cstddef>
#include <memory>
#include <vector>

#include "common/Work.h"

namespace sandbox {

/// What a painter paints, stroke by stroke, so that it can be painted in slices. It knows no clipping.
class DrawingRecord final : public QPaintDevice {
  public:
    explicit DrawingRecord(const QSize& size);
    ~DrawingRecord() override;
    QPaintEngine* paintEngine() const override;

    /// About how long a stroke takes at most, in units (\see Slice), when the whole is painted `scale` times
    /// as large.
    double hardestStroke(double scale) const;
    /// Paints it on an image, `scale` times as large. What is given is to outlive the work.
    Work paint(QImage& image, double scale) const;

  protected:
    int metric(PaintDeviceMetric metric) const override;

  private:
    class Engine;
    struct Look {
        QPen pen;
        QBrush brush;
        QPointF brushOrigin;
        QTransform transform;
        double opacity = 1.0;
        QPainter::RenderHints hints;
        QPainter::CompositionMode mode = QPainter::CompositionMode_SourceOver;
    };
    /// A path, or an image.
    struct Stroke {
        std::size_t look;
        QPainterPath path;
        QImage image;
        QRectF target;
        QRectF source;
        // In pixels of the recorded size.
        QSizeF extent;
        double length;  ///< of the path and of what the pen makes of it, across and down
    };
    static double cost(const Stroke& stroke, double scale);

    QSize size_;
    std::unique_ptr<Engine> engine_;
    std::vector<Look> looks_;
    std::vector<Stroke> strokes_;
};

}  // namespace sandbox
