#include "render/SchematicImage.h"

#include "render/QtCanvas.h"
#include "render/QtRaster.h"

namespace nerivane {

QImage RenderSchematic(const Schematic& schematic, qreal devicePixelRatio) {
    const TextSize size = SchematicSize(schematic);
    QImage image = NewImage({size.width, size.height, devicePixelRatio, {255, 255, 255}, true});
    QtCanvas canvas(image, 1, true);
    DrawSchematic(canvas, schematic);
    return image;
}

}  // namespace nerivane
