#include "globe/SoftwareRenderer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <string_view>

namespace sandbox {

bool isSoftwareRenderer() {
    const auto* renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    return renderer && std::string_view(renderer).find("llvmpipe") != std::string_view::npos;
}

}  // namespace sandbox
