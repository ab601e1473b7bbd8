#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

#include "format/Serializer.h"
#include "format/ZelShapes.h"

namespace OverlayEditor {

/// Reads overlay text and replays its shapes as calls on a serializer. Offsets of a relative shape count from
/// its own reference point, or else from the target's point converter. Boxes and image overlays have no
/// counterpart in the editor and are left out; a relative shape with nothing to count from, or a circular one
/// without a centre, is left out with a message.
class ZelToSerializer {
  public:
    /// \param platformId passed on to the target: what the shapes are attached to there
    /// \param sourceName for the message when the text has no shape
    /// \return 0 when at least one shape was read, 1 otherwise
    int load(Serializer& target, std::istream& text, unsigned long platformId,
             const std::string& sourceName) const;
    /// The same with shapes that have been read already.
    int replay(Serializer& target, std::span<const halCore::ZEL::ZelShapePtr> shapes,
               unsigned long platformId, const std::string& sourceName) const;
    /// Of one of them, which gives its list of points away.
    /// \return why it was left out, and is as it was; empty when it was not
    std::string_view take(Serializer& target, halCore::ZEL::ZelShape& shape, unsigned long platformId) const;
    /// Why a shape of a file is left out; empty when it is not.
    /// \param hasFrame whether offsets that name no reference count from anything
    std::string_view whyLeftOut(const halCore::ZEL::ZelShape& shape, bool hasFrame) const;
    /// As what a file's shape is begun: a cylinder with a sweep is a wedge, a polygon that is a box a
    /// rectangle. None for one that is left out.
    Serializer::ShapeType typeOf(const halCore::ZEL::ZelShape& shape) const;

  private:
    /// \param own null, or the same shape, when it gives its list of points away
    /// \return why the target did not get the shape; empty when it did
    std::string_view serializeOneZel_(Serializer& target, const halCore::ZEL::ZelShape& shape,
                                      unsigned long platformId, halCore::ZEL::ZelShape* own) const;
    std::string_view whyLeftOut_(const halCore::ZEL::ZelShape& shape, Serializer::ShapeType type,
                                 bool hasFrame) const;
    Serializer::ShapeType getShapeType_(const halCore::ZEL::ZelShape& shape) const;
};

}  // namespace OverlayEditor
