#include "numerics/Matherrmain.h"

#include <cmath>

#include "numerics/CheckedMath.h"
#include "numerics/Formatfunctions.h"
#include "numerics/InstalledSink.h"

namespace nerivane {
namespace {

constexpr double HugeReplacement = 1e99;
constexpr double TinyReplacement = 1.0111619862414837e-99;  // bits 2B61B17D4ED8A63E
constexpr double HalfPiValue = 1.5707963267948966;
constexpr double MinusPiValue = -3.141592653589793;

enum class Outcome { NothingDone, SideStepped, Corrected };

struct Decision {
    Outcome outcome;
    double value;
};

Decision Decide(const MathErrorRecord& record) {
    const std::string& name = record.name;
    const bool powOrLog10 = name == "pow" || name == "log10";
    switch (record.type) {
        case static_cast<int>(MathErrorType::Domain):
            if (name == "atan2") return {Outcome::Corrected, 0.0};
            if (name == "sqrt") return {Outcome::SideStepped, std::sqrt(-record.arg1)};
            if (name == "log" || name == "log10") return {Outcome::SideStepped, -HugeReplacement};
            if (name == "asin")
                return {Outcome::SideStepped, record.arg1 > 0.0 ? HalfPiValue : -HalfPiValue};
            if (name == "acos")
                return {Outcome::SideStepped, record.arg1 > 0.0 ? 0.0 : MinusPiValue};
            return {Outcome::NothingDone, record.returnValue};
        case static_cast<int>(MathErrorType::Singularity):
            return {Outcome::SideStepped, HugeReplacement};
        case static_cast<int>(MathErrorType::Overflow):
            return {Outcome::SideStepped, powOrLog10 ? HugeReplacement : 1.0};
        case static_cast<int>(MathErrorType::Underflow):
            return {Outcome::SideStepped, powOrLog10 ? TinyReplacement : 1.0};
        case static_cast<int>(MathErrorType::TotalLoss): return {Outcome::SideStepped, 1.0};
        default: return {Outcome::NothingDone, 0.0};
    }
}

const char* TypeWord(int type) {
    switch (type) {
        case 1: return "DOMAIN ";
        case 2: return "SING ";
        case 3: return "OVERFLOW ";
        case 4: return "UNDERFLOW ";
        case 5: return "TLOSS ";
        default: return "???? ";
    }
}

// One slot per thread: a batch calculates designs on several threads, each into its own log.
InstalledSink<MathErrorLog, RecordingMathErrorLog>& Slot() {
    thread_local InstalledSink<MathErrorLog, RecordingMathErrorLog> slot;
    return slot;
}

thread_local std::uint64_t handledCount = 0;

}  // namespace

MathErrorLog& MathErrors() {
    return Slot().Get();
}

void InstallMathErrorLog(MathErrorLog* log) {
    Slot().Install(log);
}

std::uint64_t MathErrorsHandled() {
    return handledCount;
}

int HandleMathError(MathErrorRecord& record) {
    ++handledCount;
    const Decision decision = Decide(record);
    // An unknown type's table entry is 0 but the library keeps its own value, since the
    // error is reported as not handled.
    if (decision.outcome != Outcome::NothingDone) record.returnValue = decision.value;

    MathErrorLog& log = MathErrors();
    log.AppendLine(std::string("type= ") + TypeWord(record.type) + "   name= " + record.name +
                   "   arg1= " + FormatGeneral(record.arg1, 4) +
                   "   arg2= " + FormatGeneral(record.arg2, 4));
    switch (decision.outcome) {
        case Outcome::SideStepped:
            log.AppendLine("Math Error was Side Stepped. ReturnValue = " +
                           FormatGeneral(record.returnValue, 15));
            return 1;
        case Outcome::Corrected:
            log.AppendLine("Math Error was Corrected. ReturnValue = " +
                           FormatGeneral(record.returnValue, 15));
            return 1;
        case Outcome::NothingDone: break;
    }
    log.AppendLine("Nothing was done with the error.");
    return 0;
}

double ReportMathError(MathErrorType type, const char* name, double arg1, double arg2,
                       double proposed) {
    MathErrorRecord record{static_cast<int>(type), name, arg1, arg2, proposed};
    HandleMathError(record);
    return record.returnValue;
}

double CheckedPowSlow(double x, double y, double result) {
    if (std::isnan(x) || std::isnan(y)) return result;
    if (x == 0.0 && y < 0.0)
        return ReportMathError(MathErrorType::Singularity, "pow", x, y, result);
    if (std::isnan(result)) return ReportMathError(MathErrorType::Domain, "pow", x, y, result);
    if (std::isinf(result) && std::isfinite(x) && std::isfinite(y))
        return ReportMathError(MathErrorType::Overflow, "pow", x, y, result);
    if (result == 0.0 && x != 0.0 && std::isfinite(x) && std::isfinite(y))
        return ReportMathError(MathErrorType::Underflow, "pow", x, y, result);
    return result;
}

}  // namespace nerivane
