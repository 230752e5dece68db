// Text can only be drawn once a QGuiApplication exists. The window has its own; a program
// without one (the command line, the render tests) creates one here on the offscreen
// platform, which needs no display.
#pragma once

namespace nerivane {

// Creates the application object on the offscreen platform unless one exists already; it
// lives until the program exits.
void EnsureGuiApplication();

// The command line an application on the offscreen platform is made with. The application
// keeps references to its arguments, so they live as long as the program.
struct OffscreenArguments {
    int& argc;
    char** argv;
};
OffscreenArguments OffscreenApplicationArguments();

// The offscreen platform warns about every window feature it lacks and about the unset
// runtime folder of scripts and CI jobs; none of that concerns the picture, so it is dropped.
void QuietOffscreenWarnings();

}  // namespace nerivane
