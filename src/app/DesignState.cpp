#include "app/DesignState.h"

namespace nerivane {

std::int32_t SectionsForPoles(std::int32_t topologyIndex, std::int32_t numPoles) {
    if (topologyIndex >= VcvsBandPass) return numPoles;
    return (numPoles + 1) / 2;
}

}  // namespace nerivane
