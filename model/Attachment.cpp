#include "model/Attachment.h"

#include <cmath>
#include <utility>

#include "common/Notify.h"
#include "model/Utils.h"
#include "pi/PICommon.h"
#include "pi/PIData.h"

namespace OverlayEditor {

namespace {

/// A platform that is nearer to where it was has not moved.
constexpr double kStandsStillMeters = 1e-3;

}  // namespace

std::optional<halCore::Vec3> Attachment::findDefaultRefLla(unsigned long platform) {
    halCore::Vec3 lla;
    if (platform != 0 && Utils::getPlatformLla(platform, lla) == 0) return lla;
    if (Utils::getDefaultLla(lla) == 0) return lla;
    return std::nullopt;
}

unsigned long Attachment::createRelativeReferencePlatform_(const halCore::Vec3& lla,
                                                           const halCore::Vec3& ori) {
    removeReferencePlatform_();
    PIData::PIPlatformHeader header;
    header.name = "ZEL Reference Point";
    header.icon = "x2";
    PIData::PIDataPoint point;
    point.timeSeconds = PIData::clockGetBegin();
    point.latRad = lla.lat();
    point.lonRad = lla.lon();
    point.altMeters = lla.alt();
    point.headingRad = ori.x();
    point.pitchRad = ori.y();
    point.rollRad = ori.z();
    referencePlatform_ = PIData::createPlatform(header, point, PIData::getScenarioCoordReferenceFrame());
    PICommon::forceOpenGLRedraw();
    return referencePlatform_;
}

void Attachment::removeReferencePlatform_() {
    const unsigned long platform = std::exchange(referencePlatform_, 0);
    PIData::PIPlatformHeader header;
    // The user, or a new scenario, may have removed it.
    if (platform && PIData::getHeader(platform, header) == 0) PIData::removeEntity(platform);
}

void Attachment::take(std::unique_ptr<PointConverter> converter, const halCore::Vec3& lla,
                      unsigned long platform) {
    converter_ = std::move(converter);
    converter_->setReferenceLla(lla, platform);
    overlay_.setAttachedPlatformId(platform, platform ? converter_.get() : nullptr, false);
}

bool Attachment::takeReference(std::unique_ptr<PointConverter> converter, const halCore::Vec3& lla,
                               bool written) {
    overlay_.setReferenceWritten(written);
    take(std::move(converter), lla, createRelativeReferencePlatform_(lla, {}));
    return referencePlatform_ != 0;
}

bool Attachment::attach(unsigned long platform, bool center) {
    if (!platform && !overlay_.attachedPlatformId()) return true;
    followPlatform();
    halCore::Vec3 place;
    if (platform && Utils::getPlatformLla(platform, place) != 0) {
        halNotify::notify(halNotify::Error)
            << Utils::platformName(platform) << " has no position now: the overlay is not attached to it";
        return false;
    }
    const bool own = isReferencePlatform(platform);
    const bool assumed = referencePlatform_ && !overlay_.referenceWritten();
    if (platform && !own && !center) {
        const bool untouched = fromNowhere_ && fromNowhere_->digest == overlay_.digest();
        if (untouched) {
            converter_->setReferenceLla(fromNowhere_->assumed, platform);
            overlay_.setAttachedPlatformId(platform, converter_.get(), false);
        }
        // Offsets that count from nowhere count from this platform: where they were shown was only assumed.
        if (assumed || untouched) moveReference_(place);
    }
    // Shapes that are attached keep their reference: they are detached before it moves.
    overlay_.setAttachedPlatformId(0, nullptr, false);
    fromNowhere_.reset();
    if (!platform && assumed) {
        fromNowhere_.emplace();
        converter_->getReferenceLla(fromNowhere_->assumed);
        fromNowhere_->digest = overlay_.digest();
    }
    if (!own) {
        removeReferencePlatform_();
        overlay_.setReferenceWritten(false);
    }
    converter_->setReferenceLla(place, platform);
    if (platform) overlay_.setAttachedPlatformId(platform, converter_.get(), center);
    return true;
}

void Attachment::followPlatform() {
    const unsigned long platform = overlay_.attachedPlatformId();
    halCore::Vec3 place;
    halCore::Vec3 way;
    if (platform == 0 || Utils::getPlatformLla(platform, place) != 0) return;
    if (converter_->convertLlaToXyz(place, way) == 0 &&
        std::hypot(way.x(), way.y(), way.z()) < kStandsStillMeters)
        return;
    moveReference_(place);
}

void Attachment::moveReference_(const halCore::Vec3& lla) {
    halCore::Vec3 from;
    halCore::Vec3 origin;
    const unsigned long platform = converter_->refPlatformId();
    converter_->getReferenceLla(from);
    // What is not written yet counts from where the reference still is.
    overlay_.digest();
    converter_->setReferenceLla(lla, platform);
    // On a pole there is no east.
    if (converter_->convertXyzToLla({}, origin) != 0) {
        converter_->setReferenceLla(from, platform);
        return;
    }
    overlay_.carry(ReferenceMove(from, *converter_));
}

void Attachment::release() {
    overlay_.setAttachedPlatformId(0, nullptr, false);
    removeReferencePlatform_();
    fromNowhere_.reset();
    overlay_.setReferenceWritten(false);
    converter_->setReferenceLla({}, 0);
}

}  // namespace OverlayEditor
