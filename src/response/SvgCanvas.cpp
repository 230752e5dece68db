#include "response/SvgCanvas.h"

#include <algorithm>
#include <array>

#include "response/Plot.h"

namespace nerivane {
namespace {

constexpr int LineHeight = PlotFontPixels + 2;
constexpr int Ascent = PlotFontPixels - 1;
constexpr std::size_t PieceSize = 1 << 16;

// The advances of the sans font the document names (DejaVu Sans, the one the program installs)
// at the label size, in 64ths of a pixel, as the picture's painter places its glyphs: ' ' to
// '~'. A viewer with another sans font lays the text out a little differently, which the
// drawing allows for.
constexpr std::array<short, 95> AsciiAdvances = {
    244, 307, 353, 643, 488, 729, 598, 211, 299, 299, 384, 643, 244, 277, 244, 258, 488, 488, 488,
    488, 488, 488, 488, 488, 488, 488, 258, 258, 643, 643, 643, 407, 768, 525, 526, 536, 591, 485,
    441, 595, 577, 226, 226, 503, 427, 662, 574, 604, 463, 604, 533, 487, 469, 562, 525, 759, 526,
    469, 526, 299, 258, 299, 643, 384, 384, 470, 487, 422, 487, 472, 270, 487, 486, 213, 213, 444,
    213, 748, 486, 469, 487, 487, 315, 400, 301, 486, 454, 628, 454, 454, 403, 488, 258, 488, 643};

// The few other characters the program writes (µ, °, ±, ×, Ω); anything else is taken as
// wide as a digit.
int OtherAdvance(char32_t c) {
    switch (c) {
        case U'µ': return 488;
        case U'°': return 384;
        case U'±':
        case U'×': return 643;
        case U'Ω': return 586;
        default: return 488;
    }
}

// The characters of UTF-8 text; a malformed byte stands for itself.
template <typename Visit>
void ForEachCharacter(const std::string& text, Visit visit) {
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const int extra = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : byte >= 0xC0 ? 1 : 0;
        char32_t c = extra == 0 ? byte : byte & (0x3F >> extra);
        std::size_t next = i + 1;
        for (int k = 0; k < extra && next < text.size(); ++k, ++next)
            c = (c << 6) | (static_cast<unsigned char>(text[next]) & 0x3F);
        visit(c);
        i = next;
    }
}

std::string Colour(Rgb c) {
    static constexpr char Hex[] = "0123456789abcdef";
    std::string text = "#";
    for (const std::uint8_t channel : {c.r, c.g, c.b}) {
        text += Hex[channel >> 4];
        text += Hex[channel & 15];
    }
    return text;
}

std::string Escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += c;
        }
    }
    return out;
}

std::string Attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
}

std::string Attribute(const char* name, int value) {
    return Attribute(name, std::to_string(value));
}

// value + a half, written exactly.
std::string PlusHalf(int value) {
    return value >= 0 ? std::to_string(value) + ".5" : "-" + std::to_string(-(value + 1)) + ".5";
}

}  // namespace

SvgCanvas::SvgCanvas(int width, int height, SvgWriter write, SvgStrokes strokes)
    : width_(width),
      height_(height),
      write_(std::move(write)),
      onPixels_(strokes == SvgStrokes::OnPixels) {
    Put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\"" +
        Attribute("width", width_) + Attribute("height", height_) + " viewBox=\"0 0 " +
        std::to_string(width_) + " " + std::to_string(height_) +
        "\" font-family=\"DejaVu Sans, sans-serif\" font-size=\"" + std::to_string(PlotFontPixels) +
        "px\" stroke-linecap=\"round\"" +
        // Lines on their pixels are drawn as the picture draws them, without smoothing.
        (onPixels_ ? " shape-rendering=\"crispEdges\"" : "") + ">\n");
}

void SvgCanvas::Put(const std::string& element) {
    pending_ += element;
    if (pending_.size() >= PieceSize) {
        write_(pending_);
        pending_.clear();
    }
}

std::string SvgCanvas::Position(int value) const {
    return onPixels_ ? PlusHalf(value) : std::to_string(value);
}

std::string SvgCanvas::Stroke() const {
    std::string stroke = " stroke=\"" + Colour(pen_) + "\"" + Attribute("stroke-width", penWidth_);
    if (penStyle_ == PenStyle::Dash) stroke += " stroke-dasharray=\"6 3\"";
    if (penStyle_ == PenStyle::Dot) stroke += " stroke-dasharray=\"1 2\"";
    return stroke;
}

void SvgCanvas::SetPen(Rgb colour, int width, PenStyle style) {
    EndPath();
    pen_ = colour;
    penWidth_ = std::max(width, 1);
    penStyle_ = style;
}

void SvgCanvas::MoveTo(int x, int y) {
    EndPath();
    x_ = x;
    y_ = y;
}

void SvgCanvas::LineTo(int x, int y) {
    if (penStyle_ != PenStyle::Clear) {
        if (pathLength_ == 0) {
            pathX_ = x_;
            pathY_ = y_;
        } else {
            pathSteps_ += ' ';
        }
        pathSteps_ += std::to_string(x - x_);
        if (y >= y_) pathSteps_ += ' ';  // a minus sign separates the numbers itself
        pathSteps_ += std::to_string(y - y_);
        ++pathLength_;
    }
    x_ = x;
    y_ = y;
}

void SvgCanvas::EndPath() {
    if (pathLength_ == 0) return;
    if (pathLength_ == 1) {
        Put("<line" + Attribute("x1", Position(pathX_)) + Attribute("y1", Position(pathY_)) +
            Attribute("x2", Position(x_)) + Attribute("y2", Position(y_)) + Stroke() + "/>\n");
    } else {
        Put("<path d=\"M" + Position(pathX_) + " " + Position(pathY_) + "l" + pathSteps_ +
            "\" fill=\"none\"" + Stroke() + "/>\n");
    }
    pathSteps_.clear();
    pathLength_ = 0;
}

void SvgCanvas::SetTextColour(Rgb colour) {
    textColour_ = colour;
}

void SvgCanvas::TextOut(int x, int y, const std::string& text) {
    EndPath();
    Put("<text" + Attribute("x", x) + Attribute("y", y + Ascent) + " stroke=\"none\" fill=\"" +
        Colour(textColour_) + "\">" + Escaped(text) + "</text>\n");
}

TextSize SvgCanvas::TextExtent(const std::string& text) {
    int advance = 0;
    ForEachCharacter(text, [&advance](char32_t c) {
        advance += c >= U' ' && c <= U'~' ? AsciiAdvances[c - U' '] : OtherAdvance(c);
    });
    return {(advance + 32) / 64, LineHeight};
}

void SvgCanvas::FillRect(int left, int top, int right, int bottom, Rgb colour) {
    EndPath();
    Put("<rect" + Attribute("x", left) + Attribute("y", top) + Attribute("width", right - left) +
        Attribute("height", bottom - top) + " fill=\"" + Colour(colour) + "\"/>\n");
}

void SvgCanvas::Circle(int centreX, int centreY, int radius, bool filled) {
    EndPath();
    Put("<circle" + Attribute("cx", Position(centreX)) + Attribute("cy", Position(centreY)) +
        Attribute("r", radius) + " fill=\"" + (filled ? Colour(pen_) : "none") + "\"" + Stroke() +
        "/>\n");
}

void SvgCanvas::BeginGroup(const std::string& name, const std::string& description) {
    EndPath();
    Put("<g id=\"" + Escaped(name) + "\"><title>" + Escaped(description) + "</title>\n");
}

void SvgCanvas::EndGroup() {
    EndPath();
    Put("</g>\n");
}

void SvgCanvas::Finish() {
    EndPath();
    Put("</svg>\n");
    write_(pending_);
    pending_.clear();
}

std::string SvgDocument(int width, int height, const std::function<void(Canvas&)>& draw) {
    std::string document;
    SvgCanvas canvas(width, height, [&document](std::string_view piece) { document += piece; });
    draw(canvas);
    canvas.Finish();
    return document;
}

}  // namespace nerivane
