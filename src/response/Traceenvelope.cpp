#include "response/Traceenvelope.h"

#include <algorithm>

namespace nerivane {

void AddToEnvelope(int run, const Traces& traces, TraceEnvelope& envelope) {
    envelope.runs = run + 1;
    for (const EnvelopeTrace& trace : EnvelopeTraces) {
        const std::array<double, TracePoints>& values = traces.*trace.values;
        std::array<double, TracePoints>& low = envelope.low.*trace.values;
        std::array<double, TracePoints>& high = envelope.high.*trace.values;
        for (int k = 0; k < TracePoints; ++k) {
            const double v = values[k];
            if (run == 0 || low[k] == NoPlotValue) {
                low[k] = high[k] = v;
            } else if (v != NoPlotValue) {
                low[k] = std::min(low[k], v);
                high[k] = std::max(high[k], v);
            }
        }
    }
    if (run == 0)
        envelope.low.groupDelayScale = envelope.high.groupDelayScale = traces.groupDelayScale;
}

}  // namespace nerivane
