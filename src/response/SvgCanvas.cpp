#include "response/SvgCanvas.h"

#include <algorithm>

#include "response/Plot.h"

namespace nerivane {
namespace {

// The font's average advance and line height for the sans font at the label size; a viewer
// with another sans font lays the text out a little differently, which the drawing allows for.
constexpr double AdvancePerCharacter = 0.6 * PlotFontPixels;
constexpr int LineHeight = PlotFontPixels + 2;
constexpr int Ascent = PlotFontPixels - 1;

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

std::string Attribute(const char* name, int value) {
    return std::string(" ") + name + "=\"" + std::to_string(value) + "\"";
}

}  // namespace

SvgCanvas::SvgCanvas(int width, int height) : width_(width), height_(height) {}

std::string SvgCanvas::Stroke() const {
    std::string stroke = " stroke=\"" + Colour(pen_) + "\"" + Attribute("stroke-width", penWidth_);
    if (penStyle_ == PenStyle::Dash) stroke += " stroke-dasharray=\"6 3\"";
    if (penStyle_ == PenStyle::Dot) stroke += " stroke-dasharray=\"1 2\"";
    return stroke;
}

void SvgCanvas::SetPen(Rgb colour, int width, PenStyle style) {
    pen_ = colour;
    penWidth_ = std::max(width, 1);
    penStyle_ = style;
}

void SvgCanvas::MoveTo(int x, int y) {
    x_ = x;
    y_ = y;
}

void SvgCanvas::LineTo(int x, int y) {
    if (penStyle_ != PenStyle::Clear) {
        body_ += "<line" + Attribute("x1", x_) + Attribute("y1", y_) + Attribute("x2", x) +
                 Attribute("y2", y) + Stroke() + "/>\n";
    }
    MoveTo(x, y);
}

void SvgCanvas::SetTextColour(Rgb colour) {
    textColour_ = colour;
}

void SvgCanvas::TextOut(int x, int y, const std::string& text) {
    body_ += "<text" + Attribute("x", x) + Attribute("y", y + Ascent) + " stroke=\"none\" fill=\"" +
             Colour(textColour_) + "\">" + Escaped(text) + "</text>\n";
}

TextSize SvgCanvas::TextExtent(const std::string& text) {
    // UTF-8 continuation bytes are no characters of their own.
    const auto characters = std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    });
    return {static_cast<int>(characters * AdvancePerCharacter + 0.5), LineHeight};
}

void SvgCanvas::FillRect(int left, int top, int right, int bottom, Rgb colour) {
    body_ += "<rect" + Attribute("x", left) + Attribute("y", top) +
             Attribute("width", right - left) + Attribute("height", bottom - top) + " fill=\"" +
             Colour(colour) + "\"/>\n";
}

void SvgCanvas::Circle(int centreX, int centreY, int radius, bool filled) {
    body_ += "<circle" + Attribute("cx", centreX) + Attribute("cy", centreY) +
             Attribute("r", radius) + " fill=\"" + (filled ? Colour(pen_) : "none") + "\"" +
             Stroke() + "/>\n";
}

void SvgCanvas::BeginGroup(const std::string& name, const std::string& description) {
    body_ += "<g id=\"" + Escaped(name) + "\"><title>" + Escaped(description) + "</title>\n";
}

void SvgCanvas::EndGroup() {
    body_ += "</g>\n";
}

std::string SvgCanvas::Document() const {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<svg xmlns=\"http://www.w3.org/2000/svg\"" +
           Attribute("width", width_) + Attribute("height", height_) + " viewBox=\"0 0 " +
           std::to_string(width_) + " " + std::to_string(height_) +
           "\" font-family=\"DejaVu Sans, sans-serif\" font-size=\"" +
           std::to_string(PlotFontPixels) + "px\" stroke-linecap=\"round\">\n" + body_ + "</svg>\n";
}

}  // namespace nerivane
