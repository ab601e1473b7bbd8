#pragma once

#include <functional>
#include <utility>

#include "pi/PICommon.h"

namespace OverlayEditor {

/// Tells of journals that hosts have left. One that was killed may need some seconds to die, during which its
/// journals are held: as long as any are, it looks again, but not for ever.
class LostWatch {
  public:
    /// \param found called once, when there are some; perhaps before the constructor is over
    explicit LostWatch(std::function<void()> found) : found_(std::move(found)) { look_(); }
    LostWatch(const LostWatch&) = delete;
    LostWatch& operator=(const LostWatch&) = delete;

    int onTimeout(PIObject* sender, void* data);
    int onTurn(PIObject* sender, void* data);

  private:
    void look_();

    std::function<void()> found_;
    int looks_ = 0;
    PICommon::Timeout timeout_;
    CallbackList<LostWatch> callbacks_{this};
    FunctorTwoParams__* const onTimeout_ = callbacks_.make(&LostWatch::onTimeout, Arrival::AtOnce);
    FunctorTwoParams__* const onTurn_ = callbacks_.make(&LostWatch::onTurn);
};

}  // namespace OverlayEditor
