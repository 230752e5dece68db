// What the plot and the schematics draw on: pens, lines, circles, text and filled rectangles
// in integer pixel coordinates (origin top left). The render layer implements it over a
// painter, the SVG writer as vector elements; tests record the calls and check the pixels.
#pragma once

#include <cstdint>
#include <string>

namespace nerivane {

struct Rgb {
    std::uint8_t r = 0, g = 0, b = 0;
    friend bool operator==(Rgb, Rgb) = default;
};

enum class PenStyle { Solid, Dash, Dot, Clear };

struct TextSize {
    int width = 0;
    int height = 0;
};

class Canvas {
  public:
    virtual ~Canvas() = default;
    virtual void SetPen(Rgb colour, int width, PenStyle style) = 0;
    virtual void MoveTo(int x, int y) = 0;
    virtual void LineTo(int x, int y) = 0;  // draws with the current pen, then moves there
    virtual void SetTextColour(Rgb colour) = 0;
    // Text with its top-left corner at (x, y).
    virtual void TextOut(int x, int y, const std::string& text) = 0;
    virtual TextSize TextExtent(const std::string& text) = 0;
    // Fills the rectangle from (left, top) to (right, bottom), exclusive of the far edges.
    virtual void FillRect(int left, int top, int right, int bottom, Rgb colour) = 0;
    // Fills the rectangle's pixels that are still the colour behind, so what is drawn there
    // stays in front: a band put under curves already drawn. A vector canvas, which has no
    // pixels to test, fills the rectangle.
    virtual void FillBehind(int left, int top, int right, int bottom, Rgb colour, Rgb /*behind*/) {
        FillRect(left, top, right, bottom, colour);
    }
    // A circle in the current pen, its inside filled with the pen's colour when filled.
    virtual void Circle(int centreX, int centreY, int radius, bool filled) = 0;
    // Marks what is drawn until EndGroup as one item with a name and a description (a part's
    // designator and exact value); a vector file keeps them, a picture has no use for them.
    virtual void BeginGroup(const std::string& /*name*/, const std::string& /*description*/) {}
    virtual void EndGroup() {}
};

}  // namespace nerivane
