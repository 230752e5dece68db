#include "env/Allocator.h"

#include <malloc.h>

namespace nerivane {
namespace {

// Well above a calculation's largest block and its whole work space.
constexpr int MapThresholdBytes = 16 << 20;
constexpr int TrimThresholdBytes = 64 << 20;

}  // namespace

void KeepCalculationMemory() {
    mallopt(M_MMAP_THRESHOLD, MapThresholdBytes);
    mallopt(M_TRIM_THRESHOLD, TrimThresholdBytes);
}

}  // namespace nerivane
