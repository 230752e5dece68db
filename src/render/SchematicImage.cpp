#include "render/SchematicImage.h"

#include <QBuffer>
#include <QByteArray>
#include <cctype>
#include <cmath>
#include <stdexcept>

#include "files/Atomicwrite.h"
#include "render/OffscreenGui.h"
#include "render/QtCanvas.h"
#include "response/SvgCanvas.h"

namespace nerivane {
namespace {

constexpr qreal PrintRatio = 2.0;

bool EndsWith(const std::string& text, const std::string& ending) {
    if (text.size() < ending.size()) return false;
    for (std::size_t i = 0; i < ending.size(); ++i) {
        const char c = text[text.size() - ending.size() + i];
        if (std::tolower(static_cast<unsigned char>(c)) != ending[i]) return false;
    }
    return true;
}

void Write(const std::string& path, std::string_view bytes) {
    std::string reason;
    if (!WriteFileAtomically(path, bytes, &reason))
        throw std::runtime_error("Cannot write the schematic file \"" + path + "\": " + reason +
                                 ".");
}

}  // namespace

QImage RenderSchematic(const Schematic& schematic, qreal devicePixelRatio) {
    const TextSize size = SchematicSize(schematic);
    QImage image(static_cast<int>(std::lround(size.width * devicePixelRatio)),
                 static_cast<int>(std::lround(size.height * devicePixelRatio)),
                 QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::white);
    QtCanvas canvas(image, 1, true);
    DrawSchematic(canvas, schematic);
    return image;
}

std::string SchematicSvg(const Schematic& schematic) {
    const TextSize size = SchematicSize(schematic);
    SvgCanvas canvas(size.width, size.height);
    DrawSchematic(canvas, schematic);
    return canvas.Document();
}

bool IsSchematicFileName(const std::string& path) {
    return EndsWith(path, ".svg") || EndsWith(path, ".png");
}

void SaveSchematic(const Schematic& schematic, const std::string& path) {
    if (EndsWith(path, ".svg")) return Write(path, SchematicSvg(schematic));
    if (!EndsWith(path, ".png"))
        throw std::runtime_error("The schematic file \"" + path + "\" must end in .svg or .png.");
    // Text needs a GUI application; without a window it runs on the offscreen platform.
    EnsureGuiApplication();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!RenderSchematic(schematic, PrintRatio).save(&buffer, "PNG"))
        throw std::runtime_error("Cannot draw the schematic for \"" + path + "\".");
    Write(path, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

}  // namespace nerivane
