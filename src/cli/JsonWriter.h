// A JSON document written straight into a string as it is produced, indented by two spaces per
// level. The result of a 20-pole design holds about ten thousand numbers; streaming them with
// the shortest text that reads back as the same double keeps a script's run short.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nerivane::cli {

class JsonWriter {
  public:
    explicit JsonWriter(std::string& out) : out_(out) {}

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
    void Bool(bool value);
    void String(std::string_view text);
    void Null();

  private:
    void Open(char bracket);
    void Close(char bracket);
    void BeforeValue();
    void NewLine();
    void Quoted(std::string_view text);

    std::string& out_;
    std::vector<bool> empty_;  // per open container: nothing written into it yet
    bool afterKey_ = false;
};

}  // namespace nerivane::cli
