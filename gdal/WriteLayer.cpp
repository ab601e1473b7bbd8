#include "gdal/WriteLayer.h"

#include <memory>
#include <new>
#include <string>

#include "common/Strings.h"
#include "gdal/FeatureColumns.h"
#include "gdal/ShapeMaker.h"
#include "gdal/WriteDataset.h"

namespace exchange {

WriteLayer::WriteLayer(WriteDataset& dataset, const char* name, OGRSpatialReference* reference,
                       OGRwkbGeometryType type)
    : dataset_(dataset), definition_(new OGRFeatureDefn(name)) {
    SetDescription(name);
    definition_->Reference();
    definition_->SetGeomType(type);
    const ReferencePtr wgs84 = wgs84Reference();
    if (type != wkbNone) definition_->GetGeomFieldDefn(0)->SetSpatialRef(reference ? reference : wgs84.get());
    if (!reference || reference->IsSame(wgs84.get())) return;
    toWgs84_.reset(OGRCreateCoordinateTransformation(reference, wgs84.get()));
    known_ = toWgs84_ != nullptr;
}

WriteLayer::~WriteLayer() {
    if (!lost_.empty())
        dataset_.note(std::string("layer ").append(GetName()).append(
                          ": left out, because a ZEL file has no place for it: ") +
                      lost_);
    definition_->Release();
}

OGRFeature* WriteLayer::GetNextFeature() {
    CPLError(CE_Failure, CPLE_NotSupported, "A ZEL file that is being written cannot be read");
    return nullptr;
}

int WriteLayer::TestCapability(const char* capability) {
    for (const char* can :
         {OLCSequentialWrite, OLCCreateField, OLCStringsAsUTF8, OLCZGeometries, OLCFastFeatureCount})
        if (EQUAL(capability, can)) return TRUE;
    return FALSE;
}

OGRErr WriteLayer::CreateField(OGRFieldDefn* field, int) {
    const std::string name = field->GetNameRef();
    const int number = definition_->GetFieldCount();
    if (name == "visibility")
        visibility_ = number;
    else if (!index_.add(name, number) && name != "WKT")
        unknown_.push_back(number);
    definition_->AddFieldDefn(field);
    return OGRERR_NONE;
}

OGRErr WriteLayer::ICreateFeature(OGRFeature* feature) {
    if (!known_) {
        CPLError(CE_Failure, CPLE_AppDefined, "Layer %s: its coordinates cannot be turned into WGS 84",
                 GetName());
        return OGRERR_UNSUPPORTED_SRS;
    }
    noteUnknown_(*feature);
    noteKind_(*feature);
    std::unique_ptr<OGRGeometry> moved;
    const OGRGeometry* geometry = feature->GetGeometryRef();
    if (geometry && toWgs84_) {
        moved.reset(geometry->clone());
        if (moved->transform(toWgs84_.get()) != OGRERR_NONE) return OGRERR_FAILURE;
        geometry = moved.get();
    }
    const Note note = [&](const std::string& text) {
        dataset_.note(std::string("layer ") + GetName() + ", feature " + std::to_string(count_) + ": " +
                      text);
    };
    try {
        for (auto& shape : ShapeMaker(*feature, index_, geometry, styleOf_(*feature), note).make()) {
            if (visibility_ >= 0 && EQUAL(feature->GetFieldAsString(visibility_), "0"))
                shape->setDrawn(false);
            dataset_.add(std::move(shape));
        }
    } catch (const std::bad_alloc&) {
        CPLError(CE_Failure, CPLE_OutOfMemory, "There is not enough memory for the overlay");
        return OGRERR_NOT_ENOUGH_MEMORY;
    }
    feature->SetFID(count_++);
    return OGRERR_NONE;
}

std::string WriteLayer::styleOf_(OGRFeature& feature) {
    const char* const style = feature.GetStyleString();
    if (!style || *style != '@') return style ? style : "";
    // The name of a style that the file it came from has once for many.
    for (OGRStyleTable* const table : {feature.GetStyleTable(), GetStyleTable(), dataset_.GetStyleTable()})
        if (const char* const found = table ? table->Find(style + 1) : nullptr) return found;
    return {};
}

void WriteLayer::noteKind_(const OGRFeature& feature) {
    const std::optional<std::string> kind = textIn(feature, index_, Column::Kind);
    if (!kind ||
        halCore::ZEL::ZelShape::stringToShapeType(UTILS::lowerCase(*kind)) != halCore::ZEL::ShapeType::None)
        return;
    if (strangeKinds_.insert(*kind).second)
        dataset_.note(std::string("layer ") + GetName() + ": \"" + UTILS::excerpt(*kind) +
                      "\" is no kind of shape; such features become what their geometry is");
}

void WriteLayer::noteUnknown_(const OGRFeature& feature) {
    std::erase_if(unknown_, [&](int field) {
        if (!feature.IsFieldSetAndNotNull(field) || *feature.GetFieldAsString(field) == '\0') return false;
        const std::string_view name = definition_->GetFieldDefn(field)->GetNameRef();
        // KML's driver gives them to every feature.
        if ((name == "tessellate" || name == "extrude") && feature.GetFieldAsInteger(field) <= 0)
            return false;
        lost_.append(lost_.empty() ? "" : ", ").append(definition_->GetFieldDefn(field)->GetNameRef());
        return true;
    });
}

}  // namespace exchange
