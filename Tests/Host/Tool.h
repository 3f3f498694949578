#pragma once

#include <sys/types.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "Tests/Media/TemporaryFolder.h"

#include <nlohmann/json.hpp>

/// Runs the tool, and FFmpeg's programs as an independent judge of what it wrote.
namespace qv {

using Json = nlohmann::ordered_json;
using Arguments = std::vector<std::string>;

struct Outcome {
    int exitCode = -1;  ///< −1 when a signal ended the process
    std::string output, errors;

    std::size_t errorLines() const { return std::size_t(std::count(errors.begin(), errors.end(), '\n')); }
};

/// A child process whose output goes to files.
class Process {
  public:
    /// `input` is the file for standard input.
    explicit Process(const Arguments& command, const std::string& input = "/dev/null");
    void signal(int number);
    /// Returns once standard error holds this, or after a minute, then false.
    bool waitForErrors(const std::string& text);
    Outcome wait();

  private:
    TemporaryFolder folder_;
    pid_t id_;
};

Outcome run(const Arguments& command, const std::string& input = "/dev/null");
Outcome qvfilter(Arguments arguments, const std::string& input = "/dev/null");
/// The tool's output, which must be JSON.
Json qvfilterJSON(Arguments arguments);

/// Expects the tool to end with `exitCode`, a line that names the cause, and nothing printed. Arguments that
/// begin with OUT/ lie in a folder of their own, which has to stay empty. `before` stands before the tool.
void expectFailure(Arguments arguments, int exitCode, const std::string& cause, Arguments before = {});

/// Runs ffmpeg; an error of its own fails the test.
void ffmpeg(Arguments arguments);
/// Makes `path` from a lavfi source and encoder options.
void makeClip(const std::string& path, const std::string& source, Arguments encoding);
/// The first stream of a kind ("v:0", "a:0"), with the number of frames read.
Json probe(const std::string& path, const std::string& stream);
/// Time stamps of the frames in units of the time base.
std::vector<std::int64_t> frameTimes(const std::string& path);
/// Hash of a stream's packets, undecoded.
std::string packetHash(const std::string& path, const std::string& stream);
/// Frame number `index` as RGB bytes, turned as a player would.
std::string rgbFrame(const std::string& path, int index = 0);

/// The first channel of a clip's sound, as the file's rate has it.
std::vector<float> soundOf(const std::string& path);
/// Amplitude of a tone over the 50 ms around a time.
double tone(const std::vector<float>& samples, double frequency, double seconds, int rate = 48000);

/// Root of the mean squared difference; huge when the sizes differ.
double rmsDifference(const std::string& a, const std::string& b);
/// Mean of the largest minus the smallest of each pixel's R, G and B.
double meanChroma(const std::string& rgb);

}  // namespace qv
