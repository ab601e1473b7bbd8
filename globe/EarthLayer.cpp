#include "globe/EarthLayer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLShaderProgram>
#include <QOpenGLTexture>
#include <algorithm>
#include <cmath>
#include <string>

#include "geo/Angles.h"
#include "geo/Ecef.h"
#include "geo/Wgs84.h"
#include "globe/Camera.h"
#include "globe/EarthShaders.h"
#include "globe/SoftwareRenderer.h"

namespace sandbox {

using halCore::Ecef;
using halCore::kTwoPi;
namespace wgs84 = halCore::wgs84;

namespace {

constexpr std::array<float, 4> kWholeView = {-1.0F, -1.0F, 1.0F, 1.0F};

QVector3D vector(const Ecef& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

std::unique_ptr<QOpenGLShaderProgram> compile(const std::string& fragment) {
    auto program = std::make_unique<QOpenGLShaderProgram>();
    program->addShaderFromSourceCode(QOpenGLShader::Vertex, kEarthVertexShader);
    program->addShaderFromSourceCode(QOpenGLShader::Fragment, fragment.c_str());
    program->bindAttributeLocation("corner", 0);
    program->link();
    return program;
}

std::unique_ptr<QOpenGLShaderProgram> compileGround(const char* defines) {
    return compile(std::string("#version 120\n#extension GL_ARB_shader_texture_lod : require\n") + defines +
                   kGroundFragmentShader);
}

/// The part of the view (-1 to 1) that the globe may touch: left, bottom, right, top.
std::array<float, 4> areaOfEarth(const Camera& camera) {
    const double distance = length(camera.eye());
    const double sine = wgs84::a * 1.01 / distance;
    if (sine >= 1.0) return kWholeView;
    const Ecef toCenter = -normalized(camera.eye());
    const Ecef aside =
        normalized(cross(toCenter, std::abs(toCenter.z) < 0.9 ? Ecef{0, 0, 1} : Ecef{1, 0, 0}));
    const Ecef other = cross(toCenter, aside);
    const double cosine = std::sqrt(1.0 - sine * sine);
    std::array<float, 4> area = {1.0F, 1.0F, -1.0F, -1.0F};
    constexpr int kRays = 48;
    for (int i = 0; i < kRays; ++i) {
        const double turn = kTwoPi * i / kRays;
        const Ecef ray =
            toCenter * cosine + (aside * std::cos(turn) + other * std::sin(turn)) * (sine * 1.005);
        const double ahead = -dot(ray, camera.back());
        if (ahead < 0.05) return kWholeView;
        const auto x = static_cast<float>(dot(ray, camera.right()) / (ahead * camera.tanHalfWidth()));
        const auto y = static_cast<float>(dot(ray, camera.up()) / (ahead * camera.tanHalfHeight()));
        area = {std::min(area[0], x), std::min(area[1], y), std::max(area[2], x), std::max(area[3], y)};
    }
    return {std::max(area[0], -1.0F), std::max(area[1], -1.0F), std::min(area[2], 1.0F),
            std::min(area[3], 1.0F)};
}

}  // namespace

EarthLayer::EarthLayer() : sky_(compile(kSkyFragmentShader)) {
    ground_[Plain] = compileGround("#define PLAIN\n");
    ground_[Minified] = compileGround("#define MINIFIED\n");
    ground_[Mixed] = compileGround("#define MINIFIED\n#define MAGNIFIED\n");
    ground_[Magnified] = compileGround("#define MAGNIFIED\n");
}

EarthLayer::~EarthLayer() = default;

void EarthLayer::setImage(const QImage& image) {
    texture_.reset();
    if (image.isNull()) return;
    texture_ = std::make_unique<QOpenGLTexture>(image, QOpenGLTexture::GenerateMipMaps);
    texture_->setMinMagFilters(QOpenGLTexture::LinearMipMapLinear, QOpenGLTexture::Linear);
    texture_->setWrapMode(QOpenGLTexture::DirectionS, QOpenGLTexture::Repeat);
    texture_->setWrapMode(QOpenGLTexture::DirectionT, QOpenGLTexture::ClampToEdge);
    // Mesa's software renderer takes differences between pixels for its anisotropic filter, also where it
    // is given slopes: 180° would show as a dotted line. There, and where it is slow, do without.
    if (!isSoftwareRenderer() && QOpenGLTexture::hasFeature(QOpenGLTexture::AnisotropicFiltering))
        texture_->setMaximumAnisotropy(8.0F);
}

void EarthLayer::drawRectangle(QOpenGLShaderProgram& program, const Camera& camera,
                               const std::array<float, 4>& area) {
    const Ecef eye = toUnitSphere(camera.eye());
    program.setUniformValue("low", area[0], area[1]);
    program.setUniformValue("high", area[2], area[3]);
    program.setUniformValue("rayRight",
                            vector(toUnitSphere(camera.right() * camera.tanHalfWidth()) * wgs84::a));
    program.setUniformValue("rayUp", vector(toUnitSphere(camera.up() * camera.tanHalfHeight()) * wgs84::a));
    program.setUniformValue("rayAhead", vector(-toUnitSphere(camera.back()) * wgs84::a));
    program.setUniformValue("eye", vector(eye));
    program.setUniformValue("eyeExcess", static_cast<float>(dot(eye, eye) - 1.0));
    static constexpr float kCorners[] = {0.0F, 0.0F, 1.0F, 0.0F, 0.0F, 1.0F, 1.0F, 1.0F};
    program.enableAttributeArray(0);
    program.setAttributeArray(0, kCorners, 2);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    program.disableAttributeArray(0);
}

void EarthLayer::draw(const Camera& camera) {
    QOpenGLContext::currentContext()->functions()->glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    sky_->bind();
    drawRectangle(*sky_, camera, kWholeView);
    sky_->release();

    Ground kind = Plain;
    double smoothness = 0.0;
    if (texture_) {
        // Screen pixels a texel, where the view looks closest.
        const double texel = kTwoPi * wgs84::a / texture_->width();
        const double distance = std::min(camera.range(), std::max(1.0, length(camera.eye()) - wgs84::b));
        const double pixel = 2.0 * distance * camera.tanHalfHeight() / camera.height();
        smoothness = std::clamp(1.5 - pixel / texel, 0.0, 1.0);
        kind = smoothness <= 0.0 ? Minified : smoothness >= 1.0 ? Magnified : Mixed;
    }
    QOpenGLShaderProgram& program = *ground_[kind];
    if (!program.isLinked()) return;
    program.bind();
    program.setUniformValue("axisRatio", static_cast<float>(wgs84::b / wgs84::a));
    if (texture_) {
        program.setUniformValue("imageSize", QSizeF(texture_->width(), texture_->height()));
        program.setUniformValue("smoothness", static_cast<float>(smoothness));
        program.setUniformValue("image", 0);
        texture_->bind(0);
    }
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    drawRectangle(program, camera, areaOfEarth(camera));
    glDisable(GL_BLEND);
    if (texture_) texture_->release();
    program.release();
}

}  // namespace sandbox
