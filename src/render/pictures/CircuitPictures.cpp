// Draws the seven circuit pictures into the run-time files folder named on the command line;
// the build runs it, so the pictures the program shows are the circuits it simulates.
#include <QImage>
#include <QString>
#include <cstdio>
#include <string>

#include "circuit/Sectioncircuits.h"
#include "render/OffscreenGui.h"
#include "render/SchematicImage.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    nerivane::EnsureGuiApplication();
    const std::string folder = argv[1];
    for (const nerivane::Topology topology : nerivane::Topologies) {
        const std::string path = folder + "/" + nerivane::CircuitOf(topology).pictureName;
        const QImage picture = nerivane::RenderSchematic(nerivane::CircuitPicture(topology));
        if (!picture.save(QString::fromStdString(path), "BMP")) {
            std::fprintf(stderr, "Cannot write the circuit picture \"%s\".\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
