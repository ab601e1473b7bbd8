#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QString>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

#include "common/Slice.h"
#include "common/Work.h"
#include "globe/DrawList.h"

class QPointF;

namespace sandbox {

/// How a text looks.
struct TextLook {
    QFont font;
    QRgb color = 0xffffffff;
    QRgb outlineColor = 0xff000000;
    int outlineWidth = 0;  ///< pixels
};

/// The font for a font file's name ("arial.ttf", "timesbd.ttf"): Liberation for the families Arial, Times
/// and Courier, DejaVu else.
QFont fontForFile(const QString& fileName, int pixelSize);

/// Draws one line of a text, its baseline beginning at `start`.
void paintTextLine(QPainter& painter, const QPointF& start, const QString& line, const TextLook& look);

/// Draws a platform's symbol about the painter's origin, `degrees` clockwise.
void paintSymbol(QPainter& painter, bool isCross, double degrees);

/// Small pictures that stand upright on the screen: texts and platform symbols, rendered once each by Qt's
/// raster engine and then drawn at whole device pixels, so that they stay crisp. A text is cut at 2048 device
/// pixels in width and height; all together take 256 MiB at most. Icons come when they have been read.
class Sprites {
  public:
    /// Before what a frame draws. Forgets everything when the pixel density changes.
    void beginFrame(double ratio);
    /// With the text's top left corner at (x, y) in widget pixels.
    void drawText(QPainter& painter, double x, double y, const QString& text, const TextLook& look);
    /// Starting at x, with the middle of its height at y.
    void drawTextBeside(QPainter& painter, double x, double y, const QString& text, const TextLook& look);
    /// Centred on (x, y).
    void drawTextCentered(QPainter& painter, double x, double y, const QString& text, const TextLook& look);
    /// Centred on (x, y). Returns its width in widget pixels. One that has not been read yet, nor is when the
    /// slice is over, is not drawn and has none.
    double drawIcon(QPainter& painter, double x, double y, const PictureFile& file, Slice& slice);
    /// Reads those that the last frame lacks. \return whether it lacks none any more
    bool readIcons(Slice& slice);
    bool lacksIcons() const { return !comingIcons_.empty(); }
    /// The same as drawText(), but what is over the slice is not rendered for the first time: see
    /// lacksTexts().
    void drawTextOrLater(QPainter& painter, double x, double y, const QString& text, const TextLook& look,
                         Slice& slice);
    /// Whether the frame lacks a text that comes with the next one.
    bool lacksTexts() const { return lacksTexts_; }
    /// How large symbols are from here on, of their own size. None may wait for drawSymbols().
    void setSymbolScale(double scale);
    /// A platform's symbol, centred on (x, y); `turn` is clockwise on the screen, radians. Some thousands
    /// wait for others, or for drawSymbols(), to be drawn together.
    void addSymbol(QPainter& painter, double x, double y, bool isCross, double turn);
    /// Those that wait, in the order in which they were added.
    void drawSymbols(QPainter& painter);

  private:
    /// Of a sheet of symbols: a cross, then arrows for each third degree, a quarter of a pixel at their tips.
    static constexpr int kDegrees = 3;
    static constexpr int kColumns = 11;
    static constexpr int kSymbols = 1 + 360 / kDegrees;

    void forgetSymbols();
    static QString keyOf(const QString& text, const TextLook& look);
    const QImage& text(const QString& text, const TextLook& look);
    void put(QPainter& painter, double x, double y, const QImage& image) const;
    /// Keeps an image; older ones go when there are too many of them, or they take too much memory.
    const QImage& keep(const QString& key, QImage image);

    struct Icon {
        QImage image;  ///< null until it has been read
        std::unique_ptr<Work> reading;
        std::uint64_t frame = 0;  ///< the last one that it was to be seen in
    };

    bool read(const PictureFile& file, Icon& icon, Slice& slice);
    void forgetIcons();

    std::unordered_map<QString, QImage> images_;
    qsizetype bytes_ = 0;
    std::map<PictureFile, Icon> icons_;
    /// Those that have not been read.
    std::set<PictureFile> comingIcons_;
    bool lacksTexts_ = false;
    std::uint64_t frame_ = 0;
    double ratio_ = 1.0;
    double symbolScale_ = 1.0;
    QImage sheet_;
    std::bitset<kSymbols> onSheet_;
    QPixmap shownSheet_;  ///< what painters draw from; null when the sheet has more
    std::vector<QPainter::PixmapFragment> symbols_;
};

}  // namespace sandbox
