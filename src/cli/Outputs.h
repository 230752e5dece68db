// The command line's text outputs: the circuit values report, the CSV of the traces, and
// writing any of them (or the SPICE netlist) to a file or to standard output ("-").
#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "app/Calculationdriver.h"
#include "files/Atomicwrite.h"

namespace nerivane::cli {

// Throws std::runtime_error naming the file when it cannot be written.
void WriteText(const std::string& path, const std::string& text, std::ostream& out,
               const char* what);
// The same for a text made piece by piece.
void WriteText(const std::string& path, const std::function<void(const PieceWriter&)>& produce,
               std::ostream& out, const char* what);

std::string ReportText(const DesignResults& results);

// frequency_hz,mag_db,mag_linear,phase_deg,hilbert_phase_deg,group_delay_s: one header line and
// one row per sweep point, 17 significant digits, an undrawn phase or delay point empty.
// mag_linear is |H| itself (the plot's linear trace is 9 |H| - 9, a drawing scale). A
// worst-case analysis adds each trace's lowest and highest value over the runs (mag_db_min,
// mag_db_max, ...).
std::string CsvText(const DesignResults& results, bool worstCase);

}  // namespace nerivane::cli
