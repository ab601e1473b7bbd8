#include "gdal/convert/Copy.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>

#include <cpl_string.h>
#include <ogrsf_frmts.h>

#include "gdal/Wgs84Reference.h"

namespace exchange {
namespace {

constexpr std::size_t kLongestText = 254;

/// One source layer's features into the target's layers.
class LayerCopy {
  public:
    LayerCopy(OGRLayer& from, GDALDataset& target, const Format& format, std::string name, Copied& copied)
        : from_(from), target_(target), format_(format), name_(std::move(name)), copied_(copied) {}

    void run() {
        // GPX wants its points before its lines.
        copyAll();
        points_ = false;
        if (format_.layers == Format::Layers::PointsAndLines) copyAll();
        // A layer without a feature is one nevertheless.
        if (layers_.empty() && format_.layers == Format::Layers::One) layer(name_, wkbUnknown);
    }

  private:
    struct Target {
        OGRLayer* layer = nullptr;
        /// The target's field of each field of the source, -1 for none.
        std::vector<int> fields;
    };

    void copyAll() {
        for (const auto& feature : from_) {
            const OGRGeometry* const geometry = feature->GetGeometryRef();
            switch (format_.layers) {
                case Format::Layers::One:
                    put(*feature, geometry, name_, wkbUnknown);
                    break;
                case Format::Layers::PointsAndLines:
                    putPointsOrLines(*feature, geometry);
                    break;
                case Format::Layers::OneEachType:
                    putByType(*feature, geometry);
                    break;
            }
        }
    }

    const Target& layer(const std::string& name, OGRwkbGeometryType type) {
        const auto found = layers_.find(name);
        if (found != layers_.end()) return found->second;
        Target& target = layers_[name];
        CPLStringList options;
        if (format_.layerOption) options.AddString(format_.layerOption);
        OGRSpatialReference* const reference = from_.GetSpatialRef();
        target.layer = target_.CreateLayer(name.c_str(), reference, type, options.List());
        if (!target.layer) return target;
        OGRFeatureDefn* const fields = from_.GetLayerDefn();
        for (int i = 0; i < fields->GetFieldCount(); ++i) {
            // It is in the geometry, too.
            const bool isElevation = from_.GetName() == std::string_view("waypoints") &&
                                     EQUAL(fields->GetFieldDefn(i)->GetNameRef(), "ele");
            if (isElevation) {
                target.fields.push_back(-1);
                continue;
            }
            // GPX has a name for every feature.
            int at = target.layer->GetLayerDefn()->GetFieldIndex(fields->GetFieldDefn(i)->GetNameRef());
            if (at < 0 && target.layer->CreateField(fields->GetFieldDefn(i)) == OGRERR_NONE)
                at = target.layer->GetLayerDefn()->GetFieldCount() - 1;
            target.fields.push_back(at);
        }
        return target;
    }

    void put(const OGRFeature& feature, const OGRGeometry* geometry, const std::string& name,
             OGRwkbGeometryType type) {
        const Target& target = layer(name, type);
        ++copied_.features;
        if (!target.layer) {
            ++copied_.failed;
            return;
        }
        OGRFeature made(target.layer->GetLayerDefn());
        made.SetFieldsFrom(&feature, target.fields.data(), TRUE);
        // GPX joins lines without a blank.
        if (format_.layers == Format::Layers::PointsAndLines) joinLines(made);
        made.SetStyleString(feature.GetStyleString());
        if (geometry) made.SetGeometry(geometry);
        if (format_.layers == Format::Layers::OneEachType)
            for (int i = 0; i < feature.GetFieldCount(); ++i)
                if (std::string_view(feature.GetFieldAsString(i)).size() > kLongestText) ++copied_.texts;
        if (target.layer->CreateFeature(&made) != OGRERR_NONE) ++copied_.failed;
    }

    static void joinLines(OGRFeature& feature) {
        for (int i = 0; i < feature.GetFieldCount(); ++i) {
            std::string text = feature.GetFieldAsString(i);
            if (text.find('\n') == std::string::npos) continue;
            std::ranges::replace(text, '\n', ' ');
            feature.SetField(i, text.c_str());
        }
    }

    void putPointsOrLines(const OGRFeature& feature, const OGRGeometry* geometry) {
        if (!geometry || geometry->IsEmpty()) {
            if (points_) ++copied_.withoutPlace;
            return;
        }
        if ((geometry->getDimension() == 0) != points_) return;
        const OGRwkbGeometryType type = wkbFlatten(geometry->getGeometryType());
        if (type == wkbPoint) {
            put(feature, geometry, "waypoints", wkbPoint25D);
        } else if (type == wkbMultiPoint) {
            for (const OGRPoint* point : *geometry->toMultiPoint())
                put(feature, point, "waypoints", wkbPoint25D);
        } else {
            if (geometry->getDimension() == 2) ++copied_.areasAsLines;
            const std::unique_ptr<OGRGeometry> lines(
                OGRGeometryFactory::forceToMultiLineString(geometry->clone()));
            put(feature, lines.get(), "tracks", wkbMultiLineString25D);
        }
    }

    void putByType(const OGRFeature& feature, const OGRGeometry* geometry) {
        const OGRwkbGeometryType type = geometry ? wkbFlatten(geometry->getGeometryType()) : wkbNone;
        if (type == wkbNone)
            put(feature, nullptr, name_ + "_table", wkbNone);
        else if (type == wkbPoint)
            put(feature, geometry, name_ + "_point", wkbPoint25D);
        else if (type == wkbMultiPoint)
            put(feature, geometry, name_ + "_points", wkbMultiPoint25D);
        else if (geometry->getDimension() == 1)
            put(feature, geometry, name_ + "_line", wkbLineString25D);
        else
            put(feature, geometry, name_ + "_area", wkbPolygon25D);
    }

    OGRLayer& from_;
    GDALDataset& target_;
    const Format& format_;
    std::string name_;
    Copied& copied_;
    bool points_ = true;
    std::map<std::string, Target> layers_;
};

}  // namespace

Copied copyLayers(GDALDataset& source, GDALDataset& target, const Format& format, const std::string& name) {
    Copied copied;
    for (OGRLayer* const layer : source.GetLayers()) {
        const std::string layerName = layer->GetName();
        // The points of GPX's routes and tracks are those of their lines again.
        if (layerName == "route_points" || layerName == "track_points") continue;
        LayerCopy(*layer, target, format, name.empty() ? layerName : name, copied).run();
    }
    return copied;
}

}  // namespace exchange
