#include "globe/BaseMap.h"

#include <QFile>
#include <memory>
#include <string_view>

#include "format/Parser.h"
#include "format/ZelShapes.h"

/// Resources of a static library are not found by themselves. (The macro does not work in a namespace.)
static void initializeBaseMap() {
    Q_INIT_RESOURCE(base_map);
}

namespace sandbox {

namespace {

namespace ZEL = halCore::ZEL;

/// The lines of a file that is part of the program; areas are reduced to their borders.
OverlayScene::Shapes linesOf(const char* resource, const ZEL::Color& color) {
    OverlayScene::Shapes shapes;
    QFile file{QString::fromLatin1(resource)};
    if (!file.open(QIODevice::ReadOnly)) return shapes;
    const QByteArray text = file.readAll();
    ZEL::Parser().parse(std::string_view(text.constData(), static_cast<std::size_t>(text.size())), shapes);
    for (const auto& shape : shapes) {
        auto* lines = dynamic_cast<ZEL::FillableShape*>(shape.get());
        if (!lines) continue;
        lines->setLineColor(color);
        lines->setLineWidth(1);
        lines->setFilled(false);
    }
    return shapes;
}

}  // namespace

void BaseMap::show(const MapOptions& options) {
    if (options.borders || options.coastlines) initializeBaseMap();
    if (options.borders && borders_ == 0)
        borders_ = scene_.add(linesOf(":/map/countries-110m.zel", ZEL::Color(255, 225, 150, 110)));
    if (options.coastlines && coastlines_ == 0)
        coastlines_ = scene_.add(linesOf(":/map/coast-110m.zel", ZEL::Color(200, 235, 255, 190)));
    scene_.setShown(borders_, options.borders);
    scene_.setShown(coastlines_, options.coastlines);
}

}  // namespace sandbox
