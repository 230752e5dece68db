#include "response/Canvasrecording.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace nerivane {
namespace {

enum Operation : char {
    SetPenOp = 'p',
    MoveToOp = 'm',
    LineToOp = 'l',
    TextColourOp = 'c',
    TextOp = 't',
    FillOp = 'f',
    CircleOp = 'o',
    BeginGroupOp = 'g',
    EndGroupOp = 'e',
};

std::uint8_t Channel(int value) {
    return static_cast<std::uint8_t>(value);
}

Rgb ColourOf(const int* numbers) {
    return {Channel(numbers[0]), Channel(numbers[1]), Channel(numbers[2])};
}

// Reads the recording back, throwing when it ends early.
class Reader {
  public:
    explicit Reader(std::FILE* file) : file_(file) {}
    bool Next(char& operation) { return std::fread(&operation, 1, 1, file_) == 1; }
    void Numbers(int* numbers, std::size_t count) { Read(numbers, count * sizeof(int)); }
    std::string Text() {
        int length = 0;
        Numbers(&length, 1);
        std::string text(static_cast<std::size_t>(std::max(length, 0)), '\0');
        Read(text.data(), text.size());
        return text;
    }

  private:
    void Read(void* into, std::size_t size) {
        if (std::fread(into, 1, size, file_) != size)
            throw std::runtime_error("The drawing's temporary file could not be read back.");
    }
    std::FILE* file_;
};

}  // namespace

CanvasRecording::CanvasRecording(Canvas& measure)
    : measure_(measure), file_(std::tmpfile(), &std::fclose) {
    if (!file_)
        throw std::runtime_error(std::string("Cannot make a temporary file for the drawing: ") +
                                 std::strerror(errno) + ".");
}

void CanvasRecording::Record(char operation, std::initializer_list<int> numbers) {
    std::fwrite(&operation, 1, 1, file_.get());
    for (const int number : numbers) std::fwrite(&number, sizeof number, 1, file_.get());
}

void CanvasRecording::RecordText(const std::string& text) {
    const int length = static_cast<int>(text.size());
    std::fwrite(&length, sizeof length, 1, file_.get());
    std::fwrite(text.data(), 1, text.size(), file_.get());
}

void CanvasRecording::SetPen(Rgb colour, int width, PenStyle style) {
    Record(SetPenOp, {colour.r, colour.g, colour.b, width, static_cast<int>(style)});
}

void CanvasRecording::MoveTo(int x, int y) {
    Record(MoveToOp, {x, y});
}

void CanvasRecording::LineTo(int x, int y) {
    Record(LineToOp, {x, y});
}

void CanvasRecording::SetTextColour(Rgb colour) {
    Record(TextColourOp, {colour.r, colour.g, colour.b});
}

void CanvasRecording::TextOut(int x, int y, const std::string& text) {
    Record(TextOp, {x, y});
    RecordText(text);
}

TextSize CanvasRecording::TextExtent(const std::string& text) {
    return measure_.TextExtent(text);
}

void CanvasRecording::FillRect(int left, int top, int right, int bottom, Rgb colour) {
    Record(FillOp, {left, top, right, bottom, colour.r, colour.g, colour.b});
    const auto known = std::find_if(lastFillOf_.begin(), lastFillOf_.end(),
                                    [colour](const auto& entry) { return entry.first == colour; });
    if (known != lastFillOf_.end())
        known->second = fills_;
    else
        lastFillOf_.emplace_back(colour, fills_);
    ++fills_;
}

void CanvasRecording::FillBehind(int left, int top, int right, int bottom, Rgb colour, Rgb behind) {
    const auto known = std::find_if(lastFillOf_.begin(), lastFillOf_.end(),
                                    [behind](const auto& entry) { return entry.first == behind; });
    const long above = known != lastFillOf_.end() ? known->second : -1;
    behind_.push_back({above, {left, top, right, bottom, colour}});
}

void CanvasRecording::Circle(int centreX, int centreY, int radius, bool filled) {
    Record(CircleOp, {centreX, centreY, radius, int{filled}});
}

void CanvasRecording::BeginGroup(const std::string& name, const std::string& description) {
    Record(BeginGroupOp, {});
    RecordText(name);
    RecordText(description);
}

void CanvasRecording::EndGroup() {
    Record(EndGroupOp, {});
}

void CanvasRecording::Replay(Canvas& target) const {
    // The fills behind one rectangle, latest first: an earlier one is drawn over it.
    const auto fillsAbove = [&](long rectangle) {
        for (auto record = behind_.rbegin(); record != behind_.rend(); ++record) {
            if (record->above != rectangle) continue;
            const Fill& f = record->fill;
            target.FillRect(f.left, f.top, f.right, f.bottom, f.colour);
        }
    };
    std::FILE* file = file_.get();
    if (std::ferror(file) || std::fflush(file) != 0 || std::fseek(file, 0, SEEK_SET) != 0)
        throw std::runtime_error("The drawing could not be kept in a temporary file.");
    Reader reader(file);
    fillsAbove(-1);
    long rectangles = 0;
    char operation = 0;
    int n[7] = {};
    while (reader.Next(operation)) {
        switch (operation) {
            case SetPenOp:
                reader.Numbers(n, 5);
                target.SetPen(ColourOf(n), n[3], static_cast<PenStyle>(n[4]));
                break;
            case MoveToOp:
                reader.Numbers(n, 2);
                target.MoveTo(n[0], n[1]);
                break;
            case LineToOp:
                reader.Numbers(n, 2);
                target.LineTo(n[0], n[1]);
                break;
            case TextColourOp:
                reader.Numbers(n, 3);
                target.SetTextColour(ColourOf(n));
                break;
            case TextOp:
                reader.Numbers(n, 2);
                target.TextOut(n[0], n[1], reader.Text());
                break;
            case FillOp:
                reader.Numbers(n, 7);
                target.FillRect(n[0], n[1], n[2], n[3], ColourOf(n + 4));
                fillsAbove(rectangles++);
                break;
            case CircleOp:
                reader.Numbers(n, 4);
                target.Circle(n[0], n[1], n[2], n[3] != 0);
                break;
            case BeginGroupOp: {
                const std::string name = reader.Text();
                target.BeginGroup(name, reader.Text());
                break;
            }
            case EndGroupOp: target.EndGroup(); break;
            default: throw std::runtime_error("The drawing's temporary file is damaged.");
        }
    }
    // Further drawing goes on after what was recorded.
    std::fseek(file, 0, SEEK_END);
}

}  // namespace nerivane
