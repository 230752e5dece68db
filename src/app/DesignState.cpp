#include "app/DesignState.h"

namespace nerivane {

std::int32_t SectionsForPoles(Topology topologyIndex, std::int32_t numPoles) {
    if (topologyIndex >= Topology::VcvsBandPass) return numPoles;
    return (numPoles + 1) / 2;
}

Response NextFamily(Response response) {
    return static_cast<Response>(Index(response) >= 8 ? 0 : Index(response) + 1);
}

Sweep NextSweep(Sweep sweep) {
    return static_cast<Sweep>(Index(sweep) >= 5 ? 0 : Index(sweep) + 1);
}

}  // namespace nerivane
