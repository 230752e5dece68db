#include "numerics/OptimumLTable.h"

#include <array>

namespace nerivane {
namespace {

// Row n holds the n + 1 coefficients of L_n(x), highest power first. The rows are the
// optimum-L ("monotonic with the steepest cut-off") polynomials built from Legendre
// polynomials; the table test regenerates every row in exact rational arithmetic.
// clang-format off
constexpr std::array<std::int64_t, 2> Row1{1, 0};
constexpr std::array<std::int64_t, 3> Row2{1, 0, 0};
constexpr std::array<std::int64_t, 4> Row3{3, -3, 1, 0};
constexpr std::array<std::int64_t, 5> Row4{6, -8, 3, 0, 0};
constexpr std::array<std::int64_t, 6> Row5{20, -40, 28, -8, 1, 0};
constexpr std::array<std::int64_t, 7> Row6{50, -120, 105, -40, 6, 0, 0};
constexpr std::array<std::int64_t, 8> Row7{175, -525, 615, -355, 105, -15, 1, 0};
constexpr std::array<std::int64_t, 9> Row8{490, -1680, 2310, -1624, 615, -120, 10, 0, 0};
constexpr std::array<std::int64_t, 10> Row9{1764, -7056, 11704, -10416, 5376, -1624, 276, -24, 1, 0};
constexpr std::array<std::int64_t, 11> Row10{5292, -23520, 44100, -45360, 27860, -10416, 2310, -280, 15, 0, 0};
constexpr std::array<std::int64_t, 12> Row11{19404, -97020, 208740, -252840, 189420, -90804, 27860, -5320, 595, -35, 1, 0};
constexpr std::array<std::int64_t, 13> Row12{60984, -332640, 790020, -1071840, 916020, -512784, 189420, -45360, 6720, -560, 21, 0, 0};
constexpr std::array<std::int64_t, 14> Row13{226512, -1359072, 3597264, -5528160, 5462820, -3632112, 1652232, -512784, 106380, -14160, 1128, -48, 1, 0};
constexpr std::array<std::int64_t, 15> Row14{736164, -4756752, 13675662, -23063040, 25322220, -18993744, 9934617, -3632112, 916020, -154560, 16506, -1008, 28, 0, 0};
constexpr std::array<std::int64_t, 16> Row15{2760615, -19324305, 60747687, -113270157, 139378239, -119144025, 72539775, -31730787, 9934617, -2191959, 331065, -32655, 1953, -63, 1, 0};
constexpr std::array<std::int64_t, 17> Row16{9202050, -68708640, 231891660, -467747280, 628221594, -592431840, 403062660, -200142800, 72539775, -18993744, 3515820, -443520, 35910, -1680, 36, 0, 0};
constexpr std::array<std::int64_t, 18> Row17{34763300, -278106400, 1012634480, -2221579360, 3276433160, -3431908480, 2629731104, -1496123200, 634862800, -200142800, 46307800, -7696304, 888580, -67760, 3160, -80, 1, 0};
constexpr std::array<std::int64_t, 19> Row18{118195220, -1001183040, 3879584280, -9110765664, 14480345880, -16474217760, 13838184360, -8725654080, 4158224928, -1496123200, 403062660, -79999920, 11397540, -1119888, 71280, -2640, 45, 0, 0};
constexpr std::array<std::int64_t, 20> Row19{449141836, -4042276524, 16732271556, -42233237904, 72660859128, -90231621480, 83545742280, -58751550000, 31671113760, -13117232128, 4158224928, -999092952, 178966788, -23315292, 2130876, -129624, 4851, -99, 1, 0};
constexpr std::array<std::int64_t, 21> Row20{1551580888, -14699187360, 64308944700, -172355177280, 316521742680, -422089668000, 422594051880, -323945724960, 192167478360, -88572527680, 31671113760, -8725654080, 1829127300, -286125840, 32458140, -2560272, 131670, -3960, 55, 0, 0};
// clang-format on

}  // namespace

std::span<const std::int64_t> OptimumLCoefficients(int n) {
    switch (n) {
        case 1: return Row1;
        case 2: return Row2;
        case 3: return Row3;
        case 4: return Row4;
        case 5: return Row5;
        case 6: return Row6;
        case 7: return Row7;
        case 8: return Row8;
        case 9: return Row9;
        case 10: return Row10;
        case 11: return Row11;
        case 12: return Row12;
        case 13: return Row13;
        case 14: return Row14;
        case 15: return Row15;
        case 16: return Row16;
        case 17: return Row17;
        case 18: return Row18;
        case 19: return Row19;
        case 20: return Row20;
        default: return {};
    }
}

}  // namespace nerivane
