// Times the table of orders that meet a requirement, which the requirement dialog recomputes on
// every keystroke. Target: within one recalculation's budget, a few milliseconds, also when
// every family has to be tried up to 20 poles.
#include <benchmark/benchmark.h>

#include "app/Initializevars.h"
#include "app/Requirementorders.h"

namespace nerivane {
namespace {

void Orders(benchmark::State& benchState, const char* text) {
    const OrderSearch search = OrderSearchFor(*ParseMask(text).mask, DefaultDesignState());
    for (auto _ : benchState) {
        std::vector<OrderRow> rows = RequirementOrders(search);
        benchmark::DoNotOptimize(rows.data());
    }
}

// Chebyshev meets it with 19 poles; no other family does by 20.
void OrdersUpToTwentyPoles(benchmark::State& s) {
    Orders(s, "fp=1k,ap=0.5,fs=1.2k,as=80");
}
// Four to thirteen poles, and two families that never meet it.
void OrdersOfAnEverydayMask(benchmark::State& s) {
    Orders(s, "fp=1k,ap=1,fs=3k,as=40");
}
void OrdersOfABandPass(benchmark::State& s) {
    Orders(s, "fp1=9k,fp2=11k,fs1=7k,fs2=14k,ap=1,as=30");
}

BENCHMARK(OrdersUpToTwentyPoles)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(OrdersOfAnEverydayMask)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);
BENCHMARK(OrdersOfABandPass)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace nerivane
