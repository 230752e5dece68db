// Two pictures of one drawing made by different renderers compared pixel by pixel, allowing
// for how each places text and slanted lines: a pixel is matched when a pixel of the other
// picture at most one pixel away has nearly its colour. Around the plot's frame what is left
// unmatched counts by its largest connected patch: a renderer's glyphs leave specks, a missing
// line a long patch.
#pragma once

#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <vector>

namespace nerivane {

// Whether each pixel of a has no near match in b.
inline std::vector<char> UnmatchedPixels(const QImage& a, const QImage& b) {
    constexpr int Tolerance = 16;  // per channel, out of 255: a minor grid line is 24 off
    const auto near = [](QRgb p, QRgb q) {
        return std::abs(qRed(p) - qRed(q)) <= Tolerance &&
               std::abs(qGreen(p) - qGreen(q)) <= Tolerance &&
               std::abs(qBlue(p) - qBlue(q)) <= Tolerance;
    };
    std::vector<char> unmatched(static_cast<std::size_t>(a.width() * a.height()));
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            bool found = false;
            for (int dy = -1; dy <= 1 && !found; ++dy)
                for (int dx = -1; dx <= 1 && !found; ++dx)
                    found = b.valid(x + dx, y + dy) && near(a.pixel(x, y), b.pixel(x + dx, y + dy));
            unmatched[static_cast<std::size_t>(y * a.width() + x)] = !found;
        }
    }
    return unmatched;
}

// The pixels of the largest patch of marked pixels touching each other (diagonals too).
inline int LargestPatch(std::vector<char> marked, int width) {
    int largest = 0;
    std::vector<int> stack;
    for (std::size_t start = 0; start < marked.size(); ++start) {
        if (!marked[start]) continue;
        int size = 0;
        marked[start] = 0;
        stack.push_back(static_cast<int>(start));
        while (!stack.empty()) {
            const int at = stack.back();
            stack.pop_back();
            ++size;
            for (int dy = -1; dy <= 1; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    const int x = at % width + dx, next = at + dy * width + dx;
                    if (x < 0 || x >= width || next < 0 || next >= static_cast<int>(marked.size()))
                        continue;
                    if (marked[static_cast<std::size_t>(next)]) {
                        marked[static_cast<std::size_t>(next)] = 0;
                        stack.push_back(next);
                    }
                }
            }
        }
        largest = std::max(largest, size);
    }
    return largest;
}

// The plot's frame: the rows and columns that are mostly the frame's grey.
inline QRect FrameOf(const QImage& image) {
    const QRgb frame = qRgb(96, 96, 96);
    int top = image.height(), bottom = -1, left = image.width(), right = -1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != frame) continue;
            int row = 0, column = 0;
            for (int i = 0; i < image.width(); ++i) row += int{image.pixel(i, y) == frame};
            for (int i = 0; i < image.height(); ++i) column += int{image.pixel(x, i) == frame};
            if (2 * row > image.width()) top = std::min(top, y), bottom = std::max(bottom, y);
            if (2 * column > image.height()) left = std::min(left, x), right = std::max(right, x);
        }
    }
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

// Both ways; pictures of different sizes do not match at all. Within the plot's frame, which
// holds no text, every unmatched pixel counts (a band hidden between dense runs shows only in
// gaps); around it, where the labels are, the largest patch.
inline int Mismatch(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return a.width() * a.height();
    const QRect inside = FrameOf(a).adjusted(1, 1, -1, -1);
    int worst = 0;
    for (std::vector<char> unmatched : {UnmatchedPixels(a, b), UnmatchedPixels(b, a)}) {
        int within = 0;
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            for (int x = inside.left(); x <= inside.right(); ++x) {
                char& pixel = unmatched[static_cast<std::size_t>(y * a.width() + x)];
                within += pixel;
                pixel = 0;
            }
        }
        worst = std::max({worst, within, LargestPatch(unmatched, a.width())});
    }
    return worst;
}

// The glyphs of two text renderers differ in patches of a few dozen pixels; a grid line is
// a few hundred long.
inline constexpr int MostMismatched = 100;

}  // namespace nerivane
