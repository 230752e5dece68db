// The start-up defaults of the design record: a 3-pole Adjustable Gauss VCVS low pass at
// 5 kHz with a one-decade sweep, 100 pF and 1 nF capacitors, an ideal op amp, exact values.
#pragma once

#include <cstddef>
#include <string>

#include "app/DesignState.h"

namespace nerivane {

DesignState DefaultDesignState();

// The version text the record and the settings file carry, "Version 2.2".
std::string VersionText(const DesignState& state);

// Identity, format version and size as every record written by this program carries them.
void StampFormatVersion(DesignState& state);

// Fixed-width UTF-16 record texts, for the plain ASCII captions the record holds.
void WriteRecordText(char16_t* destination, std::size_t units, const std::string& text);
std::string ReadRecordText(const char16_t* source, std::size_t units);

}  // namespace nerivane
