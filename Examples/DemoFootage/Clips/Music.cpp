#include "Examples/DemoFootage/Clips/Music.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "QVFilterExtension/Resources/Assets/Support/Noise.h"

namespace qv::assets {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr int kRate = StereoSound::kRate;

/// Hertz of a MIDI note number.
double pitch(double note) {
    return 440 * std::exp2((note - 69) / 12);
}

/// A saw wave without its aliases: the step is rounded over one sample (PolyBLEP). `phase` and `step` in
/// periods.
double saw(double phase, double step) {
    const double t = phase - std::floor(phase);
    double value = 2 * t - 1;
    if (t < step)
        value -= 2 * t / step - (t / step) * (t / step) - 1;
    else if (t > 1 - step)
        value -= (t - 1) / step * ((t - 1) / step) + 2 * (t - 1) / step + 1;
    return value;
}

/// A state-variable low pass after Chamberlin.
class LowPass {
  public:
    double operator()(double input, double cutoff, double resonance) {
        const double f = 2 * std::sin(kTurn / 2 * std::min(cutoff, kRate / 7.0) / kRate);
        low_ += f * band_;
        band_ += f * (input - low_ - resonance * band_);
        return low_;
    }

  private:
    double low_ = 0, band_ = 0;
};

class Mix {
  public:
    explicit Mix(double seconds) : samples_(std::size_t(std::lround(seconds * kRate)) * 2) {}

    /// Adds `voice(seconds since the start)` for `length` seconds; `pan` -1 left to 1 right; `send` to the
    /// echo.
    void add(double start, double length, double gain, double pan, double send,
             const std::function<double(double)>& voice) {
        echo_.resize(samples_.size());
        const long first = std::lround(start * kRate), count = std::lround(length * kRate);
        const double left = gain * std::cos((pan + 1) * kTurn / 8),
                     right = gain * std::sin((pan + 1) * kTurn / 8);
        for (long i = 0; i < count; ++i) {
            const std::size_t at = std::size_t(first + i) * 2;
            if (at + 1 >= samples_.size()) break;
            const double v = voice(double(i) / kRate);
            samples_[at] += float(v * left);
            samples_[at + 1] += float(v * right);
            echo_[at] += float(v * left * send);
            echo_[at + 1] += float(v * right * send);
        }
    }

    /// Adds echoes that cross from side to side, a fade at either end, and brings the peak to just below full
    /// scale.
    StereoSound finish(double echoTime, double feedback, double fadeOut) {
        echo_.resize(samples_.size());
        const std::size_t delay = std::size_t(echoTime * kRate) * 2;
        double dampLeft = 0, dampRight = 0;
        for (std::size_t i = delay; i + 1 < samples_.size(); i += 2) {
            dampLeft += 0.35 * (echo_[i - delay + 1] - dampLeft);
            dampRight += 0.35 * (echo_[i - delay] - dampRight);
            echo_[i] += float(feedback * dampLeft);
            echo_[i + 1] += float(feedback * dampRight);
            samples_[i] += float(feedback * dampLeft);
            samples_[i + 1] += float(feedback * dampRight);
        }
        const std::size_t frames = samples_.size() / 2;
        float peak = 1e-6f;
        for (float& v : samples_) {
            v = std::tanh(v);
            peak = std::max(peak, std::abs(v));
        }
        for (std::size_t i = 0; i < frames; ++i) {
            const double in = std::min(1.0, double(i) / (0.01 * kRate));
            const double out = std::min(1.0, double(frames - 1 - i) / (fadeOut * kRate));
            for (std::size_t c = 0; c < 2; ++c) samples_[2 * i + c] *= float(0.70 / peak * in * out);
        }
        return {std::move(samples_)};
    }

  private:
    std::vector<float> samples_, echo_;
};

/// Rises over `attack`, holds, and falls over `release` at the end of `length` seconds.
double swell(double t, double attack, double release, double length) {
    return std::min({1.0, t / attack, std::max(0.0, (length - t) / release)});
}

void addPad(Mix& mix, double start, double length, const std::vector<double>& notes, double gain,
            double brightness) {
    for (std::size_t i = 0; i < notes.size(); ++i)
        for (const double detune : {-0.08, 0.07}) {
            const double hertz = pitch(notes[i] + detune);
            mix.add(start, length, gain, detune * 9, 0.3, [=, filter = LowPass()](double t) mutable {
                const double open =
                    brightness * (1 + 0.35 * std::sin(kTurn * 0.21 * (t + start) + double(i)));
                return filter(saw(hertz * t + double(i) * 0.37, hertz / kRate), open, 1.1) *
                       swell(t, 0.35 * std::min(1.0, length / 2), 0.5 * std::min(1.0, length / 2), length);
            });
        }
}

void addPluck(Mix& mix, double start, double note, double gain, double pan) {
    const double hertz = pitch(note);
    mix.add(start, 1.6, gain, pan, 0.55, [=](double t) {
        double sum = 0;
        for (int k = 1; k <= 5; ++k)
            sum += std::sin(kTurn * hertz * k * t) / (k * k) * std::exp(-t * (2.2 + 1.7 * k));
        return sum * std::min(1.0, t / 0.004);
    });
}

void addBass(Mix& mix, double start, double length, double note, double gain, double cutoff) {
    const double hertz = pitch(note);
    mix.add(start, length, gain, 0, 0, [=, filter = LowPass()](double t) mutable {
        const double tone = 0.6 * saw(hertz * t, hertz / kRate) + 0.6 * std::sin(kTurn * hertz * t);
        return filter(tone, cutoff * (0.35 + 0.65 * std::exp(-9 * t)), 0.8) * swell(t, 0.006, 0.04, length);
    });
}

void addKick(Mix& mix, double start, double gain) {
    mix.add(start, 0.35, gain, 0, 0, [](double t) {
        const double phase = 48 * t + 110 / 38.0 * (1 - std::exp(-38 * t));
        return std::min(1.0, t / 0.0015) *
               (std::sin(kTurn * phase) * std::exp(-10 * t) + 0.25 * std::exp(-250 * t));
    });
}

double hiss(double t, std::uint32_t seed) {
    return 2.0 * hash01(int(t * kRate), 0, seed) - 1;
}

void addSnare(Mix& mix, double start, double gain) {
    mix.add(start, 0.28, gain, 0.05, 0.25, [filter = LowPass()](double t) mutable {
        const double noise = hiss(t, 1001);
        return 0.8 * (noise - filter(noise, 1300, 1)) * std::exp(-17 * t) +
               0.5 * std::sin(kTurn * 190 * t) * std::exp(-28 * t);
    });
}

void addHat(Mix& mix, double start, double gain, double decay, double pan) {
    mix.add(start, 0.2, gain, pan, 0.05, [=, filter = LowPass()](double t) mutable {
        const double noise = hiss(t, 1002);
        return (noise - filter(noise, 6500, 1)) * std::exp(-decay * t);
    });
}

}  // namespace

StereoSound lakeMusic(double seconds) {
    constexpr double kBeat = 60.0 / 80;
    Mix mix(seconds);
    const std::vector<double> chords[] = {
        {50, 57, 62, 66, 69}, {47, 54, 62, 66, 69}, {43, 55, 59, 62, 69}, {45, 57, 61, 64, 71}};
    const double roots[] = {38, 35, 31, 33};
    for (int bar = 0; bar < 4; ++bar) {
        const double start = bar * 2 * kBeat;
        addPad(mix, start, 2 * kBeat + 0.5, chords[bar], 0.05, 900);
        addBass(mix, start, 2 * kBeat - 0.05, roots[bar], 0.25, 420);
        const int order[] = {1, 3, 4, 2};
        for (int i = 0; i < 4; ++i)
            addPluck(mix, start + i * kBeat / 2, chords[bar][std::size_t(order[i])] + 12,
                     0.20 - 0.03 * (i % 2), i % 2 ? 0.45 : -0.45);
    }
    addPluck(mix, 3 * kBeat, 86, 0.12, 0.2);
    addPluck(mix, 7 * kBeat, 85, 0.12, -0.2);
    for (double t = 0; t < seconds; t += kBeat) addHat(mix, t + kBeat / 2, 0.035, 30, 0.3);
    return mix.finish(0.375, 0.5, 0.6);
}

StereoSound cityMusic(double seconds) {
    constexpr double kBeat = 0.5;
    Mix mix(seconds);
    const std::vector<double> chords[] = {{57, 60, 64, 67}, {53, 57, 60, 64}, {55, 59, 62, 67}};
    const double roots[] = {33, 29, 31};
    const double lead[] = {76, 0,  79, 81, 0,  79, 76, 0,  72, 0,  76, 77,
                           0,  76, 72, 0,  74, 0,  79, 83, 0,  81, 79, 76};
    const int beats = int(std::ceil(seconds / kBeat));
    for (int beat = 0; beat < beats; ++beat) {
        const double start = beat * kBeat;
        const std::size_t bar = std::size_t(beat / 4) % 3;
        addKick(mix, start, 0.52);
        if (beat % 2) addSnare(mix, start, 0.42);
        for (int i = 0; i < 4; ++i)
            addHat(mix, start + i * kBeat / 4, i == 2 ? 0.16 : 0.07, i == 2 ? 16 : 60, i % 2 ? 0.25 : -0.25);
        for (int i = 0; i < 2; ++i)
            addBass(mix, start + i * kBeat / 2, kBeat / 2 - 0.02, roots[bar] + (i && beat % 2 ? 12 : 0), 0.36,
                    900);
        if (beat % 4 == 0) addPad(mix, start, 4 * kBeat, chords[bar], 0.085, 1700);
        for (int i = 0; i < 2; ++i)
            if (const double note = lead[std::size_t(beat * 2 + i) % std::size(lead)]; note > 0)
                addPluck(mix, start + i * kBeat / 2, note, 0.27, i ? 0.3 : -0.2);
    }
    return mix.finish(0.375, 0.45, 0.25);
}

}  // namespace qv::assets
