// Two pictures of one drawing made by different renderers compared pixel by pixel, allowing
// for how each places text and slanted lines: a pixel is matched when a pixel of the other
// picture at most one pixel away has nearly its colour, and what is left unmatched counts by
// its largest connected patch. A renderer's glyphs leave specks; a missing trace, grid line or
// band leaves a long line or an area.
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

// Both ways; pictures of different sizes do not match at all.
inline int Mismatch(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return a.width() * a.height();
    return std::max(LargestPatch(UnmatchedPixels(a, b), a.width()),
                    LargestPatch(UnmatchedPixels(b, a), a.width()));
}

// The glyphs of two text renderers differ in patches of a few dozen pixels; a grid line is
// a few hundred long.
inline constexpr int MostMismatched = 150;

}  // namespace nerivane
