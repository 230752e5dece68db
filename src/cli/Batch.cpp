#include "cli/Batch.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <future>
#include <mutex>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "cli/JsonWriter.h"
#include "numerics/Numberlocale.h"

namespace nerivane::cli {
namespace {

// A number as the option would be typed: whole numbers without a fraction, the rest in the
// shortest text that reads back as the same double.
std::string NumberText(const nlohmann::json& value) {
    if (value.is_number_integer()) return value.dump();
    char text[32];
    const char* end = std::to_chars(text, text + sizeof text, value.get<double>()).ptr;
    return std::string(text, static_cast<std::size_t>(end - text));
}

std::string ScalarText(const std::string& option, const nlohmann::json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_number()) return NumberText(value);
    throw std::invalid_argument(option + ": a list holds only texts and numbers");
}

std::vector<std::string> JsonArguments(const std::string& line) {
    nlohmann::json object;
    try {
        object = nlohmann::json::parse(line);
    } catch (const nlohmann::json::parse_error& e) {
        throw std::invalid_argument(std::string("not JSON: ") + e.what());
    }
    if (!object.is_object())
        throw std::invalid_argument("a JSON line must be an object of options");
    std::vector<std::string> args;
    for (const auto& [key, value] : object.items()) {
        const std::string option = key.starts_with("--") ? key : "--" + key;
        if (value.is_null() || (value.is_boolean() && !value.get<bool>())) continue;
        if (value.is_boolean()) {
            args.push_back(option);
            continue;
        }
        if (value.is_object()) throw std::invalid_argument(option + ": an object is not a value");
        std::string text;
        if (value.is_array()) {
            for (const nlohmann::json& item : value)
                text += (text.empty() ? "" : ",") + ScalarText(option, item);
        } else {
            text = ScalarText(option, value);
        }
        args.push_back(option);
        args.push_back(text);
    }
    return args;
}

// Words as a shell splits them: blanks separate, '...' keeps everything, "..." and a backslash
// keep the next character.
std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote == '\'' && c != '\'') {
            word += c;
        } else if (quote == '"' && c == '\\' && i + 1 < line.size() &&
                   (line[i + 1] == '"' || line[i + 1] == '\\')) {
            word += line[++i];
        } else if (quote != 0 && c == quote) {
            quote = 0;
        } else if (quote == '"') {
            word += c;
        } else if (c == '\'' || c == '"') {
            quote = c;
            inWord = true;
        } else if (c == '\\' && i + 1 < line.size()) {
            word += line[++i];
            inWord = true;
        } else if (c == ' ' || c == '\t') {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quote != 0) throw std::invalid_argument(std::string("a ") + quote + " quote is not closed");
    if (inWord) words.push_back(word);
    return words;
}

// The run's own error lines without the program's name; its warnings are in what it would
// have written, not here.
std::string ErrorText(const std::string& err) {
    constexpr std::string_view Prefix = "nerivane-cli: ";
    std::string text;
    std::istringstream lines(err);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(Prefix))
            text += (text.empty() ? "" : "; ") + line.substr(Prefix.size());
    return text.empty() ? "the design could not be run" : text;
}

std::string ErrorResult(int line, int status, const std::string& message) {
    std::string text;
    const std::function<void(std::string_view)> write = [&text](std::string_view piece) {
        text += piece;
    };
    JsonWriter json(write, JsonLayout::OneLine);
    json.BeginObject();
    json.Key("line");
    json.Integer(line);
    json.Key("error");
    json.String(message);
    json.Key("exit_status");
    json.Integer(status);
    json.EndObject();
    json.Finish();
    return text;
}

// A line's one result: its JSON, or why it has none.
std::string LineResult(const DesignRunner& run, int line, const std::vector<std::string>& args) {
    std::ostringstream result, problems;
    const int status = run(args, line, result, problems);
    return status == 0 ? std::move(result).str()
                       : ErrorResult(line, status, ErrorText(problems.str()));
}

// Qt paints on the thread that made its application, so a line that draws a picture runs on
// the reading thread; every other line may run on any.
bool DrawsPicture(const std::vector<std::string>& args) {
    return std::any_of(args.begin(), args.end(), [](const std::string& arg) {
        return arg == "--plot" || arg == "--schematic" || arg.starts_with("--plot=") ||
               arg.starts_with("--schematic=");
    });
}

// A first-in first-out queue between threads that holds at most `capacity` items; closing it
// lets takers drain it and then get nothing.
template <typename Item>
class BlockingQueue {
  public:
    explicit BlockingQueue(std::size_t capacity) : capacity_(capacity) {}
    void Put(Item item) {
        {
            std::unique_lock lock(mutex_);
            notFull_.wait(lock, [this] { return items_.size() < capacity_; });
            items_.push_back(std::move(item));
        }
        notEmpty_.notify_one();
    }
    std::optional<Item> Take() {
        std::optional<Item> item;
        {
            std::unique_lock lock(mutex_);
            notEmpty_.wait(lock, [this] { return !items_.empty() || closed_; });
            if (items_.empty()) return std::nullopt;
            item = std::move(items_.front());
            items_.pop_front();
        }
        notFull_.notify_one();
        return item;
    }
    void Close() {
        {
            std::lock_guard lock(mutex_);
            closed_ = true;
        }
        notEmpty_.notify_all();
    }

  private:
    std::mutex mutex_;
    // Two conditions, each woken once per change, so a put wakes one taker and a take one
    // putter rather than every thread waiting on the queue.
    std::condition_variable notFull_, notEmpty_;
    std::deque<Item> items_;
    std::size_t capacity_;
    bool closed_ = false;
};

struct Job {
    int line;
    std::vector<std::string> args;
    std::promise<std::string> result;
};

}  // namespace

std::optional<std::vector<std::string>> BatchLineArguments(const std::string& line) {
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string::npos || line[start] == '#') return std::nullopt;
    std::string text = line.substr(start);
    while (!text.empty() && (text.back() == '\r' || text.back() == ' ' || text.back() == '\t'))
        text.pop_back();
    return text.front() == '{' || text.front() == '[' ? JsonArguments(text) : Words(text);
}

// The reading thread hands lines to workers, one per processor, and a writer puts their
// results out in the order of the lines as each becomes ready; the queues are short, so a
// batch of any length holds only a few results at a time.
int RunBatch(std::istream& in, std::ostream& out, std::ostream& err, const DesignRunner& run) {
    const unsigned workerCount = std::max(1u, std::thread::hardware_concurrency());
    // Read from the environment once, before the workers only read it.
    CurrentNumberFormat();
    BlockingQueue<std::shared_ptr<Job>> work(2 * workerCount);
    BlockingQueue<std::future<std::string>> ordered(4 * workerCount);
    std::atomic<bool> writeFailed = false;

    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < workerCount; ++i)
        workers.emplace_back([&work, &run] {
            while (const std::optional<std::shared_ptr<Job>> job = work.Take())
                (*job)->result.set_value(LineResult(run, (*job)->line, (*job)->args));
        });
    std::jthread writer([&ordered, &out, &err, &writeFailed] {
        while (std::optional<std::future<std::string>> result = ordered.Take()) {
            const std::string text = result->get();
            if (writeFailed) continue;
            out << text;
            // A script may wait for each result before it sends the next design.
            errno = 0;
            out.flush();
            if (!out) {
                err << "nerivane-cli: Cannot write the batch's results to standard output: "
                    << std::strerror(errno ? errno : EIO) << ".\n";
                writeFailed = true;
            }
        }
    });

    int number = 0;
    for (std::string line; !writeFailed && std::getline(in, line);) {
        ++number;
        auto job = std::make_shared<Job>();
        job->line = number;
        ordered.Put(job->result.get_future());
        try {
            std::optional<std::vector<std::string>> args = BatchLineArguments(line);
            if (!args) {
                job->result.set_value("");
                continue;
            }
            job->args = std::move(*args);
            job->args.insert(job->args.begin(), "nerivane-cli");
        } catch (const std::invalid_argument& e) {
            job->result.set_value(ErrorResult(number, 2, e.what()));
            continue;
        }
        if (DrawsPicture(job->args))
            job->result.set_value(LineResult(run, number, job->args));
        else
            work.Put(std::move(job));
    }
    work.Close();
    for (std::jthread& worker : workers) worker.join();
    ordered.Close();
    writer.join();
    return writeFailed ? 1 : 0;
}

}  // namespace nerivane::cli
