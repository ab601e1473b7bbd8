#pragma once

#include <QRect>
#include <QSize>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace sandbox {

/// Where a picture is so full of one colour that more of it, however translucent, changes nothing that could
/// be seen: it is known of the columns and rows of square tiles, so that very many lines over each other cost
/// little more than what is seen of them.
class FullTiles {
  public:
    static constexpr int kSide = 32;  ///< pixels, and bits of a word

    explicit FullTiles(const QSize& picture)
        : picture_(picture),
          columns_(picture.width() / kSide + 1),
          tiles_(static_cast<std::size_t>(columns_) *
                 static_cast<std::size_t>(picture.height() / kSide + 1)) {}

    /// Before a colour, and no other, is laid over pixels of a part, which lies in one row of tiles.
    /// \param color what a pixel comes to in the end that it is laid over again and again
    /// \return whether all of them are full of it
    bool enter(int left, int right, int bottom, int top, std::uint32_t color,
               const std::vector<std::uint32_t>& pixels);
    /// The pixels of a part are changed in another way.
    void forget(const QRect& part);

  private:
    struct Tile {
        std::uint32_t color = 0;    ///< 0 = none has been laid yet
        std::uint16_t entered = 0;  ///< so many times since it was looked at
        // Those that are full, a bit for each.
        std::uint32_t columns = 0;
        std::uint32_t rows = 0;
    };
    Tile& at(int column, int row) {
        return tiles_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                      static_cast<std::size_t>(column)];
    }
    void look(Tile& tile, int column, int row, const std::vector<std::uint32_t>& pixels) const;

    QSize picture_;
    int columns_;
    std::vector<Tile> tiles_;
};

}  // namespace sandbox
