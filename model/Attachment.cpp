#include "model/Attachment.h"

#include <cmath>
#include <utility>

#include "common/Notify.h"
#include "common/Strings.h"
#include "geo/Angles.h"
#include "geo/Wgs84.h"
#include "model/Utils.h"
#include "pi/PICommon.h"
#include "pi/PIData.h"

namespace OverlayEditor {

namespace {

/// A platform that is nearer to where it was has not moved: less than a millimetre, and the meridian is the
/// same, along which offsets are counted close to a pole.
bool isStill(const halCore::Vec3& from, const halCore::Vec3& to) {
    constexpr double meters = 1e-3;
    constexpr double radians = meters / halCore::wgs84::a;
    return std::abs(to.lat() - from.lat()) < radians &&
           std::abs(halCore::wrapToPi(to.lon() - from.lon())) < radians &&
           std::abs(to.alt() - from.alt()) < meters;
}

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
    overlay_.setAttachedPlatformId(platform, converter_.get(), false);
}

void Attachment::takeReference(std::unique_ptr<PointConverter> converter, const halCore::Vec3& lla,
                               bool written) {
    overlay_.setReferenceWritten(written);
    take(std::move(converter), lla, createRelativeReferencePlatform_(lla, {}));
}

halCore::Vec3 Attachment::reference_() const {
    halCore::Vec3 lla;
    converter_->getReferenceLla(lla);
    return lla;
}

bool Attachment::attach(unsigned long platform, bool center) {
    if (!center && platform == overlay_.attachedPlatformId()) return true;
    followPlatform();
    halCore::Vec3 place;
    if (platform && Utils::getPlatformLla(platform, place) != 0) {
        halNotify::notify(halNotify::Error) << "Not attached to " << Utils::platformName(platform)
                                            << ": it has no position now. Nothing has changed";
        return false;
    }
    const bool own = isReferencePlatform(platform);
    const bool assumed = referencePlatform_ && !overlay_.referenceWritten();
    // Offsets that count from nowhere count from this platform: where they were shown was only assumed.
    std::optional<halCore::Vec3> staying;
    if (platform && !own && !center) {
        if (assumed)
            staying = reference_();
        else if (fromNowhere_ && fromNowhere_->digest == overlay_.digest())
            staying = fromNowhere_->assumed;
    }
    if (platform) {
        PointConverter there;
        there.setReferenceLla(place, platform);
        if (const auto misfits = overlay_.misfits(there, center, staying); !misfits.empty()) {
            halNotify::notify(halNotify::Error) << "Not attached to " << Utils::platformName(platform)
                                                << ": no offsets from there lead to all of "
                                                << UTILS::listed(misfits) << ". Nothing has changed";
            return false;
        }
    }
    if (staying) {
        if (!assumed) {
            converter_->setReferenceLla(*staying, platform);
            overlay_.attachThoseFrom(*staying, platform, converter_.get());
        }
        moveReference_(place);
    }
    // Shapes that are attached keep their reference: they are detached before it moves.
    overlay_.setAttachedPlatformId(0, nullptr, false);
    fromNowhere_.reset();
    if (!platform && assumed) fromNowhere_ = FromNowhere{reference_(), overlay_.digest()};
    if (!own) {
        removeReferencePlatform_();
        overlay_.setReferenceWritten(false);
    }
    converter_->setReferenceLla(place, platform);
    if (platform) overlay_.setAttachedPlatformId(platform, converter_.get(), center);
    return true;
}

bool Attachment::followPlatform() {
    const unsigned long platform = overlay_.attachedPlatformId();
    halCore::Vec3 place;
    if (platform == 0 || Utils::getPlatformLla(platform, place) != 0) return false;
    if (isStill(reference_(), place)) return false;
    moveReference_(place);
    return true;
}

void Attachment::moveReference_(const halCore::Vec3& lla) {
    converter_->setReferenceLla(lla, converter_->refPlatformId());
    overlay_.referenceMoved();
    // The host moves what it shows by itself; the points of the tool are drawn when it asks for them.
    PICommon::forceOpenGLRedraw();
}

bool Attachment::State::operator==(const State& other) const {
    const bool fixed = own || platform == 0;
    return own == other.own && (own || platform == other.platform) && written == other.written &&
           counts == other.counts && (!fixed || reference == other.reference) &&
           fromNowhere == other.fromNowhere;
}

Attachment::State Attachment::state() const {
    const unsigned long platform = overlay_.attachedPlatformId();
    return {.platform = platform,
            .name = {},
            .own = isReferencePlatform(platform),
            .written = overlay_.referenceWritten(),
            .counts = overlay_.counts(),
            .reference = reference_(),
            .fromNowhere = fromNowhere_};
}

bool Attachment::isThere(const State& state) {
    PIData::PIPlatformHeader header;
    return state.platform == 0 || state.own || PIData::getHeader(state.platform, header) == 0;
}

void Attachment::restore(const State& state) {
    unsigned long platform = state.platform;
    halCore::Vec3 place = state.reference;
    if (state.own)
        platform = createRelativeReferencePlatform_(place, {});
    else
        removeReferencePlatform_();
    if (platform && !state.own) Utils::getPlatformLla(platform, place);
    converter_->setReferenceLla(place, platform);
    overlay_.restoreAttachment(platform, state.counts ? converter_.get() : nullptr);
    overlay_.setReferenceWritten(state.written);
    fromNowhere_ = state.fromNowhere;
}

void Attachment::release() {
    overlay_.setAttachedPlatformId(0, nullptr, false);
    removeReferencePlatform_();
    fromNowhere_.reset();
    overlay_.setReferenceWritten(false);
    converter_->setReferenceLla({}, 0);
}

}  // namespace OverlayEditor
