// Fuzz target, a property: any record the design-file reader accepts writes back to bytes
// that read to the very same record, with nothing left to repair.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/Initializevars.h"
#include "files/Filesaveread.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace nerivane;
    DesignRecord record = ToRecord(DefaultDesignState());
    if (!ValidateDesignBytes(data, size, record)) return 0;
    SanitizeDesignRecord(record);
    const DesignState first = FromRecord(record);
    const std::string path = "/tmp/nerivane-roundtrip-" + std::to_string(::getpid()) + ".kq_opamp";
    if (!WriteDesignFile(path, first)) std::abort();
    DesignState second = DefaultDesignState();
    const OpenResult read = ReadDesignFile(path, second);
    if (read.outcome != OpenOutcome::Opened || !read.repairs.empty()) std::abort();
    const DesignRecord written = ToRecord(first), reread = ToRecord(second);
    if (std::memcmp(&written, &reread, sizeof written) != 0) std::abort();
    return 0;
}
