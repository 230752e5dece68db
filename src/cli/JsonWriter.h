// A JSON document written out as it is produced, indented by two spaces per level or all on one
// line (a batch's result per line). The result of a 20-pole design holds about ten thousand
// numbers, written as the shortest text that reads back as the same double.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nerivane::cli {

enum class JsonLayout { Indented, OneLine };

class JsonWriter {
  public:
    // Hands the text on in pieces of about a page group, so it is never held whole.
    explicit JsonWriter(const std::function<void(std::string_view)>& write,
                        JsonLayout layout = JsonLayout::Indented)
        : write_(write), oneLine_(layout == JsonLayout::OneLine) {
        out_.reserve(2 * PieceSize);
    }
    // Hands on what is left; call once the document is complete.
    void Finish();

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    // The key of the next value in the open object.
    void Key(std::string_view key);

    // NaN and infinities have no JSON number and are written as null; a whole number keeps a
    // ".0" so that it reads back as a double.
    void Number(double value);
    void Integer(long long value);
    // A list of numbers on one line, in exponent form (the shortest text to find).
    void NumberList(std::span<const double> values);
    void Bool(bool value);
    void String(std::string_view text);
    void Null();

  private:
    void Open(char bracket);
    void Close(char bracket);
    void BeforeValue();
    void NewLine();
    void Quoted(std::string_view text);

    static constexpr std::size_t PieceSize = 32768;
    void HandOnFullPiece();

    const std::function<void(std::string_view)>& write_;
    std::string out_;
    std::vector<bool> empty_;  // per open container: nothing written into it yet
    bool afterKey_ = false;
    bool oneLine_;
};

}  // namespace nerivane::cli
