#include "Tests/Host/Tool.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <sstream>
#include <thread>

namespace qv {

namespace {

void redirect(const std::string& path, int flags, int descriptor) {
    const int file = ::open(path.c_str(), flags, 0600);
    if (file < 0 || ::dup2(file, descriptor) < 0) ::_exit(126);
}

std::string ffmpegOutput(Arguments arguments) {
    arguments.insert(arguments.begin(), {"ffmpeg", "-v", "error", "-nostdin", "-y"});
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    return outcome.output;
}

}  // namespace

Process::Process(const Arguments& command, const std::string& input) {
    std::vector<char*> words;
    for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const std::string output = folder_ / "output", errors = folder_ / "errors";
    id_ = ::fork();
    if (id_ != 0) return;
    redirect(input, O_RDONLY, STDIN_FILENO);
    redirect(output, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    redirect(errors, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    ::execvp(words[0], words.data());
    ::_exit(127);
}

void Process::signal(int number) {
    ::kill(id_, number);
}

bool Process::waitForErrors(const std::string& text) {
    for (int i = 0; i < 6000; ++i) {
        if (readBytes(folder_ / "errors").find(text) != std::string::npos) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

Outcome Process::wait() {
    int status = 0;
    ::waitpid(id_, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readBytes(folder_ / "output"),
            readBytes(folder_ / "errors")};
}

Outcome run(const Arguments& command, const std::string& input) {
    return Process(command, input).wait();
}

Outcome qvfilter(Arguments arguments, const std::string& input) {
    arguments.insert(arguments.begin(), QV_TOOL);
    return run(arguments, input);
}

Json qvfilterJSON(Arguments arguments) {
    const Outcome outcome = qvfilter(std::move(arguments));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    Json json = Json::parse(outcome.output, nullptr, false);
    EXPECT_FALSE(json.is_discarded()) << outcome.output;
    return json;
}

void expectFailure(Arguments arguments, int exitCode, const std::string& cause, Arguments before) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const TemporaryFolder outputs;
    for (std::string& argument : arguments) {
        if (argument.starts_with("OUT/")) argument = outputs / argument.substr(4);
    }
    before.push_back(QV_TOOL);
    before.insert(before.end(), arguments.begin(), arguments.end());
    const Outcome outcome = run(before);
    EXPECT_EQ(outcome.exitCode, exitCode);
    EXPECT_EQ(outcome.errorLines(), 1u) << outcome.errors;
    EXPECT_THAT(outcome.errors, testing::StartsWith("qvfilter: "));
    EXPECT_THAT(outcome.errors, testing::HasSubstr(cause));
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outputs.fileCount(), 0u);
}

void ffmpeg(Arguments arguments) {
    ffmpegOutput(std::move(arguments));
}

void makeClip(const std::string& path, const std::string& source, Arguments encoding) {
    Arguments arguments{"-f", "lavfi", "-i", source};
    arguments.insert(arguments.end(), encoding.begin(), encoding.end());
    arguments.push_back(path);
    ffmpeg(std::move(arguments));
}

Json probe(const std::string& path, const std::string& stream) {
    const Outcome outcome = run({"ffprobe", "-v", "error", "-count_frames", "-select_streams", stream,
                                 "-show_streams", "-of", "json", path});
    EXPECT_EQ(outcome.errors, "") << path;
    const Json json = Json::parse(outcome.output, nullptr, false);
    return json.contains("streams") && !json["streams"].empty() ? json["streams"][0] : Json::object();
}

std::vector<std::int64_t> frameTimes(const std::string& path) {
    const Outcome outcome = run({"ffprobe", "-v", "error", "-select_streams", "v:0", "-show_entries",
                                 "frame=pts", "-of", "json", path});
    std::vector<std::int64_t> times;
    const Json listing = Json::parse(outcome.output);
    for (const Json& frame : listing["frames"]) times.push_back(frame["pts"]);
    return times;
}

std::string packetHash(const std::string& path, const std::string& stream) {
    return ffmpegOutput({"-i", path, "-map", "0:" + stream, "-c", "copy", "-f", "streamhash", "-"});
}

std::string rgbFrame(const std::string& path, int index) {
    return ffmpegOutput({"-i", path, "-vf", "select=eq(n\\," + std::to_string(index) + ")", "-frames:v", "1",
                         "-f", "rawvideo", "-pix_fmt", "rgb24", "-"});
}

std::vector<float> soundOf(const std::string& path) {
    const std::string raw = path + ".raw";
    ffmpeg({"-i", path, "-af", "pan=mono|c0=c0", "-f", "f32le", raw});
    const std::string bytes = readBytes(raw);
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    return samples;
}

double tone(const std::vector<float>& samples, double frequency, double seconds, int rate) {
    const int count = rate / 20, begin = int(seconds * rate) - count / 2;
    double cosine = 0, sine = 0;
    for (int i = begin; i < begin + count; ++i) {
        const double angle = 2 * std::numbers::pi * frequency * i / rate;
        cosine += samples.at(std::size_t(i)) * std::cos(angle);
        sine += samples.at(std::size_t(i)) * std::sin(angle);
    }
    return 2 * std::hypot(cosine, sine) / count;
}

double rmsDifference(const std::string& a, const std::string& b) {
    if (a.size() != b.size() || a.empty()) return 1e9;
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const double difference = double(std::uint8_t(a[i])) - double(std::uint8_t(b[i]));
        sum += difference * difference;
    }
    return std::sqrt(sum / double(a.size()));
}

double meanChroma(const std::string& rgb) {
    double sum = 0;
    for (std::size_t i = 0; i + 2 < rgb.size(); i += 3) {
        const auto [low, high] =
            std::minmax({std::uint8_t(rgb[i]), std::uint8_t(rgb[i + 1]), std::uint8_t(rgb[i + 2])});
        sum += high - low;
    }
    return sum / (double(rgb.size()) / 3);
}

}  // namespace qv
