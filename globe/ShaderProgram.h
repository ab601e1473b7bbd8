#pragma once

#include <initializer_list>
#include <memory>
#include <string>

class QOpenGLShaderProgram;

namespace sandbox {

class Camera;

/// Compiles and links; the attributes get the locations 0, 1, ... Whether it worked, the program tells.
std::unique_ptr<QOpenGLShaderProgram> compileProgram(const std::string& vertex, const std::string& fragment,
                                                     std::initializer_list<const char*> attributes);

/// For a bound program with the shaders for positions of two parts and for sight: where the eye is.
void setCamera(QOpenGLShaderProgram& program, const Camera& camera);

/// For colours that are not premultiplied; keeps the picture's own alpha right.
void setBlending();

}  // namespace sandbox
