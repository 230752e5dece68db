// A Canvas that writes an SVG document: lines, circles, rectangles and text as vector
// elements, and each group (a schematic's part) as a named group with its description, so a
// drawing saved as SVG scales without loss and can be searched for its parts.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "response/Canvas.h"

namespace nerivane {

// Where the document goes, piece by piece, so that a large drawing is never held whole.
using SvgWriter = std::function<void(std::string_view piece)>;

// Where a stroke lies: centred on its points, as a smooth drawing puts it, or on the pixels
// right of and below them and unsmoothed, as the plot's picture puts its lines.
enum class SvgStrokes { Centred, OnPixels };

class SvgCanvas final : public Canvas {
  public:
    // The document's size in pixels. The opening tag is written at once, the rest as it is
    // drawn; Finish closes the document.
    SvgCanvas(int width, int height, SvgWriter write, SvgStrokes strokes = SvgStrokes::Centred);
    SvgCanvas(const SvgCanvas&) = delete;
    SvgCanvas& operator=(const SvgCanvas&) = delete;

    void SetPen(Rgb colour, int width, PenStyle style) override;
    void MoveTo(int x, int y) override;
    void LineTo(int x, int y) override;
    void SetTextColour(Rgb colour) override;
    void TextOut(int x, int y, const std::string& text) override;
    // Measured for the sans font the document names, at the plot's label size, as the
    // picture's painter lays it out, so a drawing measured here looks the same in both.
    TextSize TextExtent(const std::string& text) override;
    void FillRect(int left, int top, int right, int bottom, Rgb colour) override;
    void Circle(int centreX, int centreY, int radius, bool filled) override;
    void BeginGroup(const std::string& name, const std::string& description) override;
    void EndGroup() override;

    void Finish();

  private:
    std::string Position(int value) const;  // of a stroke's point
    std::string Stroke() const;
    // Connected lines in one pen go out as one path: a trace of a thousand points is one
    // element, not a thousand.
    void EndPath();
    void Put(const std::string& element);

    int width_;
    int height_;
    SvgWriter write_;
    std::string pending_;  // written once it is large, so the writes are few
    bool onPixels_;        // a stroke's points moved by half a pixel
    Rgb pen_{};
    int penWidth_ = 1;
    PenStyle penStyle_ = PenStyle::Solid;
    Rgb textColour_{};
    int x_ = 0;
    int y_ = 0;
    // The path being drawn: its start, its steps, how many.
    int pathX_ = 0;
    int pathY_ = 0;
    std::string pathSteps_;
    int pathLength_ = 0;
};

// The drawing as one document.
std::string SvgDocument(int width, int height, const std::function<void(Canvas&)>& draw);

}  // namespace nerivane
