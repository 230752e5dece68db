// The test main pins what the machine might vary: the decimal separator (read from the
// locale by the program) is a point, and math errors go to a recorder rather than to whatever
// a front end would install.
#include <gtest/gtest.h>

#include "numerics/Matherrmain.h"
#include "numerics/Numberlocale.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    nerivane::SetNumberFormat({'.', ','});
    nerivane::InstallMathErrorLog(nullptr);
    return RUN_ALL_TESTS();
}
