// Fuzz target: bytes through the program's real reading entry points. The first byte picks
// the reader: a design file read from disk (and calculated), the settings file read from disk,
// text typed into every parameter box and capacitor box before a calculation, or a requirement
// file whose mask, when it reads one, gets its orders and checks a calculation. None may
// crash, hang or raise a sanitizer report.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

#include "app/Calculationdriver.h"
#include "app/CapacitorEntry.h"
#include "app/Initializevars.h"
#include "app/Parameterboxes.h"
#include "app/Requirementorders.h"
#include "files/Filesaveread.h"
#include "files/Regularfiles.h"
#include "files/Requirementfile.h"
#include "files/Settingsfile.h"

namespace {

using namespace nerivane;

std::string ScratchFile(const char* ending, const std::string& bytes) {
    const std::string path = "/tmp/nerivane-fuzz-" + std::to_string(::getpid()) + ending;
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    return path;
}

void Calculated(DesignState& design, TextBoxes& boxes, const RequirementMask* mask = nullptr) {
    boxes[BoxId::WorstCaseRuns].SetText("3");
    ParameterBoxes parameters = boxes.Parameters();
    ComponentSettings settings;
    auto results = std::make_unique<DesignResults>();
    ToleranceRandom random;
    CalculationOptions options;
    options.mask = mask;
    Calculate(design, parameters, settings, *results, random, options);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    DesignState design = DefaultDesignState();
    auto boxes = std::make_unique<TextBoxes>();
    switch (data[0] % 4) {
        case 0: {
            if (ReadDesignFile(ScratchFile(".kq_opamp", bytes), design).outcome ==
                OpenOutcome::Opened)
                Calculated(design, *boxes);
            break;
        }
        case 1: {
            const FileContents file =
                ReadRegularFile(ScratchFile("-Settings.txt", bytes), MaxSettingsFileBytes);
            ProgramSettings settings;
            ApplySettingsText(file.bytes, settings, IsRegularFile);
            break;
        }
        case 3: {
            Requirement requirement;
            ApplyRequirementText(bytes, requirement);
            if (!requirement.mask) break;
            const std::vector<OrderRow> rows =
                RequirementOrders(OrderSearchFor(*requirement.mask, design));
            if (!rows.empty())
                ApplyOrderRow(rows.front(), requirement.mask->kind, design, boxes->Parameters());
            Calculated(design, *boxes, &*requirement.mask);
            break;
        }
        default: {
            // Every typed box but the run count, which would only make the run slow.
            for (const BoxRule& rule : BoxRules())
                if (rule.adjusted && rule.id != BoxId::WorstCaseRuns)
                    (*boxes)[rule.id].SetText(bytes);
            if (const std::optional<double> c = ParseCapacitance(bytes)) design.SectionC1[0] = *c;
            Calculated(design, *boxes);
            break;
        }
    }
    return 0;
}
