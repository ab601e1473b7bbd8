#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "format/ParseReport.h"
#include "format/ParsedShape.h"
#include "model/LineFate.h"

namespace OverlayEditor {

/// Finds what the editor loses of one block, line after line. Used again for block after block.
class BlockLosses {
  public:
    using PointType = halCore::ZEL::ParsedShape::PointType;

    /// \param losses where the losses go, in no order
    explicit BlockLosses(std::vector<halCore::ZEL::ParseMessage>& losses) : losses_(losses) {}

    /// Begins the block of a shape, which must live until `finish`.
    void start(const halCore::ZEL::ZelShape& shape);
    /// Whether the shape takes points of that kind here, so that one that can be read is kept.
    bool keepsPoints(PointType type) const { return takesPoints_ && type == pointType_; }

    void comment(std::size_t number, std::string_view line);
    /// Any line that is no comment. \param line the same as `tokens`; must live until `finish`
    void line(std::size_t number, std::string_view line, const halCore::ZEL::Keyword& keyword,
              const halCore::ZEL::LineTokens& tokens);
    /// Only now is it known which attributes have been given again, in a later line.
    void finish();

  private:
    struct Attribute {
        std::size_t number = 0;
        std::string_view line;
        const halCore::ZEL::Keyword* keyword = nullptr;
    };

    void point_(std::size_t number, PointType type, const halCore::ZEL::Keyword& keyword,
                const halCore::ZEL::LineTokens& tokens);
    /// The line that counts in the place of an attribute's, usually itself.
    std::size_t lineThatCounts_(const Attribute& attribute, const halCore::ZEL::LineTokens& tokens) const;
    void add_(std::size_t number, const LineFate& fate, std::string_view line);
    void addReplaced_(std::size_t number, std::string_view line, std::size_t by);

    std::vector<halCore::ZEL::ParseMessage>& losses_;
    const halCore::ZEL::ZelShape* shape_ = nullptr;
    std::string label_;
    bool takesPoints_ = false;
    bool isLabel_ = false;
    /// Of the first point, which decides what the block takes.
    PointType pointType_ = PointType::None;
    /// The line of the point where a label stands, 0 without one.
    std::size_t labelPoint_ = 0;
    std::vector<Attribute> attributes_;
    /// For each parameter the last one of `attributes_` that sets it, counted from 1.
    std::array<std::size_t, halCore::ZEL::kParameterCount> setBy_{};
    halCore::ZEL::LineTokens tokens_;
};

}  // namespace OverlayEditor
