#pragma once

#include <cmath>
#include <cstddef>
#include <span>

#include "globe/DrawList.h"

namespace sandbox {

/// How finely areas whose line crosses itself hundreds of times are filled, of all that are shown: the first
/// ones as finely as each could wish, others in fewer rows the more there are before them, so that very many
/// cost little more than many.
class FillBudget {
  public:
    /// Of the rows that the next one is to be filled in, 0 to 1.
    double share() const { return std::exp2(-static_cast<double>(spent_) / kHalved); }
    /// Counts what was made for a shape. \return triangles of such areas
    std::size_t spend(std::span<const DrawList::Mesh> meshes) {
        std::size_t triangles = 0;
        for (const DrawList::Mesh& mesh : meshes)
            if (mesh.tangled) triangles += mesh.triangles.size() / 3;
        spent_ += triangles;
        return triangles;
    }
    /// Of what is not shown any more.
    void giveBack(std::size_t triangles) { spent_ -= triangles; }

  private:
    /// With so many triangles the share is a half. A single area has some thousands.
    static constexpr double kHalved = 200000.0;

    std::size_t spent_ = 0;  ///< triangles
};

}  // namespace sandbox
