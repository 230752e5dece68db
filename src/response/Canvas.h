// What the plot draws on: pens, lines, text and filled rectangles in integer pixel
// coordinates (origin top left). The render layer implements it over a painter; tests record
// the calls and check the pixels the plot lands on.
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
};

}  // namespace nerivane
