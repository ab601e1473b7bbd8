#pragma once

#include "format/ZelShape.h"

namespace halCore::ZEL {

/// A shape whose outline can be switched on and off.
class OutlinedShape : public ZelShape {
  public:
    int getOutlined(bool& out) const;
    void setOutlined(bool outlined) { outlined_ = outlined; }

  protected:
    using ZelShape::ZelShape;
    void serializeOutline_(TextWriter& writer) const;

  private:
    std::optional<bool> outlined_;
};

}  // namespace halCore::ZEL
