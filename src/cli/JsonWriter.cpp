#include "cli/JsonWriter.h"

#include <charconv>
#include <cmath>

namespace nerivane::cli {

void JsonWriter::HandOnFullPiece() {
    if (out_.size() < PieceSize) return;
    write_(out_);
    out_.clear();
}

void JsonWriter::Finish() {
    out_ += '\n';
    write_(out_);
    out_.clear();
}

void JsonWriter::NewLine() {
    HandOnFullPiece();
    if (oneLine_) return;
    out_ += '\n';
    out_.append(2 * empty_.size(), ' ');
}

void JsonWriter::BeforeValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (empty_.empty()) return;
    if (!empty_.back()) out_ += ',';
    empty_.back() = false;
    NewLine();
}

void JsonWriter::Open(char bracket) {
    BeforeValue();
    out_ += bracket;
    empty_.push_back(true);
}

void JsonWriter::Close(char bracket) {
    const bool wasEmpty = empty_.back();
    empty_.pop_back();
    if (!wasEmpty) NewLine();
    out_ += bracket;
}

void JsonWriter::Key(std::string_view key) {
    BeforeValue();
    Quoted(key);
    out_ += oneLine_ ? ":" : ": ";
    afterKey_ = true;
}

void JsonWriter::Number(double value) {
    if (!std::isfinite(value)) return Null();
    BeforeValue();
    char text[32];
    char* end = std::to_chars(text, text + sizeof text, value).ptr;
    out_.append(text, static_cast<std::size_t>(end - text));
    if (std::string_view(text, end).find_first_of(".e") == std::string_view::npos) out_ += ".0";
}

void JsonWriter::NumberList(std::span<const double> values) {
    BeforeValue();
    out_ += '[';
    char text[32];
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i > 0) out_ += oneLine_ ? "," : ", ";
        HandOnFullPiece();
        if (!std::isfinite(values[i])) {
            out_ += "null";
            continue;
        }
        char* end =
            std::to_chars(text, text + sizeof text, values[i], std::chars_format::scientific).ptr;
        out_.append(text, static_cast<std::size_t>(end - text));
    }
    out_ += ']';
}

void JsonWriter::Integer(long long value) {
    BeforeValue();
    out_ += std::to_string(value);
}

void JsonWriter::Bool(bool value) {
    BeforeValue();
    out_ += value ? "true" : "false";
}

void JsonWriter::Null() {
    BeforeValue();
    out_ += "null";
}

void JsonWriter::String(std::string_view text) {
    BeforeValue();
    Quoted(text);
}

void JsonWriter::Quoted(std::string_view text) {
    out_ += '"';
    for (const char c : text) {
        switch (c) {
            case '"': out_ += "\\\""; break;
            case '\\': out_ += "\\\\"; break;
            case '\n': out_ += "\\n"; break;
            case '\r': out_ += "\\r"; break;
            case '\t': out_ += "\\t"; break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    static constexpr char Hex[] = "0123456789abcdef";
                    out_ += "\\u00";
                    out_ += Hex[(c >> 4) & 0xF];
                    out_ += Hex[c & 0xF];
                } else {
                    out_ += c;  // UTF-8 passes through as it is
                }
        }
    }
    out_ += '"';
}

}  // namespace nerivane::cli
