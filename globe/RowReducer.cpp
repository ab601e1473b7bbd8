#include "globe/RowReducer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace sandbox {

RowReducer::RowReducer(const QSize& from, const QSize& to)
    : from_(from),
      to_(to),
      narrowed_(4 * static_cast<std::size_t>(to.width())),
      sums_(4 * static_cast<std::size_t>(to.width())) {
    for (int x = 0; x < to.width(); ++x) columns_.push_back(cover(x, from.width(), to.width()));
}

RowReducer::Cover RowReducer::cover(int place, int from, int to) {
    // Less than this part of a pixel is but rounding.
    constexpr double kNothing = 1e-3;
    const double scale = static_cast<double>(from) / to;
    const double begin = place * scale;
    const double end = begin + scale;
    const int first = static_cast<int>(begin + kNothing);
    const int last = std::clamp(static_cast<int>(std::ceil(end - kNothing)) - 1, first, from - 1);
    const auto ofFirst = static_cast<float>(std::min(first + 1.0, end) - std::max<double>(first, begin));
    return {first, last, ofFirst, first == last ? ofFirst : static_cast<float>(std::min(end - last, 1.0))};
}

void RowReducer::narrow(const unsigned char* row) {
    float* out = narrowed_.data();
    for (const Cover& column : columns_) {
        const unsigned char* pixel = row + 4 * static_cast<std::ptrdiff_t>(column.first);
        for (int i = 0; i < 4; ++i) out[i] = column.ofFirst * static_cast<float>(pixel[i]);
        for (int x = column.first + 1; x <= column.last; ++x) {
            pixel += 4;
            const float share = x == column.last ? column.ofLast : 1.0F;
            for (int i = 0; i < 4; ++i) out[i] += share * static_cast<float>(pixel[i]);
        }
        out += 4;
    }
}

void RowReducer::add(float share) {
    for (std::size_t i = 0; i < sums_.size(); ++i) sums_[i] += share * narrowed_[i];
}

void RowReducer::finish(unsigned char* row) {
    const double area = (static_cast<double>(from_.width()) / to_.width()) *
                        (static_cast<double>(from_.height()) / to_.height());
    const auto part = static_cast<float>(1.0 / area);
    for (std::size_t i = 0; i < sums_.size(); ++i)
        row[i] = static_cast<unsigned char>(std::min(sums_[i] * part + 0.5F, 255.0F));
    std::ranges::fill(sums_, 0.0F);
    ++made_;
}

QImage RowReducer::take(const QImage& rows) {
    // The last row of one may be the first of the next.
    const int before = made_;
    QImage result(to_.width(),
                  1 + static_cast<int>(qint64{rows.height()} * to_.height() / from_.height() + 1),
                  QImage::Format_RGBA8888_Premultiplied);
    for (int y = 0; y < rows.height(); ++y, ++came_) {
        narrow(rows.constScanLine(y));
        while (made_ < to_.height()) {
            const Cover covered = cover(made_, from_.height(), to_.height());
            if (covered.first > came_) break;
            add(came_ == covered.first ? covered.ofFirst : came_ == covered.last ? covered.ofLast : 1.0F);
            if (came_ < covered.last) break;
            finish(result.scanLine(made_ - before));
        }
    }
    return made_ > before ? result.copy(0, 0, to_.width(), made_ - before) : QImage();
}

}  // namespace sandbox
