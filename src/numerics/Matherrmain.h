// Math library errors: the decision table that replaces a failing function's result by a safe
// value, and the log of every error that the math-error window shows. The checked functions of
// CheckedMath.h report here, since this platform's math library has no error hook.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace nerivane {

enum class MathErrorType {
    Domain = 1,
    Singularity = 2,
    Overflow = 3,
    Underflow = 4,
    TotalLoss = 5
};

struct MathErrorRecord {
    int type;          // a MathErrorType value; anything else is an unknown type
    std::string name;  // the failing function, lower case: "log", "pow", ...
    double arg1;
    double arg2;
    double returnValue;  // the library's proposed result; replaced when the error is handled
};

// Receives the two lines written for each error. The window appends them to its memo and
// brings itself up; the default log only keeps them.
class MathErrorLog {
  public:
    virtual ~MathErrorLog() = default;
    virtual void AppendLine(const std::string& line) = 0;
};

class RecordingMathErrorLog : public MathErrorLog {
  public:
    void AppendLine(const std::string& line) override { lines.push_back(line); }
    std::vector<std::string> lines;
};

// The calling thread's log: each thread that calculates installs its own.
MathErrorLog& MathErrors();
// Installing nullptr restores the default recording log.
void InstallMathErrorLog(MathErrorLog* log);

// How many errors this thread has handled so far, so that a caller can tell whether a
// computation raised any.
std::uint64_t MathErrorsHandled();

// Applies the decision table to the record, writes the two log lines and returns non-zero when
// the error was side stepped or corrected (the record then holds the new return value).
int HandleMathError(MathErrorRecord& record);

// Convenience for the checked functions: handles the error and returns the value to use.
double ReportMathError(MathErrorType type, const char* name, double arg1, double arg2,
                       double proposed);

}  // namespace nerivane
