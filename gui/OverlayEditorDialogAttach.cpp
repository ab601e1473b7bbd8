// The part of the dialog that deals with platforms: what the overlay is attached to, and what offsets count
// from.

#include <cmath>
#include <utility>

#include "common/Notify.h"
#include "gui/OverlayEditorDialogWidgets.h"
#include "model/OverlayFile.h"
#include "model/Utils.h"
#include "pi/PIData.h"
#include "pi/PIHALVIS.h"

namespace OverlayEditor {

namespace {

/// A platform that is nearer to where it was has not moved.
constexpr double kStandsStillMeters = 1e-3;

}  // namespace

halCore::Vec3 OverlayEditorDialog::findDefaultRefLla_(unsigned long platform) const {
    halCore::Vec3 lla;
    if (platform == 0 || Utils::getPlatformLla(platform, lla) != 0) Utils::getDefaultLla(lla);
    return lla;
}

void OverlayEditorDialog::warnOfAssumedReference_(const std::string& fileName,
                                                  const halCore::Vec3& lla) const {
    const auto& units = *preferences_->unitsProvider();
    halNotify::notify(halNotify::Warning)
        << fileName << " has offsets and no reference of its own: they are taken to count from "
        << units.formatLatitude(lla.lat()) << ' ' << units.formatLongitude(lla.lon())
        << " until the overlay is attached to a platform";
}

unsigned long OverlayEditorDialog::createRelativeReferencePlatform_(const halCore::Vec3& lla,
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

void OverlayEditorDialog::removeReferencePlatform_() {
    const unsigned long platform = std::exchange(referencePlatform_, 0);
    PIData::PIPlatformHeader header;
    // The user, or a new scenario, may have removed it.
    if (platform && PIData::getHeader(platform, header) == 0) PIData::removeEntity(platform);
}

void OverlayEditorDialog::attach_(unsigned long platform, bool center) {
    if (!platform && !overlay_->attachedPlatformId()) return;
    followPlatform_();
    halCore::Vec3 place;
    if (platform && Utils::getPlatformLla(platform, place) != 0) {
        halNotify::notify(halNotify::Error)
            << Utils::platformName(platform) << " has no position now: the overlay is not attached to it";
        widgets_->attach.setAttachPlatform(overlay_->attachedPlatformId());
        return;
    }
    const bool own = platform != 0 && platform == referencePlatform_;
    const bool assumed = referencePlatform_ && !overlay_->referenceWritten();
    if (platform && !own && !center) {
        const bool untouched = fromNowhere_ && fromNowhere_->text == overlayText(*overlay_);
        if (untouched) {
            pointConverter_->setReferenceLla(fromNowhere_->assumed, platform);
            overlay_->setAttachedPlatformId(platform, pointConverter_.get(), false);
        }
        // Offsets that count from nowhere count from this platform: where they were shown was only assumed.
        if (assumed || untouched) moveReference_(place);
    }
    // Shapes that are attached keep their reference: they are detached before it moves.
    overlay_->setAttachedPlatformId(0, nullptr, false);
    fromNowhere_.reset();
    if (!platform && assumed) {
        fromNowhere_.emplace();
        pointConverter_->getReferenceLla(fromNowhere_->assumed);
        fromNowhere_->text = overlayText(*overlay_);
    }
    if (!own) {
        removeReferencePlatform_();
        overlay_->setReferenceWritten(false);
    }
    pointConverter_->setReferenceLla(place, platform);
    if (platform) overlay_->setAttachedPlatformId(platform, pointConverter_.get(), center);
    updateAttachControls_();
}

void OverlayEditorDialog::updateAttachControls_() {
    const Shape* const shape = current_();
    const bool canAttach = (shape && shape->canAttach()) || fromNowhere_;
    widgets_->attach.setControlsEnabled(canAttach || overlay_->attachedPlatformId() != 0);
}

void OverlayEditorDialog::followPlatform_() {
    const unsigned long platform = overlay_->attachedPlatformId();
    halCore::Vec3 place;
    halCore::Vec3 way;
    if (platform == 0 || Utils::getPlatformLla(platform, place) != 0) return;
    // The host may have called back.
    if (platform != overlay_->attachedPlatformId()) return;
    if (pointConverter_->convertLlaToXyz(place, way) == 0 &&
        std::hypot(way.x(), way.y(), way.z()) < kStandsStillMeters)
        return;
    moveReference_(place);
}

void OverlayEditorDialog::moveReference_(const halCore::Vec3& lla) {
    const bool kept = overlayText(*overlay_) == keptText_;
    halCore::Vec3 from;
    halCore::Vec3 origin;
    const unsigned long platform = pointConverter_->refPlatformId();
    pointConverter_->getReferenceLla(from);
    pointConverter_->setReferenceLla(lla, platform);
    // On a pole there is no east.
    if (pointConverter_->convertXyzToLla({}, origin) != 0) {
        pointConverter_->setReferenceLla(from, platform);
        return;
    }
    overlay_->carry(ReferenceMove(from, *pointConverter_));
    // What follows from the offsets, as two corners of a rectangle, is a little different about each place.
    if (kept && !overlay_->referenceWritten()) keptText_ = overlayText(*overlay_);
    markedRevision_.reset();
}

int OverlayEditorDialog::onCmdAttach(PIObject*, void* data) {
    attach_(data ? *static_cast<const unsigned long*>(data) : 0, widgets_->attach.centerOnHost());
    updateSavedMark_();
    return 1;
}

int OverlayEditorDialog::onCmdSetMouseTool(PIObject*, void*) {
    updateMouseControls_();
    return 1;
}

void OverlayEditorDialog::scenarioEntityRemoved(unsigned long id) {
    if (id == 0) return;
    if (id == overlay_->attachedPlatformId()) {
        halNotify::notify(halNotify::Warning)
            << "The platform of the edited overlay is gone; its shapes stay where they are";
        attach_(0, false);
        widgets_->attach.reset();
        updateSavedMark_();
    }
    widgets_->attach.refreshPlatformList();
}

void OverlayEditorDialog::scenarioZELsChanged() {
    if (existingZels_) existingZels_->refreshZELList();
}

void OverlayEditorDialog::scenarioPlatformAdded() {
    widgets_->attach.refreshPlatformList();
}

}  // namespace OverlayEditor
