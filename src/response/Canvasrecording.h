// What is drawn on a canvas, kept in a temporary file and replayed onto a vector canvas later.
// A vector file cannot fill "only where the background still shows" as a picture does, so the
// replay puts each such fill (the worst case's envelope) where it belongs in the drawing order:
// just above the background it was meant for, under everything drawn on that since.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "response/Canvas.h"

namespace nerivane {

class CanvasRecording final : public Canvas {
  public:
    // Text is measured by the canvas the drawing is meant for. Throws std::runtime_error when
    // no temporary file can be made.
    explicit CanvasRecording(Canvas& measure);

    void SetPen(Rgb colour, int width, PenStyle style) override;
    void MoveTo(int x, int y) override;
    void LineTo(int x, int y) override;
    void SetTextColour(Rgb colour) override;
    void TextOut(int x, int y, const std::string& text) override;
    TextSize TextExtent(const std::string& text) override;
    void FillRect(int left, int top, int right, int bottom, Rgb colour) override;
    // Goes just above the last rectangle filled in the colour behind (the first of the
    // drawing when there is none), under what was drawn since and under the fills behind
    // made before it, as on a picture the first one to reach a pixel keeps it.
    void FillBehind(int left, int top, int right, int bottom, Rgb colour, Rgb behind) override;
    void Circle(int centreX, int centreY, int radius, bool filled) override;
    void BeginGroup(const std::string& name, const std::string& description) override;
    void EndGroup() override;

    // Draws everything recorded onto target, in order, with the fills behind in their places.
    // Throws std::runtime_error when the temporary file cannot be read back.
    void Replay(Canvas& target) const;

  private:
    struct Fill {
        int left, top, right, bottom;
        Rgb colour;
    };
    struct FillBehindRecord {
        long above;  // the rectangle it goes above, counted from 0; -1 for the drawing's start
        Fill fill;
    };

    void Record(char operation, std::initializer_list<int> numbers);
    void RecordText(const std::string& text);

    Canvas& measure_;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
    long fills_ = 0;  // rectangles filled so far
    // Each colour a rectangle was filled in, with the latest such rectangle.
    std::vector<std::pair<Rgb, long>> lastFillOf_;
    std::vector<FillBehindRecord> behind_;
};

}  // namespace nerivane
