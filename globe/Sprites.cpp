#include "globe/Sprites.h"

#include <QFontMetricsF>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <utility>

#include "geo/Angles.h"
#include "globe/IconReading.h"

namespace sandbox {

using halCore::kPi;

namespace {

constexpr int kMostSprites = 20000;
constexpr std::size_t kMostIcons = 4000;
constexpr qsizetype kMostBytes = qsizetype{256} << 20;
constexpr int kMostPixels = 2048;
constexpr int kLargestFont = 1000;

/// Room around a text for its outline and for strokes that stick out of their boxes.
double marginOf(const TextLook& look) {
    return look.outlineWidth + 2.0;
}

}  // namespace

QFont fontForFile(const QString& fileName, int pixelSize) {
    // A file names it in quotes when it has blanks.
    const QString name = QString(fileName).remove(u'"').toLower();
    const QString stem = name.section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0);
    QFont font;
    bool ended = false;
    const auto is = [&](const char* prefix) { return stem.startsWith(QLatin1String(prefix)); };
    QString ending;
    if (is("arial")) {
        font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans")});
        font.setStyleHint(QFont::SansSerif);
        ending = stem.mid(5);
    } else if (is("times")) {
        font.setFamilies({QStringLiteral("Liberation Serif"), QStringLiteral("DejaVu Serif")});
        font.setStyleHint(QFont::Serif);
        ending = stem.mid(5);
    } else if (is("cour")) {
        font.setFamilies({QStringLiteral("Liberation Mono"), QStringLiteral("DejaVu Sans Mono")});
        font.setStyleHint(QFont::Monospace);
        ending = is("courier") ? stem.mid(7) : stem.mid(4);
    } else {
        ended = true;
        font.setFamilies({QStringLiteral("DejaVu Sans")});
        font.setBold(stem.contains(QLatin1String("bold")));
        font.setItalic(stem.contains(QLatin1String("italic")) || stem.contains(QLatin1String("oblique")));
    }
    if (!ended) {
        font.setBold(ending.startsWith(QLatin1Char('b')) || ending.contains(QLatin1String("bold")));
        font.setItalic(ending.endsWith(QLatin1Char('i')) || ending.contains(QLatin1String("italic")));
    }
    font.setPixelSize(std::clamp(pixelSize, 1, kLargestFont));
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void paintTextLine(QPainter& painter, const QPointF& start, const QString& line, const TextLook& look) {
    if (look.outlineWidth > 0) {
        QPainterPath path;
        path.addText(start, look.font, line);
        painter.strokePath(path, QPen(QColor::fromRgba(look.outlineColor), 2.0 * look.outlineWidth,
                                      Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    painter.setFont(look.font);
    painter.setPen(QColor::fromRgba(look.color));
    painter.drawText(start, line);
}

void paintSymbol(QPainter& painter, bool isCross, double degrees) {
    const QColor yellow(255, 214, 64);
    const QColor rim(0, 0, 0, 190);
    QPainterPath path;
    if (isCross) {
        path.moveTo(-5.5, -5.5);
        path.lineTo(5.5, 5.5);
        path.moveTo(-5.5, 5.5);
        path.lineTo(5.5, -5.5);
        painter.strokePath(path, QPen(rim, 5.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.strokePath(path, QPen(yellow, 2.4, Qt::SolidLine, Qt::RoundCap));
        return;
    }
    painter.save();
    painter.rotate(degrees);
    path.moveTo(0, -10);
    path.lineTo(6.5, 8);
    path.lineTo(0, 4.5);
    path.lineTo(-6.5, 8);
    path.closeSubpath();
    painter.strokePath(path, QPen(rim, 3.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(path, yellow);
    painter.restore();
}

void Sprites::beginFrame(double ratio) {
    ++frame_;
    lacksTexts_ = false;
    if (ratio == ratio_) return;
    ratio_ = ratio;
    icons_.clear();
    comingIcons_.clear();
    images_.clear();
    bytes_ = 0;
    forgetSymbols();
}

void Sprites::setSymbolScale(double scale) {
    if (scale == symbolScale_) return;
    symbolScale_ = scale;
    forgetSymbols();
}

void Sprites::forgetSymbols() {
    sheet_ = {};
    onSheet_.reset();
    shownSheet_ = {};
}

const QImage& Sprites::keep(const QString& key, QImage image) {
    if (images_.size() >= kMostSprites || bytes_ + image.sizeInBytes() > kMostBytes) {
        images_.clear();
        bytes_ = 0;
    }
    bytes_ += image.sizeInBytes();
    return images_.emplace(key, std::move(image)).first->second;
}

QString Sprites::keyOf(const QString& text, const TextLook& look) {
    return look.font.key() + QLatin1Char('|') + QString::number(look.color, 16) + QLatin1Char('|') +
           QString::number(look.outlineColor, 16) + QLatin1Char('|') + QString::number(look.outlineWidth) +
           QLatin1Char('|') + text;
}

const QImage& Sprites::text(const QString& text, const TextLook& look) {
    const QString key = keyOf(text, look);
    const auto found = images_.find(key);
    if (found != images_.end()) return found->second;

    const QFontMetricsF metrics(look.font);
    const QStringList lines = text.split(QLatin1Char('\n'));
    double width = 1.0;
    for (const QString& line : lines) width = std::max(width, metrics.horizontalAdvance(line));
    const double margin = marginOf(look);
    const double height = metrics.lineSpacing() * static_cast<double>(lines.size());
    const QSize size(static_cast<int>(std::ceil((width + 2.0 * margin) * ratio_)),
                     static_cast<int>(std::ceil((height + 2.0 * margin) * ratio_)));
    QImage image(size.boundedTo(QSize(kMostPixels, kMostPixels)), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio_);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    double baseline = margin + metrics.ascent();
    // Letters are wider than a fifth of their size; those that have no place would cost as much as the
    // others.
    const int most = 5 * kMostPixels / std::max(look.font.pixelSize(), 1) + 1;
    for (const QString& line : lines) {
        if ((baseline - metrics.ascent()) * ratio_ > kMostPixels) break;
        paintTextLine(painter, {margin, baseline}, line.left(most), look);
        baseline += metrics.lineSpacing();
    }
    painter.end();
    return keep(key, std::move(image));
}

void Sprites::put(QPainter& painter, double x, double y, const QImage& image) const {
    painter.drawImage(QPointF(std::round(x * ratio_) / ratio_, std::round(y * ratio_) / ratio_), image);
}

void Sprites::drawText(QPainter& painter, double x, double y, const QString& text, const TextLook& look) {
    const double margin = marginOf(look);
    put(painter, x - margin, y - margin, this->text(text, look));
}

void Sprites::drawTextOrLater(QPainter& painter, double x, double y, const QString& text,
                              const TextLook& look, Slice& slice) {
    constexpr std::size_t kUnitsOfALetter = 10;
    if (!images_.contains(keyOf(text, look))) {
        lacksTexts_ = slice.isOver(0);
        if (lacksTexts_) return;
        slice.isOver(kUnitsOfALetter * static_cast<std::size_t>(text.size()));
    }
    drawText(painter, x, y, text, look);
}

void Sprites::drawTextCentered(QPainter& painter, double x, double y, const QString& text,
                               const TextLook& look) {
    const QImage& image = this->text(text, look);
    put(painter, x - image.width() / ratio_ / 2.0, y - image.height() / ratio_ / 2.0, image);
}

void Sprites::drawTextBeside(QPainter& painter, double x, double y, const QString& text,
                             const TextLook& look) {
    const QImage& image = this->text(text, look);
    put(painter, x - marginOf(look), y - image.height() / ratio_ / 2.0, image);
}

double Sprites::drawIcon(QPainter& painter, double x, double y, const PictureFile& file, Slice& slice) {
    if (icons_.size() >= kMostIcons && !icons_.contains(file)) forgetIcons();
    Icon& icon = icons_[file];
    icon.frame = frame_;
    if (icon.image.isNull()) {
        comingIcons_.insert(file);
        if (slice.isOver(0) || !read(file, icon, slice)) return 0.0;
        comingIcons_.erase(file);
    }
    const double width = icon.image.width() / ratio_;
    put(painter, x - width / 2.0, y - icon.image.height() / ratio_ / 2.0, icon.image);
    return width;
}

bool Sprites::read(const PictureFile& file, Icon& icon, Slice& slice) {
    // What throws is begun anew.
    std::unique_ptr<Work> reading =
        icon.reading ? std::move(icon.reading) : std::make_unique<Work>(readIcon(file, ratio_, icon.image));
    const bool done = reading->goOn(slice);
    if (!done) icon.reading = std::move(reading);
    return done;
}

bool Sprites::readIcons(Slice& slice) {
    while (!comingIcons_.empty()) {
        const auto next = icons_.find(*comingIcons_.begin());
        if (next != icons_.end() && next->second.frame != frame_)
            icons_.erase(next);
        else if (next != icons_.end() && !read(next->first, next->second, slice))
            return false;
        comingIcons_.erase(comingIcons_.begin());
        if (slice.isOver(0)) return comingIcons_.empty();
    }
    return true;
}

/// Those that the frame has not shown.
void Sprites::forgetIcons() {
    std::erase_if(icons_, [this](const auto& icon) { return icon.second.frame + 1 < frame_; });
    std::erase_if(comingIcons_, [this](const PictureFile& file) { return !icons_.contains(file); });
}

void Sprites::addSymbol(QPainter& painter, double x, double y, bool isCross, double turn) {
    constexpr double kSize = 28.0;
    const double scale = symbolScale_ * ratio_;
    const int pixels = static_cast<int>(std::ceil(kSize * scale));
    if (sheet_.isNull()) {
        constexpr int kRows = (kSymbols + kColumns - 1) / kColumns;
        sheet_ = QImage(kColumns * pixels, kRows * pixels, QImage::Format_ARGB32_Premultiplied);
        sheet_.fill(Qt::transparent);
    }
    constexpr int kTurns = 360 / kDegrees;
    // Of a small one a third of them is enough.
    const int apart = symbolScale_ < 0.6 ? 3 : 1;
    const int step = static_cast<int>(std::lround(turn * kTurns / (2.0 * kPi * apart)) * apart % kTurns);
    const int cell = isCross ? 0 : 1 + (step + kTurns) % kTurns;
    const QRect area(cell % kColumns * pixels, cell / kColumns * pixels, pixels, pixels);
    if (!onSheet_[static_cast<std::size_t>(cell)]) {
        QPainter symbol(&sheet_);
        symbol.setRenderHint(QPainter::Antialiasing);
        symbol.setClipRect(area);
        symbol.translate(area.topLeft());
        symbol.translate(pixels / 2.0, pixels / 2.0);
        symbol.scale(scale, scale);
        paintSymbol(symbol, isCross, step * kDegrees);
        onSheet_.set(static_cast<std::size_t>(cell));
        shownSheet_ = {};
    }
    // At whole device pixels, with its middle named.
    const auto middle = [&](double at) {
        return (std::round(at * ratio_ - pixels / 2.0) + pixels / 2.0) / ratio_;
    };
    symbols_.push_back(
        QPainter::PixmapFragment::create({middle(x), middle(y)}, area, 1.0 / ratio_, 1.0 / ratio_));
    constexpr std::size_t kTogether = 20000;
    if (symbols_.size() < kTogether) return;
    drawSymbols(painter);
    // The driver would hold them all.
    QOpenGLContext::currentContext()->functions()->glFinish();
}

void Sprites::drawSymbols(QPainter& painter) {
    if (symbols_.empty()) return;
    if (shownSheet_.isNull()) shownSheet_ = QPixmap::fromImage(sheet_);
    // Where nothing else is drawn in between, OpenGL's painter draws the first ones again.
    painter.beginNativePainting();
    painter.endNativePainting();
    painter.drawPixmapFragments(symbols_.data(), static_cast<int>(symbols_.size()), shownSheet_);
    symbols_.clear();
}

}  // namespace sandbox
