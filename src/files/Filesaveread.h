// Design files: the 2016-byte image of the design record, written so that a failed save never
// damages the file that was there, and read back only when its size, identity and version say
// this program wrote it (the earlier 1248-byte format included).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "app/DesignState.h"
#include "files/Designrecord.h"

namespace nerivane {

inline constexpr const char* DesignFileExtension = "kq_opamp";
inline constexpr const char* SaveFailedMessage = "Save File operation failed.";
inline constexpr const char* SaveFailedCaption = "Program Info";
inline constexpr const char* IncompatibleFileMessage =
    "Open File operation failed due to an incompatibility with this program.";
inline constexpr const char* MissingFileMessage = "This file doesn't exist. \n\n";
inline constexpr std::size_t OlderRecordSize = 1248;

// Writes the design's record; false when the file could not be written completely, with
// the system's words in reason when it is given.
bool WriteDesignFile(const std::string& path, const DesignState& state,
                     std::string* reason = nullptr);

// The save-failure message followed by the file and why: "Save File operation failed.
// "path": No space left on device."
std::string SaveFailedText(const std::string& path, const std::string& reason);

// The name with the design file's extension, added when it has none (as the save dialog does).
std::string WithDesignExtension(const std::string& path);

// Checks bytes read from a design file and, when they are valid, lays them over scratch (which
// starts as a copy of the design on screen: an older, shorter file leaves the later fields as
// they were). False leaves scratch unusable and the caller's design untouched.
bool ValidateDesignBytes(const unsigned char* bytes, std::size_t count, DesignRecord& scratch);

// Brings a record read from a file into the ranges the program works with: unknown indices,
// impossible capacitors and flags are replaced by their defaults, so whatever a file holds
// the next calculation can run. Returns what was replaced ("NumPoles 25 replaced by 3").
std::vector<std::string> SanitizeDesignRecord(DesignRecord& record);

enum class OpenOutcome { Opened, Missing, WrongExtension, Incompatible, Unreadable };

struct OpenResult {
    OpenOutcome outcome;
    std::string reason = {};                // why an unreadable file could not be read
    std::vector<std::string> repairs = {};  // what an opened file held out of range
};

// "The design file "path" held values out of range, replaced so that it can be used:" and
// the repairs, one a line.
std::string RepairedFileMessage(const std::string& path, const std::vector<std::string>& repairs);

// Reads path into state when it is a valid design file; state is changed only then. Only a
// regular file is read, so a pipe or a device named as a design never blocks.
OpenResult ReadDesignFile(const std::string& path, DesignState& state);

// "Open File operation failed: "path": Permission denied."
std::string UnreadableFileMessage(const std::string& path, const std::string& reason);

// "4 Pole Butterworth MFB LPF": what Save As proposes for the design.
std::string ProposedFileName(const DesignState& state);

// The design's title shown in the caption and the recent-files menu: the file name without
// its folder and extension.
std::string DesignTitle(const std::string& path);

}  // namespace nerivane
