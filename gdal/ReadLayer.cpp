#include "gdal/ReadLayer.h"

#include <algorithm>
#include <memory>

#include "gdal/FeatureColumns.h"
#include "gdal/Geometry.h"
#include "gdal/NewShape.h"
#include "gdal/ShapeTexts.h"
#include "gdal/Style.h"
#include "gdal/Wgs84Reference.h"

namespace exchange {

namespace ZEL = halCore::ZEL;

namespace {

OGRwkbGeometryType commonType(const std::vector<ReadShape>& shapes) {
    if (shapes.empty()) return wkbUnknown;
    const OGRwkbGeometryType first = geometryTypeOf(*shapes.front().shape);
    const bool same = std::ranges::all_of(
        shapes, [first](const ReadShape& read) { return geometryTypeOf(*read.shape) == first; });
    return same ? first : wkbUnknown;
}

const std::vector<halCore::Vec3>* pointsOf(const ZEL::ZelShape& shape) {
    if (const auto* points = dynamic_cast<const ZEL::PointBasedShape*>(&shape)) return &points->points();
    if (shape.shapeType() == ZEL::ShapeType::Points) return &static_cast<const ZEL::Points&>(shape).points();
    return nullptr;
}

}  // namespace

ReadLayer::ReadLayer(const char* name, ZEL::ShapeType kind, std::vector<ReadShape> shapes,
                     const ReadOptions& options)
    : shapes_(std::move(shapes)), options_(options), definition_(new OGRFeatureDefn(name)) {
    SetDescription(name);
    definition_->Reference();
    definition_->SetGeomType(commonType(shapes_));
    definition_->GetGeomFieldDefn(0)->SetSpatialRef(wgs84Reference().get());
    for (const Column column : columnsOf(kind)) {
        const ColumnInfo& info = infoOf(column);
        OGRFieldDefn field(info.name, info.type);
        field.SetSubType(info.subType);
        index_.set(column, definition_->GetFieldCount());
        definition_->AddFieldDefn(&field);
    }
}

ReadLayer::~ReadLayer() {
    definition_->Release();
}

OGRErr ReadLayer::SetNextByIndex(GIntBig index) {
    if (isFiltered_()) return OGRLayer::SetNextByIndex(index);
    if (index < 0 || static_cast<std::size_t>(index) >= shapes_.size()) {
        next_ = shapes_.size();
        return OGRERR_FAILURE;
    }
    next_ = static_cast<std::size_t>(index);
    return OGRERR_NONE;
}

OGRFeature* ReadLayer::GetFeature(GIntBig number) {
    if (number < 0 || static_cast<std::size_t>(number) >= shapes_.size()) return nullptr;
    return makeFeature_(static_cast<std::size_t>(number));
}

GIntBig ReadLayer::GetFeatureCount(int force) {
    return isFiltered_() ? OGRLayer::GetFeatureCount(force) : static_cast<GIntBig>(shapes_.size());
}

int ReadLayer::TestCapability(const char* capability) {
    for (const char* always : {OLCRandomRead, OLCStringsAsUTF8, OLCZGeometries, OLCIgnoreFields})
        if (EQUAL(capability, always)) return TRUE;
    if (EQUAL(capability, OLCFastFeatureCount) || EQUAL(capability, OLCFastSetNextByIndex))
        return !isFiltered_();
    return FALSE;
}

OGRFeature* ReadLayer::GetNextRawFeature() {
    return next_ < shapes_.size() ? makeFeature_(next_++) : nullptr;
}

OGRFeature* ReadLayer::makeFeature_(std::size_t number) const {
    const auto& [shape, line] = shapes_[number];
    auto feature = std::make_unique<OGRFeature>(definition_);
    feature->SetFID(static_cast<GIntBig>(number));
    // Offsets that have a place of their own are shown there.
    halCore::Vec3 own;
    const bool offset = hasOffsets(*shape);
    const bool isPlaced = shape->getReferencePosition(own) == 0;
    // What follows a platform's angles is turned by its heading, too.
    std::string follows;
    const bool usesAbout = options_.about && ((offset && !isPlaced) || followLetters(*shape, follows) == 0);

    bool altered = false;
    if (!definition_->IsGeometryIgnored()) {
        const Outline outline = outlineOf(*shape, options_.about, options_.tolerance);
        if (auto geometry = geometryOf(outline, options_.split, altered)) {
            geometry->assignSpatialReference(definition_->GetGeomFieldDefn(0)->GetSpatialRef());
            feature->SetGeometryDirectly(geometry.release());
        }
    }
    const auto put = [&](Column column, const auto& value) {
        if (index_[column] >= 0 && !definition_->GetFieldDefn(index_[column])->IsIgnored())
            feature->SetField(index_[column], value);
    };
    putColumns(*shape, index_, *feature);
    put(Column::Kind, std::string(ZEL::ZelShape::shapeTypeToString(shape->shapeType())).c_str());
    put(Column::SourceLine, static_cast<int>(line));
    if (offset) put(Column::Relative, 1);
    if (usesAbout) put(Column::About, textOfPlace(*options_.about).c_str());
    if (options_.tolerance > 0.0) put(Column::Tolerance, options_.tolerance);
    // Points whose geometry does not hold them as they are.
    const std::vector<halCore::Vec3>* const points = pointsOf(*shape);
    if (points && (altered || offset)) put(Column::Points, textOfPoints(*points, !offset).c_str());
    // Also where styles are ignored: QGIS does so with all layers that it may, and asks for them all the
    // same.
    feature->SetStyleString(styleOf(*shape).c_str());
    return feature.release();
}

}  // namespace exchange
