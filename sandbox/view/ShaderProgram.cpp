#include "sandbox/view/ShaderProgram.h"

#include <QOpenGLShaderProgram>

namespace sandbox {

std::unique_ptr<QOpenGLShaderProgram> compileProgram(const std::string& vertex, const std::string& fragment,
                                                     std::initializer_list<const char*> attributes) {
    auto program = std::make_unique<QOpenGLShaderProgram>();
    program->addShaderFromSourceCode(QOpenGLShader::Vertex, vertex.c_str());
    program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment.c_str());
    int location = 0;
    for (const char* name : attributes) program->bindAttributeLocation(name, location++);
    program->link();
    return program;
}

}  // namespace sandbox
