#include "numerics/Matherrmain.h"

#include <gtest/gtest.h>

#include <cmath>

#include "numerics/CheckedMath.h"

namespace nerivane {
namespace {

class MathErrors : public ::testing::Test {
  protected:
    void SetUp() override { InstallMathErrorLog(&log); }
    void TearDown() override { InstallMathErrorLog(nullptr); }
    RecordingMathErrorLog log;
};

struct DecisionCase {
    int type;
    const char* name;
    double arg1;
    double proposed;
    double expected;
    int handled;
    const char* secondLine;
};

TEST_F(MathErrors, DecisionTable) {
    const double tiny = 1.0111619862414837e-99;
    const char* stepped = "Math Error was Side Stepped. ReturnValue = ";
    // clang-format off
    const DecisionCase cases[] = {
        {1, "atan2", 0.0,   7.0, 0.0,                 1, "Math Error was Corrected. ReturnValue = 0"},
        {1, "sqrt",  -4.0,  7.0, 2.0,                 1, stepped},
        {1, "log",   -1.0,  7.0, -1e99,               1, stepped},
        {1, "log10", -1.0,  7.0, -1e99,               1, stepped},
        {1, "asin",  2.0,   7.0, 1.5707963267948966,  1, stepped},
        {1, "asin",  -2.0,  7.0, -1.5707963267948966, 1, stepped},
        {1, "acos",  2.0,   7.0, 0.0,                 1, stepped},
        {1, "acos",  -2.0,  7.0, -3.141592653589793,  1, stepped},
        {1, "tan",   9.0,   7.0, 7.0,                 0, "Nothing was done with the error."},
        {2, "log10", 0.0,   7.0, 1e99,                1, stepped},
        {2, "pow",   0.0,   7.0, 1e99,                1, stepped},
        {2, "cosh",  0.0,   7.0, 1e99,                1, stepped},
        {3, "pow",   10.0,  7.0, 1e99,                1, stepped},
        {3, "log10", 10.0,  7.0, 1e99,                1, stepped},
        {3, "exp",   800.0, 7.0, 1.0,                 1, stepped},
        {4, "pow",   0.1,   7.0, tiny,                1, stepped},
        {4, "log10", 0.1,   7.0, tiny,                1, stepped},
        {4, "exp",   -800., 7.0, 1.0,                 1, stepped},
        {5, "sin",   1e30,  7.0, 1.0,                 1, stepped},
        {9, "pow",   1.0,   7.0, 7.0,                 0, "Nothing was done with the error."},
    };
    // clang-format on
    for (const DecisionCase& c : cases) {
        log.lines.clear();
        MathErrorRecord record{c.type, c.name, c.arg1, 0.0, c.proposed};
        EXPECT_EQ(HandleMathError(record), c.handled) << c.type << " " << c.name;
        EXPECT_EQ(record.returnValue, c.expected) << c.type << " " << c.name;
        ASSERT_EQ(log.lines.size(), 2u);
        EXPECT_EQ(log.lines[1].rfind(c.secondLine, 0), 0u) << log.lines[1];
    }
}

// The first line names the error type (unknown types as ????), the function and its arguments.
TEST_F(MathErrors, FirstLineNamesTypeFunctionAndArguments) {
    MathErrorRecord record{2, "log10", 0.0, 0.0, 0.0}, unknown{7, "pow", -2.5, 123456.0, 0.0};
    HandleMathError(record);
    HandleMathError(unknown);
    ASSERT_EQ(log.lines.size(), 4u);
    EXPECT_EQ(log.lines[0], "type= SING    name= log10   arg1= 0   arg2= 0");
    EXPECT_EQ(log.lines[2], "type= ????    name= pow   arg1= -2.5   arg2= 1.235E5");
}

struct CheckedCase {
    const char* what;
    double (*call)();
    double expected;
};

// The checked functions detect the errors the library only signals through errno and apply
// the table; ordinary arguments pass straight through without a log line.
TEST_F(MathErrors, CheckedFunctionsDetectAndReplace) {
    // clang-format off
    const CheckedCase cases[] = {
        {"log(0)",      [] { return CheckedLog(0.0); },         1e99},
        {"log(-1)",     [] { return CheckedLog(-1.0); },        -1e99},
        {"log10(0)",    [] { return CheckedLog10(0.0); },       1e99},
        {"sqrt(-9)",    [] { return CheckedSqrt(-9.0); },       3.0},
        {"pow(0,-1)",   [] { return CheckedPow(0.0, -1.0); },   1e99},
        {"pow(10,400)", [] { return CheckedPow(10.0, 400.0); }, 1e99},
        {"pow(10,-400)",[] { return CheckedPow(10.0, -400.0); },1.0111619862414837e-99},
        {"pow(-8,0.5)", [] { return CheckedPow(-8.0, 0.5); },   NAN},
        {"asin(2)",     [] { return CheckedAsin(2.0); },        1.5707963267948966},
        {"acos(-2)",    [] { return CheckedAcos(-2.0); },       -3.141592653589793},
        {"atan2(0,0)",  [] { return CheckedAtan2(0.0, 0.0); },  0.0},
        {"exp(1000)",   [] { return CheckedExp(1000.0); },      1.0},
    };
    // clang-format on
    for (const CheckedCase& c : cases) {
        log.lines.clear();
        const double value = c.call();
        if (std::isnan(c.expected))
            EXPECT_TRUE(std::isnan(value)) << c.what;
        else
            EXPECT_EQ(value, c.expected) << c.what;
        EXPECT_EQ(log.lines.size(), 2u) << c.what;
    }

    log.lines.clear();
    EXPECT_EQ(CheckedLog10(100.0), 2.0);
    EXPECT_EQ(CheckedPow(0.0, 2.0), 0.0);
    EXPECT_EQ(CheckedSqrt(0.0), 0.0);
    EXPECT_EQ(CheckedExp(-1000.0), 0.0);  // underflow to zero is the right answer
    EXPECT_EQ(CheckedAtan2(0.0, -1.0), M_PI);
    EXPECT_TRUE(log.lines.empty());
}

}  // namespace
}  // namespace nerivane
