#include "numerics/Sortalgorithms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace nerivane {
namespace {

std::vector<int> Sorted(const std::vector<double>& keys, bool ascending, bool* finished) {
    std::vector<int> index(keys.size());
    std::iota(index.begin(), index.end(), 0);
    *finished = SortIndexByKey(keys, index, static_cast<int>(keys.size()), ascending);
    return index;
}

// Property: for 2 to 20 random keys the sort always finishes and the keys come out ordered,
// in both directions.
TEST(SortIndexByKey, FinishesAndOrdersEveryLengthUpToTwenty) {
    std::mt19937 generator(7);
    std::uniform_int_distribution<int> key(0, 9);  // small range, so equal keys occur
    for (int n = 2; n <= 20; ++n) {
        for (int trial = 0; trial < 50; ++trial) {
            std::vector<double> keys(n);
            for (double& k : keys) k = key(generator);
            for (bool ascending : {true, false}) {
                bool finished = false;
                const std::vector<int> index = Sorted(keys, ascending, &finished);
                ASSERT_TRUE(finished) << n;
                std::vector<int> seen = index;
                std::sort(seen.begin(), seen.end());
                for (int i = 0; i < n; ++i) ASSERT_EQ(seen[i], i);
                for (int i = 1; i < n; ++i) {
                    if (ascending)
                        ASSERT_LE(keys[index[i - 1]], keys[index[i]]);
                    else
                        ASSERT_GE(keys[index[i - 1]], keys[index[i]]);
                }
            }
        }
    }
}

}  // namespace
}  // namespace nerivane
