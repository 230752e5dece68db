#include "cli/Outputs.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "circuit/Spiceexport.h"
#include "files/Atomicwrite.h"
#include "numerics/Mathfunctions.h"
#include "numerics/Sivalue.h"

namespace nerivane::cli {
namespace {

std::string Cell(double value) {
    return value == NoPlotValue ? std::string() : ExactText(value);
}

}  // namespace

void WriteText(const std::string& path, const std::string& text, std::ostream& out,
               const char* what) {
    WriteText(
        path, [&text](const PieceWriter& write) { write(text); }, out, what);
}

void WriteText(const std::string& path, const std::function<void(const PieceWriter&)>& produce,
               std::ostream& out, const char* what) {
    if (path == "-") {
        // A full disk or a closed standard output shows only once the stream is flushed.
        errno = 0;
        produce([&out](std::string_view piece) {
            out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
        });
        out.flush();
        if (!out)
            throw std::runtime_error(std::string("Cannot write the ") + what +
                                     " to standard output: " + std::strerror(errno ? errno : EIO) +
                                     ".");
        return;
    }
    // A failed write leaves the file that was there untouched.
    std::string reason;
    if (!WriteFileAtomically(path, produce, &reason))
        throw std::runtime_error(std::string("Cannot write the ") + what + " file \"" + path +
                                 "\": " + reason + ".");
}

std::string ReportText(const DesignResults& results) {
    std::string text;
    for (const std::string& note : results.reportNotes) text += note + "\n";
    for (const std::string& line : results.report) text += line + "\n";
    return text;
}

std::string CsvText(const DesignResults& results, bool worstCase) {
    std::string text = "frequency_hz,mag_db,mag_linear,phase_deg,hilbert_phase_deg,group_delay_s";
    if (worstCase)
        for (const EnvelopeTrace& trace : EnvelopeTraces)
            text += std::string(",") + trace.name + "_min," + trace.name + "_max";
    text += "\n";
    const Traces& t = results.traces;
    for (int i = 0; i < results.points && i < TracePoints; ++i) {
        text += ExactText(results.frequencies[i]) + "," + ExactText(t.magnitudeDb[i]) + "," +
                ExactText(ComplexAbs(results.response[i])) + "," + Cell(t.phase[i]) + "," +
                Cell(t.hilbertPhase[i]) + "," + Cell(t.groupDelay[i]);
        if (worstCase) {
            for (const EnvelopeTrace& trace : EnvelopeTraces) {
                for (const Traces* bound : {&results.envelope.low, &results.envelope.high}) {
                    const double v = ((*bound).*trace.values)[i];
                    const bool linear = trace.values == &Traces::magnitudeLinear;
                    text += "," + (linear ? ExactText(LinearMagnitudeOf(v)) : Cell(v));
                }
            }
        }
        text += "\n";
    }
    return text;
}

}  // namespace nerivane::cli
