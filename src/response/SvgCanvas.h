// A Canvas that writes an SVG document: lines, circles, rectangles and text as vector
// elements, and each group (a schematic's part) as a named group with its description, so a
// drawing saved as SVG scales without loss and can be searched for its parts.
#pragma once

#include <string>

#include "response/Canvas.h"

namespace nerivane {

class SvgCanvas final : public Canvas {
  public:
    // The document's size in pixels.
    SvgCanvas(int width, int height);

    void SetPen(Rgb colour, int width, PenStyle style) override;
    void MoveTo(int x, int y) override;
    void LineTo(int x, int y) override;
    void SetTextColour(Rgb colour) override;
    void TextOut(int x, int y, const std::string& text) override;
    // Measured for the sans font the document names, at the plot's label size.
    TextSize TextExtent(const std::string& text) override;
    void FillRect(int left, int top, int right, int bottom, Rgb colour) override;
    void Circle(int centreX, int centreY, int radius, bool filled) override;
    void BeginGroup(const std::string& name, const std::string& description) override;
    void EndGroup() override;

    // The whole document, as drawn so far.
    std::string Document() const;

  private:
    std::string Stroke() const;

    int width_;
    int height_;
    std::string body_;
    Rgb pen_{};
    int penWidth_ = 1;
    PenStyle penStyle_ = PenStyle::Solid;
    Rgb textColour_{};
    int x_ = 0;
    int y_ = 0;
};

}  // namespace nerivane
