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
#include "globe/BaseMap.h"
#include "globe/Camera.h"
#include "globe/EarthDisc.h"
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

// Of the map, before the air: deep water and dry grass, dull enough that overlays stand out.
constexpr float kSea[] = {0.070F, 0.170F, 0.275F};
constexpr float kShore[] = {0.150F, 0.335F, 0.425F};
constexpr float kIce[] = {0.700F, 0.735F, 0.755F};
constexpr float kLand[] = {0.440F, 0.455F, 0.345F};

/// A field's two bytes an element as a texture.
std::unique_ptr<QOpenGLTexture> textureOf(const MapField& field, QOpenGLTexture::WrapMode across) {
    auto texture = std::make_unique<QOpenGLTexture>(QOpenGLTexture::Target2D);
    texture->setFormat(QOpenGLTexture::RG8_UNorm);
    texture->setSize(field.width, field.height);
    texture->setMipLevels(1);
    texture->allocateStorage(QOpenGLTexture::RG, QOpenGLTexture::UInt8);
    texture->setMinMagFilters(QOpenGLTexture::Linear, QOpenGLTexture::Linear);
    texture->setWrapMode(QOpenGLTexture::DirectionS, across);
    texture->setWrapMode(QOpenGLTexture::DirectionT, QOpenGLTexture::ClampToEdge);
    texture->setData(QOpenGLTexture::RG, QOpenGLTexture::UInt8, field.bytes.data());
    return texture;
}

QVector3D vector(const float (&v)[3]) {
    return {v[0], v[1], v[2]};
}

QVector3D vector(const Rgba& color) {
    return QVector3D(color.r, color.g, color.b) / 255.0F;
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

EarthLayer::EarthLayer() : sky_(compile(kSkyFragmentShader)) {}

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

void EarthLayer::setView(QOpenGLShaderProgram& program, const Camera& camera,
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
}

void EarthLayer::drawWithin(const std::vector<QRect>& parts) {
    glEnable(GL_SCISSOR_TEST);
    for (const QRect& part : parts) {
        glScissor(part.x(), part.y(), part.width(), part.height());
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    }
    glDisable(GL_SCISSOR_TEST);
}

QOpenGLShaderProgram& EarthLayer::groundProgram(unsigned ground) {
    std::unique_ptr<QOpenGLShaderProgram>& program = ground_[ground];
    if (!program) {
        std::string text = "#version 120\n#extension GL_ARB_shader_texture_lod : require\n";
        if (ground & kPlain) text += "#define PLAIN\n";
        if (ground & kMinified) text += "#define MINIFIED\n";
        if (ground & kMagnified) text += "#define MAGNIFIED\n";
        if (ground & kFading) text += "#define FADING\n";
        if (ground & kWorld) text += "#define WORLD\n";
        if (ground & kDetail) text += "#define DETAIL\n";
        program = compile(text + kGroundFragmentShader);
    }
    return *program;
}

void EarthLayer::uploadMap(BaseMap& map, unsigned ground) {
    if ((ground & kWorld) != 0 && !world_) world_ = textureOf(map.world(), QOpenGLTexture::Repeat);
    if ((ground & kDetail) == 0 || detailRevision_ == map.detail()->revision) return;
    detail_ = textureOf(map.detail()->field, QOpenGLTexture::ClampToEdge);
    detailRevision_ = map.detail()->revision;
}

void EarthLayer::draw(const Camera& camera, double pixelRatio, BaseMap& map, const MapOptions& options) {
    QOpenGLContext::currentContext()->functions()->glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    const EarthDisc disc(camera, pixelRatio);
    sky_->bind();
    setView(*sky_, camera, kWholeView);
    drawWithin(disc.rim);
    sky_->disableAttributeArray(0);
    sky_->release();

    unsigned kind = kPlain;
    double smoothness = 0.0;
    double land = options.land ? 1.0 : 0.0;
    if (texture_) {
        // Screen pixels a texel, where the view looks closest.
        const double texel = kTwoPi * wgs84::a / texture_->width();
        const double distance = std::min(camera.range(), std::max(1.0, length(camera.eye()) - wgs84::b));
        const double pixel = 2.0 * distance * camera.tanHalfHeight() / camera.height();
        smoothness = std::clamp(1.5 - pixel / texel, 0.0, 1.0);
        kind = smoothness <= 0.0 ? kMinified : smoothness >= 1.0 ? kMagnified : kMinified | kMagnified;
        // The picture fades out from where a texel is two pixels wide to where it is twelve.
        land *= std::clamp(std::log2(0.5 * texel / pixel) / std::log2(6.0), 0.0, 1.0);
    }
    if (land >= 1.0) kind = 0;
    if (land > 0.0 && (kind & kMagnified) != 0) kind |= kFading;
    // From far away the picture shows the coasts itself.
    const double lines =
        std::lerp(0.55, 1.0, land) *
        std::clamp((BaseMap::kFarthest - camera.range()) / (0.3 * BaseMap::kFarthest), 0.0, 1.0);
    const bool shown = land > 0.0 || (lines > 0.0 && (options.coastlines || options.borders));
    if (shown && map.detail()) kind |= kDetail;
    if (shown && !(map.detail() && map.isDetailEnough())) kind |= kWorld;
    QOpenGLShaderProgram& program = groundProgram(kind);
    if (!program.isLinked()) return;
    if (shown) uploadMap(map, kind);
    program.bind();
    program.setUniformValue("unit", static_cast<float>(pixelRatio));
    program.setUniformValue("axisRatio", static_cast<float>(wgs84::b / wgs84::a));
    if (kind & (kMinified | kMagnified)) {
        program.setUniformValue("imageSize", QSizeF(texture_->width(), texture_->height()));
        program.setUniformValue("smoothness", static_cast<float>(smoothness));
        program.setUniformValue("image", 0);
        texture_->bind(0);
    }
    if (shown) {
        program.setUniformValue(
            "mapStrength",
            QVector3D(static_cast<float>(land),
                      static_cast<float>(options.coastlines ? lines * kCoastColor.a / 255.0 : 0.0),
                      static_cast<float>(options.borders ? lines * kBorderColor.a / 255.0 : 0.0)));
        program.setUniformValue(
            "pixelAngle", static_cast<float>(2.0 * camera.tanHalfHeight() / (camera.height() * pixelRatio)));
        program.setUniformValue("seaColor", vector(kSea));
        program.setUniformValue("shoreColor", vector(kShore));
        program.setUniformValue("iceColor", vector(kIce));
        program.setUniformValue("landColor", vector(kLand));
        program.setUniformValue("coastColor", vector(kCoastColor));
        program.setUniformValue("borderColor", vector(kBorderColor));
    }
    if (kind & kWorld) {
        program.setUniformValue("world", 1);
        program.setUniformValue("worldSize", QSizeF(world_->width(), world_->height()));
        world_->bind(1);
    }
    if (kind & kDetail) {
        const MapRegion& region = map.detail()->region;
        const MapRegion::Frame frame = region.frame();
        program.setUniformValue("detail", 2);
        program.setUniformValue("fromDetail", vector(toUnitSphere(camera.eye()) - frame.middle));
        program.setUniformValue("detailEast", vector(frame.east));
        program.setUniformValue("detailNorth", vector(frame.north));
        program.setUniformValue("detailScale", static_cast<float>(region.scale()));
        program.setUniformValue("detailSize", static_cast<float>(region.size));
        detail_->bind(2);
    }
    // Everybody else counts on the first unit.
    QOpenGLFunctions& gl = *QOpenGLContext::currentContext()->functions();
    gl.glActiveTexture(GL_TEXTURE0);
    setView(program, camera, areaOfEarth(camera));
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    drawWithin(disc.rim);
    glDisable(GL_BLEND);
    // After the rim: scissors of the software renderer let a column more through.
    drawWithin(disc.earth);
    program.disableAttributeArray(0);
    if (kind & kDetail) detail_->release(2);
    if (kind & kWorld) world_->release(1);
    if (kind & (kMinified | kMagnified)) texture_->release(0);
    gl.glActiveTexture(GL_TEXTURE0);
    program.release();
}

}  // namespace sandbox
