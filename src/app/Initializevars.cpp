#include "app/Initializevars.h"

namespace nerivane {

// The member initialisers of DesignState hold the plain defaults; what follows from them is
// set here.
DesignState DefaultDesignState() {
    DesignState state;
    for (int i = 0; i < MaxSections; ++i) {
        state.SectionC1[i] = 1e-10;
        state.SectionC2[i] = 1e-9;
    }
    state.NumSections = SectionsForPoles(state.TopologyIndex, state.NumPoles);
    state.FreqMin = 0.1 * state.F0;
    state.FreqMax = 10.0 * state.F0;
    ResetSections(state.Sections);
    return state;
}

}  // namespace nerivane
