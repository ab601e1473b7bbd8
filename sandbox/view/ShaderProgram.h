#pragma once

#include <initializer_list>
#include <memory>
#include <string>

class QOpenGLShaderProgram;

namespace sandbox {

/// Compiles and links; the attributes get the locations 0, 1, ... Whether it worked, the program tells.
std::unique_ptr<QOpenGLShaderProgram> compileProgram(const std::string& vertex, const std::string& fragment,
                                                     std::initializer_list<const char*> attributes);

}  // namespace sandbox
