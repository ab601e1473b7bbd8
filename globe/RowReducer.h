#pragma once

#include <QImage>
#include <QSize>
#include <vector>

namespace sandbox {

/// Makes a picture smaller while its rows come: each pixel becomes the mean of what it covers.
class RowReducer {
  public:
    /// `to`: no larger than `from` in either direction, and not empty.
    RowReducer(const QSize& from, const QSize& to);
    /// The next rows of the picture, RGBA8888_Premultiplied. \return those that are ready; null when there
    /// are none yet
    QImage take(const QImage& rows);

  private:
    /// What a pixel of the smaller picture covers in one direction: all from the first to the last but for a
    /// part of both.
    struct Cover {
        int first;
        int last;
        float ofFirst;
        float ofLast;  ///< the same where they are one
    };
    static Cover cover(int place, int from, int to);

    void narrow(const unsigned char* row);
    void add(float share);
    void finish(unsigned char* row);

    QSize from_;
    QSize to_;
    std::vector<Cover> columns_;
    // As wide as the smaller picture, four numbers a pixel.
    std::vector<float> narrowed_;  ///< the row that came last
    std::vector<float> sums_;      ///< of the row that is being made
    int came_ = 0;
    int made_ = 0;
};

}  // namespace sandbox
