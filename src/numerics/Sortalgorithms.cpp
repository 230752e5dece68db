#include "numerics/Sortalgorithms.h"

namespace nerivane {

bool SortIndexByKey(std::span<const double> keys, std::span<int> index, int n, bool ascending) {
    if (n < 2) return false;
    // The heap keeps at its root the key that sorts last: the largest when ascending, the
    // smallest when descending.
    const auto lessInHeapOrder = [&](double first, double second) {
        return ascending ? first < second : first > second;
    };
    const long long stepLimit = static_cast<long long>(n) * n;
    long long steps = 0;
    int l = n / 2;
    int ir = n - 1;
    while (true) {
        if (++steps >= stepLimit) return false;
        int moving;
        if (l > 0) {
            --l;
            moving = index[l];
        } else {
            moving = index[ir];
            index[ir] = index[0];
            if (ir-- == 1) {
                index[0] = moving;
                return true;
            }
        }
        // Sift down, with 1-based heap positions i and j.
        int i = l + 1;
        int j = 2 * i;
        while (j <= ir + 1) {
            if (++steps >= stepLimit) return false;
            if (j <= ir && lessInHeapOrder(keys[index[j - 1]], keys[index[j]])) ++j;
            if (lessInHeapOrder(keys[moving], keys[index[j - 1]])) {
                index[i - 1] = index[j - 1];
                i = j;
                j *= 2;
            } else {
                break;
            }
        }
        index[i - 1] = moving;
    }
}

}  // namespace nerivane
