// The window tests' application object: widgets need a QApplication, and the offscreen
// platform needs no display. Including this header registers it for the whole test program.
#pragma once

#include <gtest/gtest.h>

#include "gui/OffscreenApplication.h"

namespace nerivane {

class WidgetsEnvironment : public ::testing::Environment {
  public:
    void SetUp() override { EnsureWidgetsApplication(); }
    void TearDown() override { CloseWidgetsApplication(); }
};

[[maybe_unused]] inline ::testing::Environment* const widgetsEnvironment =
    ::testing::AddGlobalTestEnvironment(new WidgetsEnvironment);

}  // namespace nerivane
