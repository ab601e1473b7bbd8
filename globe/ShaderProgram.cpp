#include "globe/ShaderProgram.h"

#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <cstddef>

#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/Camera.h"
#include "globe/SplitPosition.h"

namespace sandbox {

using halCore::Ecef;
namespace wgs84 = halCore::wgs84;

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

void setBlending() {
    QOpenGLContext::currentContext()->functions()->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA,
                                                                       GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

void setCamera(QOpenGLShaderProgram& program, const Camera& camera) {
    const auto projection = camera.projection();
    const auto modelview = camera.modelview();
    QMatrix4x4 matrix;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += projection[static_cast<std::size_t>(k * 4 + row)] *
                       modelview[static_cast<std::size_t>(column * 4 + k)];
            matrix(row, column) = static_cast<float>(sum);
        }
    }
    program.setUniformValue("matrix", matrix);
    const SplitPosition eye = split(camera.eye());
    program.setUniformValue("eyeHigh", vector(eye.high));
    program.setUniformValue("eyeLow", vector(eye.low));
    const Ecef unit = toUnitSphere(camera.eye());
    program.setUniformValue(
        "eye", QVector3D(static_cast<float>(unit.x), static_cast<float>(unit.y), static_cast<float>(unit.z)));
    program.setUniformValue("eyeExcess", static_cast<float>(dot(unit, unit) - 1.0));
    program.setUniformValue("toUnitSphere",
                            QVector3D(static_cast<float>(1.0 / wgs84::a), static_cast<float>(1.0 / wgs84::a),
                                      static_cast<float>(1.0 / wgs84::b)));
}

}  // namespace sandbox
