#pragma once

#include <map>
#include <memory>

#include "common/Work.h"
#include "globe/PictureFile.h"

class QOpenGLTexture;

namespace sandbox {

/// The textures of the pictures that are in use, one a file. A picture is read, made smaller step by step and
/// given to the card a few rows at a time; who needs it first does that, and others go on where that one has
/// left off. One that is larger than a texture can be is made smaller. To be used and destroyed with the
/// context current.
class PictureTextures {
  public:
    PictureTextures();
    ~PictureTextures();

    /// Null when the file cannot be read. `found` is to outlive the work.
    Work find(PictureFile file, std::shared_ptr<QOpenGLTexture>& found);
    /// Drops those that nobody has, also what has been read of them.
    void forgetUnused();

  private:
    class Coming;

    std::map<PictureFile, std::shared_ptr<Coming>> pictures_;
};

}  // namespace sandbox
